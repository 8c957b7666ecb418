#pragma once

// What the fuzz targets share.
//
// A target takes any bytes, does with the library what they say, and holds it against something independent. The first
// difference stops the program, which is how a fuzzer knows a finding. The same sources, linked with replay.cpp, run
// the committed inputs as a test.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"

namespace lyrfuzz {

// Prints the text and stops the program.
[[noreturn]] void Fail(const std::string& pText);

inline void Require(bool pHolds, const char* pText) {
    if (!pHolds)
        Fail(pText);
}

// The bytes of an input, taken from the front. Behind the end there are zeros.
class Input {
public:
    Input(const std::uint8_t* pData, std::size_t pSize) : mNext(pData), mEnd(pData + pSize) {}

    bool AtEnd() const { return mNext == mEnd; }
    std::uint8_t Byte() { return AtEnd() ? std::uint8_t(0) : *mNext++; }
    // As many bytes as asked for, or what is left.
    std::string Text(std::size_t pSize) {
        const std::size_t lLeft = static_cast<std::size_t>(mEnd - mNext);
        std::string lText(reinterpret_cast<const char*>(mNext), pSize < lLeft ? pSize : lLeft);
        mNext += lText.size();
        return lText;
    }
    std::string Rest() { return Text(static_cast<std::size_t>(mEnd - mNext)); }
    // Little-endian, like the machines that run this.
    template <typename T>
    T Number() {
        T lNumber{};
        for (std::size_t i = 0; i < sizeof(T); ++i)
            reinterpret_cast<std::uint8_t*>(&lNumber)[i] = Byte();
        return lNumber;
    }

private:
    const std::uint8_t* mNext;
    const std::uint8_t* mEnd;
};

// Stops the program when the library holds more or less memory at its end than at its start.
class LeakCheck {
public:
    LeakCheck();
    ~LeakCheck();
    LeakCheck(const LeakCheck&) = delete;
    LeakCheck& operator=(const LeakCheck&) = delete;

private:
    std::size_t mBlocks;
};

// Keeps the messages of the library's reports while it lives. One at a time.
class Reports {
public:
    Reports();
    ~Reports();
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;

    std::vector<std::string> Take();

private:
    static void Receive(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
                        bool* pHideForever);

    static Reports* sgActive;
    lyrsdk::KAssertFailedHandler mBefore;
    std::vector<std::string> mMessages;
};

}  // namespace lyrfuzz

// The entry point of a target; the fuzzer and the replay call it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t pSize);
