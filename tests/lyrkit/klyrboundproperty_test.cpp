#include "lyrfilesdk/lyrkit/klyrboundproperty.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrpropertyranges.h"
#include "lyrfilesdk/lyrkit/klyrtypedadd.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

class BoundProperty : public HandleTest {
protected:
    OwnedRoot mLamp{H::Create("lamp", eUNIDENTIFIED)};
    H mElectric = lyrAdd(*mLamp, "electric", eUNIDENTIFIED);
    H mPower = lyrAdd(mElectric, "Power", 60.0);
    OwnedRoot mDesk{H::Create(*mLamp)};
    OwnedRoot mHall{H::Create(*mDesk)};
};

TEST_F(BoundProperty, IsReadAndWrittenOnEveryPageOfTheFamily) {
    const KLyrBoundProperty lPower(*mLamp, "electric/Power");
    ASSERT_TRUE(lPower.IsBound());
    EXPECT_EQ(lPower.GetId(), mPower.GetId());
    EXPECT_EQ(lPower.Get<double>(*mHall), 60.0);
    EXPECT_EQ(lPower.Set(*mDesk, 40), eLyrSetWritten);
    EXPECT_EQ(lPower.Get<int>(*mHall), 40);
    EXPECT_EQ(lPower.Get<double>(*mLamp), 60.0);
    EXPECT_EQ(lPower.Set(*mHall, 40.0), eLyrSetAlreadySo);
    EXPECT_EQ(lPower.Set(*mHall, 40.0, eLyrSetPin), eLyrSetWritten);
    EXPECT_EQ(lPower.Set(*mDesk, "60"), eLyrSetCollapsed);
    EXPECT_EQ(lPower.On(mElectric), mPower) << "whatever the handle's own id";
    for (const H& lInstance : lyrAllInstances(*mLamp))
        EXPECT_EQ(lPower.GetState(lInstance), eLyrBoundHere);
}

TEST_F(BoundProperty, IsLookedUpAsFindDoes) {
    EXPECT_TRUE(KLyrBoundProperty(*mHall, "electric/Power").IsBound()) << "from an instance";
    EXPECT_TRUE(KLyrBoundProperty(mElectric, "Power").IsBound());
    EXPECT_TRUE(KLyrBoundProperty(*mLamp, "electric|power", "|", false).IsBound());
    EXPECT_TRUE(KLyrBoundProperty(mPower).IsBound());
    EXPECT_FALSE(KLyrBoundProperty(*mLamp, "electric/power").IsBound());
    EXPECT_FALSE(KLyrBoundProperty(*mLamp, "electric/Power", nullptr).IsBound()) << "no path";
}

TEST_F(BoundProperty, OfNothingIsCopiedAsNothing) {
    const KLyrBoundProperty lNothing;
    const KLyrBoundProperty lCopy(lNothing);
    EXPECT_FALSE(lCopy.On(*mLamp).Valid());
}

TEST_F(BoundProperty, NoticesThatThePropertyIsGone) {
    const KLyrBoundProperty lPower(mPower);
    H lPlace = mPower;
    lPlace.Destroy();
    EXPECT_EQ(lPower.GetState(*mHall), eLyrBoundGone);
    EXPECT_EQ(lPower.Get<double>(*mHall), std::nullopt);
    EXPECT_EQ(lPower.Set(*mHall, 1.0), eLyrSetRefused);
    EXPECT_EQ(lPower.On(*mHall), H());
    lyrAdd(mElectric, "Power", 75.0);
    EXPECT_EQ(lPower.GetState(*mHall), eLyrBoundGone) << "its namesake is another one";
}

TEST_F(BoundProperty, IsNotSeenOnAnotherBranch) {
    OwnedRoot lOther(H::Create(*mLamp));
    const KLyrBoundProperty lOwn(lyrAdd(*mDesk, "own", 1));
    EXPECT_EQ(lOwn.GetState(*mHall), eLyrBoundHere);
    EXPECT_EQ(lOwn.GetState(*lOther), eLyrBoundGone);
    EXPECT_EQ(lOwn.GetState(*mLamp), eLyrBoundGone);
}

TEST_F(BoundProperty, TellsPagesOfOtherFamilies) {
    const KLyrBoundProperty lPower(mPower);
    OwnedRoot lOther(H::Create("lamp", eUNIDENTIFIED));
    lyrAdd(lyrAdd(*lOther, "electric", eUNIDENTIFIED), "Power", 60.0);
    EXPECT_EQ(lPower.GetState(*lOther), eLyrBoundElsewhere) << "though it has a property of that id";
    EXPECT_EQ(lPower.Set(*lOther, 1.0), eLyrSetRefused);
    EXPECT_EQ(lPower.GetState(H()), eLyrBoundElsewhere);
    EXPECT_EQ(KLyrBoundProperty().GetState(*mLamp), eLyrBoundToNothing);
    EXPECT_EQ(KLyrBoundProperty().Get<double>(*mLamp), std::nullopt);
}

TEST_F(BoundProperty, SaysInASentenceWhyItIsNotThere) {
    const KLyrBoundProperty lPower(mPower);
    OwnedRoot lOther(H::Create("lamp", eUNIDENTIFIED));
    const auto lWhy = [](const KLyrBoundProperty& pProperty, const H& pPage) {
        return std::string(lyrWhyRefused(pProperty, pPage, eDOUBLE1, eLyrRead).mText);
    };
    EXPECT_EQ(lWhy(lPower, *mHall), "");
    EXPECT_EQ(lWhy(KLyrBoundProperty(*mLamp, "electric/power"), *mLamp),
              "The property is bound to nothing: it was not found when it was bound.");
    EXPECT_EQ(lWhy(KLyrBoundProperty(), H()), "The property is bound to nothing: it was not found when it was bound.");
    EXPECT_EQ(lWhy(lPower, H()), "The handle has no page on which the bound property could be.");
    EXPECT_EQ(lWhy(lPower, *lOther), "The page is of another family than the bound property.");
    H(mPower).Destroy();
    EXPECT_EQ(lWhy(lPower, *mHall), "The page does not see the bound property of id " + std::to_string(lPower.GetId()) +
                                        ": it was destroyed, or belongs to another branch of the family.");
}

TEST_F(BoundProperty, IsExplainedLikeTheHandleWhereItIs) {
    const KLyrBoundProperty lPower(mPower);
    const KString lBad("bright");
    for (const KString* lText : {static_cast<const KString*>(nullptr), &lBad}) {
        const KLyrReason lReason = lyrWhyRefused(lPower, *mHall, eSTRING, eLyrWrite, lText);
        EXPECT_STREQ(lReason.mText, lyrWhyRefused(lPower.On(*mHall), eSTRING, eLyrWrite, lText).mText);
        EXPECT_EQ(lReason.IsEmpty(), lText == nullptr);
    }
    EXPECT_STREQ(lyrWhyRefused(lPower, *mHall, eDATETIME, eLyrRead).mText,
                 "A value of eDOUBLE1 is never converted to eDATETIME.");
    EXPECT_FALSE(lyrWhyRefused(lPower, *mHall, eDOUBLE1, static_cast<ELyrAccess>(2)).IsEmpty());
}

TEST_F(BoundProperty, OutlivesThePagesOfItsFamily) {
    std::vector<KLyrBoundProperty> lBound;
    for (int i = 0; i < 20; ++i) {
        H lRoot = H::Create("page", eUNIDENTIFIED);
        lBound.emplace_back(lyrAdd(lRoot, "x", i));
        // The memory of the page is used again; the family before must not be taken for this one.
        for (std::size_t lOther = 0; lOther < lBound.size(); ++lOther)
            EXPECT_EQ(lBound[lOther].GetState(lRoot), lOther + 1 == lBound.size() ? eLyrBoundHere : eLyrBoundElsewhere);
        lRoot.Destroy();
    }
}

TEST_F(BoundProperty, StaysBoundWhenTheFirstPageIsDestroyed) {
    const KLyrBoundProperty lPower(mPower);
    mLamp->Destroy();
    EXPECT_EQ(lPower.Get<double>(*mDesk), 60.0);
    EXPECT_EQ(lPower.Set(*mDesk, 5.0), eLyrSetWritten);
    EXPECT_EQ(lPower.Get<double>(*mHall), 5.0);
}

TEST_F(BoundProperty, IsCopiedAndAssigned) {
    KLyrBoundProperty lBound(mPower);
    const KLyrBoundProperty lCopy(lBound);
    KLyrBoundProperty lOther;
    lOther = lCopy;
    const KLyrBoundProperty& lSame = lOther;
    lOther = lSame;
    lBound = KLyrBoundProperty();
    EXPECT_FALSE(lBound.IsBound());
    EXPECT_EQ(lBound.GetId(), -1);
    EXPECT_EQ(lCopy.Get<double>(*mDesk), 60.0);
    EXPECT_EQ(lOther.Get<double>(*mDesk), 60.0);
}

TEST_F(BoundProperty, TakesNoMemory) {
    const std::size_t lBefore = MemoryProbe::Allocations();
    const KLyrBoundProperty lPower(*mLamp, "electric/Power");
    EXPECT_EQ(lPower.Get<double>(*mHall), 60.0);
    EXPECT_EQ(lPower.Set(*mLamp, 70.0), eLyrSetWritten);
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

}  // namespace
}  // namespace lyrsdk
