#!/usr/bin/env python3
"""scripts/docs_filter.py FILE

What Doxygen reads in place of a header or a page (INPUT_FILTER of docs/Doxyfile), line for line.

Headers carry plain comments. What they document follows from where they stand:
  - The comment at the top describes the file, and its classes that have no comment of their own.
  - A comment right in front of a declaration describes it. Overloads, operators and the other one of a pair (Get and
    Set, Src and Dst) that follow without an empty line share it. A comment behind a declaration describes that one.
  - "// --- title ---" in a class begins a group of members; what the comment goes on with describes the group.
  - Lines that are set in are drawings, tables or code, unless they begin with a dash: those are lists.
  - Namespaces named detail and private members are left out, and macros that are undefined again.
Destructors and deleted members need no comment. The type codes come from their list.

In pages, headings get labels, links between pages lead to these, and links to other files become plain text.
"""

import sys
from pathlib import Path

from docs_headers import Header
from docs_pages import filtered_page


def main():
    lFile = Path(sys.argv[1])
    lLines = lFile.read_text(encoding="utf-8").split("\n")
    if lFile.suffix == ".md":
        lFiltered = filtered_page(lFile, lLines)
    elif lFile.suffix == ".h":
        lFiltered = Header(lFile.name, lLines).filtered()
    else:
        lFiltered = lLines
    if len(lFiltered) != len(lLines):
        sys.exit(f"{lFile}: the filter changed the number of lines")
    sys.stdout.write("\n".join(lFiltered))


main()
