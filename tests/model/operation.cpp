#include "tests/model/operation.h"

#include <cstring>
#include <sstream>

namespace lyrmodel {
namespace {

struct Row {
    const char* mName;
    const char* mArguments;
    unsigned mWeight;
};

constexpr Row kRows[] = {
#define LYRMODEL_ROW(pName, pArguments, pWeight) {#pName, pArguments, pWeight},
    LYRMODEL_OPERATIONS(LYRMODEL_ROW)
#undef LYRMODEL_ROW
};

constexpr unsigned SumOfWeights() {
    unsigned lSum = 0;
    for (const Row& lRow : kRows)
        lSum += lRow.mWeight;
    return lSum;
}

// Short enough for every kind, so that no argument is cut off.
constexpr bool ArgumentsFit() {
    for (const Row& lRow : kRows) {
        std::size_t lCount = 0;
        while (lRow.mArguments[lCount])
            ++lCount;
        if (lCount > kArguments)
            return false;
    }
    return true;
}

static_assert(ArgumentsFit(), "an operation has room for its arguments");

}  // namespace

const char* NameOf(Kind pKind) {
    return kRows[static_cast<std::size_t>(pKind)].mName;
}

const char* ArgumentsOf(Kind pKind) {
    return kRows[static_cast<std::size_t>(pKind)].mArguments;
}

// splitmix64.
std::uint64_t Random::Next() {
    mState += 0x9E3779B97F4A7C15u;
    std::uint64_t lMixed = mState;
    lMixed = (lMixed ^ (lMixed >> 30)) * 0xBF58476D1CE4E5B9u;
    lMixed = (lMixed ^ (lMixed >> 27)) * 0x94D049BB133111EBu;
    return lMixed ^ (lMixed >> 31);
}

Operation Generate(Random& pRandom) {
    unsigned lDrawn = static_cast<unsigned>(pRandom.Next() % SumOfWeights());
    std::size_t lRow = 0;
    while (lDrawn >= kRows[lRow].mWeight)
        lDrawn -= kRows[lRow++].mWeight;
    Operation lOperation;
    lOperation.mKind = static_cast<Kind>(lRow);
    std::uint64_t lBits = pRandom.Next();
    for (std::size_t i = 0; i < std::strlen(kRows[lRow].mArguments); ++i, lBits >>= 8)
        lOperation.mArguments[i] = static_cast<std::uint8_t>(lBits & 0xFF);
    return lOperation;
}

std::vector<Operation> Generate(std::uint64_t pSeed, std::uint64_t pCount) {
    Random lRandom(pSeed);
    std::vector<Operation> lOperations;
    while (lOperations.size() < pCount)
        lOperations.push_back(Generate(lRandom));
    return lOperations;
}

bool DecodeOperation(const std::uint8_t*& pBytes, const std::uint8_t* pEnd, Operation& pOperation) {
    if (pBytes == pEnd)
        return false;
    pOperation = {};
    const std::size_t lRow = *pBytes++ % std::size(kRows);
    pOperation.mKind = static_cast<Kind>(lRow);
    for (std::size_t i = 0; i < std::strlen(kRows[lRow].mArguments) && pBytes != pEnd; ++i)
        pOperation.mArguments[i] = *pBytes++;
    return true;
}

std::string ToText(const Operation& pOperation) {
    std::string lText = NameOf(pOperation.mKind);
    for (std::size_t i = 0; i < std::strlen(ArgumentsOf(pOperation.mKind)); ++i)
        lText += " " + std::to_string(pOperation.mArguments[i]);
    if (pOperation.mRefused)
        lText += " !" + std::to_string(pOperation.mRefused) + (pOperation.mForever ? "+" : "");
    return lText;
}

bool FromText(const std::string& pText, Operation& pOperation) {
    std::istringstream lLine(pText);
    std::string lName;
    lLine >> lName;
    for (std::size_t lRow = 0; lRow < std::size(kRows); ++lRow) {
        if (lName != kRows[lRow].mName)
            continue;
        pOperation = {};
        pOperation.mKind = static_cast<Kind>(lRow);
        for (std::size_t i = 0; i < std::strlen(kRows[lRow].mArguments); ++i) {
            unsigned lNumber = 0;
            if (!(lLine >> lNumber) || lNumber > 0xFF)
                return false;
            pOperation.mArguments[i] = static_cast<std::uint8_t>(lNumber);
        }
        unsigned lRefused = 0;
        if (char lMark = 0; lLine >> lMark && lMark == '!' && lLine >> lRefused && lRefused <= 0xFF) {
            pOperation.mRefused = static_cast<std::uint8_t>(lRefused);
            pOperation.mForever = lLine.peek() == '+';
        }
        return true;
    }
    return false;
}

}  // namespace lyrmodel
