#include <gtest/gtest.h>

#include <climits>
#include <utility>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/memory_probe.h"
#include "tests/support/page_family.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

using Texts = std::vector<std::string>;

// Properties that are typed by pages, and the copies that they bring along.
class KLyrPropertyPageTypedTest : public PageTest {};

int AddNumber(const OwnedPage& pPage, int pParentId, const char* pName, double pValue) {
    const int lId = pPage->Add(pParentId, pName, eDOUBLE1);
    SetNumber(pPage, lId, pValue);
    return lId;
}

TEST_F(KLyrPropertyPageTypedTest, GetsCopiesOfTheTypePagesPropertiesInTheirOrder) {
    const OwnedPage lType = MakeRoot("light", eINTEGER1);
    lType->SetLabel(0, "not copied");
    AddNumber(lType, 0, "intensity", 2.5);
    AddNumber(lType, 0, "range", 10);
    const OwnedPage lPage = MakeRoot();
    const int lId = lPage->Add(0, "lamp", lType.get());
    EXPECT_EQ(lId, 1);
    EXPECT_EQ(lPage->GetType(lId), eINTEGER1);
    EXPECT_EQ(lPage->GetTypeInfo(lId), lType.get());
    EXPECT_STREQ(lPage->GetLabel(lId), "");
    EXPECT_EQ(ChildrenOf(lPage, lId), (std::vector<int>{2, 3}));
    EXPECT_EQ(Tree(lPage, lId), "intensity=2.5 range=10");
    EXPECT_EQ(lPage->GetType(2), eDOUBLE1);
    EXPECT_EQ(lPage->GetTypeInfo(2), nullptr);
    EXPECT_EQ(lPage->Add(0, "next", eDOUBLE1), 4);
}

TEST_F(KLyrPropertyPageTypedTest, ValueOfTheTypedPropertyStartsAtItsDefault) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    SetNumber(lType, 0, 9);
    const OwnedPage lPage = MakeRoot();
    EXPECT_EQ(NumberOf(lPage, lPage->Add(0, "a", lType.get())), 0);
}

TEST_F(KLyrPropertyPageTypedTest, CopiesAreIndependentOfTheTypePage) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    const int lX = AddNumber(lType, 0, "x", 1);
    const OwnedPage lPage = MakeRoot();
    const int lCopy = lPage->GetChild(lPage->Add(0, "a", lType.get()));
    SetNumber(lType, lX, 5);
    lType->SetLabel(lX, "label");
    EXPECT_EQ(NumberOf(lPage, lCopy), 1);
    EXPECT_STREQ(lPage->GetLabel(lCopy), "");
    SetNumber(lPage, lCopy, 7);
    EXPECT_EQ(NumberOf(lType, lX), 5);
    AddNumber(lType, 0, "later", 1);
    EXPECT_EQ(Tree(lPage, 0), "a=0(x=7)");
}

TEST_F(KLyrPropertyPageTypedTest, CloneKeepsNameTypeAndValueOnly) {
    const OwnedPage lType = MakeRoot();
    const int lX = lType->Add(0, "x", eENUM);
    const int lTwo = 2;
    lType->SetLabel(lX, "label");
    lType->SetUserTag(lX, 8);
    lType->SetUserData(lX, &lTwo);
    lType->AddEnumValue(lX, "first");
    lType->SetMinMax(lX, KLyrPropertyInfo::eValueMax, &lTwo, eINTEGER1);
    lType->Set(lX, &lTwo, eINTEGER1, false);
    lType->ModifyFlags(lX, LyrPropertyFlags::eHIDDEN, true, false);
    const OwnedPage lPage = MakeRoot();
    const int lCopy = lPage->GetChild(lPage->Add(0, "a", lType.get()));
    EXPECT_STREQ(lPage->GetName(lCopy), "x");
    EXPECT_EQ(lPage->GetType(lCopy), eENUM);
    EXPECT_EQ(NumberOf(lPage, lCopy), 2);
    EXPECT_STREQ(lPage->GetLabel(lCopy), "");
    EXPECT_EQ(lPage->GetUserTag(lCopy), 0);
    EXPECT_EQ(lPage->GetUserData(lCopy), nullptr);
    EXPECT_EQ(lPage->GetEnumCount(lCopy), 0);
    EXPECT_FALSE(lPage->HasMinMax(lCopy, KLyrPropertyInfo::eValueMax));
    EXPECT_EQ(OwnFlagData(lPage, lCopy), 0x7FFF0000u);
}

TEST_F(KLyrPropertyPageTypedTest, ItemsAreTakenFromTheTypePagesOwnChain) {
    const OwnedPage lBase = MakeRoot("base", eDOUBLE1);
    const int lX = AddNumber(lBase, 0, "x", 1);
    AddNumber(lBase, 0, "y", 2);
    const OwnedPage lType = MakeInstance(lBase);
    SetNumber(lType, lX, 10);
    AddNumber(lType, 0, "z", 3);
    AddNumber(lBase, 0, "w", 4);
    const OwnedPage lPage = MakeRoot();
    const int lId = lPage->Add(0, "a", lType.get());
    EXPECT_EQ(Tree(lPage, lId), "x=10 y=2 z=3 w=4");
    EXPECT_EQ(lPage->GetType(lId), eDOUBLE1);
}

TEST_F(KLyrPropertyPageTypedTest, PlainChildrenBringTheirOwnAlongDepthFirst) {
    const OwnedPage lType = MakeRoot();
    const int lA = AddNumber(lType, 0, "a", 1);
    const int lB = AddNumber(lType, 0, "b", 2);
    AddNumber(lType, lB, "ba", 3);
    const int lAA = AddNumber(lType, lA, "aa", 4);
    AddNumber(lType, lAA, "aaa", 5);
    AddNumber(lType, lA, "ab", 6);
    const OwnedPage lPage = MakeRoot();
    const int lId = lPage->Add(0, "p", lType.get());
    EXPECT_EQ(Tree(lPage, lId), Tree(lType, 0));
    EXPECT_EQ(Tree(lPage, lId), "a=1(aa=4(aaa=5) ab=6) b=2(ba=3)");
    const char* lDepthFirst[] = {"p", "a", "aa", "aaa", "ab", "b", "ba"};
    for (int i = 0; i < 7; ++i)
        EXPECT_STREQ(lPage->GetName(lId + i), lDepthFirst[i]);
}

TEST_F(KLyrPropertyPageTypedTest, OnlyWhatHangsBelowTheTypePagesRootIsCopied) {
    const OwnedPage lType = MakeRoot();
    AddNumber(lType, -1, "second root", 1);
    const int lStray = AddNumber(lType, 77, "stray", 2);
    AddNumber(lType, lStray, "below", 3);
    AddNumber(lType, 0, "child", 4);
    const OwnedPage lPage = MakeRoot();
    EXPECT_EQ(Tree(lPage, lPage->Add(0, "p", lType.get())), "child=4");
    EXPECT_EQ(lPage->GetPropertyEntryCount(), 3);
}

TEST_F(KLyrPropertyPageTypedTest, MissingItemsStayMissing) {
    const OwnedPage lType = MakeRoot();
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("described", eINTEGER1));
    const Counted<KLyrPropertyValue> lValue(KLyrPropertyValue::Create(nullptr, eDOUBLE1));
    lType->Add(0, lInfo.Get(), nullptr, nullptr, true);
    const int lPlain = lType->Add(0, nullptr, lValue.Get(), nullptr, true);
    lType->Add(lPlain, nullptr, nullptr, nullptr, true);
    const OwnedPage lPage = MakeRoot();
    lPage->Add(0, "p", lType.get());
    EXPECT_EQ(Held(lPage),
              "0<-1 iv- 7fff0000\n1<0 iv- 7fff0000\n2<1 i-- 7fff0000\n3<1 -v- 7fff0000\n4<3 --- 7fff0000\n");
    EXPECT_NE(OwnItem<KLyrPropertyInfo>(lPage, 2), lInfo.Get());
    EXPECT_NE(OwnItem<KLyrPropertyValue>(lPage, 3), lValue.Get());
}

TEST_F(KLyrPropertyPageTypedTest, ClonedConnectItemBelongsToTheNewProperty) {
    const OwnedPage lType = MakeRoot();
    const int lX = lType->Add(0, "x", eDOUBLE1);
    const int lY = lType->Add(0, "y", eDOUBLE1);
    ASSERT_TRUE(lType->ConnectSrc(lX, lType.get(), lY, eLyrConnectionNone));
    const OwnedPage lPage = MakeRoot();
    lPage->Add(0, "before", eDOUBLE1);
    const int lCopy = lPage->GetChild(lPage->Add(0, "p", lType.get()));
    const KLyrPropertyConnect* lConnect = OwnItem<KLyrPropertyConnect>(lPage, lCopy);
    ASSERT_NE(lConnect, nullptr);
    EXPECT_EQ(lConnect->GetPage(), lPage.get());
    EXPECT_EQ(lConnect->GetPropertyId(), lCopy);
    EXPECT_EQ(lPage->GetSrcCount(lCopy, nullptr), 0);
    EXPECT_EQ(lPage->GetDstCount(lCopy + 1, nullptr), 0);
    EXPECT_EQ(lType->GetSrcCount(lX, nullptr), 1);
}

TEST_F(KLyrPropertyPageTypedTest, ItemsOfATypedDescriptionBringChildrenOnlyWhenAsked) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    AddNumber(lType, 0, "x", 1);
    const OwnedPage lPage = MakeRoot();
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("a", lType.get()));
    const int lAlone = lPage->Add(0, lInfo.Get(), nullptr, nullptr, false);
    const int lDeep = lPage->Add(0, lInfo.Get(), nullptr, nullptr, true);
    EXPECT_EQ(Tree(lPage, lAlone), "");
    EXPECT_EQ(Tree(lPage, lDeep), "x=1");
    EXPECT_EQ(lPage->GetType(lAlone), eDOUBLE1);
}

// --- type pages in type pages ----------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageTypedTest, TypedChildIsExpandedFromItsOwnTypePage) {
    const OwnedPage lInner = MakeRoot("inner", eDOUBLE1);
    AddNumber(lInner, 0, "x", 1);
    const OwnedPage lOuter = MakeRoot("outer", eDOUBLE1);
    const int lTyped = lOuter->Add(0, "typed", lInner.get());
    AddNumber(lOuter, lTyped, "extra", 2);
    SetNumber(lOuter, lOuter->GetChild(lTyped), 3);
    AddNumber(lInner, 0, "y", 4);
    SetNumber(lOuter, lTyped, 5);
    EXPECT_EQ(Tree(lOuter, 0), "typed=5(x=3 extra=2)");
    const OwnedPage lPage = MakeRoot();
    EXPECT_EQ(Tree(lPage, lPage->Add(0, "p", lOuter.get())), "typed=5(x=1 y=4)");
}

TEST_F(KLyrPropertyPageTypedTest, TypedAndPlainChildrenNestInAnyOrder) {
    const OwnedPage lLeaf = MakeRoot("leaf", eDOUBLE1);
    AddNumber(lLeaf, AddNumber(lLeaf, 0, "l", 1), "m", 2);
    const OwnedPage lInner = MakeRoot("inner", eDOUBLE1);
    lInner->Add(AddNumber(lInner, 0, "plain", 3), "deep", lLeaf.get());
    const OwnedPage lOuter = MakeRoot("outer", eDOUBLE1);
    const int lGroup = AddNumber(lOuter, 0, "group", 4);
    lOuter->Add(lGroup, "one", lInner.get());
    lOuter->Add(lGroup, "two", lInner.get());
    AddNumber(lOuter, 0, "last", 5);
    const OwnedPage lPage = MakeTyped("p", lOuter);
    const std::string lInnerTree = "plain=3(deep=0(l=1(m=2)))";
    EXPECT_EQ(Tree(lPage, 0), "group=4(one=0(" + lInnerTree + ") two=0(" + lInnerTree + ")) last=5");
}

// --- recursion -------------------------------------------------------------------------------------------------------

// Takes the reports, which must all be of this text.
int TakeRecursionReports(ReportRecorder& pReports) {
    int lCount = 0;
    for (const ReportRecorder::Report& lReport : pReports.TakeReports()) {
        EXPECT_EQ(lReport.file, "lyrfilesdk/lyrcore/klyrpropertypage");
        EXPECT_EQ(lReport.function, "");
        EXPECT_EQ(lReport.message, "Recursive type info");
        ++lCount;
    }
    return lCount;
}

TEST_F(KLyrPropertyPageTypedTest, PageThatTypesAPropertyOfItselfIsReportedAndNotExpanded) {
    const OwnedPage lPage = MakeRoot("root", eINTEGER1);
    AddNumber(lPage, 0, "x", 1);
    ReportRecorder lReports;
    const int lId = lPage->Add(0, "self", lPage.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1);
    EXPECT_EQ(lId, 2);
    EXPECT_EQ(Tree(lPage, 0), "x=1 self=0");
    EXPECT_EQ(lPage->GetType(lId), eINTEGER1);
    EXPECT_EQ(lPage->GetTypeInfo(lId), lPage.get());
    const Counted<KLyrPropertyInfo> lInfo(KLyrPropertyInfo::Create("quiet", lPage.get()));
    EXPECT_EQ(lPage->Add(0, lInfo.Get(), nullptr, nullptr, false), 3);
}

TEST_F(KLyrPropertyPageTypedTest, PropertyTypedByThePageAddedToIsReportedInsideATypePageToo) {
    const OwnedPage lPage = MakeRoot("root", eINTEGER1);
    AddNumber(lPage, 0, "x", 1);
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    lType->Add(0, "back", lPage.get());
    AddNumber(lType, 0, "y", 2);
    ReportRecorder lReports;
    lPage->Add(0, "p", lType.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1);
    EXPECT_EQ(Tree(lPage, 0), "x=1 p=0(back=0 y=2)");
}

TEST_F(KLyrPropertyPageTypedTest, TypePagesThatContainEachOtherAreCutWhereTheyRepeat) {
    const OwnedPage lA = MakeRoot("a", eDOUBLE1);
    const OwnedPage lB = MakeRoot("b", eDOUBLE1);
    AddNumber(lA, 0, "xa", 1);
    lB->Add(AddNumber(lB, 0, "xb", 2), "to a", lA.get());
    ReportRecorder lReports;
    lA->Add(0, "to b", lB.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1) << "b leads back to a, the page added to";
    EXPECT_EQ(Tree(lA, 0), "xa=1 to b=0(xb=2(to a=0))");
    const OwnedPage lPage = MakeRoot();
    lPage->Add(0, "p", lA.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1);
    EXPECT_EQ(Tree(lPage, 0), "p=0(xa=1 to b=0(xb=2(to a=0)))");
    const int lQ = lPage->Add(0, "q", lB.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1);
    EXPECT_EQ(Tree(lPage, lQ), "xb=2(to a=0(xa=1 to b=0))");
}

TEST_F(KLyrPropertyPageTypedTest, RecursionIsFoundWhereverItBegins) {
    const OwnedPage lA = MakeRoot("a", eDOUBLE1);
    const OwnedPage lB = MakeRoot("b", eDOUBLE1);
    const OwnedPage lOuter = MakeRoot("outer", eDOUBLE1);
    ReportRecorder lReports;
    lB->Add(AddNumber(lB, AddNumber(lB, 0, "x", 1), "y", 2), "to a", lA.get());
    lA->Add(0, "to b", lB.get());
    lA->Add(0, "to b too", lB.get());
    lOuter->Add(AddNumber(lOuter, 0, "z", 3), "in", lA.get());
    lReports.Clear();
    const OwnedPage lPage = MakeTyped("p", lOuter);
    const std::string lInB = "x=1(y=2(to a=0))";
    EXPECT_EQ(Tree(lPage, 0), "z=3(in=0(to b=0(" + lInB + ") to b too=0(" + lInB + ")))");
    EXPECT_EQ(TakeRecursionReports(lReports), 2);
}

TEST_F(KLyrPropertyPageTypedTest, UsingATypePageTwiceSideBySideIsNoRecursion) {
    const OwnedPage lInner = MakeRoot("inner", eDOUBLE1);
    AddNumber(lInner, 0, "x", 1);
    const OwnedPage lOuter = MakeRoot("outer", eDOUBLE1);
    lOuter->Add(0, "a", lInner.get());
    lOuter->Add(lOuter->Add(0, "b", lInner.get()), "c", lInner.get());
    const OwnedPage lPage = MakeTyped("p", lOuter);
    EXPECT_EQ(Tree(lPage, 0), "a=0(x=1) b=0(x=1)");
}

// --- type pages of the same family -----------------------------------------------------------------------------------

KLyrPropertyPage* sgAddedTo = nullptr;
KLyrPropertyPage* sgAddedType = nullptr;

void AddWhenReported(const char*, const char*, unsigned long, const char*, bool*) {
    // What is added here reports as well.
    if (KLyrPropertyPage* lPage = std::exchange(sgAddedTo, nullptr))
        lPage->Add(0, "p", sgAddedType);
}

TEST_F(KLyrPropertyPageTypedTest, AReportsHandlerMayAddTheSameTypeMeanwhile) {
    const OwnedPage lA = MakeRoot("a", eDOUBLE1);
    const OwnedPage lB = MakeRoot("b", eDOUBLE1);
    lA->Add(0, "to b", lB.get());
    {
        ReportRecorder lReports;
        lB->Add(0, "to a", lA.get());
        EXPECT_EQ(TakeRecursionReports(lReports), 1);
    }
    AddNumber(lA, 0, "x", 1);
    const OwnedPage lPage = MakeRoot();
    const OwnedPage lOther = MakeRoot();
    sgAddedTo = lOther.get();
    sgAddedType = lA.get();
    const KAssertFailedHandler lBefore = KSetAssertFailedHandler(&AddWhenReported);
    lPage->Add(0, "p", lA.get());
    lPage->Add(0, "q", lA.get());
    KSetAssertFailedHandler(lBefore);
    EXPECT_EQ(Tree(lOther, 0), "p=0(to b=0(to a=0) x=1)");
    EXPECT_EQ(Tree(lPage, 0), "p=0(to b=0(to a=0) x=1) q=0(to b=0(to a=0) x=1)");
}

TEST_F(KLyrPropertyPageTypedTest, ThePageAboveMayBeTheType) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    AddNumber(lRoot, AddNumber(lRoot, 0, "x", 1), "y", 2);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const int lId = lInstance->Add(0, "up", lRoot.get());
    EXPECT_EQ(Tree(lInstance, 0), "x=1(y=2) up=0(x=1(y=2))");
    EXPECT_EQ(lInstance->GetTypeInfo(lId), lRoot.get());
    EXPECT_EQ(Tree(lRoot, 0), "x=1(y=2)");
}

TEST_F(KLyrPropertyPageTypedTest, AnInstanceIsCopiedAsItStoodBeforeTheAdd) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    const int lX = AddNumber(lRoot, 0, "x", 1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    SetNumber(lInstance, lX, 5);
    AddNumber(lInstance, lX, "y", 2);
    const int lId = lRoot->Add(0, "down", lInstance.get());
    EXPECT_EQ(Tree(lRoot, lId), "x=5(y=2)");
    EXPECT_EQ(Tree(lRoot, 0), "x=1 down=0(x=5(y=2))");
}

TEST_F(KLyrPropertyPageTypedTest, InstanceThatIsTypedByItselfIsReported) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    AddNumber(lRoot, 0, "x", 1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    lRoot->Add(0, "down", lInstance.get());
    ReportRecorder lReports;
    const int lId = lRoot->Add(0, "again", lInstance.get());
    EXPECT_EQ(TakeRecursionReports(lReports), 1);
    EXPECT_EQ(Tree(lRoot, lId), "x=1 down=0");
}

TEST_F(KLyrPropertyPageTypedTest, AnInstanceOfThisPageInsideATypePageIsCopiedAsItStood) {
    const OwnedPage lRoot = MakeRoot("root", eDOUBLE1);
    AddNumber(lRoot, 0, "x", 1);
    const OwnedPage lInstance = MakeInstance(lRoot);
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    lType->Add(0, "i", lInstance.get());
    lType->Add(0, "j", lInstance.get());
    const int lId = lRoot->Add(0, "p", lType.get());
    EXPECT_EQ(Tree(lRoot, lId), "i=0(x=1) j=0(x=1)");
}

// --- the life of a type page -----------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageTypedTest, TypeIsThatOfTheTypePagesRootThroughAllItsTypes) {
    const OwnedPage lFirst = MakeRoot("first", eDOUBLE3);
    const OwnedPage lSecond = MakeTyped("second", lFirst);
    const OwnedPage lThird = MakeTyped("third", lSecond);
    const OwnedPage lPage = MakeTyped("page", lThird);
    EXPECT_EQ(lPage->GetType(0), eDOUBLE3);
    EXPECT_EQ(OwnItem<KLyrPropertyValue>(lPage, 0)->GetType(), eDOUBLE3);
    const Counted<KLyrPropertyInfo> lOther(KLyrPropertyInfo::Create("first", eTIME));
    OwnEntry(lFirst, 0)->Set(lOther.Get());
    EXPECT_EQ(lPage->GetType(0), eTIME);
    lFirst->RemoveOwnEntry(0);
    EXPECT_EQ(lPage->GetType(0), eUNIDENTIFIED);
}

TEST_F(KLyrPropertyPageTypedTest, DestroyedTypePageLeavesItsTypeBehind) {
    OwnedPage lFirst = MakeRoot("first", eDOUBLE3);
    OwnedPage lSecond = MakeTyped("second", lFirst);
    AddNumber(lSecond, 0, "x", 1);
    const OwnedPage lPage = MakeTyped("page", lSecond);
    const OwnedPage lInstance = MakeInstance(lPage);
    const int lId = lInstance->Add(0, "p", lSecond.get());
    lFirst.reset();
    EXPECT_EQ(lSecond->GetTypeInfo(0), nullptr);
    EXPECT_EQ(lPage->GetTypeInfo(0), lSecond.get());
    EXPECT_EQ(lPage->GetType(0), eDOUBLE3);
    const std::string lBefore = Seen(lInstance);
    lSecond.reset();
    EXPECT_EQ(Seen(lInstance), lBefore);
    for (int lTyped : {0, lId}) {
        EXPECT_EQ(lInstance->GetTypeInfo(lTyped), nullptr);
        EXPECT_EQ(lInstance->GetType(lTyped), eDOUBLE3);
    }
    EXPECT_EQ(lPage->FastFind(0, "x", nullptr, true), lPage->GetChild(0));
}

TEST_F(KLyrPropertyPageTypedTest, TypePageMayBeDestroyedBeforeThePagesBelowItsOwn) {
    OwnedPage lType = MakeRoot("t", eDOUBLE1);
    AddNumber(lType, 0, "x", 1);
    const OwnedPage lTypesInstance = MakeInstance(lType);
    lTypesInstance->Add(0, "self above", lType.get());
    const int lTyped = lTypesInstance->GetPropertyEntryCount() - 2;
    lType.reset();
    EXPECT_EQ(lTypesInstance->GetTypeInfo(lTyped), nullptr);
    EXPECT_EQ(lTypesInstance->GetType(lTyped), eDOUBLE1);
    EXPECT_EQ(Tree(lTypesInstance, 0), "x=1 self above=0(x=1)");
}

TEST_F(KLyrPropertyPageTypedTest, PageThatTypesItsOwnPropertyCanBeDestroyed) {
    OwnedPage lPage = MakeRoot("root", eINTEGER1);
    const OwnedPage lInstance = MakeInstance(lPage);
    ReportRecorder lReports;
    const int lId = lPage->Add(0, "self", lPage.get());
    lReports.Clear();
    lPage.reset();
    EXPECT_EQ(lInstance->GetType(lId), eINTEGER1);
    EXPECT_EQ(lInstance->GetTypeInfo(lId), nullptr);
}

TEST_F(KLyrPropertyPageTypedTest, RootsThatTypeEachOtherInACircleAreUnidentified) {
    const OwnedPage lA = MakeRoot("a", eDOUBLE1);
    const OwnedPage lB = MakeTyped("b", lA);
    const OwnedPage lC = MakeTyped("c", lB);
    const OwnedPage lOutside = MakeTyped("outside", lC);
    const Counted<KLyrPropertyInfo> lCircle(KLyrPropertyInfo::Create("a", lC.get()));
    OwnEntry(lA, 0)->Set(lCircle.Get());
    for (const OwnedPage* lPage : {&lA, &lB, &lC, &lOutside})
        EXPECT_EQ((*lPage)->GetType(0), eUNIDENTIFIED);
    const int lId = lOutside->Add(0, "p", lA.get());
    EXPECT_EQ(lOutside->GetType(lId), eUNIDENTIFIED);
    EXPECT_FALSE(SetNumber(lOutside, lId, 1));
}

TEST_F(KLyrPropertyPageTypedTest, CirclesOfAnyLengthBehindTailsOfAnyLengthAreUnidentified) {
    for (std::size_t lCircle = 1; lCircle <= 7; ++lCircle) {
        for (std::size_t lTail = 0; lTail <= 7; ++lTail) {
            std::vector<OwnedPage> lPages;
            lPages.push_back(MakeRoot("t", eDOUBLE1));
            while (lPages.size() < lCircle + lTail)
                lPages.push_back(MakeTyped("t", lPages.back()));
            const Counted<KLyrPropertyInfo> lBack(KLyrPropertyInfo::Create("t", lPages[lCircle - 1].get()));
            OwnEntry(lPages[0], 0)->Set(lBack.Get());
            for (const OwnedPage& lPage : lPages)
                EXPECT_EQ(lPage->GetType(0), eUNIDENTIFIED) << lTail << " into " << lCircle;
        }
    }
}

// --- limits ----------------------------------------------------------------------------------------------------------

TEST_F(KLyrPropertyPageTypedTest, NothingIsAddedWhenTheIdsEndInTheMiddle) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    AddNumber(lType, AddNumber(lType, 0, "x", 1), "y", 2);
    const OwnedPage lPage = MakeRoot();
    ASSERT_TRUE(lPage->GetIdGenerator()->SkipTo(INT_MAX - 1));
    const std::string lBefore = Held(lPage);
    EXPECT_EQ(lPage->Add(0, "p", lType.get()), -1);
    EXPECT_EQ(Held(lPage), lBefore);
    EXPECT_EQ(ChildrenOf(lPage, 0), std::vector<int>());
}

TEST_F(KLyrPropertyPageTypedTest, ABracketKeepsNoNameOfWhatCouldNotBeAdded) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    AddNumber(lType, AddNumber(lType, 0, "x", 1), "y", 2);
    const OwnedPage lPage = MakeRoot();
    lPage->Add(0, "P", eDOUBLE1);
    ASSERT_TRUE(lPage->GetIdGenerator()->SkipTo(INT_MAX - 1));
    lPage->BeginCreateOrFindProperty();
    // Texts of names are kept while a bracket is open.
    const KLyrStringSymbol lName("p");
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    EXPECT_EQ(lPage->Add(0, "p", lType.get()), -1);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
    EXPECT_EQ(lPage->FastFind(0, "p", nullptr, true), -1);
    // A name that was left behind would have the children looked at without case.
    EXPECT_EQ(lPage->FastFind(0, "p", nullptr, false), -1);
    lPage->EndCreateOrFindProperty();
}

TEST_F(KLyrPropertyPageTypedTest, LastIdsAreEnoughForATreeThatNeedsThemAll) {
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    AddNumber(lType, AddNumber(lType, 0, "x", 1), "y", 2);
    const OwnedPage lPage = MakeRoot();
    ASSERT_TRUE(lPage->GetIdGenerator()->SkipTo(INT_MAX - 2));
    EXPECT_EQ(lPage->Add(0, "p", lType.get()), INT_MAX - 2);
    EXPECT_EQ(Tree(lPage, 0), "p=0(x=1(y=2))");
}

TEST_F(KLyrPropertyPageTypedTest, CopiesADeepTreeOnASmallStack) {
    constexpr int lDepth = 100000;
    const OwnedPage lType = MakeRoot("t", eDOUBLE1);
    for (int lParent = 0; lParent < lDepth; ++lParent)
        lType->Add(lParent, "x", eDOUBLE1);
    const OwnedPage lPage = MakeRoot();
    int lId = -1;
    RunOnSmallStack([&] { lId = lPage->Add(0, "p", lType.get()); });
    ASSERT_EQ(lId, 1);
    EXPECT_EQ(lPage->GetPropertyEntryCount(), lDepth + 2);
    for (int i = lId; i < lDepth + 1; ++i)
        ASSERT_EQ(lPage->GetParent(i + 1), i);
}

TEST_F(KLyrPropertyPageTypedTest, FollowsALongChainOfTypePagesOnASmallStack) {
    constexpr int lLength = 1000;
    std::vector<OwnedPage> lPages;
    lPages.push_back(MakeRoot("t", eDOUBLE2));
    for (int i = 0; i < lLength; ++i)
        lPages.push_back(MakeTyped("t", lPages.back()));
    std::vector<OwnedPage> lNested;
    lNested.push_back(MakeRoot("n", eDOUBLE1));
    for (int i = 0; i < 60; ++i) {
        lNested.push_back(MakeRoot("n", eDOUBLE1));
        lNested.back()->Add(0, "x", lNested[lNested.size() - 2].get());
    }
    RunOnSmallStack([&] {
        EXPECT_EQ(lPages.back()->GetType(0), eDOUBLE2);
        EXPECT_EQ(lNested.back()->GetPropertyEntryCount(), 61);
    });
    while (lPages.size() > 1)
        lPages.erase(lPages.begin());
    EXPECT_EQ(lPages.back()->GetType(0), eDOUBLE2);
}

}  // namespace
}  // namespace lyrsdk
