#include "tools/lyrinspect/buffers.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace lyrsdk::inspect {
namespace {

// Two floats, 1 and 2, in eight bytes.
constexpr char kOneTwo[] = "AACAPwAAAEA=";

// A document whose one buffer holds a skin's data, so that it is read.
Json DocumentOf(const Json& pBuffer, const Json& pView, const Json& pAccessor) {
    return {{"buffers", Json::array({pBuffer})},
            {"bufferViews", Json::array({pView})},
            {"accessors", Json::array({pAccessor})},
            {"skins", Json::array({{{"inverseBindMatrices", 0}}})}};
}

Json DataBuffer() {
    return {{"byteLength", 8}, {"uri", std::string("data:application/octet-stream;base64,") + kOneTwo}};
}
Json FloatAccessor(int pCount) {
    return {{"bufferView", 0}, {"componentType", 5126}, {"count", pCount}, {"type", "SCALAR"}};
}

struct Loaded {
    explicit Loaded(const Json& pDocument, const BufferSource& pSource = {}) : buffers(pDocument, pSource, warnings) {}

    Warnings warnings;
    Buffers buffers;
};

TEST(Buffers, ReadADataAddress) {
    const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(2)));
    EXPECT_EQ(lLoaded.warnings.Count(), 0u);
    EXPECT_EQ(lLoaded.buffers.CountOf(0), 2u);
    EXPECT_EQ(lLoaded.buffers.AccessorBytes(0, 8), (std::vector<unsigned char>{0, 0, 0x80, 0x3F, 0, 0, 0, 0x40}));
    EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 7).empty());
    EXPECT_EQ(lLoaded.buffers.ViewBytes(0, 8).size(), 8u);
    EXPECT_TRUE(lLoaded.buffers.ViewBytes(0, 7).empty());
    double lMin = 0;
    double lMax = 0;
    ASSERT_TRUE(lLoaded.buffers.ScanFloats(0, lMin, lMax));
    EXPECT_EQ(lMin, 1);
    EXPECT_EQ(lMax, 2);
}

TEST(Buffers, ReadTheBinaryChunk) {
    const std::string lChunk("\0\0\x80\x3F\0\0\0\x40pad", 11);
    const Loaded lLoaded(DocumentOf({{"byteLength", 8}}, {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(2)),
                         {lChunk, true, ""});
    EXPECT_EQ(lLoaded.warnings.Count(), 0u);
    EXPECT_EQ(lLoaded.buffers.AccessorBytes(0, 100).size(), 8u);
}

TEST(Buffers, ReadAFileBesideTheScene) {
    const std::string lName = "lyrinspect buffer.bin";
    std::ofstream(testing::TempDir() + lName, std::ios::binary) << std::string("\0\0\x80\x3F\0\0\0\x40more", 12);
    const Loaded lLoaded(DocumentOf({{"byteLength", 8}, {"uri", "lyrinspect%20buffer.bin"}},
                                    {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(2)),
                         {"", false, testing::TempDir()});
    EXPECT_EQ(lLoaded.warnings.Count(), 0u);
    EXPECT_EQ(lLoaded.buffers.AccessorBytes(0, 100).size(), 8u);
    std::remove((testing::TempDir() + lName).c_str());
}

TEST(Buffers, PackInterleavedElements) {
    const Json lView = {{"buffer", 0}, {"byteLength", 8}, {"byteStride", 4}};
    const Json lAccessor = {
        {"bufferView", 0}, {"byteOffset", 2}, {"componentType", 5121}, {"count", 2}, {"type", "VEC2"}};
    const Loaded lLoaded(DocumentOf(DataBuffer(), lView, lAccessor));
    EXPECT_EQ(lLoaded.buffers.AccessorBytes(0, 100), (std::vector<unsigned char>{0x80, 0x3F, 0, 0x40}));
}

TEST(Buffers, WarnAboutWhatIsMissingOrShort) {
    const auto lWarningOf = [](const Json& pBuffer) {
        const Loaded lLoaded(DocumentOf(pBuffer, {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(2)),
                             {"", false, testing::TempDir()});
        EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 100).empty());
        return lLoaded.warnings.Count() > 0 ? lLoaded.warnings.Texts()[0] : std::string();
    };
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", "absent.bin"}}), "buffer:0 is missing: \"absent.bin\"");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}}), "buffer:0 has no uri, and there is no binary chunk for it");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", "http://host/a.bin"}}),
              "buffer:0 lies at \"http://host/a.bin\", which is not read");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", "/etc/hostname"}}),
              "buffer:0 lies at \"/etc/hostname\", which is not read");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", "data:application/octet-stream;base64,AA=="}}),
              "buffer:0 has 1 byte, not the 8 it states");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", "data:text/html,x"}}),
              "buffer:0 has a data uri that cannot be decoded");
    EXPECT_EQ(lWarningOf({{"byteLength", 8}, {"uri", 5}}), "buffer:0 has a uri that is 5");
    EXPECT_EQ(lWarningOf({{"byteLength", -8}}), "buffer:0 has no valid byteLength");
    EXPECT_EQ(lWarningOf({{"byteLength", 0}}), "buffer:0 has no valid byteLength");
    EXPECT_EQ(lWarningOf(3), "buffer:0 has no valid byteLength");
}

TEST(Buffers, RefuseViewsThatReachOutOfTheirBuffer) {
    for (const Json& lView : std::vector<Json>{{{"buffer", 0}, {"byteLength", 9}},
                                               {{"buffer", 0}, {"byteLength", 8}, {"byteOffset", 1}},
                                               {{"buffer", 0}, {"byteLength", 8}, {"byteOffset", 9007199254740992ULL}},
                                               {{"buffer", 0}, {"byteLength", 8}, {"byteOffset", -1}},
                                               {{"buffer", 1}, {"byteLength", 8}},
                                               {{"buffer", -1}, {"byteLength", 8}},
                                               {{"byteLength", 8}},
                                               {{"buffer", 0}},
                                               {{"buffer", 0}, {"byteLength", 8}, {"byteStride", 3}},
                                               {{"buffer", 0}, {"byteLength", 8}, {"byteStride", 256}},
                                               Json("view")}) {
        SCOPED_TRACE(lView);
        const Loaded lLoaded(DocumentOf(DataBuffer(), lView, FloatAccessor(2)));
        ASSERT_GE(lLoaded.warnings.Count(), 1u);
        EXPECT_EQ(lLoaded.warnings.Texts()[0], "bufferView:0 is malformed or reaches out of its buffer");
        EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 100).empty());
        EXPECT_TRUE(lLoaded.buffers.ViewBytes(0, 100).empty());
    }
}

TEST(Buffers, RefuseMalformedAccessors) {
    for (const Json& lChange : std::vector<Json>{{{"bufferView", 1}},
                                                 {{"bufferView", -1}},
                                                 {{"bufferView", 1.5}},
                                                 {{"componentType", 5124.5}},
                                                 {{"componentType", 1}},
                                                 {{"componentType", 5130}},
                                                 {{"count", 0}},
                                                 {{"count", -1}},
                                                 {{"count", 1e300}},
                                                 {{"type", "VEC9"}},
                                                 {{"type", 1}},
                                                 {{"byteOffset", -4}},
                                                 {{"min", {1, 2}}},
                                                 {{"max", {"a"}}},
                                                 {{"min", 3}}}) {
        SCOPED_TRACE(lChange);
        Json lAccessor = FloatAccessor(2);
        lAccessor.update(lChange);
        const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, lAccessor));
        ASSERT_EQ(lLoaded.warnings.Count(), 1u);
        EXPECT_EQ(lLoaded.warnings.Texts()[0], "accessor:0 is malformed");
        EXPECT_EQ(lLoaded.buffers.AccessorAt(0), nullptr);
        EXPECT_EQ(lLoaded.buffers.CountOf(0), 0u);
    }
}

TEST(Buffers, GiveNothingForAccessorsThatReachOutOfTheirView) {
    for (const Json& lChange : std::vector<Json>{{{"count", 3}},
                                                 {{"count", 9007199254740992ULL}},
                                                 {{"byteOffset", 4}},
                                                 {{"byteOffset", 8}},
                                                 {{"byteOffset", 9007199254740992ULL}},
                                                 {{"type", "MAT4"}}}) {
        SCOPED_TRACE(lChange);
        Json lAccessor = FloatAccessor(2);
        lAccessor.update(lChange);
        const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, lAccessor));
        double lMin = 0;
        double lMax = 0;
        EXPECT_TRUE(lLoaded.buffers.AccessorAt(0));
        EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 1000).empty());
        EXPECT_FALSE(lLoaded.buffers.ScanFloats(0, lMin, lMax));
    }
}

TEST(Buffers, AnswerEveryIndex) {
    const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(2)));
    for (const int lIndex : {-2147483647 - 1, -1, 1, 2147483647}) {
        EXPECT_EQ(lLoaded.buffers.AccessorAt(lIndex), nullptr);
        EXPECT_TRUE(lLoaded.buffers.MinOf(lIndex).empty());
        EXPECT_TRUE(lLoaded.buffers.MaxOf(lIndex).empty());
        EXPECT_TRUE(lLoaded.buffers.ViewBytes(lIndex, 100).empty());
        EXPECT_TRUE(lLoaded.buffers.AccessorBytes(lIndex, 100).empty());
    }
}

TEST(Buffers, ResolveAddressesWithinAFolder) {
    std::string lPath;
    EXPECT_TRUE(ResolveAddress("dir", "a%20b.bin", lPath));
    EXPECT_EQ(lPath, "dir/a b.bin");
    EXPECT_TRUE(ResolveAddress("", "sub/a:b.bin", lPath));
    EXPECT_EQ(lPath, "sub/a:b.bin");
    EXPECT_TRUE(ResolveAddress("dir", "50%", lPath));
    EXPECT_EQ(lPath, "dir/50%");
    for (const char* lAddress : {"", "/etc/passwd", "%2Fetc/passwd", "file:///etc/passwd", "a%00b"})
        EXPECT_FALSE(ResolveAddress("dir", lAddress, lPath)) << lAddress;
}

TEST(Buffers, MentionAnAccessorThatReachesOutOfItsView) {
    const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, FloatAccessor(3)));
    EXPECT_EQ(lLoaded.warnings.Texts(), std::vector<std::string>{"accessor:0 reaches out of its bufferView"});
    EXPECT_EQ(lLoaded.buffers.CountOf(0), 3u);
    EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 100).empty());
}

TEST(Buffers, OfferNoDataOfASparseAccessor) {
    Json lAccessor = FloatAccessor(2);
    lAccessor["sparse"] = {{"count", 1}};
    const Loaded lLoaded(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, lAccessor));
    EXPECT_EQ(lLoaded.warnings.Texts(), std::vector<std::string>{"1 sparse accessor, the data of which is not shown"});
    EXPECT_EQ(lLoaded.buffers.CountOf(0), 2u);
    EXPECT_TRUE(lLoaded.buffers.AccessorBytes(0, 100).empty());
}

TEST(Buffers, RefuseComponentTypesAndStridesThatTheFormatDoesNotHave) {
    Json lAccessor = FloatAccessor(2);
    lAccessor["componentType"] = 5124;
    const Loaded lInt(DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}}, lAccessor));
    EXPECT_EQ(lInt.warnings.Texts(), std::vector<std::string>{"accessor:0 is malformed"});
    const Loaded lStride(
        DocumentOf(DataBuffer(), {{"buffer", 0}, {"byteLength", 8}, {"byteStride", 0}}, FloatAccessor(2)));
    EXPECT_EQ(lStride.warnings.Texts(),
              std::vector<std::string>{"bufferView:0 is malformed or reaches out of its buffer"});
}

}  // namespace
}  // namespace lyrsdk::inspect
