#pragma once

// A value of any type, and the three ways to convert it. What is checked of every pair of types is written for these,
// so that it is compiled once and not once for each of the 441 pairs.

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {

// In a block of exactly its size, so that the sanitizers see who reads or writes past it.
class AnyValue {
public:
    template <typename T>
    AnyValue(const T& pValue) : mBlock(std::make_unique<T>(pValue)) {}
    AnyValue(const AnyValue& pOther)
        : mBlock(std::visit([](const auto& pBlock) { return AnyValue(*pBlock); }, pOther.mBlock).mBlock) {}
    AnyValue(AnyValue&& pOther) = default;
    AnyValue& operator=(AnyValue pOther) {
        mBlock.swap(pOther.mBlock);
        return *this;
    }
    ~AnyValue() = default;

    template <typename Visitor>
    auto Visit(Visitor&& pVisitor) {
        return std::visit([&](auto& pBlock) { return pVisitor(*pBlock); }, mBlock);
    }
    template <typename Visitor>
    auto Visit(Visitor&& pVisitor) const {
        return std::visit([&](const auto& pBlock) { return pVisitor(std::as_const(*pBlock)); }, mBlock);
    }

    template <typename T>
    bool Holds() const {
        return std::holds_alternative<std::unique_ptr<T>>(mBlock);
    }
    template <typename T>
    const T& Get() const {
        return *std::get<std::unique_ptr<T>>(mBlock);
    }
    // In the order of LYRSDK_TEST_TYPES.
    std::size_t TypeIndex() const { return mBlock.index(); }
    void* Address() {
        return Visit([](auto& pHeld) { return static_cast<void*>(&pHeld); });
    }
    const void* Address() const {
        return Visit([](const auto& pHeld) { return static_cast<const void*>(&pHeld); });
    }

private:
    template <typename First, typename... Types>
    using BlocksBehindFirst = std::variant<std::unique_ptr<Types>...>;
#define LYRSDK_BEHIND_COMMA(pCode, pType) , pType
    using Blocks = BlocksBehindFirst<void LYRSDK_TEST_TYPES(LYRSDK_BEHIND_COMMA)>;
#undef LYRSDK_BEHIND_COMMA

    Blocks mBlock;
};

inline std::string ImageOf(const AnyValue& pValue) {
    return pValue.Visit([](const auto& pHeld) { return ImageOf(pHeld); });
}

template <typename T>
std::vector<AnyValue> AnySamples() {
    std::vector<AnyValue> lAny;
    for (const T& lSample : Samples<T>())
        lAny.emplace_back(lSample);
    return lAny;
}
// The samples of the type that a code stands for; none for a code without values.
inline std::vector<AnyValue> SamplesOf(ELyrType pType) {
    switch (pType) {
#define LYRSDK_ROW(pCode, pStored) \
    case pCode:                    \
        return AnySamples<pStored>();
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
    constexpr bool (*kCopies[])(void* pDst, const void* pSrc) = {LYRSDK_TEST_TYPES(LYRSDK_BEFORE_COMMA)};
#undef LYRSDK_BEFORE_COMMA
    return kCopies[pSrc.TypeIndex()](&pDst, pSrc.Address());
}

// By the types of both.
inline bool CopyByTypes(AnyValue& pDst, const AnyValue& pSrc) {
    return pDst.Visit([&](auto& pHeld) { return CopyInto(pHeld, pSrc); });
}
// By the destination's code and the source's type.
inline bool CopyIntoCode(AnyValue& pDst, ELyrType pDstType, const AnyValue& pSrc) {
    return pSrc.Visit([&](const auto& pFrom) { return lyrCopy(pDst.Address(), pDstType, pFrom); });
}
// By the codes of both.
inline bool CopyByCodes(AnyValue& pDst, ELyrType pDstType, AnyValue& pSrc, ELyrType pSrcType) {
    return lyrCopy(pDst.Address(), pDstType, pSrc.Address(), pSrcType);
}

}  // namespace lyrsdk
