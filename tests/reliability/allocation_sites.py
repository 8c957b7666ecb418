#!/usr/bin/env python3
"""Which functions of the library can ask for memory, and which of them were refused it in a test run.

    allocation_sites.py [--sites] PROGRAM LOG REASONS

PROGRAM is lyrsdk_failing_memory_tests, unoptimised; LOG is what it wrote with LYRSDK_REFUSAL_LOG. A function can ask
when it calls the memory hook, or a function that can; that is read from the program's machine code. A call through a
pointer is followed where the run followed it. The run must have refused every function that can ask, and the function
itself must have been on the way. REASONS lists those that are left out, one a line, as "name: reason", where "..." in
a name stands for anything; lines that begin with "#" are remarks. A line there that is not needed is an error as well.

The sites are the calls from one such function to another. With --sites they are listed, those that were not on the way
as a hint for the tests. Exits with 0 when every function is refused or given a reason.
"""

import bisect
import collections
import re
import subprocess
import sys

HOOK = re.compile(r"_ZN6lyrsdk12LyrSdkMallocE[jm]$")
SYMBOL = re.compile(r"^([0-9a-f]+) <([^>]+)>:$")
CALL = re.compile(r"^ +[0-9a-f]+:\s+(call|jmp) +([0-9a-f]+) <([^>+]+)>")
INDIRECT = re.compile(r"^ +[0-9a-f]+:\s+call +\*")


def lines_of(*command, text=None):
    done = subprocess.run(command, input=text, stdout=subprocess.PIPE, text=True, check=True)
    return done.stdout.splitlines()


class Program:
    """The functions of the library that are in a program: where they start, whom they call."""

    def __init__(self, path):
        self.names = {}
        self.calls = collections.defaultdict(set)
        self.calls_pointers = set()
        here = None
        starts = []
        edges = collections.defaultdict(set)
        pointers = set()
        for line in lines_of("objdump", "-d", "--no-show-raw-insn", "--section=.text", path):
            match = SYMBOL.match(line)
            if match:
                here = int(match.group(1), 16)
                starts.append(here)
                self.names[here] = match.group(2)
                continue
            match = CALL.match(line)
            if match:
                edges[here].add(int(match.group(2), 16))
            elif INDIRECT.match(line):
                pointers.add(here)
        self.starts = sorted(starts)
        library = self.of_the_library(path)
        self.names = {start: self.names[start] for start in library}
        self.calls = {start: edges[start] & library for start in library}
        self.calls_pointers = pointers & library
        pretty = lines_of("c++filt", text="\n".join(self.names.values()))
        self.pretty = dict(zip(self.names, (short(name) for name in pretty)))

    def of_the_library(self, path):
        """Those functions that the debug information places in a source of the library."""
        addresses = "\n".join(hex(start) for start in self.starts)
        places = lines_of("addr2line", "-e", path, text=addresses)
        return {start for start, place in zip(self.starts, places) if "/lyrfilesdk/" in place}

    def function_at(self, return_address):
        """The start of the library's function that holds the call before an address, or None."""
        index = bisect.bisect_right(self.starts, return_address - 1) - 1
        start = self.starts[index] if index >= 0 else None
        return start if start in self.names else None


def short(name):
    """A function's name without what is the same for all, and without the return type of templates."""
    for noise in ("lyrsdk::", "(anonymous namespace)::"):
        name = name.replace(noise, "")
    depth = 0
    begin = 0
    for position, character in enumerate(name):
        if name.startswith("operator", position) or (character == "(" and depth == 0):
            break
        depth += (character == "<") - (character == ">")
        if character == " " and depth == 0:
            begin = position + 1
    return name[begin:]


class Run:
    """What a test run refused: the functions on the way, and the calls from one to the other."""

    def __init__(self, path, program):
        self.functions = set()
        self.sites = set()
        self.stacks = 0
        with open(path, encoding="ascii") as log:
            self.refusals = int(log.readline())
            for line in log:
                self.stacks += 1
                way = [program.function_at(int(word, 16)) for word in line.split()]
                self.functions.update(start for start in way if start is not None)
                self.sites.update((outer, inner) for inner, outer in zip(way, way[1:]) if outer and inner)


def asking(program, run):
    """The functions that can ask, and among them those of which only a call through a pointer is in doubt."""
    callers = collections.defaultdict(set)
    for caller, callees in program.calls.items():
        for callee in callees:
            callers[callee].add(caller)
    for outer, inner in run.sites:
        callers[inner].add(outer)
    hook = next(start for start, name in program.names.items() if HOOK.match(name))
    found = {hook}
    front = [hook]
    while front:
        for caller in callers[front.pop()]:
            if caller not in found:
                found.add(caller)
                front.append(caller)
    return found, program.calls_pointers - found


def read_reasons(path):
    reasons = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            line = line.strip()
            if line and not line.startswith("#"):
                name, _, reason = line.rpartition(": ")
                if not name or not reason:
                    sys.exit(f"{path}: no reason in: {line}")
                reasons[name] = reason
    return reasons


def stands_for(pattern, name):
    return re.fullmatch(re.escape(pattern).replace(r"\.\.\.", ".*"), name) is not None


def main():
    arguments = sys.argv[1:]
    show_sites = arguments[:1] == ["--sites"]
    if len(arguments) != 3 + show_sites:
        sys.exit(__doc__)
    program_file, log_file, reasons_file = arguments[-3:]
    program = Program(program_file)
    run = Run(log_file, program)
    reasons = read_reasons(reasons_file)
    can, doubtful = asking(program, run)

    names = {program.pretty[start] for start in can}
    refused = {program.pretty[start] for start in run.functions}
    sites = {(outer, inner) for outer in can for inner in program.calls[outer] & can} | run.sites
    site_names = {(program.pretty[outer], program.pretty[inner]) for outer, inner in sites}
    refused_sites = {(program.pretty[outer], program.pretty[inner]) for outer, inner in run.sites}
    open_names = (names | {program.pretty[start] for start in doubtful}) - refused
    explained = {name: [open_name for open_name in open_names if stands_for(name, open_name)] for name in reasons}
    missing = sorted(open_names.difference(*explained.values()))
    needless = sorted(name for name, found in explained.items() if not found)

    for outer, inner in sorted(site_names) if show_sites else []:
        state = "refused" if (outer, inner) in refused_sites else "not on the way"
        print(f"{state}: {outer} -> {inner}")
    print(f"{run.refusals} requests refused on {run.stacks} different ways")
    print(f"{len(names)} functions can ask for memory, {len(names & refused)} of them were refused")
    print(f"{len(site_names)} calls between them, {len(site_names & refused_sites)} of them were on the way")
    print(f"{len(reasons)} functions have a reason in {reasons_file}")
    for name in missing:
        print(f"never refused: {name}")
    for name in needless:
        print(f"needs no reason: {name}")
    sys.exit(1 if missing or needless else 0)


if __name__ == "__main__":
    main()
