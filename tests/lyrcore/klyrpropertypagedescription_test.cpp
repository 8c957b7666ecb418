#include <gtest/gtest.h>

#include <climits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"

namespace lyrsdk {
namespace {

using Info = KLyrPropertyInfo;

// A root, an instance of it and one of that; property "mode" is an enumeration of the root.
class KLyrPropertyPageDescriptionTest : public PageTest {
protected:
    OwnedPage mRoot = MakeRoot();
    const int mMode = mRoot->Add(0, "mode", eENUM);
    OwnedPage mMiddle = MakeInstance(mRoot);
    OwnedPage mLeaf = MakeInstance(mMiddle);
};

std::string EnumTexts(const OwnedPage& pPage, int pId) {
    std::string lTexts;
    for (int i = 0; i < pPage->GetEnumCount(pId); ++i)
        lTexts += std::string(pPage->GetEnumValue(pId, i)) + ";";
    return lTexts;
}

TEST_F(KLyrPropertyPageDescriptionTest, WithoutOneEveryOperationGivesItsFailureResult) {
    const int lPlain = mRoot->Add(0, nullptr, nullptr, nullptr, true);
    const double lNumber = 1;
    double lRead = 7;
    for (int lId : {lPlain, 77, -1, -2, INT_MAX, INT_MIN}) {
        SCOPED_TRACE(lId);
        EXPECT_EQ(mLeaf->GetType(lId), eUNIDENTIFIED);
        EXPECT_STREQ(mLeaf->GetName(lId), "");
        EXPECT_EQ(mLeaf->GetTypeInfo(lId), nullptr);
        EXPECT_STREQ(mLeaf->GetLabel(lId), "");
        EXPECT_FALSE(mLeaf->SetLabel(lId, "x"));
        EXPECT_EQ(mLeaf->GetUserTag(lId), 0);
        EXPECT_FALSE(mLeaf->SetUserTag(lId, 5));
        EXPECT_EQ(mLeaf->GetUserData(lId), nullptr);
        EXPECT_FALSE(mLeaf->SetUserData(lId, &lNumber));
        for (int lIndex : {-1, 0, 1, 2, 3, 4, INT_MAX}) {
            const Info::eValueIndex lBound = static_cast<Info::eValueIndex>(lIndex);
            EXPECT_FALSE(mLeaf->SetMinMax(lId, lBound, &lNumber, eDOUBLE1));
            EXPECT_FALSE(mLeaf->GetMinMax(lId, lBound, &lRead, eDOUBLE1));
            EXPECT_FALSE(mLeaf->HasMinMax(lId, lBound));
        }
        EXPECT_EQ(mLeaf->AddEnumValue(lId, "x"), -1);
        mLeaf->InsertEnumValue(lId, 0, "x");
        mLeaf->SetEnumValue(lId, 0, "x");
        mLeaf->RemoveEnumValue(lId, 0);
        EXPECT_EQ(mLeaf->GetEnumCount(lId), 0);
        EXPECT_STREQ(mLeaf->GetEnumValue(lId, 0), "");
    }
    EXPECT_EQ(lRead, 7);
    EXPECT_EQ(Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageDescriptionTest, LabelsTagsAndDataAreWrittenWhereTheDescriptionIs) {
    int lData = 0;
    EXPECT_TRUE(mLeaf->SetLabel(mMode, "Mode"));
    EXPECT_TRUE(mLeaf->SetUserTag(mMode, INT_MIN));
    EXPECT_TRUE(mLeaf->SetUserData(mMode, &lData));
    for (const OwnedPage* lPage : {&mRoot, &mMiddle, &mLeaf}) {
        EXPECT_STREQ((*lPage)->GetLabel(mMode), "Mode");
        EXPECT_EQ((*lPage)->GetUserTag(mMode), INT_MIN);
        EXPECT_EQ((*lPage)->GetUserData(mMode), &lData);
    }
    EXPECT_EQ(Held(mMiddle) + Held(mLeaf), "") << "only values and flags are copied on write";
    EXPECT_TRUE(mRoot->SetLabel(mMode, nullptr));
    EXPECT_TRUE(mRoot->SetUserData(mMode, nullptr));
    EXPECT_STREQ(mLeaf->GetLabel(mMode), "");
    EXPECT_EQ(mLeaf->GetUserData(mMode), nullptr);
}

TEST_F(KLyrPropertyPageDescriptionTest, LabelMayBeSetFromItselfOrFromTheName) {
    EXPECT_TRUE(mRoot->SetLabel(mMode, "a label"));
    EXPECT_TRUE(mRoot->SetLabel(mMode, mRoot->GetLabel(mMode)));
    EXPECT_STREQ(mRoot->GetLabel(mMode), "a label");
    EXPECT_TRUE(mRoot->SetLabel(mMode, mRoot->GetLabel(mMode) + 2));
    EXPECT_STREQ(mRoot->GetLabel(mMode), "label");
    EXPECT_TRUE(mRoot->SetLabel(mMode, mRoot->GetName(mMode)));
    EXPECT_STREQ(mRoot->GetLabel(mMode), "mode");
}

TEST_F(KLyrPropertyPageDescriptionTest, OverriddenDescriptionIsWrittenAloneAndSeenBelow) {
    mRoot->SetLabel(mMode, "root's");
    mRoot->AddEnumValue(mMode, "root's");
    mMiddle->ChangePropertyItemState<Info>(nullptr, mMode, eLyrOverride);
    EXPECT_STREQ(mLeaf->GetLabel(mMode), "");
    EXPECT_EQ(mLeaf->GetEnumCount(mMode), 0);
    mLeaf->SetLabel(mMode, "middle's");
    mLeaf->SetUserTag(mMode, 4);
    EXPECT_EQ(mLeaf->AddEnumValue(mMode, "middle's"), 0);
    EXPECT_STREQ(mMiddle->GetLabel(mMode), "middle's");
    EXPECT_EQ(EnumTexts(mMiddle, mMode), "middle's;");
    EXPECT_STREQ(mRoot->GetLabel(mMode), "root's");
    EXPECT_EQ(mRoot->GetUserTag(mMode), 0);
    EXPECT_EQ(EnumTexts(mRoot, mMode), "root's;");
}

TEST_F(KLyrPropertyPageDescriptionTest, BoundsAreSharedAndConverted) {
    const int lId = mRoot->Add(0, "n", eINTEGER1);
    const double lBounds[] = {-2.9, -1, 1, 2.9};
    for (int i = 0; i < Info::eValueCount; ++i) {
        const Info::eValueIndex lBound = static_cast<Info::eValueIndex>(i);
        double lRead = 77;
        EXPECT_FALSE(mLeaf->HasMinMax(lId, lBound));
        EXPECT_FALSE(mLeaf->GetMinMax(lId, lBound, &lRead, eDOUBLE1));
        EXPECT_TRUE(mLeaf->SetMinMax(lId, lBound, &lBounds[i], eDOUBLE1));
        EXPECT_TRUE(mRoot->HasMinMax(lId, lBound));
        EXPECT_TRUE(mRoot->GetMinMax(lId, lBound, &lRead, eDOUBLE1));
        EXPECT_EQ(lRead, static_cast<int>(lBounds[i]));
        EXPECT_FALSE(mRoot->SetMinMax(lId, lBound, nullptr, eDOUBLE1));
        EXPECT_FALSE(mRoot->GetMinMax(lId, lBound, nullptr, eDOUBLE1));
    }
    for (int lIndex : {-1, 4, INT_MAX, INT_MIN}) {
        const Info::eValueIndex lBound = static_cast<Info::eValueIndex>(lIndex);
        double lRead = 77;
        EXPECT_FALSE(mLeaf->SetMinMax(lId, lBound, &lRead, eDOUBLE1));
        EXPECT_FALSE(mLeaf->GetMinMax(lId, lBound, &lRead, eDOUBLE1));
        EXPECT_FALSE(mLeaf->HasMinMax(lId, lBound));
        EXPECT_EQ(lRead, 77);
    }
    EXPECT_EQ(Held(mLeaf), "");
    EXPECT_EQ(NumberOf(mLeaf, lId), 0) << "bounds are not enforced";
}

TEST_F(KLyrPropertyPageDescriptionTest, EnumerationsAreShared) {
    EXPECT_EQ(mLeaf->AddEnumValue(mMode, "off"), 0);
    EXPECT_EQ(mMiddle->AddEnumValue(mMode, "on"), 1);
    EXPECT_EQ(mRoot->AddEnumValue(mMode, "on"), -1);
    mLeaf->InsertEnumValue(mMode, 1, "dim");
    EXPECT_EQ(EnumTexts(mRoot, mMode), "off;dim;on;");
    mLeaf->SetEnumValue(mMode, 2, "bright");
    mLeaf->RemoveEnumValue(mMode, 0);
    EXPECT_EQ(EnumTexts(mMiddle, mMode), "dim;bright;");
    EXPECT_EQ(Held(mMiddle) + Held(mLeaf), "");
}

TEST_F(KLyrPropertyPageDescriptionTest, EnumerationMayBeWrittenWithItsOwnTexts) {
    mRoot->AddEnumValue(mMode, "a first text, which is long enough for a block of memory of its own");
    mRoot->AddEnumValue(mMode, "second");
    const std::string lFirst = mRoot->GetEnumValue(mMode, 0);
    EXPECT_EQ(mRoot->AddEnumValue(mMode, mRoot->GetEnumValue(mMode, 0)), -1);
    for (int i = 0; i < 20; ++i)
        mRoot->InsertEnumValue(mMode, 0, mRoot->GetEnumValue(mMode, i));
    EXPECT_EQ(mRoot->GetEnumCount(mMode), 22);
    for (int i = 0; i < 21; ++i)
        EXPECT_EQ(mRoot->GetEnumValue(mMode, i), lFirst);
    mRoot->SetEnumValue(mMode, 0, mRoot->GetEnumValue(mMode, 0));
    EXPECT_EQ(mRoot->GetEnumValue(mMode, 0), lFirst);
    mRoot->SetEnumValue(mMode, 0, mRoot->GetEnumValue(mMode, 0) + 2);
    EXPECT_EQ(mRoot->GetEnumValue(mMode, 0), lFirst.substr(2));
    EXPECT_EQ(mRoot->Add(0, mRoot->GetName(mMode), eENUM), mMode + 1);
    EXPECT_STREQ(mRoot->GetName(mMode + 1), "mode");
}

TEST_F(KLyrPropertyPageDescriptionTest, OnlyEnumerationsTakeTexts) {
    const int lId = mRoot->Add(0, "n", eINTEGER1);
    EXPECT_EQ(mLeaf->AddEnumValue(lId, "x"), -1);
    mLeaf->InsertEnumValue(lId, 0, "x");
    mLeaf->SetEnumValue(lId, 0, "x");
    mLeaf->RemoveEnumValue(lId, 0);
    EXPECT_EQ(mLeaf->GetEnumCount(lId), 0);
    EXPECT_EQ(mLeaf->GetEnumValue(lId, 0), nullptr);
    EXPECT_EQ(mLeaf->GetEnumValue(mMode, 0), nullptr);
    mLeaf->RemoveEnumValue(mMode, 0);
    EXPECT_EQ(mLeaf->GetEnumCount(mMode), 0);
}

TEST_F(KLyrPropertyPageDescriptionTest, TypeAndTypePageAreThoseOfTheDescriptionNotOfTheValue) {
    const OwnedPage lType = MakeRoot("t", eTIME);
    const Counted<Info> lInfo(Info::Create("x", lType.get()));
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eINTEGER1));
    const int lId = mRoot->Add(0, lInfo.Get(), lValue.Get(), nullptr, true);
    EXPECT_EQ(mLeaf->GetType(lId), eTIME);
    EXPECT_EQ(mLeaf->GetTypeInfo(lId), lType.get());
    EXPECT_STREQ(mLeaf->GetName(lId), "x");
    EXPECT_TRUE(SetNumber(mLeaf, lId, 4));
    EXPECT_EQ(NumberOf(mLeaf, lId), 4);
}

TEST_F(KLyrPropertyPageDescriptionTest, ReadingAsksForNoMemory) {
    mRoot->SetLabel(mMode, "label");
    mRoot->AddEnumValue(mMode, "first");
    const std::size_t lAllocations = MemoryProbe::Allocations();
    EXPECT_STREQ(mLeaf->GetName(mMode), "mode");
    EXPECT_STREQ(mLeaf->GetLabel(mMode), "label");
    EXPECT_STREQ(mLeaf->GetEnumValue(mMode, 0), "first");
    EXPECT_EQ(NumberOf(mLeaf, mMode), 0);
    EXPECT_EQ(DefaultOf(mLeaf, mMode), 0);
    EXPECT_EQ(mLeaf->GetFlags(mMode), 0u);
    EXPECT_EQ(MemoryProbe::Allocations(), lAllocations);
}

}  // namespace
}  // namespace lyrsdk
