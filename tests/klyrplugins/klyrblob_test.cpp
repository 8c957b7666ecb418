#include "lyrfilesdk/klyrplugins/klyrblob.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

#include "tests/klyrplugins/value_samples.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

lyrBlob BlobOf(const std::string& pBytes) {
    lyrBlob lBlob;
    EXPECT_TRUE(lBlob.Assign(pBytes.data(), static_cast<int>(pBytes.size())));
    return lBlob;
}

TEST(LyrBlob, CopiesTheBytesItIsGiven) {
    LeakCheck lLeaks;
    char lBytes[] = {1, 0, 2};
    lyrBlob lBlob;
    EXPECT_EQ(nullptr, lBlob.GetData());
    EXPECT_EQ(0, lBlob.GetSize());
    ASSERT_TRUE(lBlob.Assign(lBytes, 3));
    lBytes[0] = 9;
    EXPECT_EQ(std::string("\1\0\2", 3), ImageOf(lBlob));
}

TEST(LyrBlob, IsEmptiedByNothing) {
    LeakCheck lLeaks;
    for (int lSize : {0, -1, std::numeric_limits<int>::min()}) {
        lyrBlob lBlob = BlobOf("abc");
        EXPECT_TRUE(lBlob.Assign("x", lSize));
        EXPECT_EQ(0, lBlob.GetSize());
        EXPECT_EQ(nullptr, lBlob.GetData());
    }
    lyrBlob lBlob = BlobOf("abc");
    EXPECT_TRUE(lBlob.Assign(nullptr, 5));
    EXPECT_EQ(0, lBlob.GetSize());
}

TEST(LyrBlob, UsesItsBlockAgainWhileTheBytesFit) {
    lyrBlob lBlob = BlobOf("abcdef");
    const void* lData = lBlob.GetData();
    ASSERT_TRUE(lBlob.Assign("xy", 2));
    EXPECT_EQ("xy", ImageOf(lBlob));
    ASSERT_TRUE(lBlob.Assign("123456", 6));
    EXPECT_EQ("123456", ImageOf(lBlob));
    EXPECT_EQ(lData, lBlob.GetData());
    ASSERT_TRUE(lBlob.Assign("1234567", 7));
    EXPECT_EQ("1234567", ImageOf(lBlob));
}

TEST(LyrBlob, TakesItsOwnBytes) {
    LeakCheck lLeaks;
    lyrBlob lBlob = BlobOf("abcdef");
    ASSERT_TRUE(lBlob.Assign(static_cast<const char*>(lBlob.GetData()) + 2, 4));
    EXPECT_EQ("cdef", ImageOf(lBlob));
    lBlob = *&lBlob;
    EXPECT_EQ("cdef", ImageOf(lBlob));
    lyrBlob& lSame = lBlob;
    lBlob = std::move(lSame);
    EXPECT_EQ("cdef", ImageOf(lBlob));
    // The blob's own fields, which the assignment is about to change.
    const std::string lFields = BytesOf(lBlob);
    ASSERT_TRUE(lBlob.Assign(&lBlob, static_cast<int>(sizeof(lBlob))));
    EXPECT_EQ(lFields, ImageOf(lBlob));
}

TEST(LyrBlob, CopiesAndMoves) {
    LeakCheck lLeaks;
    lyrBlob lBlob = BlobOf("abc");
    lyrBlob lCopy(lBlob);
    EXPECT_TRUE(lCopy == lBlob);
    EXPECT_NE(lCopy.GetData(), lBlob.GetData());
    lyrBlob lMoved(std::move(lBlob));
    EXPECT_EQ("abc", ImageOf(lMoved));
    EXPECT_EQ(0, lBlob.GetSize());
    lCopy = std::move(lMoved);
    EXPECT_EQ("abc", ImageOf(lCopy));
    EXPECT_EQ(nullptr, lMoved.GetData());
    lCopy = lyrBlob();
    EXPECT_EQ(0, lCopy.GetSize());
    lCopy.Clear();
    EXPECT_EQ(0, lCopy.GetSize());
}

TEST(LyrBlob, IsEqualWhenSizeAndBytesAre) {
    EXPECT_TRUE(BlobOf("abc") == BlobOf("abc"));
    EXPECT_FALSE(BlobOf("abc") == BlobOf("abd"));
    EXPECT_FALSE(BlobOf("abc") == BlobOf("ab"));
    EXPECT_TRUE(BlobOf("abc") != lyrBlob());
    EXPECT_TRUE(lyrBlob() == lyrBlob());
    EXPECT_FALSE(BlobOf(std::string("a\0b", 3)) == BlobOf(std::string("a\0c", 3)));
}

TEST(LyrBlob, KeepsItsBytesWithoutMemory) {
    LeakCheck lLeaks;
    lyrBlob lBlob = BlobOf("abc");
    const lyrBlob lLong = BlobOf("0123456789");
    FailAllocations lFail(0, true);
    EXPECT_FALSE(lBlob.Assign(lLong));
    lBlob = lLong;
    EXPECT_EQ("abc", ImageOf(lBlob));
    EXPECT_EQ(0, lyrBlob(lLong).GetSize());
    EXPECT_TRUE(lBlob.Assign("xyz", 3));
    EXPECT_EQ("xyz", ImageOf(lBlob));
}

}  // namespace
}  // namespace lyrsdk
