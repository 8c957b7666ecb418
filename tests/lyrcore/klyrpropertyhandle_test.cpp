#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;

class PropertyHandle : public HandleTest {};

// --- the value -------------------------------------------------------------------------------------------------------

static_assert(std::is_trivially_copyable_v<H> && std::is_trivially_destructible_v<H>, "a handle is a plain value");
static_assert(!std::is_convertible_v<const char*, H> && !std::is_convertible_v<std::nullptr_t, H> &&
                  !std::is_convertible_v<KLyrPropertyPage*, H>,
              "nothing turns into a handle by accident");

#define EXPECT_GIVES(pType, pCall) static_assert(std::is_same_v<decltype(pCall), pType>, #pCall)

TEST_F(PropertyHandle, TakesEveryCallWithItsDocumentedArgumentsAndResult) {
    [[maybe_unused]] H lHandle;
    [[maybe_unused]] const H lConst;
    [[maybe_unused]] const char* const lText = "a";
    [[maybe_unused]] const void* const lSource = nullptr;
    [[maybe_unused]] void* const lTarget = nullptr;
    EXPECT_GIVES(H&, lHandle = lConst);
    EXPECT_GIVES(bool, lConst == lHandle);
    EXPECT_GIVES(bool, lConst != lHandle);
    EXPECT_GIVES(bool, lConst.Is(lHandle));
    EXPECT_GIVES(bool, lConst.Valid());
    EXPECT_GIVES(H, H::Create());
    EXPECT_GIVES(H, H::Create(lConst));
    EXPECT_GIVES(H, H::Create(lHandle));
    EXPECT_GIVES(H, H::Create(H()));
    EXPECT_GIVES(H, H::Create(lText, eDOUBLE1));
    EXPECT_GIVES(H, H::Create("x", eDOUBLE1));
    EXPECT_GIVES(H, H::Create(nullptr, eDOUBLE1));
    EXPECT_GIVES(H, H::Create(lText, lConst));
    EXPECT_GIVES(H, H::Create("x", lHandle));
    EXPECT_GIVES(H, H::Create("x", H()));
    EXPECT_GIVES(H, H::Create(nullptr, lHandle));
    EXPECT_GIVES(H, lHandle.Add(lText, lConst));
    EXPECT_GIVES(H, lHandle.Add("x", lHandle));
    EXPECT_GIVES(H, lHandle.Add(nullptr, lHandle));
    EXPECT_GIVES(bool, lHandle.Destroy());
    EXPECT_GIVES(bool, lHandle.Set(lSource, eDOUBLE1, true));
    EXPECT_GIVES(bool, lHandle.Set(lTarget, eDOUBLE1, false));
    EXPECT_GIVES(bool, lConst.Get(lTarget, eDOUBLE1));
    EXPECT_GIVES(bool, lConst.GetDefaultValue(lTarget, eDOUBLE1));
    EXPECT_GIVES(ELyrType, lConst.GetType());
    EXPECT_GIVES(const char*, lConst.GetName());
    EXPECT_GIVES(H, lConst.GetTypeInfo());
    EXPECT_GIVES(H, lConst.Find(lText, true));
    EXPECT_GIVES(H, lConst.Find("a", false));
    EXPECT_GIVES(H, lConst.Find(lText, lConst, true));
    EXPECT_GIVES(H, lConst.Find("a", lHandle, true));
    EXPECT_GIVES(H, lConst.Find("a", H(), true));
    EXPECT_GIVES(H, lConst.Find(lText, lText, true));
    EXPECT_GIVES(H, lConst.Find("a", "|", true));
    EXPECT_GIVES(H, lConst.Find("a", nullptr, true));
    EXPECT_GIVES(H, lConst.Find(lText, lText, lConst, true));
    EXPECT_GIVES(H, lConst.Find("a", "|", lHandle, true));
    EXPECT_GIVES(void, lHandle.BeginCreateOrFindProperty());
    EXPECT_GIVES(void, lHandle.EndCreateOrFindProperty());
    EXPECT_GIVES(bool, lHandle.SetParent(lConst));
    EXPECT_GIVES(void, lHandle.SetPageDataPtr(lTarget));
    EXPECT_GIVES(void*, lConst.GetPageDataPtr());
    EXPECT_FALSE(lConst.Valid());
}

#undef EXPECT_GIVES

TEST_F(PropertyHandle, IsInvalidByDefault) {
    const H lHandle;
    EXPECT_FALSE(lHandle.Valid());
    EXPECT_EQ(lHandle.GetPage(), nullptr);
    EXPECT_EQ(lHandle.GetId(), -1);
}

TEST_F(PropertyHandle, IsValidOnlyWithBothAPageAndAnId) {
    OwnedRoot lPage(H::Create());
    EXPECT_TRUE(lPage->Valid());
    EXPECT_TRUE(H(lPage->GetPage(), 0).Valid());
    EXPECT_TRUE(H(lPage->GetPage(), 99).Valid());
    EXPECT_TRUE(H(lPage->GetPage(), -2).Valid());
    EXPECT_FALSE(H(lPage->GetPage(), -1).Valid());
    EXPECT_FALSE(H(nullptr, 0).Valid());
    EXPECT_FALSE(H(nullptr, -1).Valid());
}

TEST_F(PropertyHandle, StoresAnyPageAndIdAsGiven) {
    OwnedRoot lPage(H::Create());
    for (int lId : {-2147483647 - 1, -2, -1, 0, 5, 2147483647}) {
        EXPECT_EQ(H(lPage->GetPage(), lId).GetPage(), lPage->GetPage());
        EXPECT_EQ(H(lPage->GetPage(), lId).GetId(), lId);
        EXPECT_EQ(H(nullptr, lId).GetId(), lId);
    }
}

TEST_F(PropertyHandle, CopiesPageAndId) {
    OwnedRoot lPage(H::Create());
    const H lOriginal(lPage->GetPage(), 7);
    const H lCopy(lOriginal);
    EXPECT_EQ(lCopy.GetPage(), lPage->GetPage());
    EXPECT_EQ(lCopy.GetId(), 7);
    H lAssigned;
    EXPECT_EQ(&(lAssigned = lOriginal), &lAssigned);
    EXPECT_EQ(lAssigned.GetPage(), lPage->GetPage());
    EXPECT_EQ(lAssigned.GetId(), 7);
    const H& lSame = lAssigned;
    lAssigned = lSame;
    EXPECT_TRUE(lAssigned == lOriginal);
}

TEST_F(PropertyHandle, ComparesPageAndId) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lOther(H::Create());
    const H lHandles[] = {H(),
                          H(nullptr, 0),
                          H(lPage->GetPage(), 0),
                          H(lPage->GetPage(), 1),
                          H(lPage->GetPage(), -1),
                          H(lOther->GetPage(), 0),
                          H(lOther->GetPage(), -1)};
    const int lCount = static_cast<int>(std::size(lHandles));
    for (int i = 0; i < lCount; ++i) {
        for (int k = 0; k < lCount; ++k) {
            const H lLeft = lHandles[i];
            EXPECT_EQ(lLeft == lHandles[k], i == k) << i << ' ' << k;
            EXPECT_EQ(lLeft != lHandles[k], i != k) << i << ' ' << k;
            EXPECT_EQ(lLeft.Is(lHandles[k]), i == k) << i << ' ' << k;
        }
    }
}

TEST_F(PropertyHandle, DiffersBetweenAnInstanceAndItsPage) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    EXPECT_EQ(lInstance->GetId(), lPage->GetId());
    EXPECT_FALSE(*lInstance == *lPage);
    EXPECT_FALSE(lInstance->Is(*lPage));
}

TEST_F(PropertyHandle, KeepsNoPageAliveAndAllocatesNothing) {
    OwnedRoot lPage(H::Create());
    const std::size_t lBefore = MemoryProbe::Allocations();
    {
        std::vector<H> lCopies(1000, *lPage);
        EXPECT_EQ(lCopies[999], *lPage);
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

// --- pages -----------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandle, CreatesAPageWithAnUnnamedRoot) {
    OwnedRoot lRoot(H::Create());
    ASSERT_TRUE(lRoot->Valid());
    EXPECT_EQ(lRoot->GetId(), 0);
    EXPECT_STREQ(lRoot->GetName(), "");
    EXPECT_EQ(lRoot->GetType(), eUNIDENTIFIED);
    EXPECT_EQ(lRoot->GetTypeInfo(), H(nullptr, 0));
    EXPECT_EQ(lRoot->GetPage()->GetInstanceOf(), nullptr);
    EXPECT_FALSE(lRoot->GetChild().Valid());
}

TEST_F(PropertyHandle, CreatesAPageForEveryTypeCode) {
    for (int lCode = eUNIDENTIFIED; lCode < eMAX_TYPES; ++lCode) {
        OwnedRoot lRoot(H::Create("named", static_cast<ELyrType>(lCode)));
        ASSERT_TRUE(lRoot->Valid());
        EXPECT_EQ(lRoot->GetId(), 0);
        EXPECT_STREQ(lRoot->GetName(), "named");
        EXPECT_EQ(lRoot->GetType(), lCode);
    }
}

TEST_F(PropertyHandle, CreatesAnInstanceWhateverTheIdOfTheHandle) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    const H lChild = AddChild(*lPage, "child", eINTEGER1);
    for (const H& lOf : {H(*lPage), lChild, H(lPage->GetPage(), -1), H(lPage->GetPage(), 99)}) {
        OwnedRoot lInstance(H::Create(lOf));
        EXPECT_EQ(lInstance->GetId(), 0);
        EXPECT_NE(lInstance->GetPage(), lPage->GetPage());
        EXPECT_EQ(lInstance->GetPage()->GetInstanceOf(), lPage->GetPage());
        EXPECT_STREQ(lInstance->GetName(), "root");
        EXPECT_STREQ(lInstance->Find("child", true).GetName(), "child");
    }
}

TEST_F(PropertyHandle, CreatesAFamilyOfItsOwnFromAHandleWithoutPage) {
    OwnedRoot lRoot(H::Create(H(nullptr, 3)));
    ASSERT_TRUE(lRoot->Valid());
    EXPECT_EQ(lRoot->GetId(), 0);
    EXPECT_STREQ(lRoot->GetName(), "");
    EXPECT_EQ(lRoot->GetType(), eUNIDENTIFIED);
    EXPECT_EQ(lRoot->GetPage()->GetInstanceOf(), nullptr);
}

TEST_F(PropertyHandle, CreatesATypedPageWithCopiesOfTheTypesChildren) {
    OwnedRoot lType(H::Create("point", eDOUBLE3));
    SetDouble(AddChild(*lType, "x", eDOUBLE1), 4.5);
    AddChild(*lType, "y", eINTEGER1);
    const H lInType(lType->GetPage(), 1);
    OwnedRoot lRoot(H::Create("place", lInType));
    EXPECT_EQ(lRoot->GetId(), 0);
    EXPECT_STREQ(lRoot->GetName(), "place");
    EXPECT_EQ(lRoot->GetType(), eDOUBLE3);
    EXPECT_EQ(lRoot->GetTypeInfo(), *lType);
    const H lX = lRoot->GetChild();
    EXPECT_STREQ(lX.GetName(), "x");
    EXPECT_EQ(DoubleOf(lX), 4.5);
    EXPECT_STREQ(lX.GetSibling().GetName(), "y");
    EXPECT_FALSE(lX.GetSibling().GetSibling().Valid());
}

TEST_F(PropertyHandle, CreatesAnUntypedPageFromATypeHandleWithoutPage) {
    OwnedRoot lRoot(H::Create("plain", H()));
    EXPECT_STREQ(lRoot->GetName(), "plain");
    EXPECT_EQ(lRoot->GetType(), eUNIDENTIFIED);
    EXPECT_EQ(lRoot->GetTypeInfo(), H(nullptr, 0));
}

TEST_F(PropertyHandle, KeepsOneDataPointerAPage) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lInstance(H::Create(*lPage));
    H lChild = AddChild(*lPage, "child", eDOUBLE1);
    int lData = 0;
    EXPECT_EQ(lPage->GetPageDataPtr(), nullptr);
    lChild.SetPageDataPtr(&lData);
    EXPECT_EQ(lPage->GetPageDataPtr(), &lData);
    EXPECT_EQ(lChild.GetPageDataPtr(), &lData);
    EXPECT_EQ(lInstance->GetPageDataPtr(), nullptr);
    EXPECT_EQ(H(lPage->GetPage(), -1).GetPageDataPtr(), &lData);
    lPage->SetPageDataPtr(nullptr);
    EXPECT_EQ(lChild.GetPageDataPtr(), nullptr);
}

// --- Destroy ---------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandle, DestroysThePageThroughItsRoot) {
    const LeakCheck lLeakCheck;
    H lRoot = H::Create("root", eSTRING);
    AddChild(lRoot, "child", eBLOB);
    EXPECT_TRUE(lRoot.Destroy());
    EXPECT_EQ(lRoot, H());
    EXPECT_FALSE(lRoot.Destroy());
}

TEST_F(PropertyHandle, DestroysAnInstanceThroughTheRootThatItInherits) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    H lInstance = H::Create(*lPage);
    EXPECT_TRUE(lInstance.Destroy());
    EXPECT_EQ(lInstance, H());
    EXPECT_EQ(lPage->GetReferencedByCount(), 0);
    EXPECT_STREQ(lPage->GetName(), "root");
}

TEST_F(PropertyHandle, DestroysOneEntryAndLeavesTheChildrenAndTheOtherHandles) {
    OwnedRoot lPage(H::Create());
    H lChild = AddChild(*lPage, "child", eDOUBLE1);
    const H lGrandchild = AddChild(lChild, "grandchild", eDOUBLE1);
    const H lOther = lChild;
    SetDouble(lGrandchild, 3);
    EXPECT_TRUE(lChild.Destroy());
    EXPECT_EQ(lChild, H());
    EXPECT_TRUE(lOther.Valid());
    EXPECT_STREQ(lOther.GetName(), "");
    EXPECT_EQ(lOther.GetParent().GetId(), -1);
    EXPECT_EQ(lGrandchild.GetParent(), lOther);
    EXPECT_EQ(DoubleOf(lGrandchild), 3);
    EXPECT_EQ(lOther.GetChild(), lGrandchild);
    H lAgain = lOther;
    EXPECT_FALSE(lAgain.Destroy());
    EXPECT_EQ(lAgain, lOther);
}

TEST_F(PropertyHandle, DestroysAnInheritedPropertyInThePageThatHoldsIt) {
    OwnedRoot lTop(H::Create());
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    OwnedRoot lHolder(H::Create(*lTop));
    const H lChild = AddChild(*lTop, "child", eDOUBLE1);
    SetDouble(On(*lHolder, lChild), 8);
    H lInherited = On(*lBottom, lChild);
    EXPECT_TRUE(lInherited.Destroy());
    EXPECT_EQ(lInherited, H());
    EXPECT_EQ(lTop->GetPage()->GetPropertyEntry(lChild.GetId()), nullptr);
    EXPECT_FALSE(lTop->GetChild().Valid());
    EXPECT_FALSE(lMiddle->GetChild().Valid());
    EXPECT_EQ(DoubleOf(On(*lHolder, lChild)), 8);
    EXPECT_EQ(lHolder->GetChild(), On(*lHolder, lChild));
}

TEST_F(PropertyHandle, DestroysTheNearestOfSeveralEntriesSoThatTheInheritedOneShows) {
    OwnedRoot lTop(H::Create());
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    const H lChild = AddChild(*lTop, "child", eDOUBLE1);
    SetDouble(lChild, 1);
    SetDouble(On(*lMiddle, lChild), 2);
    H lHandle = On(*lBottom, lChild);
    EXPECT_EQ(DoubleOf(lHandle), 2);
    EXPECT_TRUE(lHandle.Destroy());
    EXPECT_EQ(DoubleOf(On(*lBottom, lChild)), 1);
    EXPECT_EQ(DoubleOf(On(*lMiddle, lChild)), 1);
    lHandle = On(*lBottom, lChild);
    EXPECT_TRUE(lHandle.Destroy());
    EXPECT_FALSE(lTop->GetChild().Valid());
}

TEST_F(PropertyHandle, NeverUsesADestroyedIdAgain) {
    OwnedRoot lPage(H::Create());
    H lFirst = AddChild(*lPage, "child", eDOUBLE1);
    const H lOld = lFirst;
    lFirst.Destroy();
    EXPECT_NE(AddChild(*lPage, "child", eDOUBLE1), lOld);
}

// --- Add and SetParent -----------------------------------------------------------------------------------------------

TEST_F(PropertyHandle, AddsATypedChildBelowItsOwnProperty) {
    OwnedRoot lType(H::Create("number", eDOUBLE1));
    SetDouble(AddChild(*lType, "unit", eINTEGER1), 12);
    OwnedRoot lPage(H::Create());
    H lGroup = lPage->Add("group", H());
    const H lNumber = lGroup.Add("width", *lType);
    ASSERT_TRUE(lNumber.Valid());
    EXPECT_EQ(lNumber.GetPage(), lPage->GetPage());
    EXPECT_STREQ(lNumber.GetName(), "width");
    EXPECT_EQ(lNumber.GetType(), eDOUBLE1);
    EXPECT_EQ(lNumber.GetTypeInfo(), *lType);
    EXPECT_EQ(lNumber.GetParent(), lGroup);
    EXPECT_EQ(lNumber.GetFlags(), 0u);
    EXPECT_EQ(IntOf(lNumber.GetChild()), 12);
    SetInt(lNumber.GetChild(), 13);
    EXPECT_EQ(IntOf(lType->GetChild()), 12);
    EXPECT_EQ(lGroup.GetType(), eUNIDENTIFIED);
}

TEST_F(PropertyHandle, AddsOnlyToTheInstanceItIsAskedOn) {
    OwnedRoot lPage(H::Create());
    OwnedRoot lInstance(H::Create(*lPage));
    const H lOwn = lInstance->Add("own", H());
    const H lLater = lPage->Add("later", H());
    EXPECT_NE(lOwn.GetId(), lLater.GetId());
    EXPECT_FALSE(lPage->Find("own", true).Valid());
    EXPECT_TRUE(lInstance->Find("own", true).Valid());
    EXPECT_TRUE(lInstance->Find("later", true).Valid());
}

TEST_F(PropertyHandle, ReportsATypeThatIsItsOwnPage) {
    ReportRecorder lReports;
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    const H lChild = lPage->Add("self", *lPage);
    EXPECT_TRUE(lChild.Valid());
    EXPECT_FALSE(lChild.GetChild().Valid());
    EXPECT_EQ(lReports.Take(), std::vector<std::string>{"Recursive type info"});
    EXPECT_EQ(lChild.GetType(), eDOUBLE1);
}

TEST_F(PropertyHandle, NeverTakesAnotherParent) {
    OwnedRoot lPage(H::Create());
    H lFirst = AddChild(*lPage, "first", eDOUBLE1);
    const H lSecond = AddChild(*lPage, "second", eDOUBLE1);
    EXPECT_FALSE(lFirst.SetParent(lSecond));
    EXPECT_FALSE(lFirst.SetParent(*lPage));
    EXPECT_FALSE(lFirst.SetParent(lFirst));
    EXPECT_FALSE(lFirst.SetParent(H()));
    EXPECT_EQ(lFirst.GetParent(), *lPage);
    EXPECT_FALSE(lSecond.GetChild().Valid());
}

// --- values ----------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandle, SetsAndGetsValuesAcrossTypes) {
    OwnedRoot lPage(H::Create("root", eINTEGER1));
    const double lSource = 2.9;
    EXPECT_TRUE(lPage->Set(&lSource, eDOUBLE1, false));
    EXPECT_EQ(IntOf(*lPage), 2);
    EXPECT_EQ(DoubleOf(*lPage), 2.0);
    EXPECT_EQ(TextOf(*lPage), "2");
    lyrHalfFloat lHalf(1.0f);
    EXPECT_FALSE(lPage->Set(&lHalf, eHALFFLOAT, false));
    EXPECT_EQ(IntOf(*lPage), 2);
}

TEST_F(PropertyHandle, DropsAnOwnValueThatEqualsTheInheritedOneWithTheCheck) {
    OwnedRoot lPage(H::Create("root", eDOUBLE1));
    OwnedRoot lInstance(H::Create(*lPage));
    SetDouble(*lPage, 1);
    EXPECT_FALSE(SetDouble(*lInstance, 1, true));
    EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrInherit);
    EXPECT_TRUE(SetDouble(*lInstance, 1, false));
    EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrOverride);
    EXPECT_TRUE(SetDouble(*lInstance, 2, true));
    EXPECT_EQ(DoubleOf(*lInstance), 2);
    EXPECT_EQ(DoubleOf(*lPage), 1);
    EXPECT_TRUE(SetDouble(*lInstance, 1, true));
    EXPECT_EQ(lInstance->GetValueInheritType(false), eLyrInherit);
    EXPECT_EQ(DoubleOf(*lInstance), 1);
}

TEST_F(PropertyHandle, GivesTheDefaultFromTheTopOfTheChain) {
    OwnedRoot lTop(H::Create("root", eDOUBLE1));
    OwnedRoot lMiddle(H::Create(*lTop));
    OwnedRoot lBottom(H::Create(*lMiddle));
    SetDouble(*lTop, 1);
    SetDouble(*lMiddle, 2);
    SetDouble(*lBottom, 3);
    int lValue = 0;
    for (const H& lHandle : {H(*lTop), H(*lMiddle), H(*lBottom)}) {
        EXPECT_TRUE(lHandle.GetDefaultValue(&lValue, eINTEGER1));
        EXPECT_EQ(lValue, 1);
    }
    EXPECT_EQ(DoubleOf(*lBottom), 3);
    lyrBlob lBlob;
    EXPECT_TRUE(lBottom->GetDefaultValue(&lBlob, eBLOB));
    EXPECT_EQ(lBlob.GetSize(), 8);
    lyrDateTime lDate;
    EXPECT_FALSE(lBottom->GetDefaultValue(&lDate, eDATETIME));
}

TEST_F(PropertyHandle, HasNoValueWithoutAType) {
    OwnedRoot lPage(H::Create());
    double lValue = 5;
    EXPECT_FALSE(lPage->Set(&lValue, eDOUBLE1, true));
    EXPECT_FALSE(lPage->Set(&lValue, eDOUBLE1, false));
    EXPECT_FALSE(lPage->Get(&lValue, eDOUBLE1));
    EXPECT_FALSE(lPage->GetDefaultValue(&lValue, eDOUBLE1));
    EXPECT_EQ(lValue, 5);
}

// --- lookup ----------------------------------------------------------------------------------------------------------

TEST_F(PropertyHandle, FindsADirectChildWithOrWithoutCase) {
    OwnedRoot lPage(H::Create());
    const H lLower = AddChild(*lPage, "name", eDOUBLE1);
    const H lUpper = AddChild(*lPage, "NAME", eDOUBLE1);
    AddChild(lLower, "deep", eDOUBLE1);
    EXPECT_EQ(lPage->Find("name", true), lLower);
    EXPECT_EQ(lPage->Find("NAME", true), lUpper);
    EXPECT_EQ(lPage->Find("NaMe", false), lLower);
    EXPECT_EQ(lPage->Find("NaMe", true), H(lPage->GetPage(), -1));
    EXPECT_EQ(lPage->Find("deep", true), H(lPage->GetPage(), -1));
    EXPECT_EQ(lPage->Find("name|deep", true), H(lPage->GetPage(), -1));
}

TEST_F(PropertyHandle, KeepsThePageOfALookupThatFindsNothing) {
    OwnedRoot lPage(H::Create());
    const H lMiss = lPage->Find("missing", true);
    EXPECT_FALSE(lMiss.Valid());
    EXPECT_EQ(lMiss.GetPage(), lPage->GetPage());
    EXPECT_EQ(lMiss.GetId(), -1);
    for (const H& lOther : {lPage->Find("missing", "|", false), lPage->Find("missing", *lPage, true),
                            lPage->Find("missing", "|", *lPage, true)})
        EXPECT_EQ(lOther, lMiss);
}

TEST_F(PropertyHandle, FindsAlongAPathOfNames) {
    OwnedRoot lPage(H::Create());
    const H lA = AddChild(*lPage, "a", eDOUBLE1);
    const H lB = AddChild(lA, "b", eDOUBLE1);
    const H lEmpty = AddChild(lB, "", eDOUBLE1);
    const H lC = AddChild(lEmpty, "c", eDOUBLE1);
    EXPECT_EQ(lPage->Find("a", "|", true), lA);
    EXPECT_EQ(lPage->Find("a|b", "|", true), lB);
    EXPECT_EQ(lPage->Find("a/b", "|/", true), lB);
    EXPECT_EQ(lPage->Find("a|b/", "|/", true), lEmpty);
    EXPECT_EQ(lPage->Find("A|B||C", "|", false), lC);
    EXPECT_FALSE(lPage->Find("A|B||C", "|", true).Valid());
    EXPECT_FALSE(lPage->Find("a|b", "", true).Valid());
    EXPECT_FALSE(lPage->Find("|a", "|", true).Valid());
    EXPECT_EQ(lA.Find("b", "|", true), lB);
}

TEST_F(PropertyHandle, FiltersOnlyTheLastNameByType) {
    OwnedRoot lNumber(H::Create("number", eDOUBLE1));
    OwnedRoot lChoice(H::Create("choice", eENUM));
    OwnedRoot lPage(H::Create());
    const H lPlain = AddChild(*lPage, "a", eDOUBLE1);
    const H lTyped = lPage->Add("a", *lNumber);
    H lParent = lPlain;
    const H lDeep = lParent.Add("b", *lChoice);
    EXPECT_EQ(lPage->Find("a", true), lPlain);
    EXPECT_EQ(lPage->Find("a", *lNumber, true), lTyped);
    EXPECT_EQ(lPage->Find("A", *lNumber, false), lTyped);
    EXPECT_FALSE(lPage->Find("a", *lChoice, true).Valid());
    EXPECT_EQ(lPage->Find("a", H(lNumber->GetPage(), -1), true), lTyped) << "only the page of the filter counts";
    EXPECT_EQ(lPage->Find("a", H(nullptr, 0), true), lPlain) << "without a page there is no filter";
    EXPECT_EQ(lPage->Find("a|b", "|", *lChoice, true), lDeep);
    EXPECT_FALSE(lPage->Find("a|b", "|", *lNumber, true).Valid());
    EXPECT_EQ(lPage->Find("a|b", nullptr, *lChoice, true), H(lPage->GetPage(), -1));
    EXPECT_EQ(lPage->Find("a|b", "|", H(), true), lDeep);
}

TEST_F(PropertyHandle, LooksUpWithCaseAndFinallyWhileABracketIsOpen) {
    OwnedRoot lPage(H::Create("root", eUNIDENTIFIED));
    OwnedRoot lInstance(H::Create(*lPage));
    const H lName = AddChild(*lPage, "name", eDOUBLE1);
    lPage->BeginCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("name", false), lName);
    EXPECT_FALSE(lPage->Find("NAME", false).Valid());
    const H lNew = lPage->Add("new", H());
    EXPECT_EQ(lPage->Find("new", true), lNew);
    lPage->EndCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("NAME", false), lName);

    SetDouble(On(*lInstance, lName), 1);
    lInstance->BeginCreateOrFindProperty();
    EXPECT_EQ(lInstance->Find("name", true), On(*lInstance, lName)) << "though only its value is held here";
    const H lElsewhere = lPage->Add("elsewhere", H());
    EXPECT_FALSE(lInstance->Find("elsewhere", true).Valid());
    lInstance->EndCreateOrFindProperty();
    EXPECT_EQ(lInstance->Find("elsewhere", true), On(*lInstance, lElsewhere));
}

TEST_F(PropertyHandle, DoesNotFindAPropertyThatWasDestroyedInsideABracket) {
    OwnedRoot lPage(H::Create());
    H lFirst = AddChild(*lPage, "twin", eDOUBLE1);
    const H lSecond = AddChild(*lPage, "twin", eDOUBLE1);
    H lSingle = AddChild(*lPage, "single", eDOUBLE1);
    lPage->BeginCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("twin", true), lFirst);
    lFirst.Destroy();
    lSingle.Destroy();
    EXPECT_EQ(lPage->Find("twin", true), lSecond);
    EXPECT_FALSE(lPage->Find("single", true).Valid());
    const H lAgain = lPage->Add("single", H());
    EXPECT_EQ(lPage->Find("single", true), lAgain);
    lPage->EndCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("single", true), lAgain);
}

TEST_F(PropertyHandle, ClosesABracketWithItsFirstEnd) {
    OwnedRoot lPage(H::Create());
    const H lName = AddChild(*lPage, "name", eDOUBLE1);
    lPage->EndCreateOrFindProperty();
    lPage->BeginCreateOrFindProperty();
    lPage->BeginCreateOrFindProperty();
    EXPECT_FALSE(lPage->Find("NAME", false).Valid());
    lPage->EndCreateOrFindProperty();
    EXPECT_EQ(lPage->Find("NAME", false), lName);
    lPage->EndCreateOrFindProperty();
    lPage->BeginCreateOrFindProperty();
    EXPECT_FALSE(lPage->Find("NAME", false).Valid());
    lPage->EndCreateOrFindProperty();
}

}  // namespace
}  // namespace lyrsdk
