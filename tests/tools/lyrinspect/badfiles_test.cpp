// Files that are wrong on purpose. Those with a fixed text lie in the folder bad and are run as a whole by the test
// driver; here are the ones that are large, numerous or made by a rule.

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "tests/tools/lyrinspect/tool_run.h"
#include "tools/lyrinspect/inspect.h"

namespace lyrsdk::inspect {
namespace {

std::string Content(const std::string& pPath) {
    std::ifstream lFile(pPath, std::ios::binary);
    std::ostringstream lContent;
    lContent << lFile.rdbuf();
    return lContent.str();
}

// Status 0, or 1 with one line on the error stream; and no control character anywhere.
void ExpectAnAnswer(const Outcome& pOutcome) {
    EXPECT_TRUE(pOutcome.status == eExitDone || pOutcome.status == eExitUnreadable);
    if (pOutcome.status == eExitUnreadable) {
        EXPECT_EQ(pOutcome.output, "");
        EXPECT_EQ(pOutcome.errors.substr(0, 18), "lyrinspect: FILE: ");
        EXPECT_EQ(pOutcome.errors.find('\n'), pOutcome.errors.size() - 1);
    }
    for (const char lByte : pOutcome.output + pOutcome.errors)
        EXPECT_TRUE(lByte == '\n' || static_cast<unsigned char>(lByte) >= 0x20);
}

TEST(BadFiles, NestedAHundredThousandDeepAreRefused) {
    const std::string lOpen(100000, '[');
    const std::string lClosed(100000, ']');
    std::string lObjects;
    for (int i = 0; i < 100000; ++i)
        lObjects += "{\"a\":";
    const std::string lArrays = lOpen + lClosed;
    for (const std::string& lText :
         {lOpen, lArrays, Document("\"extras\":" + lArrays), Document("\"nodes\":" + lArrays), lObjects}) {
        const Outcome lOutcome = InspectText(lText);
        EXPECT_EQ(lOutcome.status, eExitUnreadable);
        EXPECT_EQ(lOutcome.errors, "lyrinspect: FILE: nested deeper than 512 levels\n");
    }
}

TEST(BadFiles, NestedAsDeepAsAllowedAreShown) {
    std::string lText = "\"extras\":";
    for (int i = 0; i < 500; ++i)
        lText += "{\"a\":";
    lText += '0';
    lText.append(500, '}');
    const Outcome lOutcome = InspectText(Document(lText));
    EXPECT_EQ(lOutcome.status, eExitDone);
    EXPECT_EQ(lOutcome.errors, "");
    EXPECT_NE(lOutcome.output.find("a/a/a: int = 0"), std::string::npos);
}

TEST(BadFiles, EmptyOnesAreRefused) {
    EXPECT_EQ(InspectText("").errors, "lyrinspect: FILE: the file is empty\n");
    EXPECT_EQ(InspectText("glTF").errors, "lyrinspect: FILE: truncated: the header is cut off\n");
    ExpectAnAnswer(InspectText(std::string_view("\0\0\0\0", 4)));
    ExpectAnAnswer(InspectText("\xEF\xBB\xBF"));
}

TEST(BadFiles, CutOffAnywhereAreRefused) {
    const std::string lText = Content(ExamplePath("lamps.gltf"));
    const std::string lBinary = MakeGlb(lText, "abcd");
    const std::size_t lEnd = lText.find_last_of('}');
    for (std::size_t i = 0; i < lEnd; i += 53)
        EXPECT_EQ(InspectText(lText.substr(0, i)).status, eExitUnreadable) << i;
    for (std::size_t i = 0; i < lBinary.size(); i += 97)
        EXPECT_EQ(InspectText(lBinary.substr(0, i)).status, eExitUnreadable) << i;
}

TEST(BadFiles, WithAChangedByteAreAnswered) {
    std::mt19937 lRandom(20240229);
    for (const char* lName : {"lamps.gltf", "figure.gltf"}) {
        const std::string lText = Content(ExamplePath(lName));
        for (int i = 0; i < 150; ++i) {
            std::string lChanged = lText;
            lChanged[lRandom() % lChanged.size()] = static_cast<char>(lRandom() % 256);
            ExpectAnAnswer(InspectText(lChanged));
        }
    }
}

TEST(BadFiles, WithOddValuesAnywhereAreAnswered) {
    constexpr const char* kValues[] = {"-1",   "1e308", "99999999999",          "null", "{}",   "[]", "\"x\"",
                                       "true", "1.5",   "-9223372036854775808", "\"\"", "[[0]]"};
    constexpr std::size_t kCount = sizeof kValues / sizeof kValues[0];
    for (const char* lName : {"lamps.gltf", "figure.gltf"}) {
        const std::string lText = Content(ExamplePath(lName));
        std::size_t lTurn = 0;
        for (std::size_t i = lText.find(": "); i != std::string::npos; i = lText.find(": ", i + 1)) {
            const std::size_t lStart = i + 2;
            const bool lOpens = lText[lStart] == '[' || lText[lStart] == '{';
            const std::size_t lEnd = lOpens ? lStart : lText.find_first_of(",}]\n", lStart);
            std::string lChanged = lText;
            // In front of an array or object the value stands alone, and what it replaces becomes a member of its own.
            lChanged.replace(lStart, lEnd - lStart,
                             kValues[lTurn++ % kCount] + std::string(lOpens ? ", \"moved\": " : ""));
            ExpectAnAnswer(InspectText(lChanged));
        }
    }
}

TEST(BadFiles, WithAMillionFaultsGiveFewLines) {
    std::string lNodes = "{}";
    for (int i = 1; i < 2000; ++i)
        lNodes += ",{\"mesh\":7,\"skin\":8,\"children\":[-1]}";
    const Outcome lOutcome = InspectText(Document("\"nodes\":[" + lNodes + ']'), {"--no-tree"});
    EXPECT_EQ(lOutcome.status, eExitDone);
    EXPECT_EQ(std::count(lOutcome.errors.begin(), lOutcome.errors.end(), '\n'), 51);
    EXPECT_NE(lOutcome.errors.find("warning: and 5947 more warnings\n"), std::string::npos);
}

TEST(BadFiles, WithNamesOfAnyLengthKeepTheirLinesShort) {
    const std::string lLong(100000, 'n');
    const Outcome lOutcome = InspectText(
        Document("\"nodes\":[{\"name\":\"" + lLong + "\",\"extras\":{\"" + lLong + "/\":\"" + lLong + "\"}}]"));
    EXPECT_EQ(lOutcome.status, eExitDone);
    // Only the path of a property is never shortened: it is what --find takes.
    EXPECT_LT(lOutcome.output.size(), lLong.size() + 5000);
    EXPECT_LT(lOutcome.errors.size(), 500u);
}

}  // namespace
}  // namespace lyrsdk::inspect
