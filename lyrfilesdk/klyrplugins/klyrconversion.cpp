#include "lyrfilesdk/klyrplugins/klyrconversion.h"

namespace lyrsdk {
namespace detail {
namespace {

// Appends a text to what stands at pOut, zero byte included, and returns the position of that zero byte.
char* Write(char* pOut, const char* pText, int pLength) {
    std::memcpy(pOut, pText, static_cast<std::size_t>(pLength) + 1);
    return pOut + pLength;
}

template <int Size>
bool ShowText(KString& pDst, const char (&pText)[Size]) {
    return pDst.Assign(pText, Size - 1);
}

}  // namespace

bool ShowInteger(KString& pDst, int pSrc) {
    return pDst.Assign(pSrc);
}

bool ShowFloat(KString& pDst, float pSrc) {
    return pDst.Assign(pSrc);
}

bool ShowDoubles(KString& pDst, const double* pSrc, int pCount) {
    char lText[4 * 32];
    char* lOut = lText;
    for (int i = 0; i < pCount; ++i) {
        if (i > 0)
            *lOut++ = ',';
        char lNumber[32];
        const int lLength = lyrFormat(lNumber, pSrc[i]);
        // As a whole, which takes no call. A number has at most 24 bytes, so that there is room for it.
        std::memcpy(lOut, lNumber, sizeof(lNumber));
        lOut += lLength;
    }
    return pDst.Assign(lText, static_cast<int>(lOut - lText));
}

bool Show(KString& pDst, bool pSrc) {
    return pSrc ? ShowText(pDst, "true") : ShowText(pDst, "false");
}

bool Show(KString& pDst, const KTime& pSrc) {
    char lText[KTime::kTimeStringSize];
    const int lLength = pSrc.GetTimeString(lText, 5, 0, 2, 0.0);
    return pDst.Assign(lText, lLength);
}

bool Show(KString& pDst, const lyrBlob&) {
    return ShowText(pDst, "<blob>");
}

bool Show(KString& pDst, const lyrDistance& pSrc) {
    char lNumber[32];
    char lUnit[64];
    const int lNumberLength = lyrFormat(lNumber, pSrc.value());
    const int lUnitLength = pSrc.unit().FormatScaleFactor(lUnit, true);
    char lText[sizeof(lNumber) + sizeof(lUnit)];
    char* lOut = Write(lText, lNumber, lNumberLength);
    *lOut++ = ' ';
    lOut = Write(lOut, lUnit, lUnitLength);
    return pDst.Assign(lText, static_cast<int>(lOut - lText));
}

bool Show(KString& pDst, const lyrDateTime& pSrc) {
    char lText[32];
    const int lLength = pSrc.format(lText);
    return pDst.Assign(lText, lLength);
}

}  // namespace detail

LYRSDK_INSTANTIATE_COPY()

}  // namespace lyrsdk
