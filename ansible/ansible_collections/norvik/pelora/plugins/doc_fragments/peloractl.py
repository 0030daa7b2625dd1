"""The documentation of the arguments that every module has."""


class ModuleDocFragment:
    DOCUMENTATION = r"""
options:
  device:
    description:
      - The way to the switch, as C(peloractl) takes it.
      - C(serial:PORT), such as C(serial:/dev/ttyUSB0); C(udp:ADDRESS) or C(udp:ADDRESS:PORT), such as
        C(udp:192.0.2.7); or C(module:NAME-OR-MAC), such as C(module:DESK-7), which is found by a search.
    type: str
    required: true
  executable:
    description:
      - The program, by name or path.
    type: path
    default: peloractl
  timeout:
    description:
      - The longest wait in milliseconds for an answer to begin, and then for the rest of it.
      - C(peloractl) waits 3000 without one.
    type: int
  retries:
    description:
      - Further attempts after the first.
      - C(peloractl) makes 2 without one.
    type: int
requirements:
  - peloractl
notes:
  - Runs where C(peloractl) is installed and from where the switch can be reached. Give each switch a host
    of its own with C(ansible_connection=local), or delegate to the control node.
  - A switch that fails fails its own host. The result then has I(kind), which is C(usage), C(no-device),
    C(not-understood), C(not-taken), C(credentials), C(interrupted), C(not-installed) or C(internal), and
    I(status), the exit status of C(peloractl).
"""
