#!/usr/bin/env python3
"""What scripts/bench measured, as a table.

bench_table.py table FOLDER [--json FILE]   the table of the results in FOLDER; FILE keeps them all
bench_table.py instructions FOLDER          the counts that callgrind dumped there, a line each
bench_table.py compare BASELINE COUNTS      fails when a count is off the baseline by more than 3%
"""

import glob
import json
import math
import os
import re
import statistics
import sys

OURS = "ours"
ALLOWED_DRIFT = 0.03
# Times grow beyond the law, because more data comes from a slower cache. A law that is broken shows as far more: as
# the factor between the two sizes, which is 100 in most rows.
CACHES = 4


# --- targets ---------------------------------------------------------------------------------------------------------
# A target looks at the medians of one row and gives (ratio, text), the ratio being 1 where the target is just met, or
# None when a side or a row that it needs was not run. Times are ns an operation.


def against(peer, factor):
    """At most factor times what the peer takes."""

    def check(rows, row):
        ours, theirs = rows[row].get(OURS), rows[row].get(peer)
        if ours is None or not theirs:
            return None
        # A quotient that is easier to read than the factor.
        text = f"{1 / factor:.3g}x as fast as {peer}" if factor < 1 else f"<= {factor:.3g}x {peer}"
        return ours / theirs / factor, text

    return check


def at_most(limit, unit, limit32=None):
    def check(rows, row):
        ours = rows[row].get(OURS)
        if ours is None:
            return None
        text = f"<= {limit:g}{unit}"
        ratio = ours / limit if limit else (0 if ours == 0 else math.inf)
        if limit32 is not None:
            text += f" (32 bits: {limit32:g})"
            ours32 = rows[row].get("ours 32")
            if ours32 is not None:
                ratio = max(ratio, ours32 / limit32 if limit32 else (0 if ours32 == 0 else math.inf))
        return ratio, text

    return check


def beside(other, factor):
    """At most factor times what another row of ours takes."""

    def check(rows, row):
        ours, theirs = rows[row].get(OURS), rows.get(other, {}).get(OURS)
        if ours is None or not theirs:
            return None
        return ours / theirs / factor, f"<= {factor:g}x '{other}'"

    return check


def floor_and_row(peer, factor, other):
    """At most factor times the floor, and what another row of ours takes."""

    def check(rows, row):
        ours, floor, more = rows[row].get(OURS), rows[row].get(peer), rows.get(other, {}).get(OURS)
        if ours is None or not floor or more is None:
            return None
        return ours / (factor * floor + more), f"<= {factor:g}x {peer} + {more:.1f} (the get)"

    return check


def growth(size, law, name, peer=None):
    """From the same row of another size on, at most as the law says, or as the peer grows if that is more."""

    def check(rows, row):
        small = f"{row.rsplit('/', 1)[0]}/{size}"
        if rows[row].get(OURS) is None or not rows.get(small, {}).get(OURS):
            return None
        allowed = law(size, int(row.rsplit("/", 1)[1]))
        if peer and rows[row].get(peer) and rows[small].get(peer):
            allowed = max(allowed, rows[row][peer] / rows[small][peer])
        return rows[row][OURS] / rows[small][OURS] / allowed, f"<= {allowed:.3g}x that of {size} ({name})"

    return check


def log_law(small, large):
    return math.log(large) / math.log(small)


def n_log_n_law(small, large):
    # Per connection.
    return CACHES * log_law(small, large)


# The rows in the order of the table: pattern, unit, targets.
ROWS = [
    (r"map insert ascending/", "ns", [against("std::map", 1 / 1.3)]),
    (r"map insert random/", "ns", []),
    (r"map find random/", "ns", [against("std::map", 1)]),
    (r"map erase random/", "ns", [against("std::map", 1)]),
    (r"map clear/", "ns", [against("std::map", 1 / 3)]),
    (r"map bytes/", "B", [against("std::map", 1)]),
    (r"create object", "ns", [against("GObject hash table", 1), against("Qt dynamic", 1 / 2)]),
    (r"destroy object/", "ns", []),
    (r"(property|double) bytes", "B", []),
    (r"(get|set) double", "ns", [against("std::map of variants", 1), against("RTTR", 1)]),
    (r"typed get double/", "ns", [beside("get double/64", 1.25)]),
    (r"typed set double/", "ns", [beside("set double/64", 1.25)]),
    (r"typed set double checked/", "ns", [beside("set double checked/64", 1.25)]),
    (r"allocations", "", [at_most(0, "", 0)]),
    (r"find and get/", "ns", [against("GObject", 1), against("Qt dynamic", 1 / 3)]),
    (r"find .*/10000$", "ns", [against("std::map", 5), growth(10, log_law, "log n", "std::map")]),
    (r"find ", "ns", []),
    (r"get without conversion", "ns", []),
    (r"string to double", "ns", [floor_and_row("from_chars", 2, "get without conversion")]),
    (r"(int|3-vector) to string", "ns", [floor_and_row("to_chars", 2, "get without conversion")]),
    (r"half ", "ns", [against("Imath", 1)]),
    (r"walk .*/1000000$", "ns", [against("std::map", 1), growth(1000, lambda *_: 4, "full walk")]),
    (r"walk ", "ns", [against("std::map", 1)]),
    (r"descendants .*/1000000$", "ns", [growth(10000, log_law, "k log n")]),
    (r"descendants ", "ns", []),
    (r"instance create/", "ns", [at_most(200, " ns")]),
    (r"instance (create and )?three sets/", "ns", []),
    (r"instance bytes, three sets", "B", [at_most(600, " B", 350)]),
    (r"instance bytes, no sets", "B", [at_most(200, " B", 120)]),
    (r"read own value", "ns", []),
    (r"read through instance", "ns", [beside("read own value", 2)]),
    (r"instance destroy .*/10000$", "ns", [growth(1000, lambda *_: CACHES, "linear in all")]),
    (r"instance destroy ", "ns", []),
    (r"chain .*/1000$", "ns", [growth(10, lambda small, large: CACHES * large / small, "linear in depth")]),
    (r"chain ", "ns", []),
    (r"((dis)?connect|destroy) .*/100000$", "ns", [against("Qt", 1), growth(1000, n_log_n_law, "n log n", "Qt")]),
    (r"((dis)?connect|destroy) ", "ns", [against("Qt", 1)]),
    (r"repeated count.*/100000$", "ns", [growth(1000, lambda *_: 1.5, "constant")]),
    (r"repeated count", "ns", []),
    (r"connection bytes", "B", []),
    (r"inspector parse", "ms", []),
    (r"inspector pages", "ms", [beside("inspector parse", 1)]),
    (r"inspector", "", []),
]


def kind_of(row):
    for index, (pattern, _, _) in enumerate(ROWS):
        if re.match(pattern, row):
            return index
    return len(ROWS)


def place(row):
    """Sizes of a row stay together, in ascending order."""
    base, _, size = row.rpartition("/")
    kinds = [kind_of(other) for other in (row, f"{base}/1") if other]
    return (max(kinds) if base else kinds[0], base or row, int(size) if base and size.isdigit() else 0)


# --- results ---------------------------------------------------------------------------------------------------------


def read_benchmarks(folder):
    """rows[row][side] = list of values, and the sides that gave up."""
    rows, cut, raw = {}, set(), {}
    for path in sorted(glob.glob(os.path.join(folder, "*.json"))):
        if os.path.getsize(path) == 0:
            continue  # no row of the subject was asked for
        with open(path, encoding="utf-8") as file:
            content = json.load(file)
        raw[os.path.basename(path)] = content
        bits32 = path.endswith("-32.json")
        for run in content["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            row, side = re.sub(r"/iterations:1/manual_time.*$", "", run["name"]).split("|")
            side += " 32" if bits32 else ""
            value = run["amount"] if "amount" in run else run["real_time"] / run["items"]
            rows.setdefault(row, {}).setdefault(side, []).append(value)
            if run.get("cut"):
                cut.add((row, side))
    return rows, cut, raw


def read_inspector(folder, rows):
    """The statistics that the inspector printed, several times over."""
    for path in sorted(glob.glob(os.path.join(folder, "inspector-*.txt"))):
        with open(path, encoding="utf-8") as file:
            text = file.read()

        def number(pattern):
            return float(re.search(pattern, text).group(1))

        values = {
            "inspector parse": number(r"time parse +([\d.]+)") * 1000,
            "inspector pages": number(r"time build +([\d.]+)") * 1000,
            "inspector peak MB": number(r"peak (\d+)") / 1e6,
            "inspector bytes a property": number(r"memory bytes +(\d+)") / number(r"properties +(\d+)"),
        }
        for row, value in values.items():
            rows.setdefault(row, {}).setdefault(OURS, []).append(value)


def format_value(value, is_cut=False):
    if value is None:
        return ""
    text = f"{value:,.0f}" if value >= 1000 else f"{value:.3g}" if value < 100 else f"{value:.0f}"
    return "> " + text if is_cut else text


def print_table(folder, json_file):
    samples, cut, raw = read_benchmarks(folder)
    read_inspector(folder, samples)
    if not samples:
        sys.exit("No row matches.")
    rows = {row: {side: statistics.median(values) for side, values in sides.items()} for row, sides in samples.items()}
    lines = [("row", "unit", "ours", "32 bits", "of limit", "met", "target", "peers")]
    met = missed = 0
    for row in sorted(rows, key=place):
        kind = kind_of(row)
        _, unit, targets = ROWS[kind] if kind < len(ROWS) else ("", "", [])
        sides = rows[row]
        peers = sorted((value, side) for side, value in sides.items() if not side.startswith(OURS))
        cells = [format_value(sides.get(side), (row, side) in cut) for side in (OURS, OURS + " 32")]
        shown = "; ".join(f"{side} {format_value(value, (row, side) in cut)}" for value, side in peers)
        first = (row, unit, *cells)
        results = [result for result in (check(rows, row) for check in targets) if result]
        # Work that was given up takes longer than is shown, and meets no target.
        given_up = (row, OURS) in cut
        for ratio, text in results:
            is_met = ratio <= 1 and not given_up
            met, missed = met + is_met, missed + (not is_met)
            limit = "> " * given_up + f"{ratio:.2f}"
            lines.append((*first, limit, "yes" if is_met else "NO", text, shown))
            first, shown = ("",) * 4, ""
        if not results:
            lines.append((*first, "", "", "a side or row is missing" if targets else "", shown))
    widths = [max(len(line[i]) for line in lines) for i in range(7)]
    for line in lines:
        cells = [line[i].rjust(widths[i]) if 2 <= i <= 4 else line[i].ljust(widths[i]) for i in range(7)]
        print("  ".join([*cells, line[7]]).rstrip())
    print(f"\nMedians. {met} targets met, {missed} not.")
    if json_file:
        with open(json_file, "w", encoding="utf-8") as file:
            json.dump({"medians": rows, "cut": sorted(cut), "runs": raw}, file, indent=1)


# --- instructions ----------------------------------------------------------------------------------------------------


def print_instructions(folder):
    counts = []
    for path in glob.glob(os.path.join(folder, "out.*")):
        with open(path, encoding="utf-8") as file:
            text = file.read()
        name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.M)
        if name:
            number = int(re.search(r"\.(\d+)$", path).group(1))
            counts.append((number, name.group(1), re.search(r"^(?:summary|totals): (\d+)", text, re.M).group(1)))
    if not counts:
        sys.exit("callgrind counted nothing.")
    for _, name, count in sorted(counts):
        print(f"{name}\t{count}")


def read_counts(path):
    with open(path, encoding="utf-8") as file:
        return {name: int(count) for name, count in (line.rstrip("\n").split("\t") for line in file)}


def compare(baseline_file, counts_file):
    baseline, counts = read_counts(baseline_file), read_counts(counts_file)
    failed = False
    for name in [*baseline, *(name for name in counts if name not in baseline)]:
        before, now = baseline.get(name), counts.get(name)
        if before is None or now is None:
            print(f"{name}: {'not in the baseline' if before is None else 'not counted'}")
            failed = True
            continue
        drift = now / before - 1
        off = abs(drift) > ALLOWED_DRIFT
        failed |= off
        print(f"{name:42} {before:12,} {now:12,} {drift:+8.2%}{'  OFF' if off else ''}")
    if failed:
        sys.exit("The counts are not those of the baseline; scripts/bench --instructions --update takes them over.")


def main(arguments):
    if arguments[:1] == ["table"] and len(arguments) in (2, 4):
        print_table(arguments[1], arguments[3] if len(arguments) == 4 else None)
    elif arguments[:1] == ["instructions"] and len(arguments) == 2:
        print_instructions(arguments[1])
    elif arguments[:1] == ["compare"] and len(arguments) == 3:
        compare(arguments[1], arguments[2])
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
