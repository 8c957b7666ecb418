#!/usr/bin/env python3
"""Shows what a run has not reached in lyrfilesdk/, and fails when that is more than is allowed.

usage: coverage_report.py BUILD    (a build with --coverage whose programs have run; called in the root of the tree)

A template's line and function count as reached when they are in any instantiation, and its branches are laid over each
other where they are as many. The way that a call leaves when it throws is no branch: nothing here throws. What the
sources exclude (LCOV_EXCL_LINE, LCOV_EXCL_BR_LINE, LCOV_EXCL_START and _STOP) is listed with the reason that stands
behind the marker; a marker without a reason is an error. A marker in a line of its own is for the line below.
"""

import json
import pathlib
import re
import subprocess
import sys

ALLOWED = {"lines": 100.0, "functions": 100.0, "branches": 98.0}
MARKER = re.compile(r"LCOV_EXCL_(BR_LINE|LINE|START|STOP)\b:?\s*(.*)")
# A line that is only brackets has no choice of its own, but the end of what was built in the block.
BRACKETS = re.compile(r"[\s{}();]*(else[\s{]*)?$")


class Source:
    def __init__(self, pPath):
        self.mTexts = [""] + pPath.read_text().splitlines()
        self.mLines = {}
        self.mFunctions = {}
        # Line, then instantiation: the counts of its branches.
        self.mBranches = {}
        self.mExcluded = set()
        self.mExcludedBranches = set()
        self.mReasons = []
        lOpen = False
        for lNumber, lText in enumerate(self.mTexts):
            lMatch = MARKER.search(lText)
            lKind = lMatch.group(1) if lMatch else ""
            if lMatch and lKind != "STOP":
                self.mReasons.append((f"{pPath}:{lNumber}", lMatch.group(2).strip()))
            lOpen = (lOpen or lKind == "START") and lKind != "STOP"
            lAlone = lText.lstrip().startswith("//")
            if lOpen or lKind == "LINE":
                self.mExcluded.add(lNumber + lAlone)
            if lKind == "BR_LINE":
                self.mExcludedBranches.add(lNumber + lAlone)

    def add(self, pFile):
        for lFunction in pFile["functions"]:
            lStart = (lFunction["start_line"], lFunction["start_column"])
            self.mFunctions[lStart] = self.mFunctions.get(lStart, 0) + lFunction["execution_count"]
        for lLine in pFile["lines"]:
            lNumber = lLine["line_number"]
            self.mLines[lNumber] = self.mLines.get(lNumber, 0) + lLine["count"]
            lCounts = branches_of(lLine)
            if lCounts:
                lInstantiation = (lLine.get("function_name"), len(lCounts))
                lOld = self.mBranches.setdefault(lNumber, {}).setdefault(lInstantiation, lCounts)
                if lOld is not lCounts:
                    lOld[:] = [a + b for a, b in zip(lOld, lCounts)]

    def merged_branches(self, pNumber):
        lByLength = {}
        for (_, lLength), lCounts in self.mBranches[pNumber].items():
            lOld = lByLength.setdefault(lLength, [0] * lLength)
            lOld[:] = [a + b for a, b in zip(lOld, lCounts)]
        lReached = [b for b in lByLength.values() if any(b)] or [max(lByLength.values(), key=len)]
        return [lCount for b in lReached for lCount in b]

    def counts(self):
        """{kind: [(line, count)]}."""
        lChoices = [
            n for n in sorted(self.mBranches)
            if n not in self.mExcluded | self.mExcludedBranches and not BRACKETS.match(self.mTexts[n])
        ]  # fmt: skip
        return {
            "lines": [
                (n, c) for n, c in sorted(self.mLines.items())
                if n not in self.mExcluded and (c or not BRACKETS.match(self.mTexts[n]))
            ],  # fmt: skip
            "functions": [(n, c) for (n, _), c in sorted(self.mFunctions.items()) if n not in self.mExcluded],
            "branches": [(n, c) for n in lChoices for c in self.merged_branches(n)],
        }


def branches_of(pLine):
    """The counts of a line's branches, without calls that throw: those two ways stand side by side."""
    lBranches = pLine["branches"]
    lDropped = set()
    for i, lBranch in enumerate(lBranches):
        if lBranch["throw"]:
            lDropped.add(i)
            for j in (i - 1, i + 1):
                if 0 <= j < len(lBranches) and j not in lDropped and lBranches[j]["fallthrough"]:
                    lDropped.add(j)
                    break
    return [b["count"] for i, b in enumerate(lBranches) if i not in lDropped]


def read(pBuild):
    lSources = {}
    for lPath in sorted(pathlib.Path("lyrfilesdk").rglob("*")):
        if lPath.suffix in (".h", ".cpp"):
            lSources[str(lPath.resolve())] = Source(lPath)
    lNotes = sorted(str(p.resolve()) for p in pBuild.rglob("*.gcda"))
    if not lNotes:
        sys.exit(f"no program has run in {pBuild}")
    lText = subprocess.run(
        ["gcov", "--json-format", "--stdout", "--branch-probabilities", *lNotes],
        cwd=pBuild, check=True, capture_output=True, text=True,
    ).stdout  # fmt: skip
    for lRecord in lText.splitlines():
        lData = json.loads(lRecord)
        for lFile in lData["files"]:
            lPath = str((pathlib.Path(lData["current_working_directory"]) / lFile["file"]).resolve())
            if lPath in lSources:
                lSources[lPath].add(lFile)
    return lSources


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    lSources = read(pathlib.Path(sys.argv[1]))
    lReached = dict.fromkeys(ALLOWED, 0)
    lAll = dict.fromkeys(ALLOWED, 0)
    lFailed = False
    for lPath, lSource in lSources.items():
        for lKind, lCounts in lSource.counts().items():
            lReached[lKind] += sum(1 for _, lCount in lCounts if lCount)
            lAll[lKind] += len(lCounts)
            lMissed = sorted({n for n, lCount in lCounts if not lCount})
            if lMissed:
                lName = pathlib.Path(lPath).relative_to(pathlib.Path.cwd())
                print(f"{lName}: {lKind} not reached: {', '.join(map(str, lMissed))}")
    for lSource in lSources.values():
        for lPlace, lReason in lSource.mReasons:
            print(f"{lPlace}: excluded: {lReason or 'WITHOUT A REASON'}")
            lFailed = lFailed or not lReason
    for lKind, lNeeded in ALLOWED.items():
        lEnough = lAll[lKind] > 0 and lReached[lKind] * 100 >= lNeeded * lAll[lKind]
        lPercent = 100.0 * lReached[lKind] / max(1, lAll[lKind])
        lNote = "" if lEnough else f"  below {lNeeded}%"
        print(f"{lKind:9} {lReached[lKind]:5} of {lAll[lKind]:5}  {lPercent:6.2f}%{lNote}")
        lFailed = lFailed or not lEnough
    sys.exit(1 if lFailed else 0)


if __name__ == "__main__":
    main()
