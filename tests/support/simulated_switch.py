"""Simulated switches for tests of programs, each a pelora-simulator of its own."""

import os
import random
import re
import socket
import subprocess
import time

QUESTIONS = ["//rl", "//??", "//BP"]
PATIENCE = 20  # seconds until something that has to happen counts as lost


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("waited in vain for " + what)
        time.sleep(0.02)


def free_ports(count, address="127.0.0.1"):
    """UDP ports that nobody has, picked at random so that tests side by side pick others."""
    sockets = []
    while len(sockets) < count:
        one = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        try:
            one.bind((address, random.randint(10000, 30000)))
        except OSError:
            one.close()
            continue
        sockets.append(one)
    ports = [one.getsockname()[1] for one in sockets]
    for one in sockets:
        one.close()
    return ports


class SimulatedSwitch:
    """One switch behind a network module on loopback, and what it says of itself."""

    def __init__(self, folder, name="switch", options=()):
        self.log = os.path.join(folder, name + ".log")
        management, self.port = free_ports(2)
        with open(self.log, "wb") as log:
            self._process = subprocess.Popen(
                [os.environ["PELORA_SIMULATOR"], "module", "--address", "127.0.0.1",
                 "--management-port", str(management), "--switch-port", str(self.port),
                 "--print-state", "--verbose", *options],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log,
            )
        wait_for("the simulator", self._is_up)

    @property
    def device(self):
        return "udp:127.0.0.1:%d" % self.port

    def stop(self):
        self._process.terminate()
        self._process.wait()

    def text(self):
        with open(self.log, encoding="utf-8") as log:
            return log.read()

    def heard(self):
        """Every command so far, questions and what was rejected among them."""
        return re.findall(r"^switch: (?:command|rejected) (//.*?)(?:: .*)?$", self.text(), re.M)

    def told(self):
        """The commands so far without the questions: those that change something."""
        return [command for command in self.heard() if command not in QUESTIONS]

    def setting(self, name):
        """What the last printed state says of `name`, such as "KM control"."""
        return re.findall("^%s: (.*)$" % re.escape(name), self.text(), re.M)[-1]

    def _is_up(self):
        if self._process.poll() is not None:
            raise AssertionError("the simulator ended: " + self.text())
        return "KM control" in self.text()
