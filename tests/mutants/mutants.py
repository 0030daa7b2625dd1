#!/usr/bin/env python3
"""Changes the product in random places and says which changes no test notices; see scripts/mutants."""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import threading
import time

from changes import changes_in

# The folders of the product, each with the folders of its tests, and then those of the rooms that use
# it: they are asked about a change that its own tests have not noticed.
ROOMS = {
    "device": (["device", "fuzz"], ["session", "settingsfile", "cli", "mouse", "layout"]),
    "session": (["session", "fuzz"], ["connection", "readback", "settingsfile", "cli", "app"]),
    "usr": (["usr"], ["connection", "app"]),
    "connection": (["connection"], ["app"]),
    "mouse": (["mouse"], ["app"]),
    "layout": (["layout"], ["app"]),
    "readback": (["readback"], ["app"]),
    "settingsfile": (["settingsfile"], ["app"]),
    "app": (["app"], []),
    "cli": (["cli"], ["fuzz", "shell", "ansible"]),
    "simulator": (["simulator", "fuzz"], ["cli", "usr"]),
    "log": (["log"], ["app"]),
}
LONGEST_BUILD = 600  # seconds
LONGEST_TEST = 120  # seconds; a change that makes a test hang is noticed


class Copy:
    """A copy of the sources with a build of its own, in which one change at a time is tried."""

    def __init__(self, project, number):
        self.root = project / "build" / "mutants" / f"copy-{number}"
        self.build = self.root / "build"
        if self.root.exists():
            shutil.rmtree(self.root)
        self.root.mkdir(parents=True)
        tracked = subprocess.run(
            ["git", "ls-files", "-z"], cwd=project, check=True, capture_output=True
        ).stdout
        for name in tracked.decode().split("\0"):
            if name:
                target = self.root / name
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(project / name, target, follow_symlinks=False)
        self.running = None
        self.log = open(self.root / "log.txt", "wb")
        # Without warnings as errors, for a change may leave something unused, and without what only a
        # debugger reads.
        self._run("cmake", "-S", str(self.root), "-B", str(self.build), "-G", "Ninja",
                  "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=",
                  "-DPELORA_PRECOMPILED_HEADERS=ON")

    def _run(self, *command, timeout=None):
        """Whether it succeeded; None when it took too long."""
        # A group of its own, so that what a hanging test has started ends with it.
        process = subprocess.Popen(command, cwd=self.root, stdin=subprocess.DEVNULL, stdout=self.log,
                                   stderr=self.log, start_new_session=True)
        self.running = process.pid
        try:
            return process.wait(timeout) == 0
        except subprocess.TimeoutExpired:
            self.stop()
            process.wait()
            return None
        finally:
            self.running = None

    def stop(self):
        if self.running:
            os.killpg(self.running, signal.SIGKILL)

    def build_tests(self, folders, jobs=1, timeout=LONGEST_BUILD):
        targets = ["peloractl", "pelora-simulator"] + [f"tests/{folder}/all" for folder in folders]
        return self._run("ninja", "-C", str(self.build), "-j", str(jobs), *targets, timeout=timeout)

    def tests_pass(self, folders):
        for folder in folders:
            passed = self._run("ctest", "--test-dir", str(self.build / "tests" / folder), "-j", "3",
                               "--timeout", str(LONGEST_TEST), "--stop-on-failure", "--output-on-failure",
                               "--no-tests=error")
            if not passed:
                return False
        return True

    def try_out(self, room, change):
        """"noticed", "survived", or "not built" for what is no program."""
        path = self.root / change.path
        text = path.read_text(encoding="utf-8")
        path.write_text(change.applied_to(text), encoding="utf-8")
        try:
            for folders in ROOMS[room]:
                if not self.build_tests(folders):
                    return "not built"
                if not self.tests_pass(folders):
                    return "noticed"
            return "survived"
        finally:
            path.write_text(text, encoding="utf-8")


def all_changes(project, rooms):
    found = []
    for room in rooms:
        for path in sorted((project / room).glob("*.cpp")) + sorted((project / room).glob("*.h")):
            if path.stem.endswith("_windows"):
                continue
            name = str(path.relative_to(project))
            found += [(room, change) for change in changes_in(name, path.read_text(encoding="utf-8"))]
    return found


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutants")
    parser.add_argument("project", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("count", type=int, metavar="N")
    parser.add_argument("seed", type=int, nargs="?", default=1, metavar="SEED")
    parser.add_argument("--room", choices=sorted(ROOMS))
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    asked = parser.parse_args()

    rooms = [asked.room] if asked.room else sorted(ROOMS)
    candidates = all_changes(asked.project, rooms)
    random.Random(asked.seed).shuffle(candidates)
    print(f"mutants: {len(candidates)} places could be changed; {asked.count} of them, seed {asked.seed}")

    folders = sorted({folder for room in rooms for tier in ROOMS[room] for folder in tier})
    copies = []
    for number in range(1, asked.jobs + 1):
        copy = Copy(asked.project, number)
        if not copy.build_tests(folders, jobs=os.cpu_count(), timeout=None):
            sys.exit(f"mutants: unchanged, it does not build: see {copy.root}/log.txt")
        copies.append(copy)
    for folder in folders:
        if not copies[0].tests_pass([folder]):
            sys.exit(f"mutants: unchanged, the tests of {folder} fail: see {copies[0].root}/log.txt")

    lock = threading.Lock()
    results = collections.Counter()
    survivors = []
    remaining = iter(candidates)
    report = open(asked.project / "build" / "mutants" / "report.txt", "w", encoding="utf-8")
    begin = time.monotonic()

    def work(copy):
        while True:
            with lock:
                tried = results["noticed"] + results["survived"] + results["running"]
                if tried >= asked.count:
                    return
                room, change = next(remaining, (None, None))
                if change is None:
                    return
                results["running"] += 1
            verdict = copy.try_out(room, change)
            with lock:
                results["running"] -= 1
                results[verdict] += 1
                report.write(f"{verdict}: {change}\n")
                report.flush()
                if verdict == "survived":
                    survivors.append(change)
                    print(f"survived: {change}", flush=True)

    for ending in (signal.SIGINT, signal.SIGTERM):
        signal.signal(ending, signal.default_int_handler)
    with concurrent.futures.ThreadPoolExecutor(asked.jobs) as pool:
        workers = [pool.submit(work, copy) for copy in copies]
        try:
            for worker in workers:
                worker.result()
        except KeyboardInterrupt:
            remaining = iter(())
            for copy in copies:
                copy.stop()
            sys.exit(130)
    report.close()

    tried = results["noticed"] + results["survived"]
    share = 100.0 * results["noticed"] / tried if tried else 0.0
    minutes = (time.monotonic() - begin) / 60
    print(f"mutants: {tried} changes in {minutes:.0f} min: {results['noticed']} noticed ({share:.1f} %),"
          f" {results['survived']} survived; {results['not built']} more were no programs")
    return 1 if survivors else 0


if __name__ == "__main__":
    sys.exit(main())
