#include "tools/lyrinspect/container.h"

#include <gtest/gtest.h>

#include "tests/tools/lyrinspect/tool_run.h"

namespace lyrsdk::inspect {
namespace {

struct Split {
    bool good;
    Container container;
    Warnings warnings;
    std::string error;
};

Split SplitBytes(std::string_view pBytes) {
    Split lSplit;
    lSplit.good = SplitContainer(pBytes, lSplit.container, lSplit.warnings, lSplit.error);
    return lSplit;
}

TEST(Container, TakesAnythingThatDoesNotBeginWithTheMagicAsText) {
    const Split lSplit = SplitBytes("{}");
    EXPECT_TRUE(lSplit.good);
    EXPECT_EQ(lSplit.container.json, "{}");
    EXPECT_FALSE(lSplit.container.hasBinary);
}

TEST(Container, FindsBothChunksOfABinaryFile) {
    const std::string lBytes = MakeGlb("{}", "abcdef");
    const Split lSplit = SplitBytes(lBytes);
    EXPECT_TRUE(lSplit.good);
    EXPECT_EQ(lSplit.container.json, "{}  ");
    EXPECT_TRUE(lSplit.container.hasBinary);
    EXPECT_EQ(lSplit.container.binary, std::string_view("abcdef\0\0", 8));
    EXPECT_EQ(lSplit.warnings.Count(), 0u);
}

TEST(Container, RefusesEveryTruncationOfABinaryFile) {
    const std::string lBytes = MakeGlb("{\"a\":1}", "abcd");
    for (std::size_t i = 4; i < lBytes.size(); ++i) {
        const Split lSplit = SplitBytes(std::string_view(lBytes).substr(0, i));
        EXPECT_FALSE(lSplit.good) << i;
        EXPECT_EQ(lSplit.error.substr(0, 10), "truncated:") << i;
    }
}

TEST(Container, RefusesTruncationsThatTheHeaderOwnsUpTo) {
    const std::string lBytes = MakeGlb("{\"a\":1}", "abcd");
    // Between the chunks a file may end; inside one it may not.
    const std::size_t lBetween = 12 + 8 + 8;
    for (std::size_t i = 12; i < lBytes.size(); ++i) {
        const std::string lShort = lBytes.substr(0, 8) + Word(static_cast<unsigned int>(i)) + lBytes.substr(12, i - 12);
        EXPECT_EQ(SplitBytes(lShort).good, i == lBetween) << i;
    }
}

TEST(Container, RefusesOtherVersionsAndLengths) {
    EXPECT_EQ(SplitBytes("glTF" + Word(1) + Word(12)).error, "container version 1 is not supported, only 2 is");
    EXPECT_EQ(SplitBytes("glTF" + Word(2) + Word(11)).error,
              "damaged: the header says 11 bytes, less than the header itself has");
    EXPECT_EQ(SplitBytes("glTF" + Word(2) + Word(0xFFFFFFFF)).error,
              "truncated: the header says 4294967295 bytes, the file has 12");
    EXPECT_EQ(SplitBytes("glTF" + Word(2) + Word(20) + Word(0xFFFFFFFF) + "JSON").error,
              "truncated: a chunk says 4294967295 bytes, 0 are left");
}

TEST(Container, RefusesAFirstChunkThatIsNotJson) {
    EXPECT_EQ(SplitBytes("glTF" + Word(2) + Word(24) + Word(4) + std::string("BIN\0", 4) + "abcd").error,
              "damaged: the first chunk is not JSON");
}

TEST(Container, SkipsUnknownChunksAndWarnsAboutBytesBehindTheEnd) {
    std::string lBytes = MakeGlb("{}", "abcd");
    lBytes.insert(12 + 8 + 4, Word(4) + "ODD " + "wxyz");
    lBytes.replace(8, 4, Word(static_cast<unsigned int>(lBytes.size())));
    lBytes += "tail";
    const Split lSplit = SplitBytes(lBytes);
    EXPECT_TRUE(lSplit.good);
    EXPECT_EQ(lSplit.container.binary, "abcd");
    ASSERT_EQ(lSplit.warnings.Count(), 1u);
    EXPECT_EQ(lSplit.warnings.Texts()[0], "4 bytes behind the end of the scene");
}

TEST(Container, DropsZeroBytesBehindTheText) {
    const std::string lBytes = MakeGlb(std::string("{}\0\0", 4), "");
    EXPECT_EQ(SplitBytes(lBytes).container.json, "{}");
}

TEST(Container, SaysWhyAFileCannotBeRead) {
    std::string lBytes;
    std::string lError;
    EXPECT_FALSE(ReadFileBytes("/nonexistent/scene.gltf", 100, lBytes, lError));
    EXPECT_EQ(lError, "No such file or directory");
    EXPECT_FALSE(ReadFileBytes(testing::TempDir(), 100, lBytes, lError));
    EXPECT_EQ(lError, "is a directory");
    const SceneFile lFile("123456");
    EXPECT_FALSE(ReadFileBytes(lFile.Path(), 5, lBytes, lError));
    EXPECT_EQ(lError, "larger than 5 bytes");
    EXPECT_TRUE(ReadFileBytes(lFile.Path(), 6, lBytes, lError));
    EXPECT_EQ(lBytes, "123456");
}

TEST(Container, StopsReadingAnEndlessFileAtTheLimit) {
    std::string lBytes;
    std::string lError;
    EXPECT_FALSE(ReadFileBytes("/dev/zero", 1000000, lBytes, lError));
    EXPECT_EQ(lError, "larger than 1000000 bytes");
}

}  // namespace
}  // namespace lyrsdk::inspect
