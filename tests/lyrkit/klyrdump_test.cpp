#include "lyrfilesdk/lyrkit/klyrdump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/support/failing_memory.h"
#include "tests/support/handle_pages.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

// What is written for a property and all below it.
std::string DumpOf(const KLyrPropertyHandle& pProperty, const KLyrDumpStyle& pStyle = {}) {
    std::ostringstream lStream;
    EXPECT_TRUE(lyrDump(lStream, pProperty, pStyle));
    return lStream.str();
}
std::string FamilyDumpOf(const KLyrPropertyHandle& pPage, const KLyrDumpStyle& pStyle = {}) {
    std::ostringstream lStream;
    EXPECT_TRUE(lyrDumpFamily(lStream, pPage, pStyle));
    return lStream.str();
}

//   lamp:       0 "lamp"   1 "bulb"   2 "power" (double, below bulb, 0 to 100)   3 "colour" (an enumeration)
//   desk lamp:  an instance of lamp with its own power
//   switch:     0 "switch" (bool)
struct Lamps {
    static constexpr int kBulb = 1;
    static constexpr int kPower = 2;
    static constexpr int kColour = 3;

    Lamps() {
        mLamp->Add(0, "bulb", eUNIDENTIFIED);
        mLamp->Add(kBulb, "power", eDOUBLE1);
        mLamp->Add(0, "colour", eENUM);
        const double lLow = 0;
        const double lHigh = 100;
        mLamp->SetMinMax(kPower, KLyrPropertyInfo::eValueMin, &lLow, eDOUBLE1);
        mLamp->SetMinMax(kPower, KLyrPropertyInfo::eValueMax, &lHigh, eDOUBLE1);
        mLamp->SetMinMax(kPower, KLyrPropertyInfo::eValueSoftMax, &lHigh, eDOUBLE1);
        mLamp->SetLabel(kPower, "Power");
        mLamp->SetUserTag(kPower, 5);
        mLamp->AddEnumValue(kColour, "cold");
        mLamp->AddEnumValue(kColour, "wa|rm");
        mLamp->ModifyFlags(kColour, LyrPropertyFlags::eANIMATABLE | LyrPropertyFlags::eUSER, true, false);
        SetNumber(mDesk, kPower, 75.5);
        mDesk->ModifyFlags(kColour, LyrPropertyFlags::eHIDDEN, true, false);
        mDesk->ModifyFlags(kColour, LyrPropertyFlags::eUSER, false, false);
        mDesk->ConnectSrc(kColour, mSwitch.get(), 0, eLyrConnectionData);
    }

    OwnedPage mLamp = MakeRoot("lamp");
    OwnedPage mDesk = MakeInstance(mLamp);
    OwnedPage mSwitch = MakeRoot("switch", eBOOL1);
};

class DumpTest : public PageTest {
protected:
    KLyrPropertyHandle Desk(int pId = 0) const { return KLyrPropertyHandle(mLamps.mDesk.get(), pId); }
    KLyrPropertyHandle Lamp(int pId = 0) const { return KLyrPropertyHandle(mLamps.mLamp.get(), pId); }

    Lamps mLamps;
};

TEST_F(DumpTest, APageShowsEachPropertyWithWhatItHoldsItself) {
    EXPECT_EQ(DumpOf(Desk()),
              "page 0 \"lamp\" instance of page 1\n"
              "  ...-  (root): eUNIDENTIFIED\n"
              "  ...-    bulb: eUNIDENTIFIED\n"
              "  .v.-      bulb/power: eDOUBLE1 = 75.5 limits 0..100 soft ..100 label \"Power\" tag 5\n"
              "  ..fc    colour: eENUM = 0 (cold) [ANIMATABLE, no USER, HIDDEN*] choices \"cold\"|\"wa|rm\"\n"
              "              <- page 2 \"switch\" (data)\n");
}

TEST_F(DumpTest, ASubtreeIsShownAlone) {
    EXPECT_EQ(DumpOf(Lamp(Lamps::kBulb)),
              "page 0 \"lamp\"\n"
              "  dvf-  bulb: eUNIDENTIFIED\n"
              "  dvf-    bulb/power: eDOUBLE1 = 0 limits 0..100 soft ..100 label \"Power\" tag 5\n");
}

TEST_F(DumpTest, TheStyleLeavesOutWhatIsInheritedAndDescriptions) {
    KLyrDumpStyle lStyle;
    lStyle.mOnlyOwn = true;
    lStyle.mDescriptions = false;
    lStyle.mSeparator = '.';
    EXPECT_EQ(DumpOf(Desk(), lStyle),
              "page 0 \"lamp\" instance of page 1\n"
              "  .v.-      bulb.power: eDOUBLE1 = 75.5 limits 0..100 soft ..100\n"
              "  ..fc    colour: eENUM = 0 (cold) [ANIMATABLE, no USER, HIDDEN*]\n"
              "              <- page 2 \"switch\" (data)\n");
}

TEST_F(DumpTest, WhateverAPageHoldsMakesAPropertyItsOwn) {
    KLyrDumpStyle lStyle;
    lStyle.mOnlyOwn = true;
    OwnedPage lHall = MakeInstance(mLamps.mLamp);
    const KLyrPropertyHandle lRoot(lHall.get(), 0);
    EXPECT_EQ(DumpOf(lRoot, lStyle).find("bulb"), std::string::npos);
    lHall->ModifyFlags(Lamps::kPower, LyrPropertyFlags::eHIDDEN, true, false);
    EXPECT_NE(DumpOf(lRoot, lStyle).find("bulb/power"), std::string::npos) << "flags";
    EXPECT_EQ(DumpOf(lRoot, lStyle).find("colour"), std::string::npos);
    lHall->ConnectSrc(Lamps::kColour, mLamps.mSwitch.get(), 0, eLyrConnectionData);
    EXPECT_NE(DumpOf(lRoot, lStyle).find("colour"), std::string::npos) << "connections";
}

TEST_F(DumpTest, ASoftMinimumAloneIsShown) {
    const double lLow = 2;
    const int lId = mLamps.mLamp->Add(0, "gap", eDOUBLE1);
    mLamps.mLamp->SetMinMax(lId, KLyrPropertyInfo::eValueSoftMin, &lLow, eDOUBLE1);
    EXPECT_NE(DumpOf(Lamp(lId)).find(" soft 2.."), std::string::npos) << DumpOf(Lamp(lId));
}

TEST_F(DumpTest, AFamilyIsShownFromTheTopWhicheverPageIsGiven) {
    const std::string lText = FamilyDumpOf(Desk());
    EXPECT_EQ(lText.find("page 0 \"lamp\"\n"), 0u);
    EXPECT_NE(lText.find("\npage 1 \"lamp\" instance of page 0\n"), std::string::npos);
    EXPECT_EQ(lText, FamilyDumpOf(Lamp()));
    EXPECT_EQ(lText, FamilyDumpOf(Lamp(77))) << "only the page counts";
}

TEST_F(DumpTest, FamiliesThatAreConnectedAreNumberedTogetherAndShownOnce) {
    const KLyrPropertyHandle lPages[] = {Desk(), KLyrPropertyHandle(), KLyrPropertyHandle(mLamps.mSwitch.get(), 0),
                                         Lamp()};
    std::ostringstream lStream;
    EXPECT_TRUE(lyrDumpFamilies(lStream, lPages, 4));
    const std::string lText = lStream.str();
    EXPECT_NE(lText.find("<- page 2 \"switch\" (data)\npage 2 \"switch\"\n"), std::string::npos) << lText;
    EXPECT_NE(lText.find("-> page 1 \"lamp\" colour (data)\n"), std::string::npos) << lText;
    std::size_t lHeadings = 0;
    for (std::size_t i = 0; (i = lText.find("page ", i)) != std::string::npos; ++i)
        lHeadings += i == 0 || lText[i - 1] == '\n' ? 1 : 0;
    EXPECT_EQ(lHeadings, 3u);
}

TEST_F(DumpTest, TheTextDoesNotDependOnWhereThePagesAre) {
    const std::string lText = FamilyDumpOf(Lamp());
    std::vector<OwnedPage> lOthers;
    for (int i = 0; i < 20; ++i) {
        lOthers.push_back(MakeRoot("other"));
        const Lamps lAgain;
        EXPECT_EQ(FamilyDumpOf({lAgain.mLamp.get(), 0}), lText);
    }
}

TEST_F(DumpTest, NamesOfAnyBytesMakeNoNewLines) {
    std::string lBytes;
    for (int lByte = 1; lByte < 256; ++lByte)
        lBytes += static_cast<char>(lByte);
    const OwnedPage lPage = MakeRoot(lBytes.c_str(), eENUM);
    lPage->SetLabel(0, lBytes.c_str());
    lPage->AddEnumValue(0, lBytes.c_str());
    const int lChild = lPage->Add(0, lBytes.c_str(), eSTRING);
    SetText(lPage, lChild, lBytes.c_str());
    lPage->ConnectSrc(lChild, lPage.get(), 0, eLyrConnectionData);
    const std::string lText = DumpOf({lPage.get(), 0});
    EXPECT_EQ(std::count(lText.begin(), lText.end(), '\n'), 5);
    for (const char lByte : lText)
        EXPECT_TRUE(lByte == '\n' || static_cast<unsigned char>(lByte) >= 0x20);
}

TEST_F(DumpTest, TypedPropertiesShowWhatTypesThem) {
    const OwnedPage lType = MakeRoot("Tran\"s", eDOUBLE1);
    const OwnedPage lPage = MakeTyped("root", lType);
    EXPECT_EQ(DumpOf({lPage.get(), 0}), "page 0 \"root\"\n  dvf-  (root): eDOUBLE1 typed by \"Tran\\\"s\" = 0\n");
}

TEST_F(DumpTest, PropertiesWithoutAPlaceInTheTreeAreShownOnce) {
    const OwnedPage lPage = MakeRoot("root");
    lPage->Add(77, "orphan", eINTEGER1);  // 1
    lPage->Add(1, "below", eINTEGER1);    // 2
    lPage->Add(-1, "top", eINTEGER1);     // 3
    lPage->Add(5, "circle", eINTEGER1);   // 4
    lPage->Add(4, "circle", eINTEGER1);   // 5
    lPage->Add(6, "itself", eINTEGER1);   // 6
    const std::string lText = DumpOf({lPage.get(), 0});
    EXPECT_EQ(std::count(lText.begin(), lText.end(), '\n'), 8) << lText;
    EXPECT_NE(lText.find("  dvf-    orphan/below: eINTEGER1 = 0\n"), std::string::npos) << lText;
}

TEST_F(DumpTest, APageThatLostItsRootPropertyIsShown) {
    ASSERT_TRUE(mLamps.mLamp->RemoveOwnEntry(0));
    const std::string lText = DumpOf(Lamp());
    EXPECT_EQ(lText.find("page 0 \"\"\n  dvf-  bulb"), 0u) << lText;
}

TEST_F(DumpTest, AConnectionWhoseOtherEndIsGoneIsNoMore) {
    mLamps.mSwitch.reset();
    EXPECT_EQ(DumpOf(Desk()).find("<-"), std::string::npos);
}

TEST_F(DumpTest, AConnectionItemOfNoPageIsNowhere) {
    KLyrPropertyConnect* lNowhere = KLyrPropertyConnect::Create(nullptr, 7);
    ASSERT_NE(lNowhere, nullptr);
    lNowhere->IncRef();
    OwnedRoot lPage(KLyrPropertyHandle::Create("page", eUNIDENTIFIED));
    const KLyrPropertyHandle lPeer = lPage->Add("peer", eREFERENCE);
    ASSERT_TRUE(lPeer.GetPage()->ConnectSrc(lPeer.GetId(), lPage->GetPage(), 0, eLyrConnectionData));
    KLyrPropertyConnect* lItem = lPeer.GetPage()->GetPropertyItem<KLyrPropertyConnect>(nullptr, lPeer.GetId());
    ASSERT_TRUE(lItem->ConnectSrc(lNowhere, eLyrConnectionData));
    EXPECT_NE(DumpOf(*lPage).find("<- nowhere ("), std::string::npos) << DumpOf(*lPage);
    std::ostringstream lGraph;
    EXPECT_TRUE(lyrDumpConnectionsAsDot(lGraph, *lPage));
    lNowhere->DecRef();
    EXPECT_EQ(DumpOf(*lPage).find("nowhere"), std::string::npos);
}

TEST_F(DumpTest, WhatDoesNotExistIsRefusedAndNothingIsWritten) {
    std::ostringstream lStream;
    for (const KLyrPropertyHandle& lProperty :
         {KLyrPropertyHandle(), KLyrPropertyHandle(nullptr, 0), Desk(-1), Desk(99), Desk(-5)})
        EXPECT_FALSE(lyrDump(lStream, lProperty));
    EXPECT_FALSE(lyrDumpFamily(lStream, KLyrPropertyHandle()));
    EXPECT_FALSE(lyrDumpFamilies(lStream, nullptr, 3));
    const KLyrPropertyHandle lDesk = Desk();
    EXPECT_FALSE(lyrDumpFamilies(lStream, &lDesk, 0));
    EXPECT_FALSE(lyrDumpFamilies(lStream, &lDesk, -1));
    EXPECT_EQ(lStream.str(), "");
}

TEST_F(DumpTest, WithoutMemoryForNumbersAndTextsTheAnswerIsFalseOrTheTextIsWhole) {
    SetText(mLamps.mLamp, mLamps.mLamp->Add(0, "text", eSTRING), std::string(50, 'x').c_str());
    const std::string lWhole = FamilyDumpOf(Desk());
    WithEveryAllocationFailing([&](const FailurePoint& pPoint) {
        std::ostringstream lStream;
        const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
        const bool lDone = lyrDumpFamily(lStream, Desk());
        EXPECT_TRUE(lDone || lFail.Failed() != 0);
        if (lDone && lFail.Failed() != 0) {
            EXPECT_NE(lStream.str().find('?'), std::string::npos) << "what could not be read";
        } else if (lDone) {
            EXPECT_EQ(lStream.str(), lWhole);
        }
        return lFail.Failed();
    });
}

TEST(Dump, EachPropertyOfRandomFamiliesHasALine) {
    const LeakCheck lLeaks;
    for (unsigned lSeed = 0; lSeed < 60 && !testing::Test::HasFailure(); ++lSeed) {
        SCOPED_TRACE(lSeed);
        RandomFamily lFamily(lSeed);
        lFamily.Change(250);
        for (const OwnedPage& lPage : lFamily.Pages()) {
            const std::string lText = DumpOf({lPage.get(), 0});
            int lIds = lPage->GetPropertyEntry(0) ? 1 : 0;
            for (int lId = 0; (lId = lPage->GetMinimumPropertyIdAndEntry(lId)) != -1;)
                ++lIds;
            EXPECT_EQ(std::count(lText.begin(), lText.end(), '\n'), lIds + 1) << lText;
        }
    }
}

TEST(Dump, DeepTreesAndLongChainsNeedNoStack) {
    const LeakCheck lLeaks;
    RunOnSmallStack([] {
        const OwnedPage lDeep = MakeRoot();
        for (int i = 0; i < 3000; ++i)
            lDeep->Add(i, "x", eINTEGER1);
        std::string lText = DumpOf({lDeep.get(), 0});
        EXPECT_EQ(std::count(lText.begin(), lText.end(), '\n'), 3002);

        std::vector<OwnedPage> lChain;
        lChain.push_back(MakeRoot());
        for (int i = 0; i < 3000; ++i)
            lChain.push_back(MakeInstance(lChain.back()));
        lText = FamilyDumpOf({lChain.back().get(), 0});
        EXPECT_EQ(std::count(lText.begin(), lText.end(), '\n'), 2 * 3001);
        while (!lChain.empty())
            lChain.pop_back();
    });
}

}  // namespace
}  // namespace lyrsdk
