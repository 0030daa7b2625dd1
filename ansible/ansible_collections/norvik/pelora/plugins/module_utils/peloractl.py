"""What the modules of this collection share: one run of peloractl for one device."""

import json
import os

HEAD = "peloractl: "
WARNING = "warning: "

# What peloractl ends with when it has no JSON object to say it in.
KINDS = {
    2: "usage",
    3: "no-device",
    4: "not-understood",
    5: "not-taken",
    6: "credentials",
    130: "interrupted",
}


def device_arguments():
    """The arguments that every module has."""
    return dict(
        device=dict(type="str", required=True),
        executable=dict(type="path", default="peloractl"),
        timeout=dict(type="int"),
        retries=dict(type="int"),
    )


class Peloractl:
    """Runs peloractl for the module's device.

    What fails ends the module, and with it the work on this host alone, with the message of
    peloractl, its exit status and the kind of the error.
    """

    def __init__(self, module):
        self.module = module
        self.program = self._program(module.params["executable"])

    def run(self, arguments, password=None):
        """The JSON object that peloractl prints. `password` goes through the environment."""
        environment = {} if password is None else {"PELORA_PASSWORD": password}
        status, output, errors = self.module.run_command(
            [self.program] + self._options() + arguments, environ_update=environment
        )
        complaints = self._complaints(errors)
        answer = self._answer(output)
        if status == 0 and answer.get("ok"):
            return answer
        error = answer.get("error", {})
        self.module.fail_json(
            msg=error.get("message") or "; ".join(complaints) or "peloractl ended without a word",
            kind=error.get("kind") or KINDS.get(status, "internal"),
            status=status,
            changed=bool(answer.get("changes") or answer.get("sent")),
            **{key: answer[key] for key in ("configuration", "changes", "sent") if key in answer}
        )

    def _program(self, executable):
        found = executable if os.sep in executable else self.module.get_bin_path(executable)
        if found and os.access(found, os.X_OK):
            return found
        self.module.fail_json(
            msg="%s is not installed where this task runs; run it on the control node "
            "(ansible_connection: local), or give its path as executable" % executable,
            kind="not-installed",
        )

    def _options(self):
        given = self.module.params
        options = ["--json", "--device=" + given["device"]]
        for name in ("timeout", "retries"):
            if given[name] is not None:
                options.append("--%s=%d" % (name, given[name]))
        return options

    def _complaints(self, errors):
        """The lines of standard error; warnings among them become warnings of the module."""
        complaints = []
        for line in errors.splitlines():
            text = line[len(HEAD):] if line.startswith(HEAD) else line
            _before, marker, warning = text.partition(WARNING)
            if marker:
                self.module.warn(warning)
            elif text:
                complaints.append(text)
        return complaints

    def _answer(self, output):
        lines = output.splitlines()
        try:
            return json.loads(lines[0]) if lines else {}
        except ValueError:
            self.module.fail_json(
                msg="what %s printed is no JSON: %s" % (self.program, lines[0]), kind="internal"
            )
