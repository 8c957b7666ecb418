#!/usr/bin/env python3
"""Shows what a coverage run has not reached, and fails when that is more than is allowed.

usage: coverage_report.py COVERAGE.json    (as gcovr writes it; run in the root of the tree)

A template's instantiations are one line and one function: each counts as reached when any of them was. What the sources
exclude is listed with the reason that stands behind the marker; a marker without a reason is an error.
"""

import json
import pathlib
import re
import sys

ALLOWED = {"lines": 100.0, "functions": 100.0, "branches": 98.0}
MARKER = re.compile(r"LCOV_EXCL_(?:BR_)?(?:LINE|START)\b:?\s*(.*)")


def read_file(pFile):
    """The reached and all lines, functions and branches of one file, and the places that were not reached."""
    lLines = {l["line_number"]: l for l in pFile["lines"] if not l["gcovr/noncode"] and not l["gcovr/excluded"]}
    lFunctions = {}
    for lFunction in pFile["functions"]:
        if lFunction["lineno"] in lLines:
            lFunctions[lFunction["lineno"]] = lFunctions.get(lFunction["lineno"], 0) + lFunction["execution_count"]
    lBranches = [(n, b["count"]) for n, l in lLines.items() for b in l["branches"]]
    lCounts = {
        "lines": [l["count"] for l in lLines.values()],
        "functions": list(lFunctions.values()),
        "branches": [lCount for _, lCount in lBranches],
    }
    lMissed = {
        "lines": sorted(n for n, l in lLines.items() if l["count"] == 0),
        "functions": sorted(n for n, lCount in lFunctions.items() if lCount == 0),
        "branches": sorted({n for n, lCount in lBranches if lCount == 0}),
    }
    return lCounts, lMissed


def exclusions():
    """(place, reason) of every marker in the library's sources."""
    for lPath in sorted(pathlib.Path("lyrfilesdk").rglob("*")):
        if lPath.suffix not in (".h", ".cpp"):
            continue
        for lNumber, lText in enumerate(lPath.read_text().splitlines(), 1):
            lMatch = MARKER.search(lText)
            if lMatch:
                yield f"{lPath}:{lNumber}", lMatch.group(1).strip()


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    lFiles = json.loads(pathlib.Path(sys.argv[1]).read_text())["files"]
    if not lFiles:
        sys.exit("no source was counted")
    lReached = dict.fromkeys(ALLOWED, 0)
    lAll = dict.fromkeys(ALLOWED, 0)
    for lFile in sorted(lFiles, key=lambda f: f["file"]):
        lCounts, lMissed = read_file(lFile)
        for lKind in ALLOWED:
            lReached[lKind] += sum(1 for lCount in lCounts[lKind] if lCount)
            lAll[lKind] += len(lCounts[lKind])
            if lMissed[lKind]:
                print(f"{lFile['file']}: {lKind} not reached at {', '.join(map(str, lMissed[lKind]))}")

    lFailed = False
    for lPlace, lReason in exclusions():
        print(f"{lPlace}: excluded: {lReason or 'WITHOUT A REASON'}")
        lFailed = lFailed or not lReason
    for lKind, lNeeded in ALLOWED.items():
        lPercent = 100.0 * lReached[lKind] / lAll[lKind]
        lEnough = lReached[lKind] * 100 >= lNeeded * lAll[lKind]
        print(f"{lKind:9} {lReached[lKind]:5} of {lAll[lKind]:5}  {lPercent:6.2f}%" + ("" if lEnough else f"  below {lNeeded}%"))
        lFailed = lFailed or not lEnough
    sys.exit(1 if lFailed else 0)


if __name__ == "__main__":
    main()
