#include "lyrfilesdk/lyrkit/klyrlookupbracket.h"

#include <gtest/gtest.h>

#include <optional>
#include <type_traits>

#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/handle_pages.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

static_assert(!std::is_copy_constructible_v<KLyrLookupBracket> && !std::is_move_constructible_v<KLyrLookupBracket>);
static_assert(!std::is_convertible_v<H, KLyrLookupBracket>, "no bracket opens by chance");

class LookupBracket : public HandleTest {
protected:
    OwnedRoot mLamp{H::Create("lamp", eUNIDENTIFIED)};
    H mPower = lyrAdd(*mLamp, "power", 60.0);

    bool IsOpen() const { return mLamp->GetPage()->IsCreateOrFindOpen(); }
    // Inside a bracket the map answers, which minds the case whatever is asked for.
    bool IgnoresCase() const { return mLamp->Find("POWER", false).Valid(); }
};

TEST_F(LookupBracket, IsOpenForTheTimeOfItsScope) {
    EXPECT_FALSE(IsOpen());
    {
        const KLyrLookupBracket lBracket(*mLamp);
        EXPECT_TRUE(lBracket.Holds());
        EXPECT_TRUE(IsOpen());
        EXPECT_EQ(mLamp->Find("power", true), mPower);
        EXPECT_EQ(IgnoresCase(), false);
        const H lColour = lyrAdd(*mLamp, "colour", "white");
        EXPECT_EQ(mLamp->Find("colour", true), lColour);
    }
    EXPECT_FALSE(IsOpen());
    EXPECT_TRUE(IgnoresCase());
}

TEST_F(LookupBracket, LeavesAnotherOneOpen) {
    const KLyrLookupBracket lOuter(*mLamp);
    {
        const KLyrLookupBracket lInner(mPower);
        EXPECT_FALSE(lInner.Holds());
        EXPECT_TRUE(IsOpen());
    }
    EXPECT_TRUE(IsOpen());
    EXPECT_FALSE(IgnoresCase());
}

TEST_F(LookupBracket, LeavesOneOpenThatWasOpenedByHand) {
    mLamp->BeginCreateOrFindProperty();
    {
        const KLyrLookupBracket lInner(*mLamp);
        EXPECT_FALSE(lInner.Holds());
    }
    EXPECT_TRUE(IsOpen());
    mLamp->EndCreateOrFindProperty();
    EXPECT_FALSE(IsOpen());
}

TEST_F(LookupBracket, EndsBeforeItsScopeWhenItIsToldTo) {
    KLyrLookupBracket lOuter(*mLamp);
    KLyrLookupBracket lInner(*mLamp);
    lInner.End();
    EXPECT_TRUE(IsOpen());
    lOuter.End();
    EXPECT_FALSE(lOuter.Holds());
    EXPECT_FALSE(IsOpen());
    const KLyrLookupBracket lLater(*mLamp);
    lOuter.End();
    EXPECT_TRUE(IsOpen()) << "the later one's";
}

TEST_F(LookupBracket, IsThatOfOnePage) {
    OwnedRoot lDesk(H::Create(*mLamp));
    const KLyrLookupBracket lOfLamp(*mLamp);
    EXPECT_FALSE(lDesk->GetPage()->IsCreateOrFindOpen());
    const KLyrLookupBracket lOfDesk(*lDesk);
    EXPECT_TRUE(lOfDesk.Holds());
    EXPECT_EQ(lDesk->Find("power", true), On(*lDesk, mPower));
}

TEST_F(LookupBracket, FollowsWhatIsRead) {
    std::optional<KLyrLookupBracket> lBracket;
    lBracket.emplace(*mLamp);
    OwnedRoot lDesk(H::Create(*mLamp));
    lBracket.emplace(*lDesk);
    EXPECT_FALSE(IsOpen());
    lBracket.reset();
    EXPECT_FALSE(lDesk->GetPage()->IsCreateOrFindOpen());
}

TEST_F(LookupBracket, StaysClosedWithoutAPage) {
    KLyrLookupBracket lNowhere{H()};
    EXPECT_FALSE(lNowhere.Holds());
    lNowhere.End();
    EXPECT_FALSE(IsOpen());
}

TEST_F(LookupBracket, StaysClosedWithoutMemory) {
    const FailAllocations lFail(0, true);
    const KLyrLookupBracket lBracket(*mLamp);
    EXPECT_FALSE(lBracket.Holds());
    EXPECT_TRUE(IgnoresCase()) << "lookups look at the children";
}

}  // namespace
}  // namespace lyrsdk
