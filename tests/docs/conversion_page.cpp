// Prints docs/conversions.md as it has to read: the tables between its marks come from the conversion matrix and the
// verdicts, all else from the page.
//
//     lyrsdk_docs_conversion_page PAGE

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

struct TypeRow {
    ELyrType mCode;
    const char* mName;
    const char* mStored;
    int mSize;
};

const TypeRow kTypes[] = {
#define DOCS_NO_ROW(pNumber, pName, pType, pSize)
#define DOCS_ROW(pNumber, pName, pType, pSize) {pName, #pName, #pType, pSize},
    LYRSDK_TYPE_LIST(DOCS_NO_ROW, DOCS_NO_ROW, DOCS_ROW)
#undef DOCS_ROW
#undef DOCS_NO_ROW
};

std::string Types() {
    std::ostringstream lTable;
    lTable << "| code | name | C++ type | bytes on 32 bit |\n|---:|---|---|---:|\n";
    for (const TypeRow& lType : kTypes)
        lTable << "| " << lType.mCode << " | `" << lType.mName << "` | `" << lType.mStored << "` | " << lType.mSize
               << " |\n";
    return lTable.str();
}

// One row for each source, one column for each destination, headed by their codes.
template <typename Cell>
std::string Matrix(Cell pCell) {
    std::ostringstream lTable;
    lTable << "| from \\ to |";
    for (const TypeRow& lTo : kTypes)
        lTable << ' ' << lTo.mCode << " |";
    lTable << "\n|---|";
    for (std::size_t i = 0; i < std::size(kTypes); ++i)
        lTable << ":-:|";
    lTable << '\n';
    for (const TypeRow& lFrom : kTypes) {
        lTable << "| " << lFrom.mCode << " `" << lFrom.mName << "` |";
        for (const TypeRow& lTo : kTypes)
            lTable << ' ' << pCell(lFrom.mCode, lTo.mCode) << " |";
        lTable << '\n';
    }
    return lTable.str();
}

// The sign of a verdict in the table.
char SignOf(ELyrConversionVerdict pVerdict) {
    switch (pVerdict) {
        case eLyrConvertsSame:
            return '=';
        case eLyrConvertsExactly:
            return 'e';
        case eLyrMayLosePrecision:
            return 'l';
        case eLyrTruncates:
            return 't';
        case eLyrWraps:
            return 'w';
        case eLyrParses:
            return 'r';
        case eLyrPrints:
            return 'p';
        case eLyrTakesFirstElement:
            return 'f';
        case eLyrRefusedSilently:
            return '.';
        case eLyrRefusedWithReport:
            return 'X';
    }
    return '?';
}

std::string Signs() {
    std::ostringstream lTable;
    lTable << "| sign | verdict | pairs |\n|:-:|---|---:|\n";
    for (int lVerdict = eLyrConvertsSame; lVerdict <= eLyrRefusedWithReport; ++lVerdict) {
        const auto lThis = static_cast<ELyrConversionVerdict>(lVerdict);
        int lCount = 0;
        for (const TypeRow& lFrom : kTypes) {
            for (const TypeRow& lTo : kTypes)
                lCount += lyrConversionVerdict(lFrom.mCode, lTo.mCode) == lThis ? 1 : 0;
        }
        lTable << "| " << SignOf(lThis) << " | " << lyrVerdictText(lThis) << " | " << lCount << " |\n";
    }
    return lTable.str();
}

std::string Verdicts() {
    return Matrix([](ELyrType pFrom, ELyrType pTo) { return SignOf(lyrConversionVerdict(pFrom, pTo)); });
}

std::string Rules() {
    return Matrix([](ELyrType pFrom, ELyrType pTo) {
        return detail::MatrixCell(detail::MatrixIndex(pTo), detail::MatrixIndex(pFrom));
    });
}

struct Section {
    const char* mName;
    std::string (*mMake)();
};

const Section kSections[] = {{"types", &Types}, {"signs", &Signs}, {"verdicts", &Verdicts}, {"rules", &Rules}};

// Puts the table between its two marks. False when the page does not have both.
bool Put(std::string& pPage, const Section& pSection) {
    const std::string lBegin = std::string("<!-- begin ") + pSection.mName + " -->\n";
    const std::string lEnd = std::string("<!-- end ") + pSection.mName + " -->\n";
    const std::size_t lFrom = pPage.find(lBegin);
    const std::size_t lTo = pPage.find(lEnd);
    if (lFrom == std::string::npos || lTo == std::string::npos || lTo < lFrom)
        return false;
    pPage.replace(lFrom + lBegin.size(), lTo - lFrom - lBegin.size(), "\n" + pSection.mMake() + "\n");
    return true;
}

}  // namespace

int main(int pCount, char** pArguments) {
    std::ifstream lFile(pCount == 2 ? pArguments[1] : "");
    std::stringstream lText;
    lText << lFile.rdbuf();
    std::string lPage = lText.str();
    for (const Section& lSection : kSections) {
        if (!Put(lPage, lSection)) {
            std::fprintf(stderr, "no place for the table \"%s\"\n", lSection.mName);
            return 1;
        }
    }
    std::cout << lPage;
}
