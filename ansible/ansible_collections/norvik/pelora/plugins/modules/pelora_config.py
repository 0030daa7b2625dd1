#!/usr/bin/python
"""Brings a switch to wanted settings."""

DOCUMENTATION = r"""
module: pelora_config
short_description: Change a Norvik Pelora keyboard-and-mouse switch
description:
  - Brings a switch to the settings that are named, or to what a settings file says, and sees that the
    switch took them. What is so already is not sent again.
  - Check mode asks the switch what it has and sends nothing else.
author:
  - Norvik
options:
  km_control:
    description: The port that has keyboard and mouse.
    type: int
    choices: [1, 2, 3, 4]
  usb_control:
    description: The port that has the USB devices.
    type: int
    choices: [1, 2, 3, 4]
  active_ports:
    description: How many ports are active.
    type: int
    choices: [2, 3, 4]
  cursor_rolling:
    description: Whether the cursor rolls over from the last display to the first.
    type: bool
  buzzer:
    description: Whether the buzzer sounds.
    type: bool
  mouse_mode:
    description: How the mouse moves.
    type: str
    choices: [absolute, relative]
  resolution:
    description:
      - The resolutions of the channels, a list of four from channel 1, or a dictionary with the channels
        1 to 4 as keys. In a list null leaves a channel as it is.
      - Each is a name, such as C(4K) or that of a custom setting, a number from 1 to 13, or a dictionary
        with the I(number), as M(norvik.pelora.pelora_info) returns it.
    type: raw
  custom:
    description:
      - The custom mouse settings, a list of four or a dictionary with 1 to 4 as keys, as for
        I(resolution).
      - Each is a dictionary of I(x) and I(y), 1 to 500, and I(name), 1 to 16 characters without a blank.
    type: raw
  layout:
    description:
      - Where the displays stand. Up to four rows of up to four cells from the top left, joined by C(/),
        each the channel's digit or a dot. C(12/34) is a square in the top left corner.
    type: str
  file:
    description:
      - A settings file on the machine where the task runs. Excludes the single settings.
      - With a local connection a relative path begins at the playbook's folder.
    type: path
  force:
    description:
      - Send everything, also what is so already. That alone is no change.
    type: bool
    default: false
extends_documentation_fragment:
  - norvik.pelora.peloractl
"""

EXAMPLES = r"""
- name: Set up a desk with four computers in a square
  norvik.pelora.pelora_config:
    device: "{{ pelora_device }}"
    active_ports: 4
    layout: 12/34
    buzzer: false
    custom:
      1: {x: 120, y: 80, name: OFFICE}
    resolution: [4K, 4K, OFFICE, 1080p]

- name: Bring every desk to the settings file of its kind
  norvik.pelora.pelora_config:
    device: "{{ pelora_device }}"
    file: "settings/{{ desk_kind }}.txt"

- name: See which desks are no longer as they were saved, and change nothing
  norvik.pelora.pelora_config:
    device: "{{ pelora_device }}"
    file: "backup/{{ inventory_hostname }}.txt"
  check_mode: true
  diff: true
"""

RETURN = r"""
changes:
  description:
    - What was changed, or in check mode would be, a dictionary of I(key), I(from) and I(to) for each
      setting.
    - Where the switch refuses a setting, those that it did take.
  returned: when the switch answers
  type: list
  elements: dict
  sample:
    - {key: km_control, from: 1, to: 3}
    - {key: resolution.2, from: {number: 1, name: 1080p}, to: {number: 2, name: 4K}}
commands:
  description: The commands that would be sent, in their order.
  returned: in check mode
  type: list
  elements: str
  sample: [//c3, //CE 2 2]
"""

import json
import os

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.norvik.pelora.plugins.module_utils.peloractl import (
    Peloractl,
    device_arguments,
)

PLAIN = dict(
    km_control=dict(type="int", choices=[1, 2, 3, 4]),
    usb_control=dict(type="int", choices=[1, 2, 3, 4]),
    active_ports=dict(type="int", choices=[2, 3, 4]),
    cursor_rolling=dict(type="bool"),
    buzzer=dict(type="bool"),
    mouse_mode=dict(type="str", choices=["absolute", "relative"]),
    layout=dict(type="str"),
)
NUMBERED = dict(resolution=dict(type="raw"), custom=dict(type="raw"))
SETTINGS = tuple(PLAIN) + tuple(NUMBERED)
ARGUMENTS = dict(
    file=dict(type="path"), force=dict(type="bool", default=False), **PLAIN, **NUMBERED,
    **device_arguments()
)


def plain_text(value):
    return {True: "on", False: "off"}[value] if isinstance(value, bool) else str(value)


def resolution_text(value):
    if isinstance(value, dict):
        return str(value["number"])
    return str(value)


def custom_text(value):
    return "%s %s %s" % (value["x"], value["y"], value["name"])


def by_number(name, value):
    """The entries of a list or a dictionary by their numbers. Raises ValueError with a sentence."""
    if isinstance(value, list) and len(value) <= 4:
        return {at: one for at, one in enumerate(value, start=1) if one is not None}
    if isinstance(value, dict) and all(str(at) in ("1", "2", "3", "4") for at in value):
        return {int(at): one for at, one in value.items()}
    raise ValueError("%s is a list of at most four, or a dictionary with keys 1 to 4" % name)


def assignments(given):
    """The settings of `given` as peloractl takes them. Raises ValueError with a sentence."""
    texts = [
        "%s=%s" % (name.replace("_", "-"), plain_text(given[name]))
        for name in PLAIN
        if given[name] is not None
    ]
    for name, text_of, form in (
        ("custom", custom_text, "a dictionary of x, y and name"),
        ("resolution", resolution_text, "a name, a number, or a dictionary with a number"),
    ):
        for at, value in sorted(by_number(name, given[name] or {}).items()):
            try:
                texts.append("%s.%d=%s" % (name, at, text_of(value)))
            except (KeyError, TypeError):
                raise ValueError("%s.%d is %s" % (name, at, form))
    return texts


def command(module):
    given = module.params
    if given["file"] is not None:
        words = ["apply", os.path.abspath(given["file"])]
    else:
        try:
            words = ["set"] + assignments(given)
        except ValueError as error:
            module.fail_json(msg=str(error), kind="usage")
    if len(words) == 1:
        module.fail_json(msg="nothing to set", kind="usage")
    return words + ["--force"] * given["force"] + ["--dry-run"] * module.check_mode


def lines_of(changes, side):
    return "".join("%s: %s\n" % (one["key"], json.dumps(one[side])) for one in changes)


def diff_of(changes, device):
    return dict(
        before_header=device,
        after_header=device,
        before=lines_of(changes, "from"),
        after=lines_of(changes, "to"),
    )


def main():
    module = AnsibleModule(
        argument_spec=ARGUMENTS,
        mutually_exclusive=[("file", name) for name in SETTINGS],
        required_one_of=[("file",) + SETTINGS],
        supports_check_mode=True,
    )
    answer = Peloractl(module).run(command(module))
    changes = answer["changes"]
    result = dict(changed=bool(changes), changes=changes)
    if module.check_mode:
        result["commands"] = answer["commands"]
    if module._diff and changes:
        result["diff"] = diff_of(changes, module.params["device"])
    module.exit_json(**result)


if __name__ == "__main__":
    main()
