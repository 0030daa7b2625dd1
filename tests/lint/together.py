#!/usr/bin/env python3
"""Shows sources to clang-tidy, several at a time.

together.py COMPILE_COMMANDS.json FOLDER SOURCE ...

Nearly all of clang-tidy's time goes to Qt's headers, so sources that are compiled alike are put into one
file in FOLDER, one behind the other, which pays for the headers once. They are not included there: the
analyzer passes over what is included. Sources whose names clash are shown apart. Prints what clang-tidy
finds, with the place in the source, and exits with 1 when it finds something.
"""

import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

AT_ONCE = 8  # more would leave a processor without work at the end


def flags_of(entry):
    """How a source is compiled, without its own name, its output and what GCC has precompiled."""
    words = shlex.split(entry["command"])
    compiler = next(at for at, word in enumerate(words) if word.endswith("++"))  # a launcher may precede it
    flags = words[compiler + 1:]
    for option in ("-o", "-include"):
        if option in flags:
            at = flags.index(option)
            del flags[at:at + 2]
    return tuple(flag for flag in flags if flag not in ("-c", "-Winvalid-pch", entry["file"]))


def batches(commands, sources):
    """Lists of sources that are compiled alike, each with its flags."""
    compiled = {entry["file"]: entry for entry in reversed(commands)}
    alike = {}
    for source in sources:
        if source not in compiled:
            sys.exit(f"lint: {source} is no source of this build")
        entry = compiled[source]
        alike.setdefault((entry["directory"], flags_of(entry)), []).append(source)
    for how, group in alike.items():
        for first in range(0, len(group), AT_ONCE):
            yield how, group[first:first + AT_ONCE]


def tidy(folder, how, group):
    """What clang-tidy says of the sources, and whether it is content."""
    directory, flags = how
    beside = dict.fromkeys("-iquote" + os.path.dirname(source) for source in group)
    lines = [(source, number, text) for source in group
             for number, text in enumerate(pathlib.Path(source).read_text("utf-8").split("\n"), 1)]
    with tempfile.NamedTemporaryFile("w", suffix=".cpp", dir=folder, encoding="utf-8") as whole:
        whole.writelines(text + "\n" for _, _, text in lines)
        whole.flush()
        finished = subprocess.run(
            ["clang-tidy-14", "--quiet", "--warnings-as-errors=*", whole.name, "--", *flags, *beside],
            cwd=directory, capture_output=True, encoding="utf-8", check=False)
    said = finished.stdout + "".join(
        line for line in finished.stderr.splitlines(True) if "generated." not in line)
    if "[clang-diagnostic-error" in said and len(group) > 1:
        middle = len(group) // 2
        halves = [tidy(folder, how, half) for half in (group[:middle], group[middle:])]
        return "".join(half[0] for half in halves), all(half[1] for half in halves)

    def place(found):
        source, number, _ = lines[min(int(found[1]), len(lines)) - 1]
        return f"{source}:{number}:"

    return re.sub(re.escape(whole.name) + r":(\d+):", place, said), finished.returncode == 0


def main(commands, folder, *sources):
    entries = json.loads(pathlib.Path(commands).read_text(encoding="utf-8"))
    wanted = dict.fromkeys(os.path.realpath(source) for source in sources)
    folder = os.path.realpath(folder)
    content = True
    with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as processors:
        jobs = [processors.submit(tidy, folder, *batch) for batch in batches(entries, wanted)]
        for job in jobs:
            said, good = job.result()
            if not good:
                print(said, end="", flush=True)
                content = False
    return 0 if content else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
