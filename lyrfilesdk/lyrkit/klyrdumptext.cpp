#include "lyrfilesdk/lyrkit/klyrdumptext.h"

#include <charconv>
#include <ostream>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {
namespace {

void Put(std::ostream& pStream, std::string_view pText) {
    pStream.write(pText.data(), static_cast<std::streamsize>(pText.size()));
}

template <typename Integer>
void PutNumber(std::ostream& pStream, Integer pNumber) {
    char lDigits[32];
    const std::to_chars_result lEnd = std::to_chars(lDigits, lDigits + sizeof lDigits, pNumber);
    Put(pStream, std::string_view(lDigits, static_cast<std::size_t>(lEnd.ptr - lDigits)));
}

std::string_view View(const KString& pText) {
    return std::string_view(pText.Buffer(), static_cast<std::size_t>(pText.GetLen()));
}

unsigned char ByteAt(std::string_view pText, std::size_t pIndex) {
    return static_cast<unsigned char>(pText[pIndex]);
}

bool IsContinuation(unsigned char pByte) {
    return (pByte & 0xC0u) == 0x80u;
}

constexpr char kHexDigits[] = "0123456789ABCDEF";

}  // namespace

// --- characters ----------------------------------------------------------------------------------------------------

std::size_t lyrUtf8Length(std::string_view pText) {
    if (pText.empty())
        return 0;
    const unsigned char lFirst = ByteAt(pText, 0);
    if (lFirst < 0x80)
        return 1;
    const std::size_t lLength = lFirst >= 0xF0 ? 4 : lFirst >= 0xE0 ? 3 : 2;
    if (lFirst < 0xC2 || lFirst > 0xF4 || pText.size() < lLength)
        return 0;
    for (std::size_t i = 1; i < lLength; ++i) {
        if (!IsContinuation(ByteAt(pText, i)))
            return 0;
    }
    const unsigned char lSecond = ByteAt(pText, 1);
    const bool lOverlong = (lFirst == 0xE0 && lSecond < 0xA0) || (lFirst == 0xF0 && lSecond < 0x90);
    const bool lOutside = (lFirst == 0xED && lSecond >= 0xA0) || (lFirst == 0xF4 && lSecond >= 0x90);
    return lOverlong || lOutside ? 0 : lLength;
}

namespace {

// U+0080 to U+009F steer terminals as the characters below U+0020 do; U+2028 to U+202E and U+2066 to U+2069 break or
// reverse the line.
bool IsUnsafe(std::string_view pSequence) {
    if (pSequence.size() == 1)
        return ByteAt(pSequence, 0) < 0x20 || ByteAt(pSequence, 0) == 0x7F;
    if (pSequence.size() == 2)
        return ByteAt(pSequence, 0) == 0xC2 && ByteAt(pSequence, 1) < 0xA0;
    if (pSequence.size() != 3 || ByteAt(pSequence, 0) != 0xE2)
        return false;
    const unsigned char lSecond = ByteAt(pSequence, 1);
    const unsigned char lThird = ByteAt(pSequence, 2);
    return (lSecond == 0x80 && lThird >= 0xA8 && lThird <= 0xAE) ||
           (lSecond == 0x81 && lThird >= 0xA6 && lThird <= 0xA9);
}

std::string_view Hex(std::string_view pBytes, char (&pBuffer)[16]) {
    std::size_t lLength = 0;
    for (std::size_t i = 0; i < pBytes.size(); ++i) {
        pBuffer[lLength++] = '\\';
        pBuffer[lLength++] = 'x';
        pBuffer[lLength++] = kHexDigits[ByteAt(pBytes, i) >> 4];
        pBuffer[lLength++] = kHexDigits[ByteAt(pBytes, i) & 15u];
    }
    return std::string_view(pBuffer, lLength);
}

}  // namespace

std::string_view lyrEscapeFirst(std::string_view& pRest, char (&pBuffer)[16]) {
    if (pRest.empty())
        return std::string_view();
    const std::size_t lLength = lyrUtf8Length(pRest);
    const std::string_view lFirst = pRest.substr(0, lLength == 0 ? 1 : lLength);
    pRest.remove_prefix(lFirst.size());
    if (lFirst == "\n")
        return "\\n";
    if (lFirst == "\t")
        return "\\t";
    if (lFirst == "\\")
        return "\\\\";
    return lLength == 0 || IsUnsafe(lFirst) ? Hex(lFirst, pBuffer) : lFirst;
}

namespace {

// The first characters that stand for themselves, but for the two.
std::size_t PlainLength(std::string_view pText, char pMarked, char pAlsoMarked) {
    std::size_t i = 0;
    while (i < pText.size() && pText[i] >= ' ' && pText[i] < 0x7F && pText[i] != '\\' && pText[i] != pMarked &&
           pText[i] != pAlsoMarked)
        ++i;
    return i;
}

// With a backslash in front of each of the two characters.
void PutEscaped(std::ostream& pStream, std::string_view pText, char pMarked, char pAlsoMarked) {
    char lBuffer[16];
    while (!pText.empty()) {
        const std::size_t lPlain = PlainLength(pText, pMarked, pAlsoMarked);
        if (lPlain > 0)
            Put(pStream, pText.substr(0, lPlain));
        pText.remove_prefix(lPlain);
        const std::string_view lShown = lyrEscapeFirst(pText, lBuffer);
        if (lShown.size() == 1 && (lShown[0] == pMarked || lShown[0] == pAlsoMarked))
            pStream.put('\\');
        Put(pStream, lShown);
    }
}

}  // namespace

void lyrDumpText(std::ostream& pStream, std::string_view pText) {
    PutEscaped(pStream, pText, '\0', '\0');
}

void lyrDumpQuoted(std::ostream& pStream, std::string_view pText) {
    pStream.put('"');
    PutEscaped(pStream, pText, '"', '"');
    pStream.put('"');
}

// --- values --------------------------------------------------------------------------------------------------------

namespace {

// The last place up to pAt, which is in the text, where no character is cut in two. Bytes that are part of none are not
// held together.
std::size_t CutBefore(std::string_view pText, std::size_t pAt) {
    constexpr std::size_t lMost = 3;
    for (std::size_t i = 1; i <= lMost && i <= pAt; ++i) {
        if (lyrUtf8Length(pText.substr(pAt - i)) > i)
            return pAt - i;
    }
    return pAt;
}

void DumpShortened(std::ostream& pStream, std::string_view pText, int pMaxLength) {
    std::size_t lLength = pText.size();
    if (pMaxLength >= 0 && lLength > static_cast<std::size_t>(pMaxLength))
        lLength = CutBefore(pText, static_cast<std::size_t>(pMaxLength));
    lyrDumpQuoted(pStream, pText.substr(0, lLength));
    if (lLength < pText.size())
        Put(pStream, "...");
}

// All rows or nothing.
bool DumpMatrix(std::ostream& pStream, const KLyrPropertyValue& pValue) {
    constexpr int lCount = 4;
    lyrDouble44 lMatrix;
    KString lRows[lCount];
    if (!pValue.Get(&lMatrix, eDOUBLE44))  // LCOV_EXCL_BR_LINE: it holds a matrix
        return false;                      // LCOV_EXCL_LINE: as above
    for (int i = 0; i < lCount; ++i) {
        if (!lyrCopy(&lRows[i], eSTRING, &lMatrix[i], eDOUBLE4))
            return false;
    }
    for (int i = 0; i < lCount; ++i) {
        Put(pStream, i == 0 ? "" : "; ");
        Put(pStream, View(lRows[i]));
    }
    return true;
}

void DumpEnumText(std::ostream& pStream, const KLyrPropertyHandle& pProperty, const KLyrPropertyValue& pValue) {
    int lIndex = -1;
    pValue.Get(&lIndex, eENUM);
    const char* lText = lIndex >= 0 && lIndex < pProperty.GetEnumCount() ? pProperty.GetEnumValue(lIndex) : nullptr;
    if (lText) {
        Put(pStream, " (");
        lyrDumpText(pStream, lText);
        Put(pStream, ")");
    }
}

void DumpBlobSize(std::ostream& pStream, const lyrBlob& pBlob) {
    pStream.put(' ');
    PutNumber(pStream, pBlob.GetSize());
    Put(pStream, pBlob.GetSize() == 1 ? " byte" : " bytes");
}

// The integers that an int does not hold: their own text is that of the int that their low bits are.
bool IsWide(ELyrType pType) {
    return pType == eUINTEGER1 || pType == eLONGLONG1 || pType == eULONGLONG1;
}

// The number that pRead(void*, ELyrType) gives. False, and nothing is written, when it gives none.
template <typename Integer, typename Read>
bool DumpNumber(std::ostream& pStream, ELyrType pType, Read pRead) {
    Integer lNumber = 0;
    if (!pRead(&lNumber, pType))
        return false;
    PutNumber(pStream, lNumber);
    return true;
}

template <typename Read>
bool DumpWide(std::ostream& pStream, ELyrType pType, Read pRead) {
    return pType == eULONGLONG1 ? DumpNumber<unsigned long long>(pStream, eULONGLONG1, pRead)
                                : DumpNumber<long long>(pStream, eLONGLONG1, pRead);
}

}  // namespace

// By the type that the value has: a reference, or one without storage, is not even asked.
bool lyrDumpValue(std::ostream& pStream, const KLyrPropertyHandle& pProperty, int pMaxLength) {
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    const auto* lValue = lPage ? lPage->GetPropertyItem<KLyrPropertyValue>(nullptr, pProperty.GetId()) : nullptr;
    if (!lValue || !lyrHoldsValue(lValue->GetType()))
        return false;
    if (lValue->GetType() == eDOUBLE44)
        return DumpMatrix(pStream, *lValue);
    if (IsWide(lValue->GetType()))
        return DumpWide(pStream, lValue->GetType(),
                        [lValue](void* pNumber, ELyrType pType) { return lValue->Get(pNumber, pType); });
    KString lText;
    lyrBlob lBlob;
    if (!lValue->Get(&lText, eSTRING) || (lValue->GetType() == eBLOB && !lValue->Get(&lBlob, eBLOB)))
        return false;
    if (lValue->GetType() == eSTRING)
        DumpShortened(pStream, View(lText), pMaxLength);
    else
        lyrDumpText(pStream, View(lText));
    if (lValue->GetType() == eENUM)
        DumpEnumText(pStream, pProperty, *lValue);
    if (lValue->GetType() == eBLOB)
        DumpBlobSize(pStream, lBlob);
    return true;
}

// --- bits ----------------------------------------------------------------------------------------------------------

namespace {

struct BitName {
    unsigned mBit;
    const char* mName;
};

constexpr BitName kFlagNames[] = {
    {LyrPropertyFlags::eANIMATABLE, "ANIMATABLE"},   {LyrPropertyFlags::eUSER, "USER"},
    {LyrPropertyFlags::eTEMPORARY, "TEMPORARY"},     {LyrPropertyFlags::ePUBLISHED, "PUBLISHED"},
    {LyrPropertyFlags::ePSTATIC, "STATIC"},          {LyrPropertyFlags::eNOT_SAVABLE, "NOT_SAVABLE"},
    {LyrPropertyFlags::eHIDDEN, "HIDDEN"},           {LyrPropertyFlags::eUI_DISABLED, "UI_DISABLED"},
    {LyrPropertyFlags::eUI_GROUP, "UI_GROUP"},       {LyrPropertyFlags::eUI_BOOLGROUP, "UI_BOOLGROUP"},
    {LyrPropertyFlags::eUI_EXPANDED, "UI_EXPANDED"}, {LyrPropertyFlags::eUI_NOCAPTION, "UI_NOCAPTION"},
    {LyrPropertyFlags::eUI_PANEL, "UI_PANEL"},       {LyrPropertyFlags::eUI_LEFTLABEL, "UI_LEFTLABEL"},
    {LyrPropertyFlags::eUI_HIDDEN, "UI_HIDDEN"},
};

constexpr BitName kConnectionNames[] = {
    {eLyrConnectionReference, "reference"}, {eLyrConnectionContains, "contains"},
    {eLyrConnectionData, "data"},           {eLyrConnectionSystem, "system"},
    {eLyrConnectionUser, "user"},           {eLyrConnectionUnidirectional, "unidirectional"},
};

void PutHexNumber(std::ostream& pStream, unsigned pNumber) {
    char lDigits[8];
    std::size_t lCount = 0;
    for (; pNumber != 0; pNumber >>= 4)
        lDigits[sizeof lDigits - ++lCount] = kHexDigits[pNumber & 15u];
    Put(pStream, "0x");
    Put(pStream, std::string_view(lDigits + sizeof lDigits - lCount, lCount));
}

template <std::size_t pCount>
void DumpBits(std::ostream& pStream, unsigned pBits, const BitName (&pNames)[pCount]) {
    bool lFirst = true;
    for (const BitName& lName : pNames) {
        if ((pBits & lName.mBit) == 0)
            continue;
        Put(pStream, lFirst ? "" : ", ");
        Put(pStream, lName.mName);
        pBits &= ~lName.mBit;
        lFirst = false;
    }
    if (pBits != 0) {
        Put(pStream, lFirst ? "" : ", ");
        PutHexNumber(pStream, pBits);
    }
}

}  // namespace

void lyrDumpFlags(std::ostream& pStream, LyrPropertyFlags::eLyrPropertyFlags pFlags) {
    DumpBits(pStream, pFlags, kFlagNames);
}

void lyrDumpConnectionType(std::ostream& pStream, kLyrConnectionType pType) {
    if (pType == eLyrConnectionNone)
        Put(pStream, "none");
    DumpBits(pStream, static_cast<unsigned>(pType), kConnectionNames);
}

// --- limits and paths ----------------------------------------------------------------------------------------------

namespace {

// Nothing without a bound, a question mark for one that cannot be read.
void DumpBound(std::ostream& pStream, const KLyrPropertyPage& pPage, int pId, KLyrPropertyInfo::eValueIndex pIndex) {
    const auto lRead = [&](void* pValue, ELyrType pType) { return pPage.GetMinMax(pId, pIndex, pValue, pType); };
    KString lText;
    if (!pPage.HasMinMax(pId, pIndex))
        return;
    if (IsWide(pPage.GetType(pId)) && DumpWide(pStream, pPage.GetType(pId), lRead))
        return;
    if (lRead(&lText, eSTRING))
        lyrDumpText(pStream, View(lText));
    else
        pStream.put('?');
}

}  // namespace

bool lyrDumpLimits(std::ostream& pStream, const KLyrPropertyHandle& pProperty, bool pSoft) {
    const auto lLow = pSoft ? KLyrPropertyInfo::eValueSoftMin : KLyrPropertyInfo::eValueMin;
    const auto lHigh = pSoft ? KLyrPropertyInfo::eValueSoftMax : KLyrPropertyInfo::eValueMax;
    const KLyrPropertyPage* lPage = pProperty.GetPage();
    const int lId = pProperty.GetId();
    if (!lPage || !lyrHoldsValue(lPage->GetType(lId)) ||
        (!lPage->HasMinMax(lId, lLow) && !lPage->HasMinMax(lId, lHigh)))
        return false;
    DumpBound(pStream, *lPage, lId, lLow);
    Put(pStream, "..");
    DumpBound(pStream, *lPage, lId, lHigh);
    return true;
}

void lyrDumpPath(std::ostream& pStream, const KLyrPropertyHandle& pProperty, char pSeparator) {
    constexpr int lMost = 64;
    const std::string_view lSeparator(&pSeparator, 1);
    KLyrPropertyHandle lNames[lMost];
    int lCount = 0;
    KLyrPropertyHandle lStep = pProperty;
    // An orphan has no root above it, and a root no name in the path.
    const auto lHasName = [](const KLyrPropertyHandle& pAt) {
        return pAt.GetId() > 0 && pAt.GetPage() && pAt.GetPage()->GetPropertyEntry(pAt.GetId());
    };
    while (lCount < lMost && lHasName(lStep)) {
        lNames[lCount++] = lStep;
        lStep = lStep.GetParent();
    }
    if (lHasName(lStep)) {
        Put(pStream, "...");
        lyrDumpText(pStream, lSeparator);
    }
    for (int i = lCount - 1; i >= 0; --i) {
        const std::string_view lName = lNames[i].GetName();
        PutEscaped(pStream, lName, pSeparator, '"');
        Put(pStream, lName.empty() ? "\"\"" : "");
        if (i > 0)
            lyrDumpText(pStream, lSeparator);
    }
}

}  // namespace lyrsdk
