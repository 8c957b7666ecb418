#include "tests/model/arguments.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

namespace lyrmodel {
namespace {

template <typename T, std::size_t Count>
const T& Pick(const T (&pPool)[Count], unsigned pNumber) {
    return pPool[pNumber % Count];
}

constexpr const char* kPaths[] = {"a", "a|b", "A|b", "a|b|c", "a||b", "a|", "|a", "a/b|c", "x/y", "", "b/c/a", "Bb|a"};

constexpr int kTypes[] = {kInt,    kDouble,    kFloat, kByte,  kBool,   kVector2, kVector3, kVector4, kEnum,
                          kString, kTime,      kBlob,  kShort, kDouble, kInt,     kEnum,    kString,  kVector3,
                          kNone,   kReference, 24,     -1,     INT_MAX, kEnum,    kEnum};

constexpr unsigned kFlagSets[] = {0x1,    0x2,  0x4,    0x8,    0x40,   0x80, 0x100,  0x2000,  0x4000,
                                  0x3,    0x41, 0x7FFF, 0x4001, 0x7F00, 0x1,  0x2,    0x40,    0x0,
                                  0x8000, 0x3,  0x7FFF, 0x40,   0x80,   0xFF, 0xFFFF, 0x10002, 0xFFFFFFFF};

constexpr int kStates[] = {kOverride, kInherit, kOverride, kInherit, kOverride, kInherit, kDeleted, 7, -1};
constexpr int kIntegers[] = {6, -1, 100, INT_MAX, INT_MIN, -7};
constexpr int kConnectionTypes[] = {1, 2, 3, 4, 6, 8, 16, 28, 128, 0, 77, -5};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kDoubles[] = {0, 1, 1.5, -2.9, 300.7, 0.1, -0.0, 1e10, 4294967295.0, -1e300, kInfinity, std::nan("")};
constexpr int kInts[] = {0, 1, 2, 44, 300, -1, 97, 100000, INT_MAX, INT_MIN, 3};
constexpr long long kTimes[] = {0, 1, -1, 705600000, 29400000, -2540160000001, 1058400000, 123456789012345};
const std::string kStrings[] = {"",    "1",      " 2 ",   "1.5",  "true", "FALSE",       "-1",
                                "300", "abc",    "1e400", "0x10", "nan",  "-inf",        " +7\n",
                                "1,2", "1e-400", ".5",    "5.",   "1e",   "99999999999", std::string(300, 's')};

int TypeOf(unsigned pNumber, const Arguments& pArguments) {
    // Often the type of the property itself.
    if (pNumber >= 160 && pArguments.mPages[0])
        return pArguments.mPages[0]->GetType(pArguments.mIds[0]);
    return Pick(kTypes, pNumber);
}

// Pages and low ids are named by their number, or the next one that there is: a sequence of which a part was left out
// still means nearly the same. All ids are reached by counting; a few are named often, so that operations meet.
constexpr unsigned kNamedIds = 40, kNamedOften = 160, kOften = 8;

int IdOf(unsigned pNumber, Page* pPage) {
    const int lNext = pPage ? *pPage->mNextId : 0;
    const int lOthers[] = {-1, lNext, -7, INT_MAX, INT_MIN, lNext > INT_MAX - 2 ? INT_MAX : lNext + 2, 0};
    const std::vector<int> lIds = pPage ? pPage->VisibleIds() : std::vector<int>();
    if (pNumber >= 246 || lIds.empty())
        return Pick(lOthers, pNumber);
    if (pNumber >= kNamedOften)
        return lIds[pNumber % lIds.size()];
    const unsigned lNamed = pNumber < kNamedIds ? pNumber : pNumber % kOften;
    const auto lFrom = std::lower_bound(lIds.begin(), lIds.end(), static_cast<int>(lNamed));
    return lFrom == lIds.end() ? lIds.front() : *lFrom;
}

int SlotOf(unsigned pNumber, const World& pWorld) {
    const std::vector<int> lSlots = pWorld.LiveSlots();
    if (pNumber >= 250 || lSlots.empty())
        return -1;
    const auto lFrom = std::lower_bound(lSlots.begin(), lSlots.end(), static_cast<int>(pNumber % World::kSlots));
    return lFrom == lSlots.end() ? lSlots.front() : *lFrom;
}

std::optional<std::string> NameOf(unsigned pNumber) {
    const std::vector<std::string>& lNames = Names();
    if (pNumber >= 252)
        return std::nullopt;
    return lNames[pNumber % lNames.size()];
}

std::optional<std::string> PathOf(unsigned pNumber) {
    if (pNumber >= 250)
        return std::nullopt;
    return Pick(kPaths, pNumber);
}

// A child of the property, and a child of that one if there is any; the number says which.
std::vector<const Info*> BelowOf(const Arguments& pArguments, unsigned pNumber) {
    Page* lPage = pArguments.mPages[0];
    std::vector<const Info*> lInfos;
    for (int lParent = pArguments.mIds[0]; lPage && lInfos.size() < 2;) {
        std::vector<int> lChildren;
        for (int lId = lPage->GetChild(lParent); lId != -1; lId = lPage->GetSibling(lId))
            if (lPage->GetInfo(lId))
                lChildren.push_back(lId);
        if (lChildren.empty())
            break;
        lParent = lChildren[pNumber % lChildren.size()];
        lInfos.push_back(lPage->GetInfo(lParent));
    }
    return lInfos;
}

// How many pages and so on have been seen so far.
struct Places {
    int mPages = 0, mIds = 0, mBools = 0;
};

void Take(char pLetter, unsigned pNumber, const World& pWorld, Arguments& pArguments, Places& pPlaces) {
    switch (pLetter) {
        case 'p':
            pArguments.mSlots[pPlaces.mPages] = SlotOf(pNumber, pWorld);
            pArguments.mPages[pPlaces.mPages] = pWorld.At(pArguments.mSlots[pPlaces.mPages]);
            ++pPlaces.mPages;
            break;
        case 'y': {
            const Info* lNamed = pNumber >= 100 ? pArguments.mNamed : nullptr;
            const int lSlot = lNamed && lNamed->mTypeInfo ? lNamed->mTypeInfo->mSlot : SlotOf(pNumber, pWorld);
            pArguments.mSlots[pPlaces.mPages] = lSlot;
            pArguments.mPages[pPlaces.mPages++] = pWorld.At(lSlot);
            break;
        }
        case 'm': {
            const std::vector<const Info*> lBelow = BelowOf(pArguments, pNumber);
            pArguments.mName = NameOf(pNumber);
            if (pNumber < 128 || lBelow.empty())
                break;
            pArguments.mNamed = lBelow.front();
            pArguments.mName = pArguments.mNamed->mName;
            break;
        }
        case 'i':
            pArguments.mIds[pPlaces.mIds++] = IdOf(pNumber, pArguments.mPages[pPlaces.mPages - 1]);
            break;
        case 'n':
            pArguments.mName = NameOf(pNumber);
            break;
        case 'u':
            pArguments.mName = PathOf(pNumber);
            if (const std::vector<const Info*> lBelow = BelowOf(pArguments, pNumber);
                pNumber >= 128 && lBelow.size() == 2) {
                pArguments.mNamed = lBelow.back();
                pArguments.mName = lBelow.front()->mName + "|" + pArguments.mNamed->mName;
            }
            break;
        case 't':
            pArguments.mType = TypeOf(pNumber, pArguments);
            break;
        case 'v':
            if (pNumber < 250)
                pArguments.mValue = ValueOf(pArguments.mType, pNumber);
            break;
        case 'f':
            pArguments.mFlags = Pick(kFlagSets, pNumber);
            break;
        case 's':
            pArguments.mState = Pick(kStates, pNumber);
            break;
        case 'x':
            pArguments.mBits = pNumber;
            pArguments.mNumber = pNumber < 224 ? static_cast<int>(pNumber % 6) : Pick(kIntegers, pNumber);
            break;
        case 'b':
            pArguments.mBools[pPlaces.mBools++] = pNumber % 2 != 0;
            break;
        case 'k':
            pArguments.mFilter = static_cast<int>(pNumber % 5);
            break;
        default:
            pArguments.mConnection = Pick(kConnectionTypes, pNumber);
    }
}

}  // namespace

const std::vector<std::string>& Names() {
    static const std::vector<std::string> sNames = {
        "a", "b", "c", "A", "Bb", "bB", "", "a|b", "x/y", "\xC3\xA9", std::string(60, 'n')};
    return sNames;
}

Value ValueOf(int pType, unsigned pNumber) {
    Value lValue(pType);
    switch (pType) {
        case kByte:
            lValue.mInteger = Pick(kInts, pNumber) & 0xFF;
            break;
        case kShort:
            lValue.mInteger = static_cast<short>(Pick(kInts, pNumber) & 0x7FFF);
            break;
        case kBool:
            lValue.mInteger = pNumber % 2;
            break;
        case kInt:
        case kEnum:
            lValue.mInteger = Pick(kInts, pNumber);
            break;
        case kTime:
            lValue.mInteger = Pick(kTimes, pNumber);
            break;
        case kFloat:
            lValue.mNumbers[0] = static_cast<double>(static_cast<float>(Pick(kDoubles, pNumber)));
            break;
        case kDouble:
        case kVector2:
        case kVector3:
        case kVector4:
            for (int i = 0; i < (pType == kDouble ? 1 : pType - kVector2 + 2); ++i)
                lValue.mNumbers[static_cast<std::size_t>(i)] =
                    Pick(kDoubles, pNumber + static_cast<unsigned>(i) * (pNumber % 3));
            break;
        case kString:
            lValue.mBytes = Pick(kStrings, pNumber);
            break;
        case kBlob:
            lValue.mBytes = std::string("\0\x01\xFFxyz", 6).substr(0, pNumber % 7);
            break;
        default:
            break;
    }
    return lValue;
}

Arguments Resolve(const Operation& pOperation, const World& pWorld) {
    Arguments lArguments;
    Places lPlaces;
    const char* lLetters = ArgumentsOf(pOperation.mKind);
    for (std::size_t i = 0; lLetters[i]; ++i)
        Take(lLetters[i], pOperation.mArguments[i], pWorld, lArguments, lPlaces);
    return lArguments;
}

Operation Rename(const Operation& pOperation, const Arguments& pArguments) {
    Operation lOperation = pOperation;
    Places lPlaces;
    const char* lLetters = ArgumentsOf(pOperation.mKind);
    for (std::size_t i = 0; lLetters[i]; ++i) {
        int lNumber = -1;
        const bool lNamesPage = lLetters[i] == 'p' || lLetters[i] == 'y';
        if (lNamesPage)
            lNumber = pArguments.mSlots[lPlaces.mPages++];
        else if (lLetters[i] == 'i' && pOperation.mArguments[i] < 246)
            lNumber = pArguments.mIds[lPlaces.mIds++];
        else if (lLetters[i] == 'i')
            ++lPlaces.mIds;
        else if (lLetters[i] == 't')
            lNumber = static_cast<int>(std::find(std::begin(kTypes), std::end(kTypes), pArguments.mType) - kTypes);
        const int lLimit = lNamesPage           ? World::kSlots
                           : lLetters[i] == 'i' ? static_cast<int>(kNamedIds)
                                                : static_cast<int>(std::size(kTypes));
        if (lNumber >= 0 && lNumber < lLimit)
            lOperation.mArguments[i] = static_cast<std::uint8_t>(lNumber);
    }
    return lOperation;
}

std::string Describe(const Operation& pOperation, const Arguments& pArguments) {
    std::string lText = NameOf(pOperation.mKind);
    Places lPlaces;
    for (const char* lLetter = ArgumentsOf(pOperation.mKind); *lLetter; ++lLetter) {
        switch (*lLetter) {
            case 'p':
            case 'y':
                lText += " page " + std::to_string(pArguments.mSlots[lPlaces.mPages++]);
                break;
            case 'i':
                lText += " id " + std::to_string(pArguments.mIds[lPlaces.mIds++]);
                break;
            case 'n':
            case 'm':
            case 'u':
                lText += pArguments.mName ? " \"" + *pArguments.mName + "\"" : " null";
                break;
            case 't':
                lText += " type " + std::to_string(pArguments.mType);
                break;
            case 'v':
                lText += " value " + (pArguments.mValue ? ToText(*pArguments.mValue) : "null");
                break;
            case 'f':
                lText += " flags " + std::to_string(pArguments.mFlags);
                break;
            case 's':
                lText += " state " + std::to_string(pArguments.mState);
                break;
            case 'x':
                lText += " number " + std::to_string(pArguments.mNumber) + "/" + std::to_string(pArguments.mBits);
                break;
            case 'b':
                lText += pArguments.mBools[lPlaces.mBools++] ? " true" : " false";
                break;
            case 'k':
                lText += " filter " + std::to_string(pArguments.mFilter);
                break;
            default:
                lText += " connection " + std::to_string(pArguments.mConnection);
        }
    }
    return lText;
}

}  // namespace lyrmodel
