#include "lyrfilesdk/components/kbaselib/klib/kpair.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace lyrsdk {
namespace {

TEST(KPair, HoldsBothValuesInOrder) {
    int lTarget = 5;
    const KPair<int, int*> lPair(3, &lTarget);
    EXPECT_EQ(lPair.mFirst, 3);
    EXPECT_EQ(lPair.mSecond, &lTarget);
    EXPECT_EQ(static_cast<const void*>(&lPair), static_cast<const void*>(&lPair.mFirst));
}

TEST(KPair, StartsAsZeros) {
    const KPair<int, const char*> lPair;
    EXPECT_EQ(lPair.mFirst, 0);
    EXPECT_EQ(lPair.mSecond, nullptr);
}

TEST(KPair, CopiesAsPlainBytesWhenItsValuesDo) {
    static_assert(std::is_trivially_copyable_v<KPair<int, const char*>>);
    KPair<int, const char*> lPair(1, "one");
    KPair<int, const char*> lCopy(lPair);
    lPair = KPair<int, const char*>(2, "two");
    EXPECT_EQ(lCopy.mFirst, 1);
    EXPECT_STREQ(lCopy.mSecond, "one");
    EXPECT_EQ(lPair.mFirst, 2);
}

TEST(KPair, MayHaveAConstantFirstValue) {
    KPair<const int, int> lPair(1, 2);
    lPair.mSecond = 3;
    EXPECT_EQ(lPair.mFirst, 1);
    EXPECT_EQ(lPair.mSecond, 3);
}

}  // namespace
}  // namespace lyrsdk
