#pragma once

// Hashes of texts, seeded in every process; internal to the library.
//
// The seed differs from process to process where the system places programs at random, so that nobody can write a file
// of names that all hash alike. What the library answers does not depend on it.

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lyrsdk::detail {

// Both halves of the product of two numbers, laid over each other.
inline std::uint64_t MultiplyAndFold(std::uint64_t pLeft, std::uint64_t pRight) {
#ifdef __SIZEOF_INT128__
    __extension__ using Wide = unsigned __int128;
    const Wide lProduct = static_cast<Wide>(pLeft) * pRight;
    return static_cast<std::uint64_t>(lProduct) ^ static_cast<std::uint64_t>(lProduct >> 64);
#else
    const std::uint64_t lLow = (pLeft & 0xFFFFFFFFu) * (pRight & 0xFFFFFFFFu);
    const std::uint64_t lLeftHigh = (pLeft >> 32) * (pRight & 0xFFFFFFFFu);
    const std::uint64_t lRightHigh = (pLeft & 0xFFFFFFFFu) * (pRight >> 32);
    const std::uint64_t lHigh = (pLeft >> 32) * (pRight >> 32);
    const std::uint64_t lMiddle = (lLow >> 32) + (lLeftHigh & 0xFFFFFFFFu) + lRightHigh;
    return (lMiddle << 32 | (lLow & 0xFFFFFFFFu)) ^ (lHigh + (lLeftHigh >> 32) + (lMiddle >> 32));
#endif
}

struct HashSeed {
    HashSeed();

    std::uint64_t mLeft;
    std::uint64_t mRight;
};

inline const HashSeed& SeedOfHashes() {
    static const HashSeed sSeed;
    return sSeed;
}

// Eight characters as they stand.
struct AsWritten {
    static std::uint64_t Of(std::uint64_t pChars) { return pChars; }
};

// Eight characters with their ASCII capitals made small.
struct WithoutCase {
    static std::uint64_t Of(std::uint64_t pChars) {
        constexpr std::uint64_t kOnes = 0x0101010101010101u;
        constexpr std::uint64_t kHighBits = 0x8080808080808080u;
        const std::uint64_t lLowBits = pChars & ~kHighBits;
        const std::uint64_t lFromA = lLowBits + (0x80 - 'A') * kOnes;
        const std::uint64_t lBehindZ = lLowBits + (0x7F - 'Z') * kOnes;
        return pChars | (((lFromA ^ lBehindZ) & ~pChars & kHighBits) >> 2);
    }
};

template <typename Chars, typename Word>
std::uint64_t ReadChars(const char* pText) {
    Word lWord;
    std::memcpy(&lWord, pText, sizeof(lWord));
    return Chars::Of(lWord);
}

// Of pLength bytes. Sixteen a multiplication; the last two words may overlap what came before them.
template <typename Chars>
std::uint64_t HashText(const char* pText, std::size_t pLength) {
    const HashSeed& lSeed = SeedOfHashes();
    std::uint64_t lHash = lSeed.mRight;
    std::size_t lLeft = pLength;
    for (; lLeft > 16; pText += 16, lLeft -= 16)
        lHash = MultiplyAndFold(ReadChars<Chars, std::uint64_t>(pText) ^ lSeed.mLeft,
                                ReadChars<Chars, std::uint64_t>(pText + 8) ^ lHash);
    std::uint64_t lFirst = 0;
    std::uint64_t lLast = 0;
    if (lLeft >= 8) {
        lFirst = ReadChars<Chars, std::uint64_t>(pText);
        lLast = ReadChars<Chars, std::uint64_t>(pText + lLeft - 8);
    } else if (lLeft >= 4) {
        lFirst = ReadChars<Chars, std::uint32_t>(pText);
        lLast = ReadChars<Chars, std::uint32_t>(pText + lLeft - 4);
    } else if (lLeft > 0) {
        lFirst = ReadChars<Chars, unsigned char>(pText) << 16 |
                 ReadChars<Chars, unsigned char>(pText + lLeft / 2) << 8 |
                 ReadChars<Chars, unsigned char>(pText + lLeft - 1);
    }
    lHash = MultiplyAndFold(lFirst ^ lSeed.mLeft, lLast ^ lHash);
    return MultiplyAndFold(lHash ^ lSeed.mRight, pLength ^ lSeed.mLeft);
}

// Equal for texts that are equal but for the case of ASCII letters.
inline std::uint32_t HashWithoutCase(const char* pText, std::size_t pLength) {
    const std::uint64_t lHash = HashText<WithoutCase>(pText, pLength);
    return static_cast<std::uint32_t>(lHash ^ lHash >> 32);
}

// The same of a symbol's text, which is kept with it once it was asked for.
std::uint32_t HashWithoutCaseOfSymbol(const char* pBuffer);

}  // namespace lyrsdk::detail
