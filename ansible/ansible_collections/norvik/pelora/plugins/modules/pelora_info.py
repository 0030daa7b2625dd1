#!/usr/bin/python
"""Reads a switch's configuration."""

DOCUMENTATION = r"""
module: pelora_info
short_description: Read a Norvik Pelora keyboard-and-mouse switch
description:
  - Reads the configuration of a switch, and on request what its network module says of itself.
  - Changes nothing, in check mode or not.
author:
  - Norvik
options:
  keys:
    description:
      - The settings to read, all of them without this.
      - C(km_control), C(usb_control), C(active_ports), C(cursor_rolling), C(buzzer), C(mouse_mode),
        C(resolution.1) to C(.4), C(custom.1) to C(.4), C(layout), C(hotkey).
    type: list
    elements: str
  user:
    description:
      - The user name of the network module. With it I(network_module) is read as well, for which the
        device is a C(module:) or C(udp:) one.
    type: str
  password:
    description:
      - The password of the network module. It reaches C(peloractl) through its environment and appears
        in no output.
    type: str
extends_documentation_fragment:
  - norvik.pelora.peloractl
"""

EXAMPLES = r"""
- name: Read every setting
  norvik.pelora.pelora_info:
    device: "{{ pelora_device }}"
  register: switch

- name: See who has keyboard and mouse
  ansible.builtin.debug:
    msg: "{{ inventory_hostname }}: channel {{ switch.configuration.km_control }}"

- name: Read the layout and the network module's addresses
  norvik.pelora.pelora_info:
    device: module:DESK-7
    keys: [layout]
    user: admin
    password: "{{ vault_module_password }}"
"""

RETURN = r"""
configuration:
  description: The settings, or those of I(keys). One that the switch does not tell is null and fails the host.
  returned: when the switch answers
  type: dict
  sample:
    km_control: 1
    usb_control: 1
    active_ports: 4
    cursor_rolling: false
    buzzer: true
    mouse_mode: absolute
    resolution:
      - {number: 2, name: 4K}
      - {number: 1, name: 1080p}
      - {number: 1, name: 1080p}
      - {number: 10, name: OFFICE}
    custom:
      - {x: 100, y: 250, name: OFFICE}
      - {x: 100, y: 100, name: CUSTOM2}
      - {x: 100, y: 100, name: CUSTOM3}
      - {x: 100, y: 100, name: CUSTOM4}
    layout: 12../34../..../....
    hotkey: Left Ctrl
network_module:
  description: What the network module says of itself.
  returned: when I(user) is given
  type: dict
  sample:
    mac: 9CA5251A2B3C
    name: DESK-7
    address: 192.0.2.7
    allocation: static
    ip: 192.0.2.7
    mask: 255.255.255.0
    gateway: 192.0.2.254
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.norvik.pelora.plugins.module_utils.peloractl import (
    Peloractl,
    device_arguments,
)

ARGUMENTS = dict(
    keys=dict(type="list", elements="str", no_log=False),
    user=dict(type="str"),
    password=dict(type="str", no_log=True),
    **device_arguments()
)


def main():
    module = AnsibleModule(
        argument_spec=ARGUMENTS,
        required_together=[("user", "password")],
        supports_check_mode=True,
    )
    given = module.params
    peloractl = Peloractl(module)
    result = dict(
        changed=False, configuration=peloractl.run(["get"] + (given["keys"] or []))["configuration"]
    )
    if given["user"] is not None:
        shown = peloractl.run(
            ["module", "show", "--user=" + given["user"]], password=given["password"]
        )
        result["network_module"] = shown["module"]
    module.exit_json(**result)


if __name__ == "__main__":
    main()
