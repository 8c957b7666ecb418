#include "tools/lyrinspect/options.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace lyrsdk::inspect {
namespace {

struct Result {
    Parsed parsed;
    Options options;
    std::string output;
    std::string errors;
};

Result Parse(std::vector<const char*> pArguments) {
    pArguments.insert(pArguments.begin(), "lyrinspect");
    std::ostringstream lOutput;
    std::ostringstream lErrors;
    Result lResult;
    lResult.parsed =
        ParseOptions(static_cast<int>(pArguments.size()), pArguments.data(), lResult.options, lOutput, lErrors);
    lResult.output = lOutput.str();
    lResult.errors = lErrors.str();
    return lResult;
}

TEST(Options, NeedNothingButAFile) {
    const Result lResult = Parse({"scene.gltf"});
    EXPECT_EQ(lResult.parsed, Parsed::eRun);
    EXPECT_EQ(lResult.options.file, "scene.gltf");
    EXPECT_FALSE(lResult.options.hasObject);
    EXPECT_FALSE(lResult.options.hasFind);
    EXPECT_EQ(lResult.options.separator, '/');
    EXPECT_FALSE(lResult.options.onlyOverrides);
    EXPECT_FALSE(lResult.options.stats);
    EXPECT_FALSE(lResult.options.prototypes);
    EXPECT_TRUE(lResult.options.tree);
}

TEST(Options, AreAllRead) {
    const Result lResult = Parse({"--only-overrides", "--object", "node:3", "--find", "a|b", "--separator", "|",
                                  "--stats", "--prototypes", "--no-tree", "scene.gltf"});
    EXPECT_EQ(lResult.parsed, Parsed::eRun);
    EXPECT_TRUE(lResult.options.hasObject);
    EXPECT_EQ(lResult.options.object, "node:3");
    EXPECT_TRUE(lResult.options.hasFind);
    EXPECT_EQ(lResult.options.find, "a|b");
    EXPECT_EQ(lResult.options.separator, '|');
    EXPECT_TRUE(lResult.options.onlyOverrides);
    EXPECT_TRUE(lResult.options.stats);
    EXPECT_TRUE(lResult.options.prototypes);
    EXPECT_FALSE(lResult.options.tree);
}

TEST(Options, AskForWhatStandsInPlaceOfTheTree) {
    EXPECT_FALSE(Parse({"scene.gltf"}).options.dump);
    EXPECT_FALSE(Parse({"scene.gltf"}).options.dot);
    const Result lDump = Parse({"--dump", "--only-overrides", "--stats", "--object", "a", "--find", "b", "scene.gltf"});
    EXPECT_EQ(lDump.parsed, Parsed::eRun);
    EXPECT_TRUE(lDump.options.dump);
    const Result lDot = Parse({"--dot", "--separator", ".", "scene.gltf"});
    EXPECT_EQ(lDot.parsed, Parsed::eRun);
    EXPECT_TRUE(lDot.options.dot);
}

TEST(Options, TakeAnEmptyName) {
    const Result lResult = Parse({"scene.gltf", "--object", ""});
    EXPECT_EQ(lResult.parsed, Parsed::eRun);
    EXPECT_TRUE(lResult.options.hasObject);
    EXPECT_EQ(lResult.options.object, "");
}

TEST(Options, AnswerWrongUsageWithOneLine) {
    const std::vector<std::vector<const char*>> lWrong = {
        {},
        {"a.gltf", "b.gltf"},
        {"a.gltf", "--bogus"},
        {"a.gltf", "--object"},
        {"a.gltf", "--separator", ""},
        {"a.gltf", "--separator", "//"},
        {"a.gltf", "--separator", "\x01"},
        {"a.gltf", "--separator", "\xC2\xB7"},
        {"a.gltf", "--bo\ngus"},
        {"a.gltf", "--dump", "--dot"},
        {"a.gltf", "--dump", "--prototypes"},
        {"a.gltf", "--dump", "--no-tree"},
        {"a.gltf", "--dot", "--object", "a"},
        {"a.gltf", "--dot", "--find", "a"},
        {"a.gltf", "--dot", "--only-overrides"},
        {"a.gltf", "--dot", "--prototypes"},
        {"a.gltf", "--dot", "--stats"},
        {"a.gltf", "--dot", "--no-tree"},
    };
    for (const std::vector<const char*>& lArguments : lWrong) {
        const Result lResult = Parse(lArguments);
        EXPECT_EQ(lResult.parsed, Parsed::eWrongUsage);
        EXPECT_EQ(lResult.output, "");
        EXPECT_EQ(lResult.errors.substr(0, 12), "lyrinspect: ");
        EXPECT_EQ(lResult.errors.find('\n'), lResult.errors.size() - 1);
    }
}

TEST(Options, WriteHelpAndVersionToTheOutput) {
    const Result lHelp = Parse({"--help"});
    EXPECT_EQ(lHelp.parsed, Parsed::eDone);
    EXPECT_EQ(lHelp.errors, "");
    for (const char* lOption :
         {"--object NAME", "--find PATH", "--separator C", "--only-overrides", "--stats", "Exit status"})
        EXPECT_NE(lHelp.output.find(lOption), std::string::npos) << lOption;
    const Result lVersion = Parse({"--version"});
    EXPECT_EQ(lVersion.parsed, Parsed::eDone);
    EXPECT_EQ(lVersion.output, "lyrinspect 1.0.0\n");
}

}  // namespace
}  // namespace lyrsdk::inspect
