"""Pages as Doxygen reads them; docs_filter.py says what is changed."""

import re
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
LINK = re.compile(r"(!?)\[([^\]]*)\]\(([^)\s]+)\)")


def is_page(pFile):
    """Whether a file is one of those that docs/Doxyfile takes in by its patterns."""
    return pFile.suffix == ".md" and pFile.parent in (ROOT, ROOT / "docs") and pFile.is_file()


def label(pFile, pAnchor=""):
    """A word of its own for each heading of all pages."""
    lPage = "_".join(pFile.relative_to(ROOT).with_suffix("").parts).lower()
    return f"page_{lPage}" + (f"_{pAnchor}" if pAnchor else "")


def anchor(pHeading):
    """What a link names a heading by: small letters and digits, a dash for each blank."""
    lText = LINK.sub(r"\2", pHeading).lower()
    return re.sub(r"[^\w\- ]", "", lText).replace(" ", "-")


def linked(pFile, pLine):
    """A line with its links as Doxygen takes them; what stands in backquotes is left alone."""

    def replaced(pLink):
        lImage, lText, lTarget = pLink.groups()
        if lImage or re.match(r"\w+:", lTarget):
            return pLink.group(0)
        lPath, _, lAnchor = lTarget.partition("#")
        lFile = (pFile.parent / lPath).resolve() if lPath else pFile
        return f"[{lText}](@ref {label(lFile, lAnchor)})" if is_page(lFile) else lText

    return LINK.sub(replaced, pLine)


def filtered_page(pFile, pLines):
    pFile = pFile.resolve()
    lResult = []
    lFence = ""
    lSeen = {}
    for lLine in pLines:
        lMark = re.match(r"\s*(```+|~~~+)(\w*)", lLine)
        lHeading = re.match(r"(#+) (.*?)\s*$", lLine)
        if lFence:
            lResult.append("```" if lMark and lLine.strip() == lFence else lLine)
            lFence = "" if lMark and lLine.strip() == lFence else lFence
        elif lMark:
            # Doxygen takes the fence with one word behind it, and knows the word as the ending of a file.
            lFence = lMark.group(1)
            lResult.append("```" + ("{.cpp}" if lMark.group(2) == "cpp" else "{.unparsed}"))
        elif lHeading:
            lAnchor = anchor(lHeading.group(2))
            lCount = lSeen[lAnchor] = lSeen.get(lAnchor, -1) + 1
            lAnchor += f"-{lCount}" if lCount else ""
            lIsTitle = len(lSeen) == 1 and not lCount
            lHead = linked(pFile, lLine.rstrip())
            lResult.append(f"{lHead} {{#{label(pFile) if lIsTitle else label(pFile, lAnchor)}}}")
        else:
            lResult.append(linked(pFile, lLine))
    return lResult
