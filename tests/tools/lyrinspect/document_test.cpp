#include "tools/lyrinspect/document.h"

#include <gtest/gtest.h>

#include "tests/tools/lyrinspect/tool_run.h"

namespace lyrsdk::inspect {
namespace {

// The error that a text is refused with, empty when it is accepted.
std::string ErrorOf(std::string_view pText) {
    Json lDocument;
    Warnings lWarnings;
    std::string lError;
    return ParseDocument(pText, lDocument, lWarnings, lError) ? std::string() : lError;
}

std::string Nested(int pLevels) {
    const std::size_t lLevels = static_cast<std::size_t>(pLevels);
    return std::string(lLevels, '[') + std::string(lLevels, ']');
}

TEST(Document, AcceptsTheSmallestDocument) {
    EXPECT_EQ(ErrorOf(Document("")), "");
}

TEST(Document, RefusesWhatIsNotJson) {
    EXPECT_EQ(ErrorOf("solid cube").substr(0, 10), "not JSON: ");
    EXPECT_EQ(ErrorOf("").substr(0, 10), "not JSON: ");
    EXPECT_EQ(ErrorOf("{\"asset\":").substr(0, 10), "not JSON: ");
    EXPECT_EQ(ErrorOf(Document("") + "x").substr(0, 10), "not JSON: ");
}

TEST(Document, KeepsParserMessagesToOneShortLine) {
    const std::string lError = ErrorOf("{\"asset\":\"" + std::string(5000, 'a') + "\n\"}");
    EXPECT_LT(lError.size(), 300u);
    EXPECT_EQ(lError.find('\n'), std::string::npos);
}

TEST(Document, RefusesBytesThatAreNotUtf8) {
    EXPECT_EQ(ErrorOf("{\"asset\":\"\xFF\"}"), "not UTF-8: byte \\xFF at offset 10");
}

TEST(Document, AcceptsNestingUpToTheLimitAndNoDeeper) {
    // The document itself is one level.
    EXPECT_EQ(ErrorOf(Document("\"extras\":" + Nested(kMaxNesting - 1))), "");
    EXPECT_EQ(ErrorOf(Document("\"extras\":" + Nested(kMaxNesting))), "nested deeper than 512 levels");
    EXPECT_EQ(ErrorOf(std::string(100000, '[')), "nested deeper than 512 levels");
}

TEST(Document, RefusesNumbersThatNoDoubleHolds) {
    EXPECT_EQ(ErrorOf(Document("\"extras\":1e999")), "number overflow parsing '1e999'");
    EXPECT_EQ(ErrorOf(Document("\"extras\":1e308")), "");
    EXPECT_EQ(ErrorOf(Document("\"extras\":123456789012345678901234567890")), "");
}

TEST(Document, RefusesWhatStandsBehindAZeroByte) {
    EXPECT_EQ(ErrorOf(Document("") + std::string(3, '\0')), "");
    EXPECT_EQ(ErrorOf(Document("") + std::string("\0more", 5)),
              "not JSON: zero byte at offset " + std::to_string(Document("").size()));
}

TEST(Document, RefusesWhatIsNoGltf2) {
    EXPECT_EQ(ErrorOf("[]"), "not a glTF document: the JSON is an array of 0, not an object");
    EXPECT_EQ(ErrorOf("{}"), "not a glTF document: it has no asset.version");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":2.0}}"), "not a glTF document: it has no asset.version");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"1.0\"}}"), "needs glTF version \"1.0\", only 2.0 is supported");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"2.\"}}"), "needs glTF version \"2.\", only 2.0 is supported");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"2.1\",\"minVersion\":\"2.1\"}}"),
              "needs glTF version \"2.1\", only 2.0 is supported");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"2.1\",\"minVersion\":\"2.0\"}}"), "");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"x\",\"minVersion\":\"2.0\"}}"),
              "needs glTF version \"x\", only 2.0 is supported");
    EXPECT_EQ(ErrorOf("{\"asset\":{\"version\":\"2.7\"}}"), "");
}

TEST(Document, WarnsAboutRepeatedKeysAndTakesTheLast) {
    Json lDocument;
    Warnings lWarnings;
    std::string lError;
    ASSERT_TRUE(ParseDocument(Document("\"scene\":1,\"scene\":2,\"extras\":[{\"a\":1,\"a\":2}]"), lDocument, lWarnings,
                              lError));
    EXPECT_EQ(lDocument["scene"], 2);
    ASSERT_EQ(lWarnings.Count(), 1u);
    EXPECT_EQ(lWarnings.Texts()[0], "2 keys repeated inside an object; the last one counts");
}

TEST(Document, ReadsWholeNumbersOnly) {
    int lInt = 0;
    EXPECT_TRUE(ToInt(Json(3.0), lInt));
    EXPECT_EQ(lInt, 3);
    EXPECT_TRUE(ToInt(Json(-2147483648LL), lInt));
    EXPECT_EQ(lInt, -2147483647 - 1);
    for (const Json& lBad : {Json(2147483648LL), Json(-2147483649LL), Json(1.5), Json(1e300),
                             Json(18446744073709551615ULL), Json("3"), Json(true), Json(nullptr), Json::array()})
        EXPECT_FALSE(ToInt(lBad, lInt)) << lBad;
    std::size_t lSize = 0;
    EXPECT_TRUE(ToSize(Json(9007199254740992ULL), lSize));
    EXPECT_EQ(lSize, 9007199254740992U);
    for (const Json& lBad : {Json(-1), Json(0.5), Json(1e17), Json("1"), Json()})
        EXPECT_FALSE(ToSize(lBad, lSize)) << lBad;
}

TEST(Document, GivesAnEmptyArrayForWhatIsNone) {
    Warnings lWarnings;
    const Json lDocument = {{"a", 1}, {"b", {1, 2}}};
    EXPECT_EQ(ArrayOf(lDocument, "b", "x", lWarnings).size(), 2u);
    EXPECT_EQ(ArrayOf(lDocument, "c", "x", lWarnings).size(), 0u);
    EXPECT_EQ(lWarnings.Count(), 0u);
    EXPECT_EQ(ArrayOf(lDocument, "a", "x", lWarnings).size(), 0u);
    ASSERT_EQ(lWarnings.Count(), 1u);
    EXPECT_EQ(lWarnings.Texts()[0], "x a is 1, not an array; it is left out");
}

}  // namespace
}  // namespace lyrsdk::inspect
