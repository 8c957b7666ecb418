#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

class KLyrPropertyPageSetTest : public PageTest {};

// --- the truth table -------------------------------------------------------------------------------------------------

enum class Where { eRootsOwn, eInherited, eOwn, eOwnOfAnInstance };

// A property whose inherited value, where there is one, is 1 and whose own one, where there is one, is 2.
struct SetCase {
    Where mWhere;
    double mNew;
    bool mCheck;
    bool mResult;
    bool mOwnAfter;
    double mAfter;
};

constexpr SetCase kSetCases[] = {
    {Where::eRootsOwn, 2, false, true, true, 2},
    {Where::eRootsOwn, 3, false, true, true, 3},
    {Where::eRootsOwn, 2, true, true, true, 2},
    {Where::eRootsOwn, 3, true, true, true, 3},
    {Where::eInherited, 1, false, true, true, 1},
    {Where::eInherited, 3, false, true, true, 3},
    {Where::eInherited, 1, true, false, false, 1},
    {Where::eInherited, 3, true, true, true, 3},
    {Where::eOwn, 1, false, true, true, 1},
    {Where::eOwn, 2, false, true, true, 2},
    {Where::eOwn, 3, false, true, true, 3},
    {Where::eOwn, 1, true, true, false, 1},
    {Where::eOwn, 2, true, true, true, 2},
    {Where::eOwn, 3, true, true, true, 3},
    {Where::eOwnOfAnInstance, 2, false, true, true, 2},
    {Where::eOwnOfAnInstance, 3, false, true, true, 3},
    {Where::eOwnOfAnInstance, 2, true, true, true, 2},
    {Where::eOwnOfAnInstance, 3, true, true, true, 3},
};

void ExpectSet(const SetCase& pCase, const OwnedPage& pPage, int pId) {
    EXPECT_EQ(SetNumber(pPage, pId, pCase.mNew, pCase.mCheck), pCase.mResult);
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(pPage, pId) != nullptr, pCase.mOwnAfter);
    EXPECT_EQ(pPage->GetValueInherit(pId, false), pCase.mOwnAfter ? eLyrOverride : eLyrInherit);
    EXPECT_EQ(NumberOf(pPage, pId), pCase.mAfter);
}

TEST_F(KLyrPropertyPageSetTest, WritesAndChecksAsTheTableSays) {
    for (const SetCase& lCase : kSetCases) {
        SCOPED_TRACE(&lCase - kSetCases);
        const OwnedPage lRoot = MakeRoot();
        const OwnedPage lMiddle = MakeInstance(lRoot);
        const OwnedPage lLeaf = MakeInstance(lMiddle);
        const bool lFromInstance = lCase.mWhere == Where::eOwnOfAnInstance;
        const int lId = (lFromInstance ? lLeaf : lRoot)->Add(0, "a", eDOUBLE1);
        const OwnedPage& lPage = lCase.mWhere == Where::eRootsOwn ? lRoot : lLeaf;
        if (!lFromInstance) {
            SetNumber(lRoot, lId, 1);
        }
        if (lCase.mWhere != Where::eInherited) {
            SetNumber(lPage, lId, 2);
        }
        ExpectSet(lCase, lPage, lId);
        if (lPage == lLeaf && !lFromInstance) {
            EXPECT_EQ(NumberOf(lRoot, lId), 1);
        }
        EXPECT_EQ(Held(lMiddle), "");
    }
}

TEST_F(KLyrPropertyPageSetTest, ComparesWithTheNearestInheritedValue) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lMiddle = MakeInstance(lRoot);
    const OwnedPage lLeaf = MakeInstance(lMiddle);
    SetNumber(lMiddle, 0, 5);
    EXPECT_TRUE(SetNumber(lLeaf, 0, 0, true)) << "the root's value is hidden";
    EXPECT_EQ(NumberOf(lLeaf, 0), 0);
    EXPECT_TRUE(SetNumber(lLeaf, 0, 5, true));
    EXPECT_EQ(OwnEntry(lLeaf, 0), nullptr);
    EXPECT_FALSE(SetNumber(lLeaf, 0, 5, true));
}

TEST_F(KLyrPropertyPageSetTest, NothingIsMadeForAnUnknownPropertyOrOneWithoutAValue) {
    const OwnedPage lRoot = MakeRoot();
    const OwnedPage lInstance = MakeInstance(lRoot);
    const int lEmpty = lRoot->Add(0, nullptr, nullptr, nullptr, true);
    for (bool lCheck : {false, true}) {
        for (int lId : {lEmpty, 77, -1, -2, INT_MAX, INT_MIN}) {
            EXPECT_FALSE(SetNumber(lInstance, lId, 1, lCheck));
            EXPECT_FALSE(SetNumber(lRoot, lId, 1, lCheck));
        }
    }
    EXPECT_EQ(Held(lInstance), "");
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(lRoot, lEmpty), nullptr);
}

TEST_F(KLyrPropertyPageSetTest, NullPointerChangesNothing) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    for (bool lCheck : {false, true}) {
        for (int lType = -1; lType <= eMAX_TYPES; ++lType) {
            EXPECT_FALSE(lInstance->Set(0, nullptr, static_cast<ELyrType>(lType), lCheck));
            EXPECT_FALSE(lRoot->Set(0, nullptr, static_cast<ELyrType>(lType), lCheck));
        }
    }
    EXPECT_EQ(Held(lInstance), "");
    EXPECT_EQ(NumberOf(lRoot, 0), 0);
}

TEST_F(KLyrPropertyPageSetTest, EqualityIsThatOfTheCallersType) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetNumber(lRoot, 0, 1.5);
    SetNumber(lInstance, 0, 7);
    const int lOne = 1;
    EXPECT_TRUE(lInstance->Set(0, &lOne, eINTEGER1, true)) << "1.5 reads as the integer 1";
    EXPECT_EQ(OwnEntry(lInstance, 0), nullptr);
    EXPECT_EQ(NumberOf(lInstance, 0), 1.5);
    EXPECT_FALSE(SetText(lInstance, 0, "1.5", true));
    EXPECT_TRUE(SetText(lInstance, 0, " 1.5", true)) << "another text of the same number";
    EXPECT_EQ(NumberOf(lInstance, 0), 1.5);
    EXPECT_NE(OwnItem<KLyrPropertyValue>(lInstance, 0), nullptr);
}

TEST_F(KLyrPropertyPageSetTest, NotANumberEqualsNothingAndTheZerosAreEqual) {
    const double lNaN = std::numeric_limits<double>::quiet_NaN();
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetNumber(lRoot, 0, lNaN);
    EXPECT_TRUE(SetNumber(lInstance, 0, lNaN, true));
    EXPECT_TRUE(SetNumber(lInstance, 0, lNaN, true));
    EXPECT_NE(OwnItem<KLyrPropertyValue>(lInstance, 0), nullptr);
    SetNumber(lRoot, 0, 0.0);
    EXPECT_TRUE(SetNumber(lInstance, 0, -0.0, true));
    EXPECT_EQ(OwnEntry(lInstance, 0), nullptr);
    EXPECT_FALSE(std::signbit(NumberOf(lInstance, 0)));
}

TEST_F(KLyrPropertyPageSetTest, RefusedConversionLeavesACopyOfWhatWasSeen) {
    const OwnedPage lRoot = MakeRoot("root", eINTEGER1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetNumber(lRoot, 0, 6);
    EXPECT_FALSE(SetText(lInstance, 0, "six", true));
    EXPECT_NE(OwnItem<KLyrPropertyValue>(lInstance, 0), nullptr);
    EXPECT_EQ(NumberOf(lInstance, 0), 6);
    EXPECT_FALSE(SetText(lInstance, 0, "six", false));
    EXPECT_EQ(NumberOf(lInstance, 0), 6);
    SetNumber(lRoot, 0, 9);
    EXPECT_EQ(NumberOf(lInstance, 0), 6) << "it is the instance's own";
}

TEST_F(KLyrPropertyPageSetTest, DropsOnlyTheValueOfAnEntryThatHoldsMore) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    lInstance->ModifyFlags(0, LyrPropertyFlags::eHIDDEN, true, false);
    SetNumber(lInstance, 0, 4);
    EXPECT_EQ(Held(lInstance), "0<-1 -v- 400040\n");
    EXPECT_TRUE(SetNumber(lInstance, 0, 0, true));
    EXPECT_EQ(Held(lInstance), "0<-1 --- 400040\n");
    lInstance->SetFlagsInheritType(eLyrInherit, LyrPropertyFlags::eHIDDEN, 0);
    EXPECT_EQ(Held(lInstance), "");
}

TEST_F(KLyrPropertyPageSetTest, TextsAndBlobsAreSetFromTheirOwnConversions) {
    const OwnedPage lRoot = MakeRoot("root", eSTRING);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const std::string lLong(100000, 'x');
    EXPECT_TRUE(SetText(lRoot, 0, lLong.c_str()));
    EXPECT_FALSE(SetText(lInstance, 0, lLong.c_str(), true));
    EXPECT_TRUE(SetNumber(lInstance, 0, 2.5, true));
    EXPECT_EQ(TextOf(lInstance, 0), "2.5");
    EXPECT_TRUE(SetText(lInstance, 0, lLong.c_str(), true));
    EXPECT_EQ(Held(lInstance), "");
    EXPECT_EQ(TextOf(lInstance, 0), lLong);
}

// --- every pair of types ---------------------------------------------------------------------------------------------

// A value of any code, made by hand for the codes that no number or text converts into.
class AnyValue {
public:
    AnyValue(ELyrType pType, bool pIsZero) : mType(pType), mValue(lyrCreate(pType)) {
        if (mValue && !pIsZero)
            MakeNonZero();
    }
    ~AnyValue() { lyrDestroy(mType, mValue); }
    AnyValue(const AnyValue&) = delete;
    AnyValue& operator=(const AnyValue&) = delete;

    // Codes without storage point at something all the same.
    const void* Get() const { return mValue ? mValue : this; }

private:
    void MakeNonZero() {
        const int lThree = 3;
        const KString lDate("2001-02-03T04:05:06");
        switch (mType) {
            case eTIME:
                static_cast<KTime*>(mValue)->Set(3);
                break;
            case eDOUBLE44:
                (*static_cast<lyrDouble44*>(mValue))[0][1] = 3;
                break;
            case eDOUBLE4:
                (*static_cast<lyrDouble4*>(mValue))[3] = 3;
                break;
            case eDISTANCE:
                *static_cast<lyrDistance*>(mValue) = lyrDistance(3, KLyrSystemUnit::mm);
                break;
            case eDATETIME:
                lyrCopy(mValue, mType, &lDate, eSTRING);
                break;
            default:
                if (mType != eREFERENCE)
                    lyrCopy(mValue, mType, &lThree, eINTEGER1);
                break;
        }
    }

    ELyrType mType;
    void* mValue;
};

// What a page does with its value on Set, done to two items: the inherited one and the page's own.
class SetModel {
public:
    SetModel(KLyrPropertyValue* pInherited, KLyrPropertyValue* pOwn) {
        if (pInherited)
            mInherited.Reset(pInherited->Clone(nullptr));
        if (pOwn)
            mOwn.Reset(pOwn->Clone(nullptr));
    }

    bool Set(const void* pValue, ELyrType pType, bool pCheck) {
        KLyrPropertyValue* lSeen = mOwn ? mOwn.Get() : mInherited.Get();
        if (!lyrHoldsValue(pType))
            return lSeen->Set(pValue, pType);
        if (pCheck && mInherited && ReadsEqual(pValue, pType)) {
            const bool lHadOwn = static_cast<bool>(mOwn);
            mOwn.Reset();
            return lHadOwn;
        }
        if (!mOwn)
            mOwn.Reset(mInherited->Clone(nullptr));
        return mOwn->Set(pValue, pType);
    }

    const KLyrPropertyValue* Own() const { return mOwn.Get(); }

private:
    bool ReadsEqual(const void* pValue, ELyrType pType) {
        void* lScratch = lyrCreate(pType);
        const bool lEqual = mInherited->Get(lScratch, pType) && lyrCompare(pValue, lScratch, pType);
        lyrDestroy(pType, lScratch);
        return lEqual;
    }

    Counted<KLyrPropertyValue> mInherited;
    Counted<KLyrPropertyValue> mOwn;
};

std::string TextOfItem(const KLyrPropertyValue* pItem) {
    KString lText;
    if (!pItem)
        return "(inherited)";
    return pItem->Get(&lText, eSTRING) ? lText.Buffer() : "(none)";
}

struct PairCase {
    ELyrType mPropertyType;
    ELyrType mValueType;
    bool mInheritedIsZero;
    bool mOwn;
    bool mRootOnly;
    bool mValueIsZero;
    bool mCheck;
};

std::ostream& operator<<(std::ostream& pOut, const PairCase& pCase) {
    return pOut << "property type " << pCase.mPropertyType << " value type " << pCase.mValueType << " inherited zero "
                << pCase.mInheritedIsZero << " own " << pCase.mOwn << " root " << pCase.mRootOnly << " value zero "
                << pCase.mValueIsZero << " check " << pCase.mCheck;
}

void ExpectPair(const PairCase& pCase) {
    SCOPED_TRACE(testing::Message() << pCase);
    const OwnedPage lRoot = MakeRoot("root", pCase.mPropertyType);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const OwnedPage& lPage = pCase.mRootOnly ? lRoot : lInstance;
    ReportRecorder lReports;
    const AnyValue lFirst(pCase.mPropertyType, pCase.mInheritedIsZero);
    if (lyrHoldsValue(pCase.mPropertyType))
        lRoot->Set(0, lFirst.Get(), pCase.mPropertyType, false);
    if (pCase.mOwn)
        lInstance->SetValueInherit(0, eLyrOverride);
    const AnyValue lValue(pCase.mValueType, pCase.mValueIsZero);
    KLyrPropertyValue* lRootItem = OwnItem<KLyrPropertyValue>(lRoot, 0);
    SetModel lModel(pCase.mRootOnly ? nullptr : lRootItem, OwnItem<KLyrPropertyValue>(lPage, 0));
    const std::string lRootText = TextOfItem(lRootItem);
    lReports.Clear();

    const bool lExpected = lModel.Set(lValue.Get(), pCase.mValueType, pCase.mCheck);
    const std::vector<std::string> lExpectedReports = lReports.Take();
    EXPECT_EQ(lPage->Set(0, lValue.Get(), pCase.mValueType, pCase.mCheck), lExpected);
    EXPECT_EQ(lReports.Take(), lExpectedReports);
    EXPECT_EQ(TextOfItem(OwnItem<KLyrPropertyValue>(lPage, 0)), TextOfItem(lModel.Own()));
    if (!pCase.mRootOnly) {
        EXPECT_EQ(TextOfItem(lRootItem), lRootText);
    }
    lReports.Clear();
}

TEST_F(KLyrPropertyPageSetTest, EveryPairOfTypesGoesThroughTheItemsConversion) {
    constexpr int lBits = 5;
    for (int lProperty = 0; lProperty < eMAX_TYPES; ++lProperty) {
        for (int lValue = -1; lValue <= eMAX_TYPES; ++lValue) {
            for (unsigned i = 0; i < 1u << lBits; ++i) {
                const PairCase lCase{static_cast<ELyrType>(lProperty),
                                     static_cast<ELyrType>(lValue),
                                     (i & 1u) != 0,
                                     (i & 2u) != 0,
                                     (i & 4u) != 0,
                                     (i & 8u) != 0,
                                     (i & 16u) != 0};
                if (!(lCase.mRootOnly && lCase.mOwn))
                    ExpectPair(lCase);
                if (HasFailure())
                    return;
            }
        }
    }
}

}  // namespace
}  // namespace lyrsdk
