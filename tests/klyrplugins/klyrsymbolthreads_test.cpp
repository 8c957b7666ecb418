#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

TEST(SymbolThreads, ShareManyTexts) {
    LeakCheck lLeaks;
    std::atomic<int> lWrong{0};
    auto lWork = [&lWrong](int pSeed) {
        unsigned int lRandom = static_cast<unsigned int>(pSeed) * 2654435761u + 1;
        std::vector<KLyrStringSymbol> lHeld(8);
        for (int i = 0; i < 4000; ++i) {
            lRandom = lRandom * 1664525u + 1013904223u;
            const std::string lText = "shared" + std::to_string(lRandom >> 8 & 7);
            KLyrStringSymbol& lSlot = lHeld[lRandom >> 16 & 7];
            const bool lBracket = (lRandom >> 20 & 15) == 0;
            if (lBracket)
                KLyrStringSymbol::BracketOpened();
            lSlot = lText.c_str();
            const KLyrStringSymbol lCopy(lSlot);
            if (lText != lCopy.Buffer() || KLyrStringSymbol::FindText(lText.c_str()) != lCopy.Buffer())
                ++lWrong;
            if ((lRandom >> 24 & 3) == 0)
                lSlot = "";
            if (lBracket)
                KLyrStringSymbol::BracketClosed();
        }
    };
    std::vector<std::thread> lThreads;
    for (int i = 0; i < 4; ++i)
        lThreads.emplace_back(lWork, i);
    for (std::thread& lThread : lThreads)
        lThread.join();
    EXPECT_EQ(0, lWrong.load());
}

TEST(SymbolThreads, CopyAndDropOneSymbol) {
    LeakCheck lLeaks;
    const KLyrStringSymbol lOriginal("one text for all");
    auto lWork = [&lOriginal] {
        for (int i = 0; i < 5000; ++i) {
            KLyrStringSymbol lCopy(lOriginal);
            KLyrStringSymbol lSecond;
            lSecond = lCopy;
        }
    };
    std::thread lFirst(lWork);
    std::thread lSecond(lWork);
    lFirst.join();
    lSecond.join();
    EXPECT_STREQ("one text for all", lOriginal.Buffer());
}

}  // namespace
}  // namespace lyrsdk
