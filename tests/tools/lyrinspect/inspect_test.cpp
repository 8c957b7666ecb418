#include "tools/lyrinspect/inspect.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/memory_probe.h"
#include "tests/tools/lyrinspect/tool_run.h"

namespace lyrsdk::inspect {
namespace {

// The lines of pText that hold pPart.
std::vector<std::string> LinesWith(const std::string& pText, const std::string& pPart) {
    std::vector<std::string> lLines;
    std::istringstream lStream(pText);
    for (std::string lLine; std::getline(lStream, lLine);) {
        if (lLine.find(pPart) != std::string::npos)
            lLines.push_back(lLine);
    }
    return lLines;
}

TEST(Inspect, ShowsTheSmallestDocument) {
    const Outcome lOutcome = InspectText(Document(""), {"--only-overrides"});
    EXPECT_EQ(lOutcome.status, eExitDone);
    EXPECT_EQ(lOutcome.errors, "");
    EXPECT_EQ(lOutcome.output,
              "FILE: glTF 2.0\n"
              "document (instance of document)\n"
              "  own          asset/version: string = \"2.0\"\n");
}

TEST(Inspect, ShowsTheSameFromBothContainers) {
    const std::string lRest =
        "\"bufferViews\":[{\"buffer\":0,\"byteLength\":8}],"
        "\"accessors\":[{\"bufferView\":0,\"componentType\":5126,\"count\":2,\"type\":\"SCALAR\"}],"
        "\"nodes\":[{}],\"animations\":[{\"samplers\":[{\"input\":0,\"output\":0}],"
        "\"channels\":[{\"sampler\":0,\"target\":{\"node\":0,\"path\":\"scale\"}}]}]";
    const std::string lUri = ",\"uri\":\"data:application/octet-stream;base64,AACAPwAAAEA=\"";
    const Outcome lText = InspectText(Document("\"buffers\":[{\"byteLength\":8" + lUri + "}]," + lRest));
    const Outcome lBinary = InspectText(
        MakeGlb(Document("\"buffers\":[{\"byteLength\":8}]," + lRest), std::string("\0\0\x80\x3F\0\0\0\x40", 8)));
    EXPECT_EQ(lText.errors, "");
    EXPECT_EQ(lText.output, lBinary.output);
    EXPECT_EQ(lBinary.errors, "");
    EXPECT_EQ(LinesWith(lBinary.output, "keyTimes").size(), 1u);
    EXPECT_EQ(LinesWith(lBinary.output, "end: time = 00:00:02").size(), 2u);
    EXPECT_EQ(LinesWith(lBinary.output, "duration: time = 00:00:01").size(), 1u);
}

TEST(Inspect, MarksWhatTheFileStatesAsOwnEvenWhereItEqualsTheDefault) {
    const std::string lScene = Document("\"materials\":[{\"alphaMode\":\"OPAQUE\"}]");
    const Outcome lOutcome = InspectText(lScene, {"--object", "material:0"});
    EXPECT_EQ(LinesWith(lOutcome.output, "alphaMode"),
              std::vector<std::string>{"  own        alphaMode: enum = 0 (OPAQUE)"});
    EXPECT_EQ(LinesWith(lOutcome.output, "alphaCutoff"),
              std::vector<std::string>{"  inherited  alphaCutoff: double = 0.5 limits 0.. soft 0..1"});
}

TEST(Inspect, SelectsObjectsByNameAndByAddress) {
    const std::string lScene = Document(
        "\"nodes\":[{\"name\":\"twin\"},{\"name\":\"twin\"},{\"name\":\"\"},{}],"
        "\"meshes\":[{\"name\":\"node:0\",\"primitives\":[{},{}]}]");
    const auto lHeadings = [&lScene](const char* pName) {
        std::vector<std::string> lLines = LinesWith(InspectText(lScene, {"--object", pName}).output, "(instance of");
        for (std::string& lLine : lLines)
            lLine.resize(lLine.find(" (instance"));
        return lLines;
    };
    EXPECT_EQ(lHeadings("twin"), (std::vector<std::string>{"node:0 \"twin\"", "node:1 \"twin\""}));
    EXPECT_EQ(lHeadings("node:0"), (std::vector<std::string>{"node:0 \"twin\"", "mesh:0 \"node:0\""}));
    EXPECT_EQ(lHeadings(""), std::vector<std::string>{"node:2"});
    EXPECT_EQ(lHeadings("mesh:0/primitive:1"), std::vector<std::string>{"mesh:0/primitive:1"});
    EXPECT_EQ(lHeadings("document"), std::vector<std::string>{"document"});
}

TEST(Inspect, FindsPathsWithAnySeparator) {
    const std::string lScene = Document("\"nodes\":[{\"extras\":{\"a/b\":{\"c\":1},\"\":2}},{\"extras\":{\"a\":3}}]");
    const auto lFound = [&lScene](std::vector<std::string> pArguments) {
        return LinesWith(InspectText(lScene, std::move(pArguments)).output, "  own");
    };
    EXPECT_EQ(lFound({"--find", "extras/a"}), std::vector<std::string>{"  own          extras/a: int = 3 [USER]"});
    EXPECT_EQ(lFound({"--find", "extras|a/b|c", "--separator", "|"}),
              std::vector<std::string>{"  own            extras|a/b|c: int = 1 [USER]"});
    EXPECT_EQ(lFound({"--find", "extras|a/b", "--separator", "|"}).size(), 2u);
    EXPECT_EQ(lFound({"--find", "extras/"}), std::vector<std::string>{"  own          extras/: int = 2 [USER]"});
    EXPECT_EQ(lFound({"--find", "extras", "--object", "node:1"}).size(), 2u);
}

TEST(Inspect, TakesAMemberWhoseNameReadsLikeAPathForOneOfItsOwn) {
    const std::string lScene =
        Document("\"nodes\":[{\"transform/scale\":2}],\"materials\":[{\"pbrMetallicRoughness/metallicFactor\":0.5}]");
    const std::string lOutput = InspectText(lScene, {"--only-overrides"}).output;
    EXPECT_EQ(LinesWith(lOutput, "scale"), std::vector<std::string>{"  own        transform/scale: int = 2 [USER]"});
    EXPECT_EQ(LinesWith(lOutput, "Factor"),
              std::vector<std::string>{"  own        pbrMetallicRoughness/metallicFactor: double = 0.5 [USER]"});
}

TEST(Inspect, WarnsOfIndicesThatAListRepeats) {
    // The second list is longer than those that are looked through one by one.
    std::string lMany = "0,1";
    for (int i = 2; i < 40; ++i)
        lMany += ',' + std::to_string(i);
    for (const std::string& lList : {std::string("0,1"), lMany}) {
        std::string lNodes = "{\"children\":[" + lList;
        lNodes += ",1]}";
        for (int i = 1; i < 40; ++i)
            lNodes += ",{}";
        const Outcome lOutcome = InspectText(Document("\"nodes\":[" + lNodes + ']'));
        EXPECT_EQ(lOutcome.errors,
                  "lyrinspect: warning: node:0 children lists 1 twice\n"
                  "lyrinspect: warning: node:0 is listed as its own child; the link is left out\n");
    }
}

TEST(Inspect, SaysWhatIsNotThere) {
    const std::string lScene = Document("\"nodes\":[{}]");
    const Outcome lObject = InspectText(lScene, {"--object", "no\nbody"});
    EXPECT_EQ(lObject.status, eExitUnreadable);
    EXPECT_EQ(lObject.errors, "lyrinspect: FILE: no object \"no\\nbody\"\n");
    EXPECT_EQ(lObject.output, "");
    const Outcome lProperty = InspectText(lScene, {"--object", "node:0", "--find", "a/b"});
    EXPECT_EQ(lProperty.status, eExitUnreadable);
    EXPECT_EQ(lProperty.errors, "lyrinspect: FILE: no property \"a/b\"\n");
    // An object without a name is not an object of the empty name.
    EXPECT_EQ(InspectText(lScene, {"--object", ""}).status, eExitUnreadable);
    // Nor is one that has a property of its own called so, where the format knows no names.
    const char* lNamedFile = R"({"asset": {"version": "2.0"}, "name": "x"})";
    EXPECT_EQ(InspectText(lNamedFile, {"--object", ""}).status, eExitUnreadable);
    EXPECT_EQ(InspectText(lNamedFile, {"--object", "x"}).status, eExitUnreadable);
}

TEST(Inspect, TurnsUnknownExtensionsAndExtrasIntoUserProperties) {
    const std::string lScene = Document(
        "\"materials\":[{\"extensions\":{\"ACME_x\":{\"list\":[1,2.5,\"t\",false,null,[],{}]}},"
        "\"pbrMetallicRoughness\":{\"extras\":5}}]");
    const std::vector<std::string> lExpected = {
        "  own          extensions/ACME_x: group [USER, UI_GROUP]",
        "  own            extensions/ACME_x/list: group [USER, UI_GROUP]",
        "  own              extensions/ACME_x/list/0: int = 1 [USER]",
        "  own              extensions/ACME_x/list/1: double = 2.5 [USER]",
        "  own              extensions/ACME_x/list/2: string = \"t\" [USER]",
        "  own              extensions/ACME_x/list/3: bool = false [USER]",
        "  own              extensions/ACME_x/list/4: null [USER]",
        "  own              extensions/ACME_x/list/5: group [USER, UI_GROUP]",
        "  own              extensions/ACME_x/list/6: group [USER, UI_GROUP]",
    };
    const Outcome lOutcome = InspectText(lScene);
    EXPECT_EQ(LinesWith(lOutcome.output, "extensions: "),
              std::vector<std::string>{"  own        extensions: group [USER, UI_GROUP]"});
    EXPECT_EQ(LinesWith(lOutcome.output, "extensions/ACME_x"), lExpected);
    EXPECT_EQ(LinesWith(lOutcome.output, "extras"),
              std::vector<std::string>{"  own          pbrMetallicRoughness/extras: int = 5 [USER]"});
}

TEST(Inspect, DoesNotMistakeAMemberForAComputedPropertyOfTheSameName) {
    const std::string lScene =
        Document("\"nodes\":[{\"parent\":\"me\",\"transform\":{\"scale\":[2,2,2]}}],\"skins\":[{\"jointCount\":77}]");
    const Outcome lOutcome = InspectText(lScene);
    EXPECT_EQ(LinesWith(lOutcome.output, "parent: string"),
              std::vector<std::string>{"  own        parent: string = \"me\" [USER]"});
    EXPECT_EQ(LinesWith(lOutcome.output, "transform/scale: double3").size(), 1u);
    EXPECT_EQ(LinesWith(lOutcome.output, "jointCount: int = 77 [USER]").size(), 1u);
    EXPECT_EQ(LinesWith(lOutcome.output, "jointCount: int = 0 [").size(), 1u);
}

TEST(Inspect, ShowsTheLeftoversOfAKnownExtension) {
    const std::string lLight = "\"KHR_lights_punctual\":{\"light\":0,\"extras\":1}";
    const std::string lScene = Document(
        "\"extensions\":{\"KHR_lights_punctual\":{\"lights\":[{\"type\":\"point\"}]}},"
        "\"nodes\":[{\"extensions\":{" +
        lLight + "}}]");
    const Outcome lOutcome = InspectText(lScene);
    EXPECT_EQ(lOutcome.errors, "");
    EXPECT_EQ(LinesWith(lOutcome.output, "<- light:0 (reference)").size(), 1u);
    EXPECT_EQ(LinesWith(lOutcome.output, "KHR_lights_punctual/extras: int = 1").size(), 1u);
    EXPECT_EQ(LinesWith(lOutcome.output, "KHR_lights_punctual/lights").size(), 0u);
}

TEST(Inspect, ShortensLongLists) {
    std::string lNodes = "{\"mesh\":0}";
    for (int i = 1; i < 20; ++i)
        lNodes += ",{\"mesh\":0}";
    const Outcome lOutcome =
        InspectText(Document("\"nodes\":[" + lNodes + "],\"meshes\":[{}]"), {"--object", "mesh:0"});
    EXPECT_EQ(LinesWith(lOutcome.output, "-> node:").size(), 8u);
    EXPECT_EQ(LinesWith(lOutcome.output, "-> and 12 more (reference)").size(), 1u);
}

TEST(Inspect, ShowsPrototypesWithLabelsAndChoices) {
    const Outcome lOutcome = InspectText(Document(""), {"--prototypes"});
    EXPECT_EQ(LinesWith(lOutcome.output, "(prototype)").size(), 14u);
    EXPECT_EQ(LinesWith(lOutcome.output, "alphaMode"),
              std::vector<std::string>{
                  "  own        alphaMode: enum = 0 (OPAQUE) choices OPAQUE|MASK|BLEND label \"Alpha mode\""});
}

TEST(Inspect, CountsWhatItMade) {
    const Outcome lOutcome =
        InspectText(Document("\"nodes\":[{\"children\":[1]},{\"extras\":{\"a\":1}}]"), {"--stats", "--no-tree"});
    EXPECT_EQ(lOutcome.output.substr(0, 11), "statistics\n");
    EXPECT_EQ(LinesWith(lOutcome.output, "pages"),
              std::vector<std::string>{"  pages                        37  objects 3, prototypes 14, types 20"});
    // The document has 9 properties with its root; a node has 14, and the second one two more.
    EXPECT_EQ(LinesWith(lOutcome.output, "  properties "),
              std::vector<std::string>{"  properties                   39"});
    // The version's value; description, value and flags of the extras and of the number in them.
    EXPECT_EQ(LinesWith(lOutcome.output, "own items"), std::vector<std::string>{"  own items                     7"});
    EXPECT_EQ(LinesWith(lOutcome.output, "inherited items"),
              std::vector<std::string>{"  inherited items             110"});
    EXPECT_EQ(LinesWith(lOutcome.output, "connections"), std::vector<std::string>{"  connections                   1"});
    EXPECT_EQ(LinesWith(lOutcome.output, "time ").size(), 5u);
}

TEST(Inspect, FailsWhenTheOutputTakesNothing) {
    const SceneFile lFile(Document(""));
    std::ostream lBroken(nullptr);
    std::ostringstream lErrors;
    const char* lArguments[] = {"lyrinspect", lFile.Path().c_str()};
    EXPECT_EQ(RunInspector(2, lArguments, {lBroken, lErrors, false, false, [] { return 0.0; }}), eExitUnreadable);
    EXPECT_EQ(lErrors.str(), "lyrinspect: cannot write the output\n");
}

TEST(Inspect, DrawsItsProgressOnATerminalAndWipesItBeforeAnyOtherLine) {
    const SceneFile lFile(Document("\"nodes\":[{\"name\":\"\"}]"));
    std::ostringstream lOutput;
    std::ostringstream lErrors;
    double lNow = 0;
    const char* lArguments[] = {"lyrinspect", lFile.Path().c_str()};
    EXPECT_EQ(RunInspector(2, lArguments, {lOutput, lErrors, false, true, [&lNow] { return lNow += 2; }}), eExitDone);
    EXPECT_NE(lErrors.str().find("building"), std::string::npos);
    EXPECT_NE(lErrors.str().find("\r\x1B[Klyrinspect: warning: 1 node with an empty name\n"), std::string::npos);
    EXPECT_EQ(lErrors.str().substr(lErrors.str().size() - 4), "\r\x1B[K");
    EXPECT_EQ(lOutput.str().find('\r'), std::string::npos);
}

// A scene that lacks pages or properties is not shown as if it were whole.
TEST(Inspect, SaysWhenTheLibraryHasNoMemoryAndGivesBackWhatItHad) {
    const SceneFile lFile(Document("\"nodes\":[{\"name\":\"a\",\"children\":[1],\"extras\":{\"b\":[1,\"c\"]}},{}]"));
    int lRefused = 0;
    for (const bool lForever : {true, false}) {
        for (std::size_t i = 0; i < 3000; i += i < 100 ? 1 : 7) {
            std::ostringstream lOutput;
            std::ostringstream lErrors;
            const char* lArguments[] = {"lyrinspect", lFile.Path().c_str()};
            const LeakCheck lLeaks;
            const FailAllocations lFail(i, lForever);
            const int lStatus = RunInspector(2, lArguments, {lOutput, lErrors, false, false, [] { return 0.0; }});
            const std::string lRefusal = "lyrinspect: " + lFile.Path() + ": not enough memory\n";
            if (lStatus == eExitDone)
                continue;
            ++lRefused;
            ASSERT_EQ(lStatus, eExitUnreadable) << i;
            ASSERT_EQ(lErrors.str(), lRefusal) << i;
        }
    }
    EXPECT_GT(lRefused, 500);
}

TEST(Inspect, WithoutMemoryAGraphIsWholeOrRefused) {
    const SceneFile lFile(Document("\"nodes\":[{\"name\":\"a\",\"children\":[1]},{}]"));
    const char* lArguments[] = {"lyrinspect", "--dot", lFile.Path().c_str()};
    const auto lRun = [&](std::ostream& pOutput, std::ostream& pErrors) {
        return RunInspector(3, lArguments, {pOutput, pErrors, false, false, [] { return 0.0; }});
    };
    std::ostringstream lWhole;
    std::ostringstream lNoErrors;
    ASSERT_EQ(lRun(lWhole, lNoErrors), eExitDone);
    ASSERT_NE(lWhole.str().find(" -> "), std::string::npos);
    int lRefusedGraphs = 0;
    for (std::size_t i = 1000; i < 3000; ++i) {
        std::ostringstream lOutput;
        std::ostringstream lErrors;
        const FailAllocations lFail(i, true);
        if (lRun(lOutput, lErrors) == eExitDone) {
            ASSERT_EQ(lOutput.str(), lWhole.str()) << i;
            break;
        }
        lRefusedGraphs += lErrors.str() == "lyrinspect: not enough memory\n" ? 1 : 0;
    }
    EXPECT_GT(lRefusedGraphs, 10);
}

TEST(Inspect, DumpsTheSelectedObjectsAndPropertiesOnly) {
    const std::string lScene = Document("\"nodes\":[{\"name\":\"a\"},{\"name\":\"b\",\"translation\":[1,2,3]}]");
    const Outcome lOutcome = InspectText(
        lScene, {"--dump", "--only-overrides", "--object", "b", "--separator", ".", "--find", "transform.translation"});
    EXPECT_EQ(lOutcome.status, eExitDone);
    EXPECT_EQ(lOutcome.output,
              "page 0 \"node\" instance of page 1\n"
              "  .v.-  transform.translation: eDOUBLE3 typed by \"double3\" = 1,2,3 [ANIMATABLE] label \"Translation\" "
              "tag 3\n");
    EXPECT_EQ(InspectText(lScene, {"--dump", "--object", "c"}).status, eExitUnreadable);
}

}  // namespace
}  // namespace lyrsdk::inspect
