#!/usr/bin/env python3
"""scripts/docs_check.py DIR LIST

Holds a reference that Doxygen made in DIR to what it is for: every function of LIST is in it, everything public in it
has a comment, and every link inside it leads somewhere.
"""

import re
import sys
import xml.etree.ElementTree as xml
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote

NAMESPACE = "lyrsdk::"


def has_comment(pElement):
    lTexts = (pElement.find(lKind) for lKind in ("briefdescription", "detaileddescription"))
    return any(lText is not None and "".join(lText.itertext()).strip() for lText in lTexts)


def without_blanks(pName):
    return re.sub(r"(?<=\W) | (?=\W)", "", pName)


def members(pFolder):
    """Name, kind and whether it has a comment, of every public member and enumerator."""
    for lFile in sorted(pFolder.glob("*.xml")):
        for lCompound in xml.parse(lFile).getroot().iter("compounddef"):
            if lCompound.get("kind") not in ("class", "struct", "namespace"):
                continue
            lScope = lCompound.findtext("compoundname").removeprefix(NAMESPACE.rstrip(":")).removeprefix("::")
            for lMember in lCompound.iter("memberdef"):
                if lMember.get("prot") == "private":
                    continue
                lName = without_blanks("::".join(filter(None, (lScope, lMember.findtext("name")))))
                yield lName, lMember.get("kind"), has_comment(lMember)
                lValues = lMember.findall("enumvalue")
                # An enumeration that says nothing of any is described as a whole.
                if any(map(has_comment, lValues)):
                    for lValue in lValues:
                        yield f"{lName}::{lValue.findtext('name')}", "enumerator", has_comment(lValue)


class Page(HTMLParser):
    def __init__(self, pFile):
        super().__init__()
        self.mTargets = []
        self.mAnchors = set()
        self.feed(pFile.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        lAttributes = dict(attrs)
        self.mAnchors.update(lAttributes[lKey] for lKey in ("id", "name") if lAttributes.get(lKey))
        if tag in ("a", "area") and lAttributes.get("href"):
            self.mTargets.append(lAttributes["href"])


def broken_links(pFolder):
    lPages = {lFile.name: Page(lFile) for lFile in pFolder.glob("*.html")}
    for lName, lPage in sorted(lPages.items()):
        for lTarget in lPage.mTargets:
            if re.match(r"\w+:", lTarget):
                continue
            lFile, _, lAnchor = unquote(lTarget).partition("#")
            lFile = lFile or lName
            if not (pFolder / lFile).is_file():
                yield f"{lName} links to {lFile}, which is not there"
            elif lAnchor and lFile in lPages and lAnchor not in lPages[lFile].mAnchors:
                yield f"{lName} links to {lFile}#{lAnchor}, which is not there"


def main():
    lFolder, lList = map(Path, sys.argv[1:])
    lListed = {without_blanks(lLine) for lLine in lList.read_text(encoding="utf-8").splitlines() if lLine}
    lMembers = list(members(lFolder / "xml"))
    lFunctions = {lName for lName, lKind, lIsSaid in lMembers if lKind in ("function", "friend") and lIsSaid}
    lFaults = [f"no comment in the reference: {lName} ({lKind})" for lName, lKind, lIsSaid in lMembers if not lIsSaid]
    lFaults += [f"not in the reference: {lName}" for lName in sorted(lListed - lFunctions)]
    lFaults += broken_links(lFolder)
    if not lListed or lFaults:
        sys.exit("\n".join(lFaults) or f"{lList}: empty")
    print(f"{len(lListed)} listed functions and {len(lMembers)} members, each with a comment")


main()
