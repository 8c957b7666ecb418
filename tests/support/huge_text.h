#pragma once

// A text longer than an int can say, for programs whose addresses reach that far.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lyrsdk {

#if SIZE_MAX > UINT_MAX
#define LYRSDK_TEST_HUGE_TEXT
#endif

// At least INT_MAX + 1 times 'x', then pTail. The same few pages of memory are seen all along the text, so that it
// takes address space and no more.
class HugeText {
public:
    explicit HugeText(const char* pTail) {
        const int lFile = memfd_create("huge text", 0);
        EXPECT_EQ(ftruncate(lFile, static_cast<off_t>(kPieceSize)), 0);
        mBegin = static_cast<char*>(
            mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
        EXPECT_NE(mBegin, MAP_FAILED);
        for (std::size_t i = 0; i < kPieceCount; ++i) {
            EXPECT_NE(
                mmap(mBegin + i * kPieceSize, kPieceSize, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, lFile, 0),
                MAP_FAILED);
        }
        close(lFile);
        std::memset(mBegin, 'x', kPieceSize);
        std::memcpy(mBegin + kPieceCount * kPieceSize, pTail, std::strlen(pTail) + 1);
    }
    ~HugeText() { munmap(mBegin, kSize); }
    HugeText(const HugeText&) = delete;
    HugeText& operator=(const HugeText&) = delete;

    const char* Text() const { return mBegin; }

private:
    static constexpr std::size_t kPieceSize = std::size_t{1} << 22;
    static constexpr std::size_t kPieceCount = static_cast<std::size_t>(INT_MAX) / kPieceSize + 1;
    // The tail has the last piece to itself.
    static constexpr std::size_t kSize = (kPieceCount + 1) * kPieceSize;

    char* mBegin;
};

}  // namespace lyrsdk
