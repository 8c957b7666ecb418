#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/report_recorder.h"

// Arguments that no caller should pass: null, unknown codes, indexes and flags, texts of any bytes and length, a handle
// or a text of its own.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;
using Texts = std::vector<std::string>;

// A page between the page it is an instance of and an instance of its own.
//
//   top:  0 "root"     page:  1 "child" (double), 2 "typed" with 3 "part"     below: nothing of its own
class PropertyHandleHostile : public HandleTest {
protected:
    PropertyHandleHostile() {
        const H lAdded = AddChild(*mPage, "child", eDOUBLE1);
        AddChild(*mType, "part", eINTEGER1);
        mPage->Add("typed", *mType);
        mPeer->ConnectSrc(lAdded, eLyrConnectionData);
    }

    std::string State() const {
        return DescribePage(*mTop) + DescribePage(*mPage) + DescribePage(*mBelow) + DescribePage(*mPeer);
    }

    OwnedRoot mType{H::Create("type", eENUM)};
    OwnedRoot mPeer{H::Create("peer", eDOUBLE1)};
    OwnedRoot mTop{H::Create("root", eDOUBLE1)};
    OwnedRoot mPage{H::Create(*mTop)};
    OwnedRoot mBelow{H::Create(*mPage)};
};

const int kNoCodes[] = {INT_MIN, -1, eUNIDENTIFIED, eMAX_TYPES, eMAX_TYPES + 1, 1000, INT_MAX};

TEST_F(PropertyHandleHostile, TakesNullNamesAsEmptyOnes) {
    OwnedRoot lPage(H::Create(nullptr, eENUM));
    EXPECT_STREQ(lPage->GetName(), "");
    const H lChild = lPage->Add(nullptr, H());
    EXPECT_STREQ(lChild.GetName(), "");
    EXPECT_EQ(lPage->Find(nullptr, true), lChild);
    EXPECT_EQ(lPage->Find(nullptr, false), lChild);
    EXPECT_EQ(lPage->Find(nullptr, "|", true), lChild);
    EXPECT_EQ(lPage->Find("", "|", true), lChild);
    EXPECT_FALSE(lPage->Find(nullptr, *mType, true).Valid());
    EXPECT_TRUE(lPage->SetLabel("label"));
    EXPECT_TRUE(lPage->SetLabel(nullptr));
    EXPECT_STREQ(lPage->GetLabel(), "");
    EXPECT_EQ(lPage->AddEnumValue(nullptr), 0);
    EXPECT_EQ(lPage->AddEnumValue(""), -1) << "the same text";
    lPage->InsertEnumValue(0, nullptr);
    lPage->SetEnumValue(1, "one");
    lPage->SetEnumValue(1, nullptr);
    ASSERT_EQ(lPage->GetEnumCount(), 2);
    EXPECT_STREQ(lPage->GetEnumValue(1), "");
    lPage->BeginCreateOrFindProperty();
    EXPECT_EQ(lPage->Find(nullptr, true), lChild);
    lPage->EndCreateOrFindProperty();
    OwnedRoot lTyped(H::Create(nullptr, *mType));
    EXPECT_STREQ(lTyped->GetName(), "");
}

TEST_F(PropertyHandleHostile, RefusesNullValuesOfEveryCodeSilently) {
    for (int lCode = eUNIDENTIFIED; lCode < eMAX_TYPES; ++lCode) {
        OwnedRoot lPage(H::Create("root", static_cast<ELyrType>(lCode)));
        OwnedRoot lInstance(H::Create(*lPage));
        for (int lValueCode = -1; lValueCode <= eMAX_TYPES; ++lValueCode) {
            const ELyrType lType = static_cast<ELyrType>(lValueCode);
            SCOPED_TRACE(std::to_string(lCode) + " from " + std::to_string(lValueCode));
            for (H lHandle : {H(*lPage), H(*lInstance)}) {
                EXPECT_FALSE(lHandle.Set(nullptr, lType, true));
                EXPECT_FALSE(lHandle.Set(nullptr, lType, false));
                EXPECT_FALSE(lHandle.Get(nullptr, lType));
                EXPECT_FALSE(lHandle.GetDefaultValue(nullptr, lType));
                EXPECT_FALSE(lHandle.SetMin(nullptr, lType));
                EXPECT_FALSE(lHandle.GetMin(nullptr, lType));
            }
            EXPECT_FALSE(lPage->HasMin());
            EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrInherit);
        }
    }
}

TEST_F(PropertyHandleHostile, GivesNoBoundToANullPointerThoughOneIsThere) {
    const int lBound = 3;
    H lChild = mPage->Find("child", true);
    lChild.SetMax(&lBound, eINTEGER1);
    const std::string lState = State();
    EXPECT_FALSE(lChild.GetMax(nullptr, eINTEGER1));
    EXPECT_FALSE(lChild.SetMax(nullptr, eINTEGER1));
    EXPECT_EQ(State(), lState);
}

// Each refusal speaks once and changes nothing, inherited or not, with the check and without.
TEST_F(PropertyHandleHostile, RefusesValuesOfUnknownCodesWithAReport) {
    ReportRecorder lReports;
    const std::string lState = State();
    const double lValue = 3;
    for (int lCode : kNoCodes) {
        for (H lHandle : {H(*mTop), H(*mPage), H(*mBelow)}) {
            SCOPED_TRACE(lCode);
            for (bool lCheck : {true, false}) {
                EXPECT_FALSE(lHandle.Set(&lValue, static_cast<ELyrType>(lCode), lCheck));
                EXPECT_EQ(lReports.Take(), Texts{"Trying to assign an unknown type"});
            }
            EXPECT_FALSE(lHandle.SetMin(&lValue, static_cast<ELyrType>(lCode)));
            EXPECT_EQ(lReports.Take(), Texts{"Trying to assign an unknown type"});
        }
    }
    EXPECT_EQ(State(), lState);
}

TEST_F(PropertyHandleHostile, GivesNoValueInAnUnknownCode) {
    ReportRecorder lReports;
    double lValue = 3;
    for (int lCode : kNoCodes) {
        SCOPED_TRACE(lCode);
        EXPECT_FALSE(mPage->Get(&lValue, static_cast<ELyrType>(lCode)));
        EXPECT_EQ(lReports.Take(), Texts{"Trying to assign an unknown type"});
        EXPECT_FALSE(mPage->GetDefaultValue(&lValue, static_cast<ELyrType>(lCode)));
        EXPECT_EQ(lReports.Take(), Texts{"Trying to assign an unknown type"});
    }
    EXPECT_EQ(lValue, 3);
}

TEST_F(PropertyHandleHostile, RefusesReferencesWithAReport) {
    ReportRecorder lReports;
    const std::string lState = State();
    unsigned char lValue = 9;
    const Texts lRefusal{"Trying to set value on a void Reference type"};
    for (H lHandle : {H(*mTop), H(*mPage)}) {
        EXPECT_FALSE(lHandle.Set(&lValue, eREFERENCE, true));
        EXPECT_EQ(lReports.Take(), lRefusal);
        EXPECT_FALSE(lHandle.Set(&lValue, eREFERENCE, false));
        EXPECT_EQ(lReports.Take(), lRefusal);
        EXPECT_FALSE(lHandle.Get(&lValue, eREFERENCE));
        EXPECT_EQ(lReports.Take(), lRefusal);
    }
    EXPECT_EQ(State(), lState);
    OwnedRoot lReference(H::Create("reference", eREFERENCE));
    double lNumber = 4;
    EXPECT_FALSE(lReference->Set(&lNumber, eDOUBLE1, false));
    EXPECT_EQ(lReports.Take(), lRefusal);
    EXPECT_FALSE(lReference->Get(&lNumber, eDOUBLE1));
    EXPECT_EQ(lReports.Take(), lRefusal);
    EXPECT_EQ(lNumber, 4);
}

TEST_F(PropertyHandleHostile, MakesPropertiesOfUnknownTypesWithoutAValue) {
    for (int lCode : kNoCodes) {
        OwnedRoot lPage(H::Create("root", static_cast<ELyrType>(lCode)));
        OwnedRoot lInstance(H::Create(*lPage));
        const H lChild = AddChild(*lPage, "child", static_cast<ELyrType>(lCode));
        const H lCopy = lInstance->Add("copy", *lPage);
        for (H lHandle : {H(*lPage), lChild, H(*lInstance), lCopy}) {
            double lValue = 1;
            EXPECT_FALSE(lHandle.Set(&lValue, eDOUBLE1, true));
            EXPECT_FALSE(lHandle.Set(&lValue, eDOUBLE1, false));
            EXPECT_FALSE(lHandle.Get(&lValue, eDOUBLE1));
            EXPECT_FALSE(lHandle.SetMax(&lValue, eDOUBLE1));
            EXPECT_FALSE(lHandle.HasMax());
            EXPECT_EQ(lHandle.AddEnumValue("a"), -1);
        }
    }
}

TEST_F(PropertyHandleHostile, RefusesUnknownBoundIndexes) {
    const double lValue = 2;
    double lRead = 1;
    KLyrPropertyPage* lPage = mPage->GetPage();
    const std::string lState = State();
    for (int lIndex : {INT_MIN, -1, 4, 5, INT_MAX}) {
        const auto lBound = static_cast<KLyrPropertyInfo::eValueIndex>(lIndex);
        EXPECT_FALSE(lPage->SetMinMax(1, lBound, &lValue, eDOUBLE1)) << lIndex;
        EXPECT_FALSE(lPage->GetMinMax(1, lBound, &lRead, eDOUBLE1)) << lIndex;
        EXPECT_FALSE(lPage->HasMinMax(1, lBound)) << lIndex;
    }
    EXPECT_EQ(lRead, 1);
    EXPECT_EQ(State(), lState);
}

TEST_F(PropertyHandleHostile, RefusesUnknownInheritTypes) {
    SetDouble(On(*mBelow, mPage->Find("child", true)), 6);
    const std::string lState = State();
    for (int lType : {INT_MIN, -1, 2, 3, INT_MAX}) {
        const auto lInherit = static_cast<KLyrInheritType>(lType);
        for (H lHandle : {H(*mPage), On(*mBelow, mPage->Find("child", true)), H(*mTop)}) {
            EXPECT_FALSE(lHandle.SetValueInheritType(lInherit)) << lType;
            EXPECT_FALSE(lHandle.SetFlagsInheritType(F::AllFlags(), lInherit)) << lType;
        }
    }
    EXPECT_EQ(State(), lState);
}

TEST_F(PropertyHandleHostile, KeepsUndefinedFlagsWithinOneProperty) {
    const std::string lPeer = DescribePage(*mPeer);
    for (unsigned lBits : {0x8000u, 0x10000u, 0x80000000u, 0xFFFF0000u, 0xFFFFFFFFu, 0u}) {
        const auto lFlags = static_cast<F::eLyrPropertyFlags>(lBits);
        for (H lHandle : {H(*mTop), H(*mPage), On(*mBelow, mPage->Find("child", true))}) {
            SCOPED_TRACE(lBits);
            EXPECT_TRUE(lHandle.ModifyFlags(lFlags, true));
            EXPECT_EQ(lHandle.GetFlags() & 0xFFFF0000u, 0u);
            EXPECT_EQ(lHandle.GetFlags() & lBits, lBits & 0xFFFFu);
            EXPECT_TRUE(lHandle.SetFlagsInheritType(lFlags, eLyrInherit));
            lHandle.SetFlagsInheritType(lFlags, eLyrOverride);
            lHandle.GetFlagsInheritType(lFlags, true);
            EXPECT_TRUE(lHandle.ModifyFlags(lFlags, false));
            EXPECT_EQ(lHandle.GetFlags() & 0xFFFF0000u, 0u);
        }
    }
    EXPECT_EQ(DescribePage(*mPeer), lPeer);
}

TEST_F(PropertyHandleHostile, ComparesOnlyTheBitsThatFlagsHave) {
    mTop->ModifyFlags(F::eUSER, true);
    EXPECT_TRUE(mPage->ModifyFlags(static_cast<F::eLyrPropertyFlags>(0x50000u | F::eUSER), true));
    EXPECT_EQ(mPage->GetFlagsInheritType(F::AllFlags(), false), eLyrInherit) << "all of them are on above";
}

TEST_F(PropertyHandleHostile, IgnoresEnumerationIndexesThatAreNone) {
    OwnedRoot lPage(H::Create("root", eENUM));
    for (int lIndex : {INT_MIN, -1, 0, 1, INT_MAX}) {
        lPage->RemoveEnumValue(lIndex);
        lPage->SetEnumValue(lIndex, "none");
        EXPECT_EQ(lPage->GetEnumValue(lIndex), nullptr) << lIndex;
        EXPECT_EQ(lPage->GetEnumCount(), 0);
    }
    lPage->AddEnumValue("zero");
    lPage->AddEnumValue("one");
    for (int lIndex : {INT_MIN, -1}) {
        lPage->InsertEnumValue(lIndex, "none");
        lPage->SetEnumValue(lIndex, "none");
        lPage->RemoveEnumValue(lIndex);
        EXPECT_STREQ(lPage->GetEnumValue(lIndex), "zero") << "the first text, " << lIndex;
    }
    for (int lIndex : {2, INT_MAX}) {
        lPage->SetEnumValue(lIndex, "none");
        lPage->RemoveEnumValue(lIndex);
        EXPECT_EQ(lPage->GetEnumValue(lIndex), nullptr) << lIndex;
    }
    EXPECT_EQ(lPage->GetEnumCount(), 2);
    lPage->InsertEnumValue(INT_MAX, "two");
    EXPECT_STREQ(lPage->GetEnumValue(2), "two");
}

TEST_F(PropertyHandleHostile, GivesTheFirstInstanceForAnIndexThatIsNone) {
    int lData = 0;
    mPage->SetPageDataPtr(&lData);
    OwnedRoot lSecond(H::Create(*mTop));
    for (int lIndex : {INT_MIN, -1, 2, INT_MAX})
        EXPECT_EQ(mTop->GetReferencedBy(lIndex), &lData) << lIndex;
    for (int lIndex : {INT_MIN, -1, 0, INT_MAX})
        EXPECT_EQ(lSecond->GetReferencedBy(lIndex), nullptr) << lIndex;
}

// --- the last ids ----------------------------------------------------------------------------------------------------

TEST_F(PropertyHandleHostile, AddsAndWalksUpToTheLastId) {
    OwnedRoot lPage(H::Create());
    ASSERT_TRUE(lPage->GetPage()->GetIdGenerator()->SkipTo(INT_MAX - 1));
    H lFirst = lPage->Add("first", H());
    const H lLast = lFirst.Add("last", H());
    EXPECT_EQ(lLast.GetId(), INT_MAX);
    EXPECT_EQ(lPage->Add("more", H()), H());
    EXPECT_EQ(lPage->Add("more", *mType), H());
    EXPECT_EQ(lPage->Find("first|last", "|", true), lLast);
    EXPECT_EQ(lFirst.GetChild(), lLast);
    EXPECT_FALSE(lLast.GetSibling().Valid());
    EXPECT_FALSE(lLast.GetChild().Valid());
    EXPECT_FALSE(lPage->GetNextDescendent(lLast).Valid());
    OwnedRoot lInstance(H::Create(*lPage));
    EXPECT_TRUE(On(*lInstance, lLast).ModifyFlags(F::eUSER, true));
    lInstance->PushPropertiesToParentInstance();
    EXPECT_EQ(lLast.GetFlags(), F::eUSER);
    const std::string lSeen = DescribePage(*lInstance, false);
    lPage->Destroy();
    EXPECT_EQ(DescribePage(*lInstance, false), lSeen);
}

TEST_F(PropertyHandleHostile, AddsNothingWhenTheIdsEndWithinIt) {
    for (int lLeft : {1, 2, 3}) {
        OwnedRoot lType(H::Create("type", eDOUBLE1));
        AddChild(AddChild(*lType, "part", eSTRING), "deep", eSTRING);
        OwnedRoot lPage(H::Create());
        ASSERT_TRUE(lPage->GetPage()->GetIdGenerator()->SkipTo(INT_MAX - lLeft + 1));
        lPage->BeginCreateOrFindProperty();
        EXPECT_EQ(lPage->Add("typed", *lType).Valid(), lLeft == 3) << lLeft;
        EXPECT_EQ(lPage->Find("typed", true).Valid(), lLeft == 3) << lLeft;
        lPage->EndCreateOrFindProperty();
        EXPECT_EQ(lPage->GetFirstDescendent().Valid(), lLeft == 3) << lLeft;
    }
}

TEST_F(PropertyHandleHostile, TakesItsOwnTextsAsArguments) {
    OwnedRoot lPage(H::Create("root name", eENUM));
    lPage->SetLabel("a label of some length");
    EXPECT_TRUE(lPage->SetLabel(lPage->GetLabel()));
    EXPECT_STREQ(lPage->GetLabel(), "a label of some length");
    EXPECT_TRUE(lPage->SetLabel(lPage->GetLabel() + 8));
    EXPECT_STREQ(lPage->GetLabel(), "of some length");
    EXPECT_TRUE(lPage->SetLabel(lPage->GetName() + 5));
    EXPECT_STREQ(lPage->GetLabel(), "name");
    lPage->AddEnumValue("a rather long enumeration text");
    EXPECT_EQ(lPage->AddEnumValue(lPage->GetEnumValue(0)), -1);
    EXPECT_EQ(lPage->AddEnumValue(lPage->GetEnumValue(0) + 2), 1);
    lPage->SetEnumValue(0, lPage->GetEnumValue(0));
    lPage->SetEnumValue(1, lPage->GetEnumValue(1) + 7);
    lPage->InsertEnumValue(0, lPage->GetEnumValue(1));
    EXPECT_STREQ(lPage->GetEnumValue(0), "long enumeration text");
    EXPECT_STREQ(lPage->GetEnumValue(1), "a rather long enumeration text");
    EXPECT_STREQ(lPage->GetEnumValue(2), "long enumeration text");
    const H lChild = lPage->Add(lPage->GetName(), H());
    EXPECT_EQ(lChild.GetName(), lPage->GetName()) << "equal names are one text";
    EXPECT_EQ(lPage->Find(lChild.GetName(), true), lChild);
    EXPECT_EQ(lPage->Find(lChild.GetName(), lChild.GetName(), true), H(lPage->GetPage(), -1));
}

TEST_F(PropertyHandleHostile, TakesItsOwnHandleAsArgument) {
    ReportRecorder lReports;
    H lChild = mPage->Find("child", true);
    const std::string lState = State();
    EXPECT_FALSE(lChild.SetParent(lChild));
    EXPECT_FALSE(lChild.IsChildOf(lChild));
    EXPECT_FALSE(lChild.IsDescendentOf(lChild));
    EXPECT_FALSE(lChild.GetNextDescendent(lChild).Valid());
    EXPECT_FALSE(lChild.ConnectSrc(lChild, eLyrConnectionData));
    EXPECT_FALSE(lChild.ConnectDst(lChild, eLyrConnectionData));
    EXPECT_FALSE(lChild.DisconnectSrc(lChild));
    EXPECT_FALSE(lChild.DisconnectDst(lChild));
    EXPECT_FALSE(lChild.IsConnectedSrc(lChild));
    EXPECT_FALSE(lChild.Find("part", lChild, true).Valid());
    EXPECT_EQ(State(), lState);
    EXPECT_EQ(lReports.Take(), Texts{});
    EXPECT_STREQ(lChild.Add("self", lChild).GetName(), "self");
    EXPECT_EQ(lReports.Take(), Texts{"Recursive type info"});
    H lInstance = H::Create(lChild);
    lInstance = H::Create(lInstance);
    EXPECT_TRUE(H(lInstance.GetPage()->GetInstanceOf(), 0).Destroy());
    EXPECT_TRUE(lInstance.Destroy());
}

// --- texts of any bytes and length -----------------------------------------------------------------------------------

TEST_F(PropertyHandleHostile, TakesNamesOfAnyBytes) {
    std::string lName;
    for (int lByte = 1; lByte < 256; ++lByte)
        lName += static_cast<char>(lByte);
    OwnedRoot lPage(H::Create(lName.c_str(), eENUM));
    const H lChild = lPage->Add(lName.c_str(), H());
    EXPECT_STREQ(lPage->GetName(), lName.c_str());
    EXPECT_EQ(lPage->Find(lName.c_str(), true), lChild);
    EXPECT_EQ(lPage->Find(lName.c_str(), false), lChild);
    EXPECT_FALSE(lPage->Find(lName.c_str() + 1, false).Valid());
    EXPECT_FALSE(lPage->Find(lName.c_str(), lName.c_str(), false).Valid());
    EXPECT_TRUE(lPage->SetLabel(lName.c_str()));
    EXPECT_STREQ(lPage->GetLabel(), lName.c_str());
    EXPECT_EQ(lPage->AddEnumValue(lName.c_str()), 0);
    EXPECT_STREQ(lPage->GetEnumValue(0), lName.c_str());
    lPage->BeginCreateOrFindProperty();
    EXPECT_EQ(lPage->Find(lName.c_str(), true), lChild);
    lPage->EndCreateOrFindProperty();
}

TEST_F(PropertyHandleHostile, TakesNamesOfAMebibyte) {
    const std::string lName(1 << 20, '\xE9');
    const std::string lOther = lName.substr(1) + 'x';
    OwnedRoot lPage(H::Create(lName.c_str(), eENUM));
    const H lChild = lPage->Add(lName.c_str(), H());
    H lParent = lChild;
    const H lDeep = lParent.Add(lOther.c_str(), H());
    EXPECT_EQ(lPage->Find(lName.c_str(), true), lChild);
    EXPECT_FALSE(lPage->Find(lOther.c_str(), true).Valid());
    EXPECT_EQ(lPage->Find((lName + '|' + lOther).c_str(), "|", true), lDeep);
    EXPECT_EQ(lPage->Find((lName + '|' + lOther).c_str(), "|", false), lDeep);
    EXPECT_FALSE(lPage->Find((lOther + '|' + lName).c_str(), "|", true).Valid());
    EXPECT_TRUE(lPage->SetLabel(lName.c_str()));
    EXPECT_EQ(lPage->AddEnumValue(lName.c_str()), 0);
    EXPECT_EQ(lPage->AddEnumValue(lName.c_str()), -1);
    EXPECT_EQ(std::string(lPage->GetEnumValue(0)), lName);
    lPage->BeginCreateOrFindProperty();
    EXPECT_EQ(lPage->Find((lName + '|' + lOther).c_str(), "|", true), lDeep);
    lPage->EndCreateOrFindProperty();
}

TEST_F(PropertyHandleHostile, FollowsAPathOfThousandsOfNames) {
    OwnedRoot lPage(H::Create());
    H lDeepest = *lPage;
    const int lDepth = 1000;
    for (int i = 0; i < lDepth; ++i)
        lDeepest = lDeepest.Add("", H());
    const std::string lPath(lDepth - 1, '/');
    EXPECT_EQ(lPage->Find(lPath.c_str(), "/", true), lDeepest);
    EXPECT_EQ(lPage->Find(lPath.c_str(), "/", false), lDeepest);
    EXPECT_FALSE(lPage->Find((lPath + '/').c_str(), "/", true).Valid());
    EXPECT_FALSE(lPage->Find(std::string(1 << 20, '/').c_str(), "/", true).Valid());
}

TEST_F(PropertyHandleHostile, FindsTextsAroundTheLengthOfAnyInnerBuffer) {
    OwnedRoot lPage(H::Create());
    for (std::size_t lLength = 250; lLength < 262; ++lLength) {
        const std::string lName(lLength, 'n');
        H lChild = lPage->Add(lName.c_str(), H());
        const H lDeep = lChild.Add("deep", H());
        EXPECT_EQ(lPage->Find((lName + "|deep").c_str(), "|", true), lDeep) << lLength;
    }
}

// --- parents that make no tree ---------------------------------------------------------------------------------------

TEST_F(PropertyHandleHostile, WalksParentsThatRunInACircle) {
    OwnedRoot lPage(H::Create());
    KLyrPropertyPage* lAdd = lPage->GetPage();
    const H lSelf(lAdd, lAdd->Add(1, "self", eDOUBLE1));
    const H lFirst(lAdd, lAdd->Add(3, "first", eDOUBLE1));
    const H lSecond(lAdd, lAdd->Add(2, "second", eDOUBLE1));
    const H lHanging = AddChild(lSecond, "hanging", eDOUBLE1);
    ASSERT_EQ(lSelf.GetParent(), lSelf);
    EXPECT_TRUE(lSelf.IsChildOf(lSelf));
    EXPECT_TRUE(lSelf.IsDescendentOf(lSelf));
    EXPECT_FALSE(lSelf.IsDescendentOf(lFirst));
    EXPECT_TRUE(lFirst.IsDescendentOf(lFirst));
    EXPECT_TRUE(lHanging.IsDescendentOf(lFirst));
    EXPECT_FALSE(lHanging.IsDescendentOf(lSelf));
    EXPECT_FALSE(lSelf.GetSibling().Valid());
    EXPECT_FALSE(lSelf.GetChild().Valid());
    EXPECT_EQ(lFirst.GetChild(), lSecond);
    EXPECT_EQ(lFirst.GetFirstDescendent(), lSecond);
    EXPECT_EQ(lFirst.GetNextDescendent(lSecond), lHanging);
    OwnedRoot lInstance(H::Create(*lPage));
    OwnedRoot lTyped(H::Create("typed", *lPage));
    EXPECT_FALSE(lTyped->GetChild().Valid()) << "no child of the root";
    const std::string lSeen = DescribePage(*lInstance, false);
    lPage->Destroy();
    EXPECT_EQ(DescribePage(*lInstance, false), lSeen);
}

}  // namespace
}  // namespace lyrsdk
