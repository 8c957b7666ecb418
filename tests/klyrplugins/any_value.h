#pragma once

// A value of any type, and the three ways to convert it. What is checked of every pair of types is written for these,
// so that it is compiled once and not once for each of the 441 pairs.

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {

template <typename First, typename... Types>
using VariantBehindFirst = std::variant<Types...>;

#define LYRSDK_BEHIND_COMMA(pCode, pType) , pType
using AnyValue = VariantBehindFirst<void LYRSDK_TEST_TYPES(LYRSDK_BEHIND_COMMA)>;
#undef LYRSDK_BEHIND_COMMA

inline const void* AddressOf(const AnyValue& pValue) {
    return std::visit([](const auto& pHeld) { return static_cast<const void*>(&pHeld); }, pValue);
}
inline void* AddressOf(AnyValue& pValue) {
    return const_cast<void*>(AddressOf(std::as_const(pValue)));
}

inline std::string ImageOf(const AnyValue& pValue) {
    return std::visit([](const auto& pHeld) { return ImageOf(pHeld); }, pValue);
}

// The samples of the type that a code stands for; none for a code without values.
inline std::vector<AnyValue> SamplesOf(ELyrType pType) {
    const auto lAny = [](auto pSamples) { return std::vector<AnyValue>(pSamples.begin(), pSamples.end()); };
    switch (pType) {
#define LYRSDK_ROW(pCode, pStored) \
    case pCode:                    \
        return lAny(Samples<pStored>());
        LYRSDK_TEST_TYPES(LYRSDK_ROW)
        LYRSDK_ROW(eENUM, int)
#undef LYRSDK_ROW
        case eUNIDENTIFIED:
        case eREFERENCE:
        case eMAX_TYPES:
        default:
            return {};
    }
}

template <typename Dst, typename Src>
bool CopyPair(void* pDst, const void* pSrc) {
    return lyrCopy(*static_cast<Dst*>(pDst), *static_cast<const Src*>(pSrc));
}
template <typename Dst>
bool CopyInto(Dst& pDst, const AnyValue& pSrc) {
    // One for each source.
#define LYRSDK_BEFORE_COMMA(pCode, pType) &CopyPair<Dst, pType>,
    static constexpr bool (*kCopies[])(void* pDst, const void* pSrc) = {LYRSDK_TEST_TYPES(LYRSDK_BEFORE_COMMA)};
#undef LYRSDK_BEFORE_COMMA
    return kCopies[pSrc.index()](&pDst, AddressOf(pSrc));
}

// By the types of both.
inline bool CopyByTypes(AnyValue& pDst, const AnyValue& pSrc) {
    return std::visit([&](auto& pHeld) { return CopyInto(pHeld, pSrc); }, pDst);
}
// By the destination's code and the source's type.
inline bool CopyIntoCode(AnyValue& pDst, ELyrType pDstType, const AnyValue& pSrc) {
    void* lDst = AddressOf(pDst);
    return std::visit([&](const auto& pFrom) { return lyrCopy(lDst, pDstType, pFrom); }, pSrc);
}
// By the codes of both.
inline bool CopyByCodes(AnyValue& pDst, ELyrType pDstType, AnyValue& pSrc, ELyrType pSrcType) {
    return lyrCopy(AddressOf(pDst), pDstType, AddressOf(pSrc), pSrcType);
}

}  // namespace lyrsdk
