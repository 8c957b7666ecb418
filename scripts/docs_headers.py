"""The comments of a header as Doxygen reads them; docs_filter.py says by which rules."""

import re
import sys

SUPPRESSION = re.compile(r"//\s*(cppcheck-suppress|NOLINT|clang-format|LCOV_EXCL)")
SECTION = re.compile(r"//\s*--- (.*?) -+$")
SCOPE = re.compile(r"(namespace|class|struct|union|enum)\b\s*([\w:]*)")
WITHOUT_COMMENT = re.compile(
    r"static_assert|extern template|template (class|struct) |friend (class|struct) |using [\w:]+;|(enum )?class \w+;|}")
OUTSIDE_ITS_CLASS = re.compile(r"\w(<[^()]*>)?::(~?\w+|operator[^(]*)\s*$")
TRAILING = re.compile(r'((?:[^"/]|"(?:\\.|[^"\\])*"|/(?!/))+?)\s*// (.*)$')
PAIRS = re.compile(
    r"^(Get|Set|Inc|Dec|Begin|End)|^(begin|end)$|(Src|Dst)|Soft|(Min|Max)(imum)?$|(Key|Value)$"
    r"|(Opened|Closed)$|(Malloc|Free)$")
TYPE_ROW = re.compile(r"\s*p(?:None|Value|Reference)\(\s*(\d+), (\w+),\s*(\w[\w ]*),")


def escaped(pText):
    """Text that Doxygen shows as it stands, but for the links that it finds by itself."""
    return re.sub(r"(--|[\\@<>#*`|%~\[\]])", r"\\\1", pText)


def documentation(pTexts, pBegin="/**"):
    """A comment for Doxygen of lines that are given without their slashes. Blocks that are set in begin and end at the
    lines around them."""
    lResult = []
    lBlock = ""  # the command that ends the block
    lInList = False
    for lIndex, lText in enumerate(pTexts):
        lSetIn = lText.startswith("  ")
        lInList = lSetIn and (lInList or lText.lstrip().startswith("- ")) or lInList and not lText
        if lSetIn and not lInList and not lBlock:
            lBlock = block_kind(pTexts[lIndex:])
            lResult[-1] += " @code{.cpp}" if lBlock == " @endcode" else " @verbatim"
        elif lBlock and lText and not lSetIn:
            lResult[-1] += lBlock
            lBlock = ""
        lResult.append(lText if lBlock else escaped(lText))
    lResult[0] = pBegin + lResult[0]
    lResult[-1] += lBlock + " */"
    return lResult


def block_kind(pTexts):
    """The end of the block that pTexts begin with: statements are code, all else is shown as it stands."""
    for lText in pTexts:
        if lText and not lText.startswith("  "):
            break
        if lText.endswith(";"):
            return " @endcode"
    return " @endverbatim"


def prose(pTexts):
    """A comment in one line, without what is set in."""
    return " ".join(escaped(lText.strip()) for lText in pTexts if lText and not lText.startswith("  "))


def without_marks(pStatement):
    """A declaration without visibility and attributes, and without the heads of templates."""
    lText = " ".join(re.sub(r"\b(LYRSDK_API|LYRSDK_REPLACEABLE)\b|__attribute__\(\(\w+\)\)", "", pStatement).split())
    while re.match(r"template ?<", lText):
        lDepth = 0
        for lAt, lChar in enumerate(lText):
            lDepth += {"<": 1, ">": -1}.get(lChar, 0)
            if lChar == ">" and lDepth == 0:
                break
        lText = lText[lAt + 1:].strip()
    return lText


def covered_name(pDeclarator):
    """The same for overloads, for operators, and for the two of a pair."""
    return PAIRS.sub("", re.findall(r"\boperator\b|~?\w+", pDeclarator + " operator" * ("operator" in pDeclarator))[-1])


class Scope:
    def __init__(self, pKind="", pName=""):
        self.mKind = pKind  # empty for bodies
        self.mIsDetail = pKind == "namespace" and "detail" in pName.split("::")
        self.mIsPrivate = pKind == "class"
        self.mIsLeftOut = False  # its private members, by a command to Doxygen
        self.mHasGroup = False  # of members, which goes on


class Header:
    """Walks over a header's lines once. mOut is what Doxygen reads."""

    def __init__(self, pFile, pLines):
        self.mFile = pFile
        self.mLines = pLines
        self.mOut = list(pLines)
        self.mScopes = []
        self.mStatement = ""
        self.mStart = self.mEnd = 0  # the first and the last line of the statement
        self.mParentheses = 0
        self.mComment = None  # the comment right in front of the statement: its first line and its lines
        self.mCovering = None  # the comment that may cover what follows: what it is about, and its lines
        self.mHasHead = False

    def filtered(self):
        lLocalMacros = set(re.findall(r"^#undef (\w+)", "\n".join(self.mLines), re.M))
        lIndex = 0
        while lIndex < len(self.mLines):
            lLine = self.mLines[lIndex]
            if lLine.startswith("#"):
                lIndex = self.directive(lIndex, lLocalMacros)
            elif re.match(r"\s*//", lLine):
                lIndex = self.comment(lIndex)
            else:
                if lLine.strip():
                    self.code(lIndex)
                else:
                    self.mCovering = None
                lIndex += 1
        if self.mScopes:
            sys.exit(f"{self.mFile}: a scope does not end")
        return self.mOut

    def is_detail(self):
        return any(lScope.mIsDetail for lScope in self.mScopes)

    def is_shown(self):
        return not self.is_detail() and all(lScope.mKind and not lScope.mIsPrivate for lScope in self.mScopes)

    def is_in_body(self):
        return bool(self.mScopes) and not self.mScopes[-1].mKind

    # --- directives and comments ---

    def directive(self, pIndex, pLocalMacros):
        lEnd = pIndex + 1
        while self.mLines[lEnd - 1].endswith("\\"):
            lEnd += 1
        lMacro = re.match(r"#(define|undef) (\w+)", self.mLines[pIndex])
        if lMacro and lMacro.group(2) in pLocalMacros:
            self.mOut[pIndex:lEnd] = [""] * (lEnd - pIndex)
        elif lMacro and not self.mStatement:
            lFound = TRAILING.match(self.mLines[pIndex])
            if lFound and not self.mLines[pIndex - 1].strip():
                self.mOut[pIndex - 1] = f"/** {escaped(lFound.group(2))} */"
            self.document()
        return lEnd

    def comment(self, pIndex):
        lEnd = pIndex
        while re.match(r"\s*//", self.mLines[lEnd]):
            lEnd += 1
        lFirst = pIndex
        while lFirst < lEnd and (SUPPRESSION.search(self.mLines[lFirst]) or self.mLines[lFirst].strip() == "//"):
            lFirst += 1
        lTexts = [re.sub(r"^\s*//", "", lLine) for lLine in self.mLines[lFirst:lEnd]]
        while lTexts and SUPPRESSION.search("//" + lTexts[-1]):
            lTexts.pop()
        if not lTexts or self.mStatement or self.is_in_body():
            return lEnd
        self.mCovering = None
        lSection = SECTION.search(self.mLines[lFirst])
        lStandsAlone = not self.mLines[lEnd].strip()
        if lSection:
            if self.mScopes and self.mScopes[-1].mKind == "class" and self.is_shown():
                self.begin_group(lFirst, lSection.group(1), lTexts[1:])
        elif lStandsAlone and not self.mHasHead and not self.mScopes:
            self.mOut[lFirst - 1] = f"/** @file {self.mFile}"
            self.mOut[lFirst:lFirst + len(lTexts)] = documentation(lTexts, "")
            self.mHasHead = True
        elif not lStandsAlone:
            self.mComment = (lFirst, lTexts)
        return lEnd

    def begin_group(self, pFirst, pTitle, pTexts):
        """Between the empty lines around the section's comment."""
        if self.mScopes[-1].mHasGroup:
            self.mOut[pFirst - 1] = "/** @} */"
        lEnd = pFirst + 1 + len(pTexts)
        self.mOut[pFirst:lEnd] = documentation([pTitle[0].upper() + pTitle[1:]] + pTexts, "/** @name ")
        self.mOut[lEnd] = "/** @{ */"
        self.mScopes[-1].mHasGroup = True

    def leave_section(self, pIndex):
        """Ends a group of members, or the private members."""
        lScope = self.mScopes[-1]
        if lScope.mHasGroup:
            self.mOut[pIndex] = "/** @} */ " + self.mOut[pIndex]
        elif lScope.mIsLeftOut:
            self.mOut[pIndex] = "/** @endcond */ " + self.mOut[pIndex]
        lScope.mHasGroup = lScope.mIsLeftOut = False

    # --- code ---

    def code(self, pIndex):
        lCode = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])*\'', '""', self.mLines[pIndex])
        lCode = re.sub(r"\s*//.*$", "", lCode)
        lAccess = re.match(r"\s*(public|protected|private):", lCode)
        if lAccess and not self.is_in_body():
            self.leave_section(pIndex)
            self.mScopes[-1].mIsPrivate = False
            if lAccess.group(1) == "private" and self.is_shown():
                self.mOut[pIndex] += " /** @cond */"
                self.mScopes[-1].mIsLeftOut = True
            self.mScopes[-1].mIsPrivate = lAccess.group(1) == "private"
            self.mCovering = None
        elif "LYRSDK_TYPE_LIST(" in lCode and self.mScopes and self.mScopes[-1].mKind == "enum":
            lRows = [lRow.groups() for lRow in map(TYPE_ROW.match, self.mLines) if lRow]
            self.mOut[pIndex] = "".join(f"{lName} = {lNumber}, /**< {lType} */ " for lNumber, lName, lType in lRows)
        else:
            for lAt, lChar in enumerate(lCode):
                self.character(pIndex, lChar, lCode[lAt + 1:].strip())
            self.mStatement += " " if self.mStatement else ""

    def character(self, pIndex, pChar, pRest):
        if pChar == "{":
            self.enter(pIndex)
        elif pChar == "}":
            self.leave(pIndex, pRest)
        elif not self.is_in_body() and (self.mStatement or not pChar.isspace()):
            if not self.mStatement:
                self.mStart = pIndex
            self.mStatement += pChar
            self.mEnd = self.mEnd if pChar.isspace() else pIndex
            self.mParentheses += {"(": 1, ")": -1}.get(pChar, 0)
            lEnds = pChar == ";" or pChar == "," and self.mScopes and self.mScopes[-1].mKind == "enum"
            if lEnds and self.mParentheses == 0:
                self.declare(pIndex)

    def enter(self, pIndex):
        lMatch = SCOPE.match(without_marks(self.mStatement))
        lScope = Scope()
        if lMatch and not self.is_in_body():
            lScope = Scope(*lMatch.groups())
            if lScope.mIsDetail and not self.is_detail():
                self.mOut[pIndex] = "/** @cond */ " + self.mOut[pIndex]
            if lScope.mKind != "namespace":
                self.declare(pIndex, lScope.mKind)
            self.mStatement = ""
            self.mComment = self.mCovering = None
        self.mScopes.append(lScope)

    def leave(self, pIndex, pRest):
        lWasDetail = self.is_detail()
        lKind = self.mScopes[-1].mKind
        if lKind == "enum" and self.mStatement:
            self.declare(self.mEnd)
        if lKind in ("class", "struct"):
            self.leave_section(pIndex)
        self.mScopes.pop()
        if lKind == "namespace":
            self.mStatement = ""
            if lWasDetail and not self.is_detail():
                self.mOut[pIndex] = "} /** @endcond */"
        elif lKind:
            self.mStatement = "}"
        elif not self.is_in_body() and self.mParentheses == 0 and "(" in self.mStatement and pRest[:1] not in (";", ","):
            self.declare(pIndex)

    # --- declarations ---

    def declare(self, pIndex, pScope=""):
        """The statement is whole, or the head of a scope: gives it the comment that is meant for it."""
        lText = without_marks(self.mStatement)
        self.mStatement = ""
        lName = re.split(r"[({=;]", lText.replace("operator=", "operator"))[0]
        if not self.is_shown() or WITHOUT_COMMENT.match(lText):
            self.mComment = None
        elif OUTSIDE_ITS_CLASS.search(lName):
            self.mComment = None
            self.mOut[self.mStart] = "/** @cond */ " + self.mOut[self.mStart]
            self.mOut[pIndex] += " /** @endcond */"
        elif self.mComment:
            self.mCovering = (covered_name(lName), self.mComment[1])
            self.document()
        elif self.trailing(pIndex, pScope):
            self.mCovering = None
        elif lText.endswith("= delete;"):
            self.insert("Not available; its use does not compile.")
        elif re.match(r"(virtual )?~", lText):
            self.insert("Gives back what the object owns.")
        elif self.mCovering and self.mCovering[0] == covered_name(lName):
            self.insert(prose(self.mCovering[1]))
        elif pScope in ("class", "struct") and len(self.mScopes) == 1 and self.mHasHead:
            self.insert(f"@copybrief {self.mFile} @copydetails {self.mFile}")

    def document(self):
        """Turns the comment in front of the statement into documentation."""
        if self.mComment:
            lFirst, lTexts = self.mComment
            self.mOut[lFirst:lFirst + len(lTexts)] = documentation(lTexts)
        self.mComment = None

    def insert(self, pText):
        self.mOut[self.mStart] = f"/** {pText} */ {self.mOut[self.mStart]}"

    def trailing(self, pIndex, pScope):
        """Turns a comment behind the code into documentation of it; false when there is none."""
        lFound = TRAILING.match(self.mLines[pIndex])
        if not lFound or SUPPRESSION.search("//" + lFound.group(2)) or self.mOut[pIndex] != self.mLines[pIndex]:
            return False
        if pScope:
            self.insert(escaped(lFound.group(2)))
            return True
        self.mOut[pIndex] = f"{lFound.group(1)}  ///< {escaped(lFound.group(2))}"
        return True
