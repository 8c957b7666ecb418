#include "lyrfilesdk/klyrplugins/klyrsymbol.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

bool IsKept(const char* pText) {
    return KLyrStringSymbol::FindText(pText) != nullptr;
}

TEST(KLyrStringSymbol, SharesOneTextBetweenEqualSymbols) {
    LeakCheck lLeaks;
    const std::string lText = "position";
    const KLyrStringSymbol lFirst(lText.c_str());
    const KLyrStringSymbol lSecond("position");
    EXPECT_STREQ("position", lFirst.Buffer());
    EXPECT_NE(lText.c_str(), lFirst.Buffer());
    EXPECT_EQ(lFirst.Buffer(), lSecond.Buffer());
    EXPECT_TRUE(lFirst == lSecond);
    EXPECT_FALSE(lFirst != lSecond);
    const KLyrStringSymbol lOther("Position");
    EXPECT_TRUE(lFirst != lOther);
    EXPECT_FALSE(lFirst == lOther);
}

TEST(KLyrStringSymbol, IsEmptyWithoutAllocating) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    const KLyrStringSymbol lDefault;
    const KLyrStringSymbol lEmpty("");
    const KLyrStringSymbol lNull(static_cast<const char*>(nullptr));
    for (const KLyrStringSymbol* lSymbol : {&lDefault, &lEmpty, &lNull}) {
        EXPECT_TRUE(lSymbol->IsEmpty());
        EXPECT_STREQ("", lSymbol->Buffer());
        EXPECT_EQ(lDefault.Buffer(), static_cast<const char*>(*lSymbol));
        EXPECT_TRUE(*lSymbol == lDefault);
    }
    EXPECT_EQ(lBefore, MemoryProbe::Allocations());
    EXPECT_FALSE(KLyrStringSymbol("x").IsEmpty());
}

TEST(KLyrStringSymbol, ComparesWithTextsByTheirBytes) {
    const KLyrStringSymbol lSymbol("abc");
    const std::string lText = "abc";
    EXPECT_TRUE(lSymbol == lText.c_str());
    EXPECT_TRUE(lText.c_str() == lSymbol);
    EXPECT_TRUE(lSymbol != "abcd");
    EXPECT_TRUE("ab" != lSymbol);
    const char* lNull = nullptr;
    EXPECT_FALSE(lSymbol == lNull);
    EXPECT_TRUE(KLyrStringSymbol() == lNull);
    EXPECT_TRUE(KLyrStringSymbol() == "");
}

TEST(KLyrStringSymbol, CopiesMovesAndAssigns) {
    LeakCheck lLeaks;
    KLyrStringSymbol lSymbol("one");
    const KLyrStringSymbol lCopy(lSymbol);
    EXPECT_TRUE(lCopy == lSymbol);
    KLyrStringSymbol lMoved(std::move(lSymbol));
    EXPECT_TRUE(lSymbol.IsEmpty());
    EXPECT_TRUE(lMoved == lCopy);
    lSymbol = lMoved;
    EXPECT_TRUE(lSymbol == lCopy);
    lSymbol = "two";
    EXPECT_STREQ("two", lSymbol.Buffer());
    lSymbol = std::move(lMoved);
    EXPECT_STREQ("one", lSymbol.Buffer());
    EXPECT_TRUE(lMoved.IsEmpty());
    EXPECT_FALSE(IsKept("two"));
    lSymbol = "";
    EXPECT_TRUE(lSymbol.IsEmpty());
    lSymbol = nullptr;
    EXPECT_TRUE(lSymbol.IsEmpty());
}

TEST(KLyrStringSymbol, TakesItselfAndItsOwnText) {
    LeakCheck lLeaks;
    KLyrStringSymbol lSymbol("own text");
    const char* lText = lSymbol.Buffer();
    KLyrStringSymbol& lSame = lSymbol;
    lSymbol = lSame;
    EXPECT_EQ(lText, lSymbol.Buffer());
    lSymbol = std::move(lSame);
    EXPECT_EQ(lText, lSymbol.Buffer());
    lSymbol = lSymbol.Buffer();
    EXPECT_EQ(lText, lSymbol.Buffer());
    lSymbol = lSymbol.Buffer() + 4;
    EXPECT_STREQ("text", lSymbol.Buffer());
}

TEST(KLyrStringSymbol, FreesATextWithItsLastSymbol) {
    LeakCheck lLeaks;
    {
        KLyrStringSymbol lFirst("counted");
        {
            KLyrStringSymbol lSecond("counted");
            KLyrStringSymbol lThird(lSecond);
        }
        EXPECT_TRUE(IsKept("counted"));
        EXPECT_STREQ("counted", lFirst.Buffer());
    }
    EXPECT_FALSE(IsKept("counted"));
}

TEST(KLyrStringSymbol, FindsTextsWithoutInterningThem) {
    LeakCheck lLeaks;
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_EQ(nullptr, KLyrStringSymbol::FindText("nowhere"));
    EXPECT_EQ(lBefore, MemoryProbe::Allocations());
    const KLyrStringSymbol lSymbol("somewhere");
    EXPECT_EQ(lSymbol.Buffer(), KLyrStringSymbol::FindText("somewhere"));
    EXPECT_EQ(nullptr, KLyrStringSymbol::FindText("nowhere"));
    EXPECT_EQ(nullptr, KLyrStringSymbol::FindText("some"));
    EXPECT_EQ(KLyrStringSymbol().Buffer(), KLyrStringSymbol::FindText(""));
    EXPECT_EQ(KLyrStringSymbol().Buffer(), KLyrStringSymbol::FindText(nullptr));
}

TEST(KLyrStringSymbol, KeepsTextsWhileABracketIsOpen) {
    LeakCheck lLeaks;
    KLyrStringSymbol::BracketOpened();
    const char* lAddress = nullptr;
    {
        const KLyrStringSymbol lSymbol("kept");
        lAddress = lSymbol.Buffer();
    }
    EXPECT_STREQ("kept", lAddress);
    EXPECT_EQ(lAddress, KLyrStringSymbol::FindText("kept"));
    KLyrStringSymbol::BracketOpened();
    KLyrStringSymbol::BracketClosed();
    EXPECT_STREQ("kept", lAddress);
    KLyrStringSymbol::BracketClosed();
    EXPECT_FALSE(IsKept("kept"));
}

TEST(KLyrStringSymbol, RevivesATextThatIsInternedAgainInsideTheBracket) {
    LeakCheck lLeaks;
    KLyrStringSymbol lSymbol;
    KLyrStringSymbol::BracketOpened();
    lSymbol = "phoenix";
    const char* lAddress = lSymbol.Buffer();
    // It falls to nothing and comes back more than once.
    for (int i = 0; i < 3; ++i) {
        lSymbol = "";
        lSymbol = "phoenix";
        EXPECT_EQ(lAddress, lSymbol.Buffer());
    }
    KLyrStringSymbol::BracketClosed();
    EXPECT_STREQ("phoenix", lAddress);
    EXPECT_EQ(lAddress, KLyrStringSymbol::FindText("phoenix"));
    lSymbol = "";
    EXPECT_FALSE(IsKept("phoenix"));
}

TEST(KLyrStringSymbol, IgnoresABracketThatIsClosedWithoutBeingOpen) {
    KLyrStringSymbol::BracketClosed();
    KLyrStringSymbol::BracketOpened();
    { const KLyrStringSymbol lSymbol("after a stray close"); }
    EXPECT_TRUE(IsKept("after a stray close"));
    KLyrStringSymbol::BracketClosed();
    EXPECT_FALSE(IsKept("after a stray close"));
}

TEST(KLyrStringSymbol, HoldsManyTexts) {
    LeakCheck lLeaks;
    const std::size_t lBefore = MemoryProbe::LiveBytes();
    {
        const int lCount = 20000;
        std::vector<KLyrStringSymbol> lSymbols;
        lSymbols.reserve(static_cast<std::size_t>(lCount));
        const std::size_t lAllocations = MemoryProbe::Allocations();
        for (int i = 0; i < lCount; ++i)
            lSymbols.emplace_back(("name" + std::to_string(i)).c_str());
        // One for each text, and the table's doublings.
        EXPECT_LE(MemoryProbe::Allocations() - lAllocations, static_cast<std::size_t>(lCount) + 16);
        for (int i = 0; i < lCount; ++i) {
            const std::string lText = "name" + std::to_string(i);
            ASSERT_EQ(lText, lSymbols[static_cast<std::size_t>(i)].Buffer());
            ASSERT_EQ(lSymbols[static_cast<std::size_t>(i)].Buffer(), KLyrStringSymbol::FindText(lText.c_str()));
        }
        // Every other one goes; the rest stay reachable.
        for (int i = 0; i < lCount; i += 2)
            lSymbols[static_cast<std::size_t>(i)] = "";
        for (int i = 0; i < lCount; ++i)
            ASSERT_EQ(i % 2 == 1, IsKept(("name" + std::to_string(i)).c_str()));
    }
    EXPECT_EQ(lBefore, MemoryProbe::LiveBytes());
}

TEST(KLyrStringSymbol, KeepsItsTextWithoutMemory) {
    LeakCheck lLeaks;
    KLyrStringSymbol lSymbol("before");
    {
        FailAllocations lFail(0, true);
        EXPECT_FALSE(lSymbol.Assign("another text"));
        lSymbol = "another text";
        EXPECT_STREQ("before", lSymbol.Buffer());
        EXPECT_TRUE(KLyrStringSymbol("another text").IsEmpty());
        EXPECT_TRUE(lSymbol.Assign("before"));
        EXPECT_TRUE(lSymbol.Assign(""));
        EXPECT_TRUE(lSymbol.IsEmpty());
        EXPECT_EQ(3u, lFail.Failed());
    }
    // The first text needs two blocks, the table's and its own; whichever fails, nothing stays behind.
    for (std::size_t i = 0; i < 2; ++i) {
        FailAllocations lFail(i, false);
        const std::size_t lBlocks = MemoryProbe::LiveBlocks();
        EXPECT_FALSE(lSymbol.Assign("first"));
        EXPECT_EQ(1u, lFail.Failed());
        EXPECT_EQ(lBlocks, MemoryProbe::LiveBlocks());
    }
    EXPECT_TRUE(lSymbol.Assign("first"));
}

// Every length takes another way through the hash, and every byte counts.
TEST(KLyrStringSymbol, TellsTextsOfEveryLengthApartByEachByte) {
    LeakCheck lLeaks;
    std::vector<KLyrStringSymbol> lSymbols;
    std::vector<std::string> lTexts;
    for (std::size_t lLength = 1; lLength <= 70; ++lLength) {
        lTexts.emplace_back(lLength, 'a');
        for (std::size_t lPlace = 0; lPlace < lLength; ++lPlace) {
            for (const char lByte : {'b', '\x01', '\x7f', '\x80', '\xff', '\xe1'}) {
                lTexts.emplace_back(lLength, 'a');
                lTexts.back()[lPlace] = lByte;
            }
        }
    }
    for (const std::string& lText : lTexts)
        lSymbols.emplace_back(lText.c_str());
    for (std::size_t i = 0; i < lTexts.size(); ++i) {
        EXPECT_EQ(lTexts[i], lSymbols[i].Buffer());
        EXPECT_EQ(lSymbols[i].Buffer(), KLyrStringSymbol::FindText(lTexts[i].c_str()));
        // A copy at another address, whatever stands behind its end.
        const std::string lShifted = "x" + lTexts[i];
        EXPECT_EQ(lSymbols[i].Buffer(), KLyrStringSymbol::FindText(lShifted.c_str() + 1));
    }
}

TEST(KLyrStringSymbol, GoesOnWhenTheTableCannotGrow) {
    LeakCheck lLeaks;
    // The failing request is each one in turn; every text that was taken stays reachable. Two of the requests are for
    // more room in the table, and texts do without that.
    int lFailedWithoutRefusal = 0;
    for (std::size_t lFailing = 0; lFailing < 140; ++lFailing) {
        std::vector<KLyrStringSymbol> lSymbols(130);
        FailAllocations lFail(lFailing, false);
        int lRefused = 0;
        for (std::size_t i = 0; i < lSymbols.size(); ++i)
            lRefused += !lSymbols[i].Assign(("grow" + std::to_string(i)).c_str());
        EXPECT_LE(lRefused, 1);
        lFailedWithoutRefusal += lFail.Failed() == 1 && lRefused == 0;
        for (std::size_t i = 0; i < lSymbols.size(); ++i) {
            const std::string lText = "grow" + std::to_string(i);
            EXPECT_EQ(lSymbols[i].IsEmpty() ? nullptr : lSymbols[i].Buffer(),
                      KLyrStringSymbol::FindText(lText.c_str()));
        }
    }
    EXPECT_EQ(2, lFailedWithoutRefusal);
}

}  // namespace
}  // namespace lyrsdk
