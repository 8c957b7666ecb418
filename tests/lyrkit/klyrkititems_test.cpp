#include "lyrfilesdk/lyrkit/klyrkititems.h"

#include <gtest/gtest.h>

#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

class KitItems : public PageTest {
protected:
    template <typename T>
    T* ItemOf(int pId) {
        return mPage->GetPropertyItem<T>(nullptr, pId);
    }

    OwnedPage mPage = MakeRoot();
    int mFirst = mPage->Add(0, "power", eDOUBLE1);
    int mSecond = mPage->Add(0, "power", eDOUBLE1);
    int mText = mPage->Add(0, "name", eSTRING);
};

template <typename T>
void ExpectOnlyAlikeAreAlike(const T* pItem, const T* pAlike, const T* pOther) {
    const T* lNone = nullptr;
    EXPECT_TRUE(detail::AreAlike(lNone, lNone));
    EXPECT_TRUE(detail::AreAlike(pItem, pItem));
    EXPECT_TRUE(detail::AreAlike(pItem, pAlike));
    EXPECT_FALSE(detail::AreAlike(pItem, lNone));
    EXPECT_FALSE(detail::AreAlike(lNone, pItem));
    EXPECT_FALSE(detail::AreAlike(pItem, pOther));
}

TEST_F(KitItems, AreAlikeWhenNothingTellsThemApart) {
    ExpectOnlyAlikeAreAlike(ItemOf<KLyrPropertyValue>(mFirst), ItemOf<KLyrPropertyValue>(mSecond),
                            ItemOf<KLyrPropertyValue>(mText));
    ExpectOnlyAlikeAreAlike(ItemOf<KLyrPropertyInfo>(mFirst), ItemOf<KLyrPropertyInfo>(mSecond),
                            ItemOf<KLyrPropertyInfo>(mText));
}

TEST_F(KitItems, DifferInEachPartOfADescription) {
    const KLyrPropertyInfo* lFirst = ItemOf<KLyrPropertyInfo>(mFirst);
    const auto lExpectDifferent = [&](const char* pPart) {
        EXPECT_FALSE(detail::AreAlike(lFirst, ItemOf<KLyrPropertyInfo>(mSecond))) << pPart;
    };
    mPage->SetLabel(mSecond, "Power");
    lExpectDifferent("label");
    mPage->SetLabel(mSecond, "");
    mPage->SetUserTag(mSecond, 5);
    lExpectDifferent("tag");
    mPage->SetUserTag(mSecond, 0);
    mPage->SetUserData(mSecond, this);
    lExpectDifferent("data");
    mPage->SetUserData(mSecond, nullptr);
    EXPECT_TRUE(detail::AreAlike(lFirst, ItemOf<KLyrPropertyInfo>(mSecond)));
    const double lBound = 1;
    mPage->SetMinMax(mSecond, KLyrPropertyInfo::eValueMin, &lBound, eDOUBLE1);
    lExpectDifferent("bound");
    const int lOther = mPage->Add(0, "strength", eDOUBLE1);
    EXPECT_FALSE(detail::AreAlike(lFirst, ItemOf<KLyrPropertyInfo>(lOther))) << "name";
    const int lWhole = mPage->Add(0, "power", eINTEGER1);
    EXPECT_FALSE(detail::AreAlike(lFirst, ItemOf<KLyrPropertyInfo>(lWhole))) << "type";
}

TEST_F(KitItems, DifferInTheUnitOfADistanceAndInThePageThatTypesThem) {
    lyrDistance lFoot(1, KLyrSystemUnit::Foot);
    lyrDistance lInch(1, KLyrSystemUnit::Inch);
    const int lLeft = mPage->Add(0, "way", eDISTANCE);
    const int lRight = mPage->Add(0, "way", eDISTANCE);
    mPage->Set(lLeft, &lFoot, eDISTANCE, false);
    mPage->Set(lRight, &lInch, eDISTANCE, false);
    EXPECT_FALSE(detail::AreAlike(ItemOf<KLyrPropertyValue>(lLeft), ItemOf<KLyrPropertyValue>(lRight)));
    mPage->Set(lRight, &lFoot, eDISTANCE, false);
    EXPECT_TRUE(detail::AreAlike(ItemOf<KLyrPropertyValue>(lLeft), ItemOf<KLyrPropertyValue>(lRight)));

    OwnedPage lType = MakeRoot("number", eDOUBLE1);
    const int lTyped = mPage->Add(0, "power", lType.get());
    EXPECT_FALSE(detail::AreAlike(ItemOf<KLyrPropertyInfo>(mFirst), ItemOf<KLyrPropertyInfo>(lTyped)));
}

TEST_F(KitItems, NoPageIsBelowOneThatIsLeftOut) {
    EXPECT_FALSE(detail::PagesBelow(mPage.get(), mPage.get()));
    EXPECT_TRUE(detail::PagesBelow(mPage.get()));
}

}  // namespace
}  // namespace lyrsdk
