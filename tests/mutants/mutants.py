#!/usr/bin/env python3
"""Changes the product in random places and says which changes no test notices; see scripts/mutants."""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import resource
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
# What tests start as processes of their own. Always built, lest a test meets the change before.
PROGRAMS = ["peloractl", "pelora-simulator"]
LONGEST_BUILD = 600  # seconds
LONGEST_TEST = 120  # seconds; a change that makes a test hang is noticed
LONGEST_TESTS = 400  # seconds, of a folder
LARGEST = 4 << 30  # bytes of a process; a change that makes a test collect without end is noticed
LEAST = 90.0  # per cent that are to be noticed
UNCHANGED = 20  # so many changes, and then the tests of one of them without it


def _kill_group(leader):
    try:
        os.killpg(leader, signal.SIGKILL)
    except ProcessLookupError:
        pass  # it has ended by itself


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
        self.is_stopped = False
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
            _kill_group(process.pid)
            process.wait()
            return None
        except BaseException:
            _kill_group(process.pid)
            raise
        finally:
            self.running = None

    def stop(self):
        self.is_stopped = True
        if self.running:
            _kill_group(self.running)

    def test_programs(self):
        """The names of the tests that are a program of the same name."""
        listed = subprocess.run(["ctest", "--test-dir", str(self.build), "--show-only=json-v1"],
                                check=True, capture_output=True).stdout
        tests = json.loads(listed)["tests"]
        return {test["name"] for test in tests
                if os.path.basename(test.get("command", [""])[0]) == test["name"]}

    def make(self, targets, jobs=1, timeout=LONGEST_BUILD):
        return self._run("ninja", "-C", str(self.build), "-j", str(jobs), *PROGRAMS, *targets,
                         timeout=timeout)

    def make_folders(self, folders, jobs=1, timeout=LONGEST_BUILD):
        return self.make([f"tests/{folder}/all" for folder in folders], jobs, timeout)

    def pass_tests(self, folder, *choice):
        return bool(self._run("ctest", "--test-dir", str(self.build / "tests" / folder), "-j", "3",
                              "--timeout", str(LONGEST_TEST), "--stop-on-failure",
                              "--output-on-failure", "--no-tests=error", *choice,
                              timeout=LONGEST_TESTS))

    def try_out(self, room, change, near):
        """"noticed" or "survived"; "not built" for what is no program, "stopped" in the middle of it.
        The tests of `near` are asked first, for most changes are noticed there."""
        path = self.root / change.path
        text = path.read_text(encoding="utf-8")
        path.write_text(change.applied_to(text), encoding="utf-8")
        try:
            verdict = self._ask(room, near)
            return "stopped" if self.is_stopped else verdict
        finally:
            path.write_text(text, encoding="utf-8")

    def try_unchanged(self, room, near):
        """"steady", or "unsteady" when a test fails without any change; what is noticed beside that
        may be no more than a machine that is too busy."""
        verdict = self._ask(room, near)
        return "stopped" if self.is_stopped else "steady" if verdict == "survived" else "unsteady"

    def _ask(self, room, near):
        if near:
            if not self.make(near):
                return "not built"
            if not self.pass_tests("", "-R", f"^({'|'.join(near)})$"):
                return "noticed"
        for folders in ROOMS[room]:
            if not self.make_folders(folders):
                return "not built"
            if not all(self.pass_tests(folder) for folder in folders):
                return "noticed"
        return "survived"


def product_folders(project):
    """The folders with sources of the product."""
    tracked = subprocess.run(["git", "ls-files", "*.cpp"], cwd=project, check=True,
                             capture_output=True, text=True).stdout
    return {path.split("/")[0] for path in tracked.split()} - {"tests", "demo", "benchmarks",
                                                               "packaging"}


def all_changes(project, rooms):
    found = []
    for room in rooms:
        for path in sorted((project / room).glob("*.cpp")) + sorted((project / room).glob("*.h")):
            if path.stem.endswith("_windows"):
                continue
            name = str(path.relative_to(project))
            found += [(room, change) for change in changes_in(name, path.read_text(encoding="utf-8"))]
    return found


def near(change, tests):
    """The tests that are called after the changed file."""
    name = "tst_" + pathlib.Path(change.path).stem
    return sorted(test for test in tests if test == name or test.startswith(name + "_"))


class Trial:
    """Takes one change after the other, in one thread for each copy, until enough were tried."""

    def __init__(self, candidates, skipped, count, tests, report):
        self.remaining = iter(list(enumerate(candidates, start=1))[skipped:])
        self.count = count
        self.tests = tests
        self.report = report
        self.results = collections.Counter()
        self.begun = 0  # those that are being tried, and those that were and are programs
        self.lock = threading.Lock()

    def next(self):
        with self.lock:
            place, (room, change) = next(self.remaining, (0, (None, None)))
            if change is None or self.begun >= self.count:
                return 0, None, None
            self.begun += 1
            return place, room, change

    def work(self, copy):
        while not copy.is_stopped:
            place, room, change = self.next()
            if change is None:
                return
            if place % UNCHANGED == 0:
                self.note(place, copy.try_unchanged(room, near(change, self.tests)), change.path)
            verdict = copy.try_out(room, change, near(change, self.tests))
            with self.lock:
                if verdict == "not built":
                    self.begun -= 1
            self.note(place, verdict, change)

    def note(self, place, verdict, what):
        with self.lock:
            self.results[verdict] += 1
            self.report.write(f"{place}: {verdict}: {what}\n")
            self.report.flush()
            if verdict in ("survived", "unsteady"):
                print(f"{place}: {verdict}: {what}", flush=True)


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutants")
    parser.add_argument("project", type=pathlib.Path, help=argparse.SUPPRESS)
    parser.add_argument("count", type=int, metavar="N")
    parser.add_argument("seed", type=int, nargs="?", default=1, metavar="SEED")
    parser.add_argument("--room", choices=sorted(ROOMS))
    parser.add_argument("--skip", type=int, default=0, metavar="PLACES")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    asked = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(130))
    resource.setrlimit(resource.RLIMIT_AS, (LARGEST, LARGEST))  # of all that is started below, too
    unknown = product_folders(asked.project) - ROOMS.keys()
    if unknown:
        sys.exit(f"mutants: who tests {', '.join(sorted(unknown))}?")
    rooms = [asked.room] if asked.room else sorted(ROOMS)
    candidates = all_changes(asked.project, rooms)
    random.Random(asked.seed).shuffle(candidates)
    print(f"mutants: {len(candidates)} places could be changed; {asked.count} of them, seed {asked.seed}",
          flush=True)

    folders = sorted({folder for room in rooms for tier in ROOMS[room] for folder in tier})
    copies = []
    for number in range(1, asked.jobs + 1):
        copy = Copy(asked.project, number)
        if not copy.make_folders(folders, jobs=os.cpu_count(), timeout=None):
            sys.exit(f"mutants: unchanged, it does not build: see {copy.root}/log.txt")
        copies.append(copy)
    for folder in folders:
        if not copies[0].pass_tests(folder):
            sys.exit(f"mutants: unchanged, the tests of {folder} fail: see {copies[0].root}/log.txt")

    begin = time.monotonic()
    with open(asked.project / "build" / "mutants" / "report.txt", "a" if asked.skip else "w",
              encoding="utf-8") as report:
        trial = Trial(candidates, asked.skip, asked.count, copies[0].test_programs(), report)

        def stop(_signal, _frame):
            for copy in copies:
                copy.stop()

        for ending in (signal.SIGINT, signal.SIGTERM):
            signal.signal(ending, stop)
        with concurrent.futures.ThreadPoolExecutor(asked.jobs) as pool:
            for worker in [pool.submit(trial.work, copy) for copy in copies]:
                worker.result()

    results = trial.results
    tried = results["noticed"] + results["survived"]
    share = 100.0 * results["noticed"] / tried if tried else 0.0
    minutes = (time.monotonic() - begin) / 60
    print(f"mutants: {tried} changes in {minutes:.0f} min: {results['noticed']} noticed ({share:.1f} %),"
          f" {results['survived']} survived; {results['not built']} more were no programs; unchanged"
          f" {results['steady'] + results['unsteady']}, of which {results['unsteady']} failed")
    if results["stopped"]:
        print("mutants: stopped before the end")
        return 130
    return 0 if share >= LEAST and not results["unsteady"] else 1


if __name__ == "__main__":
    sys.exit(main())
