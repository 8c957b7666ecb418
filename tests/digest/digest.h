#pragma once

// One number over many results, and the groups of results that have to give the same number with every compiler, word
// size and optimisation level.

#include <cstdint>
#include <cstring>
#include <string>

namespace lyrsdk {

class Digest {
public:
    void Add(const std::string& pBytes) {
        for (char lByte : pBytes + '\n')
            mValue = (mValue ^ static_cast<unsigned char>(lByte)) * 0x100000001B3ull;
    }
    // A text in a buffer, or null.
    void Add(const char* pText) { Add(std::string(pText ? pText : "(null)")); }
    void Add(bool pResult) { Add(std::string(pResult ? "1" : "0")); }
    // The bytes of a number; of every NaN those of one, because nobody says which NaN an operation gives.
    template <typename T>
    void AddNumber(T pValue) {
        static_assert(sizeof(T) <= sizeof(std::uint64_t), "a number");
        std::string lBytes(sizeof(T), '\0');
        if (pValue == pValue)
            std::memcpy(&lBytes[0], &pValue, sizeof(T));
        else
            lBytes = "nan";
        Add(lBytes);
    }
    std::uint64_t Value() const { return mValue; }

private:
    std::uint64_t mValue = 0xCBF29CE484222325ull;
};

// Random bits, the same on every machine. One draw a statement: the order of two draws within one is the compiler's.
class RandomBits {
public:
    std::uint64_t Next() {
        mState ^= mState << 13;
        mState ^= mState >> 7;
        mState ^= mState << 17;
        return mState;
    }
    // 0 up to, and without, pEnd.
    int Below(int pEnd) { return static_cast<int>(Next() % static_cast<unsigned>(pEnd)); }

private:
    std::uint64_t mState = 88172645463325252ull;
};

// Every sample of every type into every type.
std::uint64_t DigestOfConversions();
// Random numbers into the types that are counted or cut off.
std::uint64_t DigestOfRandomConversions();
// Random numbers as texts, and back.
std::uint64_t DigestOfNumberTexts();
// Random and mangled texts as numbers.
std::uint64_t DigestOfParsing();
// Times, dates, lengths and units as texts, and back.
std::uint64_t DigestOfTimesAndUnits();
// Every two samples of one type, compared.
std::uint64_t DigestOfComparisons();
// All that can be seen of pages under random operations; 0 when it is not what the model of pages shows.
std::uint64_t DigestOfPages();

}  // namespace lyrsdk
