#include "lyrfilesdk/lyrkit/lyrkit.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/handle_pages.h"
#include "tests/support/on_all_threads.h"

// Threads that use the kit at the same time: each on families of its own, or all reading one.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

constexpr int kRounds = 30;

class KitThreads : public HandleTest {};

// What the kit tells of one property.
std::string Told(const H& pProperty) {
    std::ostringstream lTold;
    lyrDumpPath(lTold, pProperty);
    lyrDumpValue(lTold << ' ', pProperty);
    lyrDumpLimits(lTold << ' ', pProperty, false);
    lyrDumpFlags(lTold << ' ', pProperty.GetFlags());
    const KLyrExplanation lFound = lyrExplain(pProperty);
    lTold << ' ' << lyrResultText(lFound.mValue.mOrigin) << lFound.mDescription.mDistance;
    lTold << ' ' << lyrResultText(lyrValidate(pProperty)) << lyrOverrideOf(pProperty).mIsHeld;
    const KString lText("seven");
    lTold << ' ' << lyrWhyRefused(pProperty, eSTRING, eLyrWrite, &lText).mText;
    lTold << ' ' << lyrWhyRefused(pProperty, eREFERENCE, eLyrRead).mText;
    lTold << ' ' << lyrClamp(pProperty, 1e6).value_or(-1.0);
    if (const char* lChoice = lyrGetEnumText(pProperty))
        lTold << ' ' << lChoice << lyrFindEnumIndex(pProperty, lChoice);
    lTold << ' ' << lyrResultText(lyrPushItemsOf(pProperty).mResult);
    lyrVisitPushEffects(pProperty, [&](const KLyrPushEffect& pEffect) {
        lTold << ' ' << lyrResultText(pEffect.mValue) << pEffect.IsChange();
    });
    return lTold.str() + '\n';
}

std::string ToldBelow(const H& pParent) {
    std::string lTold;
    for (const H& lChild : lyrChildren(pParent))
        lTold += Told(lChild) + ToldBelow(lChild);
    return lTold;
}

std::string Dumped(const H& pPage) {
    std::ostringstream lDumped;
    EXPECT_TRUE(lyrDumpFamily(lDumped, pPage));
    EXPECT_TRUE(lyrDumpConnectionsAsDot(lDumped, pPage));
    return lDumped.str();
}

void AddLamp(const H& pLamp, int pRound) {
    const KLyrLookupBracket lBracket(pLamp);
    const H lPower = lyrBuild(pLamp, "power", 40.0 + pRound).Limits(0.0, 100.0).Label("Power").GetHandle();
    lyrBuild(pLamp, "mode", eENUM).EnumTexts({"off", "dim", "on"}).DefaultText("dim");
    const H lPlace = lyrAdd(pLamp, "place", eUNIDENTIFIED);
    for (const char* lName : {"x", "y", "z"})
        lyrAdd(lPlace, lName, 0.5 * pRound);
    lyrAdd(pLamp, "made by", "nobody");
    lPlace.GetChild().ConnectSrc(lPower, eLyrConnectionData);
}

// One round of work on a family of its own; what is seen of it at several points.
std::string WorkOnLamps(int pRound) {
    const KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    AddLamp(*lLamp, pRound);
    const KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);
    const KLyrOwnedPage lRed = KLyrOwnedPage::Create(*lDesk);
    const KLyrBoundProperty lPower(lLamp->Find("power", true));
    EXPECT_EQ(eLyrSetWritten, lPower.Set(*lRed, 150.0 + pRound));
    H lMode = lDesk->Find("mode", true);
    EXPECT_EQ(eLyrSetWritten, lyrSetEnumText(lMode, "on"));
    EXPECT_EQ(2, lyrInsertEnumText(lMode, 0, "broken"));
    lyrSet(lRed->Find("made by", true), "nobody", eLyrSetPin);
    lyrSet(lRed->Find("place", true).GetChild(), pRound, eLyrSetPin);
    std::string lSeen = ToldBelow(*lRed) + Dumped(*lLamp);
    EXPECT_EQ(KLyrPushResult::ePushed, lyrPushProperty(lPower.On(*lRed)));
    lSeen += std::to_string(lyrDropRedundant(*lRed)) + Dumped(*lDesk);
    lSeen += std::to_string(lyrRevertAll(*lDesk)) + Dumped(*lLamp);
    return lSeen;
}

TEST_F(KitThreads, WorkOnFamiliesOfTheirOwnAsIfAlone) {
    std::vector<std::string> lExpected;
    for (int lRound = 0; lRound < kRounds; ++lRound)
        lExpected.push_back(WorkOnLamps(lRound));
    ASSERT_NE(lExpected[0], lExpected[1]);
    OnAllThreads([&](int pThread) {
        for (int i = 0; i < kRounds; ++i) {
            const int lRound = (i + pThread * 11) % kRounds;
            EXPECT_EQ(lExpected[static_cast<std::size_t>(lRound)], WorkOnLamps(lRound)) << lRound;
        }
    });
}

TEST_F(KitThreads, ReadOneFamilyThatNobodyChanges) {
    const KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    AddLamp(*lLamp, 0);
    const KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);
    const KLyrBoundProperty lPower(lLamp->Find("power", true));
    lPower.Set(*lDesk, 90.0);
    const std::string lExpected = ToldBelow(*lDesk) + Dumped(*lLamp);
    OnAllThreads([&](int) {
        for (int lRound = 0; lRound < kRounds; ++lRound) {
            EXPECT_EQ(lExpected, ToldBelow(*lDesk) + Dumped(*lLamp));
            EXPECT_EQ(90.0, lPower.Get<double>(*lDesk));
        }
    });
}

}  // namespace
}  // namespace lyrsdk
