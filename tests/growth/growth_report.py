#!/usr/bin/env python3
"""Runs growth laws under callgrind and says which of them break.

    growth_report.py [--jobs N] PROGRAM [LAW...]

PROGRAM is lyrsdk_growth, made to tell callgrind what to count. A law states how the instructions of its work may grow
with the size n of the work. Divided by that, what was counted at the largest size must be at most FACTOR of what was
counted at the smallest. A law that is broken by a factor of log n already shows.

Prints one line a law: the instructions at each size, and how far they grew beyond the law. Fails when a law breaks.
"""

import argparse
import concurrent.futures
import math
import pathlib
import re
import subprocess
import sys
import tempfile

GROWTHS = {
    "1": lambda n: 1,
    "log n": math.log2,
    "n": lambda n: n,
    "n log n": lambda n: n * math.log2(n),
}
# What a table that doubles and a tree that is a level deeper make of one size more than of another.
FACTOR = 1.35
PART = re.compile(r"^desc: Trigger: Client Request: (.+)\|(.+)\|(\d+)\n(?:.*\n)*?totals: (\d+)$", re.M)


def count(program, laws):
    """Gives what was counted: a list of (law, growth, size, instructions)."""
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={folder}/out"]
        done = subprocess.run(
            [*command, program, *laws], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False
        )
        if done.returncode != 0:
            sys.exit(done.stdout)
        parts = [path.read_text() for path in pathlib.Path(folder).iterdir()]
    found = [PART.search(part) for part in parts]
    return [(m[1], m[2], int(m[3]), int(m[4])) for m in found if m]


def excess(growth, counts):
    """How many times as much was counted at the largest size as the law allows for."""
    smallest, largest = min(counts), max(counts)
    allowed = GROWTHS[growth]
    return counts[largest] / allowed(largest) / (counts[smallest] / allowed(smallest))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("program")
    parser.add_argument("laws", nargs="*")
    arguments = parser.parse_args()

    listed = subprocess.run([arguments.program, "--list"], stdout=subprocess.PIPE, text=True, check=True)
    laws = arguments.laws or listed.stdout.split()
    # In small pieces, so that no process is left with all the long ones.
    pieces = [laws[i : i + 4] for i in range(0, len(laws), 4)]
    counted = {law: {} for law in laws}
    growths = {}
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for parts in pool.map(lambda piece: count(arguments.program, piece), pieces):
            for law, growth, size, instructions in parts:
                growths[law] = growth
                counted[law][size] = instructions

    broken = []
    for law in laws:
        if len(counted[law]) < 2 or min(counted[law].values()) == 0:
            sys.exit(f"{law}: nothing was counted")
        times = excess(growths[law], counted[law])
        if times > FACTOR:
            broken.append(law)
        numbers = "  ".join(f"{size}: {counted[law][size]}" for size in sorted(counted[law]))
        print(f"{law:40} {growths[law]:8} x {times:5.2f}{' BROKEN' if times > FACTOR else ''}   {numbers}")
    if broken:
        sys.exit(f"{len(broken)} of {len(laws)} laws break: {' '.join(broken)}")
    print(f"{len(laws)} laws hold.")


main()
