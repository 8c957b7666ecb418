#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/support/broken_trees.h"
#include "tests/support/counted.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

// Every place in the library that can make a report, and what makes it. check_reports.cmake compares the table with the
// sources.

namespace lyrsdk {
namespace {

constexpr char kMap[] = "lyrfilesdk/components/kbaselib/klib/kmap";
constexpr char kScoped[] = "lyrfilesdk/components/kbaselib/klib/kscopedptr";
constexpr char kTypes[] = "lyrfilesdk/klyrplugins/klyrtypes";
constexpr char kPage[] = "lyrfilesdk/lyrcore/klyrpropertypage";

// Why nothing can make a site speak; null for a site that does.
constexpr const char* kSpeaks = nullptr;
constexpr const char* kWrittenLast = "the rotation has just written this link, and nothing after it";
constexpr const char* kConstant = "the number of flags is a constant";
constexpr const char* kTypeDecides = "types whose told and real size differ have blob rules of their own or none";

struct Site {
    const char* mSource;  // the file that it stands in
    const char* mFile;    // the file that it tells
    unsigned long mLine;  // 0 when it tells where it stands
    const char* mMessage;
    const char* mWhyNever;
};

// clang-format off
const Site kSites[] = {
    {"kmap.h",          kMap,    96,   "mRecord != NULL", kSpeaks},
    {"kmap.h",          kMap,    148,  "mRecord", kSpeaks},
    {"kredblacktree.h", kMap,    602,  "lParent->mRightChild == 0", kSpeaks},
    {"kredblacktree.h", kMap,    608,  "lParent->mLeftChild == 0", kSpeaks},
    {"kredblacktree.h", kMap,    1066, "mRoot == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1080, "pNode->mLeftChild == A", kSpeaks},
    {"kredblacktree.h", kMap,    1081, "pNode->mRightChild == B", kSpeaks},
    {"kredblacktree.h", kMap,    1082, "pNode->mParent == lNode", kWrittenLast},
    {"kredblacktree.h", kMap,    1084, "lNode->mLeftChild == pNode", kWrittenLast},
    {"kredblacktree.h", kMap,    1085, "lNode->mRightChild == C", kSpeaks},
    {"kredblacktree.h", kMap,    1086, "lNode->mParent == Z", kSpeaks},
    {"kredblacktree.h", kMap,    1088, "A == 0 || A->mParent == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1089, "B == 0 || B->mParent == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1090, "C == 0 || C->mParent == lNode", kSpeaks},
    {"kredblacktree.h", kMap,    1091, "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode", kSpeaks},
    {"kredblacktree.h", kMap,    1115, "mRoot == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1129, "lNode->mLeftChild == A", kSpeaks},
    {"kredblacktree.h", kMap,    1130, "lNode->mRightChild == pNode", kWrittenLast},
    {"kredblacktree.h", kMap,    1131, "lNode->mParent == Z", kSpeaks},
    {"kredblacktree.h", kMap,    1133, "pNode->mLeftChild == B", kSpeaks},
    {"kredblacktree.h", kMap,    1134, "pNode->mRightChild == C", kSpeaks},
    {"kredblacktree.h", kMap,    1135, "pNode->mParent == lNode", kWrittenLast},
    {"kredblacktree.h", kMap,    1137, "A == 0 || A->mParent == lNode", kSpeaks},
    {"kredblacktree.h", kMap,    1138, "B == 0 || B->mParent == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1139, "C == 0 || C->mParent == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1140, "Z == 0 || Z->mLeftChild == lNode || Z->mRightChild == lNode", kSpeaks},
    {"kredblacktree.h", kMap,    1162, "Node not found in KRedBlackTree", kSpeaks},
    {"kredblacktree.h", kMap,    1167, "mRoot == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1192, "Node not found in KRedBlackTree", kSpeaks},
    {"kredblacktree.h", kMap,    1197, "mRoot == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1226, "Node not found in KRedBlackTree", kSpeaks},
    {"kredblacktree.h", kMap,    1231, "mRoot == pNode", kSpeaks},
    {"kredblacktree.h", kMap,    1273, "mRoot == pNodeToReplace", kSpeaks},
    {"kredblacktree.h", kMap,    1396, "lSibling != 0", kSpeaks},
    {"kscopedptr.h",    kScoped, 113,  "p == 0 || p != ptr", kSpeaks},
    {"kscopedptr.h",    kScoped, 127,  "ptr != 0", kSpeaks},
    {"klyrconversion.h", kTypes, 0,    "lCastable", kTypeDecides},
    {"klyrconversion.h", kTypes, 0,    "Incompatible type assigment", kSpeaks},
    {"klyrconversion.h", kTypes, 0,    "Trying to set value on a void Reference type", kSpeaks},
    {"klyrconversion.h", kTypes, 0,    "Trying to assign an unknown type", kSpeaks},
    {"klyrtypes.cpp",   kTypes,  0,    "Trying to set value on a void Reference type", kSpeaks},
    {"klyrtypes.cpp",   kTypes,  0,    "Trying to assign an unknown type", kSpeaks},
    {"klyrtypes.cpp",   kTypes,  0,    "Trying to compare value on a void Reference type", kSpeaks},
    {"klyrtypes.cpp",   kTypes,  0,    "Trying to compare an unknown type", kSpeaks},
    {"klyrpropertyitems.h", kPage, 99, "Only support 16 property flags", kConstant},
    {"klyrpropertypageinheritance.cpp", kPage, 1745, "lParentEntry", kSpeaks},
    {"klyrpropertypagetyped.cpp", kPage, 0, "Recursive type info", kSpeaks},
};
// clang-format on

// A report, and the source that the test expects it from.
struct Spoken {
    const char* mSource;
    ReportRecorder::Report mReport;
};

bool Matches(const Spoken& pSpoken, const Site& pSite) {
    return std::string(pSpoken.mSource) == pSite.mSource && pSpoken.mReport.file == pSite.mFile &&
           pSpoken.mReport.message == pSite.mMessage &&
           (pSite.mLine == 0 ? pSpoken.mReport.line > 0 : pSpoken.mReport.line == pSite.mLine);
}

// What pMisuse makes the library say, from one source.
std::vector<Spoken> Hear(const char* pSource, const std::function<void()>& pMisuse) {
    ReportRecorder lReports;
    pMisuse();
    std::vector<Spoken> lHeard;
    for (const ReportRecorder::Report& lReport : lReports.TakeReports())
        lHeard.push_back({pSource, lReport});
    return lHeard;
}

using EndMap = KMap<int, unsigned, KLyrLessCompare<int>, KBaseAllocator>;

// Deletes nothing, so that a pointer that was deleted twice may be looked at.
struct KeepingPolicy {
    static void DeleteIt(int**) {}
};

std::vector<Spoken> HearBrokenTrees() {
    std::vector<Spoken> lHeard;
    std::vector<ReportRecorder::Report> lReports;
    for (const BrokenTree& lTree : kBrokenTrees)
        for (const ReportRecorder::Report& lReport : ReportsOf(lTree))
            lReports.push_back(lReport);
    for (const auto& [lSecond, lThird] : {std::pair(20, 5), std::pair(5, 20)})
        for (const ReportRecorder::Report& lReport : ReportsOfATakenSlot(lSecond, lThird))
            lReports.push_back(lReport);
    for (const ReportRecorder::Report& lReport : lReports)
        lHeard.push_back({"kredblacktree.h", lReport});
    return lHeard;
}

std::vector<Spoken> HearMisuseOfThePage() {
    std::vector<Spoken> lHeard = Hear("klyrpropertypagetyped.cpp", [] {
        const OwnedPage lPage(KLyrPropertyPage::Create("page", eDOUBLE1));
        EXPECT_EQ(lPage->Add(0, "self", lPage.get()), 1);
    });
    const std::vector<Spoken> lPush = Hear("klyrpropertypageinheritance.cpp", [] {
        const OwnedPage lPage(KLyrPropertyPage::Create("page", eDOUBLE1));
        const OwnedPage lMiddle(KLyrPropertyPage::Create(lPage.get()));
        const OwnedPage lLeaf(KLyrPropertyPage::Create(lMiddle.get()));
        const double lValue = 3;
        EXPECT_TRUE(lLeaf->Set(0, &lValue, eDOUBLE1, false));
        const FailAllocations lFail(0, true);
        lLeaf->PushPropertiesToParentInstance();
        EXPECT_EQ(lLeaf->GetValueInherit(0, false), eLyrOverride) << "the value stays where it was";
    });
    lHeard.insert(lHeard.end(), lPush.begin(), lPush.end());
    return lHeard;
}

std::vector<Spoken> HearEverything() {
    std::vector<Spoken> lHeard = HearBrokenTrees();
    const auto lAdd = [&lHeard](const std::vector<Spoken>& pMore) {
        lHeard.insert(lHeard.end(), pMore.begin(), pMore.end());
    };
    lAdd(Hear("kmap.h", [] {
        EndMap::IteratorType lEnd = EndMap().End();
        EXPECT_EQ(++lEnd, EndMap().End());
    }));
    lAdd(Hear("kmap.h", [] { EXPECT_EQ(EndMap::IteratorType().operator->(), nullptr); }));
    lAdd(Hear("kscopedptr.h", [] { EXPECT_EQ((KScopedPtr<int, KeepingPolicy>().operator->()), nullptr); }));
    lAdd(Hear("kscopedptr.h", [] {
        int lOwned = 0;
        KScopedPtr<int, KeepingPolicy> lPointer(&lOwned);
        lPointer.Reset(&lOwned);
        EXPECT_EQ(lPointer.Get(), &lOwned);
    }));
    double lNumber = 1;
    const lyrBlob lBlob;
    const lyrVoidReference lReference;
    const auto lUnknown = static_cast<ELyrType>(-1);
    lAdd(Hear("klyrconversion.h", [&] { EXPECT_FALSE(lyrCopy(lNumber, lBlob)); }));
    lAdd(Hear("klyrconversion.h", [&] { EXPECT_FALSE(lyrCopy(&lNumber, eREFERENCE, 2)); }));
    lAdd(Hear("klyrconversion.h", [&] { EXPECT_FALSE(lyrCopy(&lNumber, lUnknown, 2)); }));
    lAdd(Hear("klyrtypes.cpp", [&] { EXPECT_FALSE(lyrCopy(&lNumber, eDOUBLE1, &lReference, eREFERENCE)); }));
    lAdd(Hear("klyrtypes.cpp", [&] { EXPECT_FALSE(lyrCopy(&lNumber, eDOUBLE1, &lNumber, lUnknown)); }));
    lAdd(Hear("klyrtypes.cpp", [&] { EXPECT_FALSE(lyrCompare(&lReference, &lReference, eREFERENCE)); }));
    lAdd(Hear("klyrtypes.cpp", [&] { EXPECT_FALSE(lyrCompare(&lNumber, &lNumber, lUnknown)); }));
    EXPECT_EQ(lNumber, 1) << "a refusal writes nothing";
    lAdd(HearMisuseOfThePage());
    return lHeard;
}

TEST(ReportSites, EachSpeaksWithItsFileLineAndText) {
    const LeakCheck lLeakCheck;
    const std::vector<Spoken> lHeard = HearEverything();
    for (const Site& lSite : kSites) {
        int lCount = 0;
        for (const Spoken& lSpoken : lHeard)
            lCount += Matches(lSpoken, lSite) ? 1 : 0;
        const std::string lName = std::string(lSite.mSource) + ", " + std::to_string(lSite.mLine) + ", ";
        if (lSite.mWhyNever) {
            EXPECT_EQ(lCount, 0) << lName << lSite.mMessage << ": speaks after all, though " << lSite.mWhyNever;
        } else {
            EXPECT_GT(lCount, 0) << lName << lSite.mMessage;
        }
    }
}

TEST(ReportSites, NothingElseIsSaid) {
    for (const Spoken& lSpoken : HearEverything()) {
        int lMatches = 0;
        for (const Site& lSite : kSites)
            lMatches += Matches(lSpoken, lSite) ? 1 : 0;
        EXPECT_EQ(lMatches, 1) << lSpoken.mReport.file << ':' << lSpoken.mReport.line << ": "
                               << lSpoken.mReport.message;
        EXPECT_EQ(lSpoken.mReport.function, "");
    }
}

// Sites with one text that tell their own line are told apart by it.
TEST(ReportSites, SitesWithTheSameTextTellDifferentPlaces) {
    const std::vector<Spoken> lHeard = HearEverything();
    for (const Spoken& lLeft : lHeard)
        for (const Spoken& lRight : lHeard)
            if (std::string(lLeft.mSource) != lRight.mSource) {
                EXPECT_FALSE(lLeft.mReport.file == lRight.mReport.file && lLeft.mReport.line == lRight.mReport.line)
                    << lLeft.mReport.message;
            }
}

// --- the default handler ---------------------------------------------------------------------------------------------

class DefaultHandler {
public:
    DefaultHandler() : mBefore(KSetAssertFailedHandler(nullptr)) {}
    ~DefaultHandler() { KSetAssertFailedHandler(mBefore); }
    DefaultHandler(const DefaultHandler&) = delete;
    DefaultHandler& operator=(const DefaultHandler&) = delete;

private:
    KAssertFailedHandler mBefore;
};

using SilencedMap = KMap<int, unsigned char, KLyrLessCompare<int>, KBaseAllocator>;

void UseTheEndTwice() {
    SilencedMap::IteratorType lEnd;
    for (int i = 0; i < 2; ++i) {
        ++lEnd;
        EXPECT_EQ(lEnd.operator->(), nullptr);
    }
}

// The flags of the two sites, which are opened again in the end, so that this test can be repeated.
std::vector<bool*> sgFlags;

void KeepFlag(const char*, const char*, unsigned long, const char*, bool* pHideForever) {
    sgFlags.push_back(pHideForever);
}

TEST(ReportSites, ALibrarySiteSpeaksOnceByDefaultOnOneLineOfStderr) {
    const DefaultHandler lDefault;
    KSetAssertFailedHandler(&KeepFlag);
    UseTheEndTwice();
    ASSERT_EQ(sgFlags.size(), 4u) << "a handler that silences nothing hears everything";
    KSetAssertFailedHandler(nullptr);
    testing::internal::CaptureStderr();
    UseTheEndTwice();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "lyrfilesdk/components/kbaselib/klib/kmap:96: mRecord != NULL\n"
              "lyrfilesdk/components/kbaselib/klib/kmap:148: mRecord\n");
    for (bool* lFlag : sgFlags) {
        EXPECT_TRUE(*lFlag);
    }
    for (bool* lFlag : sgFlags)
        *lFlag = false;
    sgFlags.clear();
}

TEST(ReportSites, TheDefaultTakesNullsAndTextsOfAnyBytes) {
    const DefaultHandler lDefault;
    std::string lText;
    for (int lByte = 1; lByte < 256; ++lByte)
        lText += static_cast<char>(lByte);
    testing::internal::CaptureStderr();
    KAssertFailed(nullptr, nullptr, 0, nullptr, nullptr);
    KAssertFailed("%s%n", "", 1, lText.c_str(), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), ":0: \n%s%n:1: " + lText + "\n");
}

}  // namespace
}  // namespace lyrsdk
