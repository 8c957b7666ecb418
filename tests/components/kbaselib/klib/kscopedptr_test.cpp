#include "lyrfilesdk/components/kbaselib/klib/kscopedptr.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

// Counts its own ends.
struct Counted {
    explicit Counted(int& pDestroyed) : mDestroyed(pDestroyed) {}
    ~Counted() { ++mDestroyed; }
    int mValue = 7;
    int& mDestroyed;
};

using Owner = KLyrSdkScopedPtr<Counted>;

static_assert(sizeof(Owner) == sizeof(void*));
static_assert(!std::is_copy_constructible_v<Owner> && !std::is_copy_assignable_v<Owner>);
static_assert(std::is_base_of_v<KScopedPtr<Counted, LyrSdkDeletionPolicy<Counted>>, Owner>);

// Writes down what it is asked to delete, and deletes nothing.
struct NotingPolicy {
    static std::vector<int*> sgDeleted;
    static void DeleteIt(int** pPointer) { sgDeleted.push_back(*pPointer); }
};
std::vector<int*> NotingPolicy::sgDeleted;

using Noting = KScopedPtr<int, NotingPolicy>;

TEST(KScopedPtr, DeletesItsObjectAtItsEnd) {
    LeakCheck lLeaks;
    int lDestroyed = 0;
    {
        Owner lOwner(LyrSdkNew<Counted>(lDestroyed));
        EXPECT_TRUE(static_cast<bool>(lOwner));
        EXPECT_FALSE(!lOwner);
        EXPECT_EQ(lOwner->mValue, 7);
        EXPECT_EQ(lOwner.Get()->mValue, 7);
        EXPECT_EQ(lDestroyed, 0);
    }
    EXPECT_EQ(lDestroyed, 1);
}

TEST(KScopedPtr, MayHoldNothing) {
    const Owner lOwner;
    EXPECT_FALSE(static_cast<bool>(lOwner));
    EXPECT_TRUE(!lOwner);
    EXPECT_EQ(lOwner.Get(), nullptr);
}

TEST(KScopedPtr, ResetDeletesTheOldObjectAndHoldsTheNewOne) {
    LeakCheck lLeaks;
    int lFirst = 0;
    int lSecond = 0;
    Owner lOwner(LyrSdkNew<Counted>(lFirst));
    Counted* lNew = LyrSdkNew<Counted>(lSecond);
    lOwner.Reset(lNew);
    EXPECT_EQ(lFirst, 1);
    EXPECT_EQ(lSecond, 0);
    EXPECT_EQ(lOwner.Get(), lNew);
    lOwner.Reset(nullptr);
    EXPECT_EQ(lSecond, 1);
    EXPECT_TRUE(!lOwner);
    lOwner.Reset();
    EXPECT_TRUE(!lOwner);
}

TEST(KScopedPtr, ResetToTheHeldPointerIsReportedAndDeletesAllTheSame) {
    ReportRecorder lRecorder;
    int lNumber = 0;
    NotingPolicy::sgDeleted.clear();
    {
        Noting lPointer(&lNumber);
        lPointer.Reset(&lNumber);
        EXPECT_EQ(NotingPolicy::sgDeleted, (std::vector<int*>{&lNumber}));
        EXPECT_EQ(lPointer.Get(), &lNumber);
        const auto lReports = lRecorder.TakeReports();
        ASSERT_EQ(lReports.size(), 1u);
        EXPECT_EQ(lReports[0].file, "lyrfilesdk/components/kbaselib/klib/kscopedptr");
        EXPECT_EQ(lReports[0].function, "");
        EXPECT_EQ(lReports[0].line, 113u);
        EXPECT_EQ(lReports[0].message, "p == 0 || p != ptr");
    }
    EXPECT_EQ(NotingPolicy::sgDeleted.size(), 2u);
}

TEST(KScopedPtr, ResetFromNullToNullIsNotReported) {
    NotingPolicy::sgDeleted.clear();
    Noting lPointer;
    lPointer.Reset(nullptr);
    EXPECT_EQ(NotingPolicy::sgDeleted, (std::vector<int*>{nullptr}));
}

TEST(KScopedPtr, ReportsTheUseOfNull) {
    ReportRecorder lRecorder;
    const Owner lOwner;
    EXPECT_EQ(lOwner.operator->(), nullptr);
    const auto lReports = lRecorder.TakeReports();
    ASSERT_EQ(lReports.size(), 1u);
    EXPECT_EQ(lReports[0].file, "lyrfilesdk/components/kbaselib/klib/kscopedptr");
    EXPECT_EQ(lReports[0].line, 127u);
    EXPECT_EQ(lReports[0].message, "ptr != 0");
}

TEST(KScopedPtr, SwapExchangesThePointers) {
    LeakCheck lLeaks;
    int lDestroyed = 0;
    Counted* lObject = LyrSdkNew<Counted>(lDestroyed);
    Owner lLeft(lObject);
    Owner lRight;
    lLeft.Swap(lRight);
    EXPECT_TRUE(!lLeft);
    EXPECT_EQ(lRight.Get(), lObject);
    lRight.Swap(lRight);
    EXPECT_EQ(lRight.Get(), lObject);
    EXPECT_EQ(lDestroyed, 0);
}

TEST(LyrSdkDeletionPolicy, DeletesAndSetsNull) {
    LeakCheck lLeaks;
    int lDestroyed = 0;
    Counted* lObject = LyrSdkNew<Counted>(lDestroyed);
    LyrSdkDeletionPolicy<Counted>::DeleteIt(&lObject);
    EXPECT_EQ(lDestroyed, 1);
    EXPECT_EQ(lObject, nullptr);
    LyrSdkDeletionPolicy<Counted>::DeleteIt(&lObject);
    LyrSdkDeletionPolicy<Counted>::DeleteIt(nullptr);
    EXPECT_EQ(lDestroyed, 1);
}

}  // namespace
}  // namespace lyrsdk
