#include "tools/lyrinspect/rules.h"

#include <gtest/gtest.h>

#include "tests/tools/lyrinspect/tool_run.h"

namespace lyrsdk::inspect {
namespace {

using Texts = std::vector<std::string>;

// The warnings about one object of that kind.
Texts RulesBroken(ObjectKind pKind, const char* pJson) {
    SceneObject lObject;
    lObject.kind = pKind;
    Warnings lWarnings;
    CheckRules(lObject, Json::parse(pJson), lWarnings);
    return lWarnings.Texts();
}

TEST(Rules, AskOfANodeOneTransformAndAMeshForItsSkinAndWeights) {
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"translation\":1,\"rotation\":2,\"scale\":3}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"matrix\":[],\"translation\":[],\"scale\":[]}"),
              (Texts{"node:0 has both matrix and translation", "node:0 has both matrix and scale"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"matrix\":[],\"rotation\":[]}"),
              Texts{"node:0 has both matrix and rotation"});
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"skin\":0,\"weights\":[1]}"),
              (Texts{"node:0 has skin, but no mesh", "node:0 has weights, but no mesh"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"skin\":0,\"weights\":[1],\"mesh\":0}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"extensions\":{\"KHR_lights_punctual\":{}}}"),
              Texts{"node:0 has no extensions/KHR_lights_punctual/light"});
}

TEST(Rules, AskForWhatAMeshCannotDoWithout) {
    EXPECT_EQ(RulesBroken(ObjectKind::eMesh, "{}"), Texts{"mesh:0 has no primitives"});
    EXPECT_EQ(RulesBroken(ObjectKind::eMesh, "{\"primitives\":[]}"), Texts{"mesh:0 has no primitives"});
    EXPECT_EQ(RulesBroken(ObjectKind::eMesh, "{\"primitives\":[{}]}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::ePrimitive, "{}"), Texts{"primitive:0 has no attributes"});
    EXPECT_EQ(RulesBroken(ObjectKind::ePrimitive, "{\"attributes\":{}}"), Texts{"primitive:0 has no attributes"});
    EXPECT_EQ(RulesBroken(ObjectKind::ePrimitive, "{\"attributes\":{\"POSITION\":0}}"), Texts());
}

TEST(Rules, AskThatListsHoldSomething) {
    EXPECT_EQ(RulesBroken(ObjectKind::eScene, "{\"nodes\":[]}"), Texts{"scene:0 nodes is empty"});
    EXPECT_EQ(RulesBroken(ObjectKind::eNode, "{\"children\":[],\"mesh\":0,\"weights\":[]}"),
              (Texts{"node:0 children is empty", "node:0 weights is empty"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eMesh, "{\"primitives\":[{}],\"weights\":[]}"), Texts{"mesh:0 weights is empty"});
    EXPECT_EQ(RulesBroken(ObjectKind::ePrimitive, "{\"attributes\":{\"A\":0},\"targets\":[]}"),
              Texts{"primitive:0 targets is empty"});
    EXPECT_EQ(RulesBroken(ObjectKind::eScene, "{\"nodes\":[0]}"), Texts());
}

TEST(Rules, AskForTheTextureOfEveryMap) {
    EXPECT_EQ(RulesBroken(ObjectKind::eMaterial, "{\"pbrMetallicRoughness\":{}}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eMaterial,
                          "{\"pbrMetallicRoughness\":{\"baseColorTexture\":{},\"metallicRoughnessTexture\":{}},"
                          "\"normalTexture\":{},\"occlusionTexture\":{},\"emissiveTexture\":{}}"),
              (Texts{"material:0 has no pbrMetallicRoughness/baseColorTexture/index",
                     "material:0 has no pbrMetallicRoughness/metallicRoughnessTexture/index",
                     "material:0 has no normalTexture/index", "material:0 has no occlusionTexture/index",
                     "material:0 has no emissiveTexture/index"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eMaterial, "{\"normalTexture\":{\"index\":0},\"emissiveTexture\":7}"), Texts());
}

TEST(Rules, AskOfAnImageOneSourceAndTheTypeOfOneInsideTheFile) {
    EXPECT_EQ(RulesBroken(ObjectKind::eImage, "{\"uri\":\"a\",\"bufferView\":0,\"mimeType\":\"image/png\"}"),
              Texts{"image:0 has both uri and bufferView"});
    EXPECT_EQ(RulesBroken(ObjectKind::eImage, "{\"bufferView\":0}"), Texts{"image:0 has bufferView, but no mimeType"});
    EXPECT_EQ(RulesBroken(ObjectKind::eImage, "{\"uri\":\"a\"}"), Texts());
}

TEST(Rules, AskOfACameraTheNumbersOfItsProjection) {
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera, "{}"), Texts{"camera:0 has no type"});
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera, "{\"type\":\"perspective\"}"),
              Texts{"camera:0 is of type perspective, but has no perspective"});
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera, "{\"type\":\"perspective\",\"perspective\":{}}"),
              (Texts{"camera:0 has no perspective/yfov", "camera:0 has no perspective/znear"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera, "{\"type\":\"orthographic\",\"perspective\":1}"),
              Texts{"camera:0 is of type orthographic, but has no orthographic"});
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera, "{\"type\":\"orthographic\",\"orthographic\":{},\"perspective\":1}"),
              (Texts{"camera:0 has both perspective and orthographic", "camera:0 has no orthographic/xmag",
                     "camera:0 has no orthographic/ymag", "camera:0 has no orthographic/znear",
                     "camera:0 has no orthographic/zfar"}));
}

TEST(Rules, HoldTheNumbersOfACameraAgainstEachOther) {
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera,
                          "{\"type\":\"perspective\",\"perspective\":{\"yfov\":1,\"znear\":2,\"zfar\":2}}"),
              Texts{"camera:0 perspective/znear 2 is not below perspective/zfar 2"});
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera,
                          "{\"type\":\"orthographic\",\"orthographic\":{\"xmag\":0,\"ymag\":0.0,"
                          "\"znear\":1,\"zfar\":0.5}}"),
              (Texts{"camera:0 orthographic/xmag is 0", "camera:0 orthographic/ymag is 0",
                     "camera:0 orthographic/znear 1 is not below orthographic/zfar 0.5"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eCamera,
                          "{\"type\":\"orthographic\",\"orthographic\":{\"xmag\":-1,\"ymag\":1,"
                          "\"znear\":0,\"zfar\":\"x\"}}"),
              Texts());
}

TEST(Rules, AskOfASpotLightItsCone) {
    EXPECT_EQ(RulesBroken(ObjectKind::eLight, "{}"), Texts{"light:0 has no type"});
    EXPECT_EQ(RulesBroken(ObjectKind::eLight, "{\"type\":\"point\"}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eLight, "{\"type\":\"spot\"}"),
              Texts{"light:0 is of type spot, but has no spot"});
    EXPECT_EQ(RulesBroken(ObjectKind::eLight, "{\"type\":\"spot\",\"spot\":{}}"), Texts());
    EXPECT_EQ(RulesBroken(ObjectKind::eLight,
                          "{\"type\":\"spot\",\"spot\":{\"innerConeAngle\":0.5,\"outerConeAngle\":0.25}}"),
              Texts{"light:0 spot/innerConeAngle 0.5 is not below spot/outerConeAngle 0.25"});
}

TEST(Rules, AskForThePartsOfAnAnimationAndASkin) {
    EXPECT_EQ(RulesBroken(ObjectKind::eSkin, "{\"joints\":[]}"), Texts{"skin:0 has no joints"});
    EXPECT_EQ(RulesBroken(ObjectKind::eAnimation, "{}"),
              (Texts{"animation:0 has no channels", "animation:0 has no samplers"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eChannel, "{}"), (Texts{"channel:0 has no sampler", "channel:0 has no target"}));
    EXPECT_EQ(RulesBroken(ObjectKind::eChannel, "{\"sampler\":0,\"target\":{}}"),
              Texts{"channel:0 has no target/path"});
    SceneObject lChannel;
    lChannel.kind = ObjectKind::eChannel;
    Warnings lWarnings;
    CheckChannelSampler(lChannel, Json::parse("{\"output\":1}"), lWarnings);
    EXPECT_EQ(lWarnings.Texts(), Texts{"channel:0 sampler has no input"});
}

TEST(Rules, SayNothingAboutAnObjectThatIsNone) {
    for (const char* lJson : {"7", "[]", "null", "\"type\""})
        EXPECT_EQ(RulesBroken(ObjectKind::eCamera, lJson), Texts()) << lJson;
}

// The lines on the error stream, without what each starts with.
Texts WarningsAbout(const std::string& pMembers) {
    Texts lTexts;
    std::string lErrors = InspectText(Document(pMembers), {"--no-tree"}).errors;
    constexpr std::string_view kLead = "lyrinspect: warning: ";
    while (!lErrors.empty()) {
        const std::size_t lEnd = lErrors.find('\n');
        lTexts.push_back(lErrors.substr(kLead.size(), lEnd - kLead.size()));
        lErrors.erase(0, lEnd + 1);
    }
    return lTexts;
}

TEST(Rules, AreHeldAgainstEveryObjectOfAFile) {
    EXPECT_EQ(WarningsAbout("\"meshes\":[{\"primitives\":[{}]},{}],\"materials\":[{\"normalTexture\":{}}],"
                            "\"nodes\":[{\"skin\":0}],\"skins\":[{}],\"cameras\":[{}],"
                            "\"animations\":[{\"channels\":[{\"sampler\":0}],\"samplers\":[{}]}]"),
              (Texts{"node:0 has skin, but no mesh", "mesh:0/primitive:0 has no attributes", "mesh:1 has no primitives",
                     "material:0 has no normalTexture/index", "camera:0 has no type", "skin:0 has no joints",
                     "animation:0/channel:0 has no target", "animation:0/channel:0 sampler has no input",
                     "animation:0/channel:0 sampler has no output"}));
}

TEST(Rules, KeepNumbersOffTheBoundsThatTheyMustNotReach) {
    EXPECT_EQ(WarningsAbout("\"cameras\":[{\"type\":\"perspective\",\"perspective\":"
                            "{\"aspectRatio\":0,\"yfov\":0,\"znear\":0}}]"),
              (Texts{"camera:0 perspective/aspectRatio is 0, which it must not reach",
                     "camera:0 perspective/yfov is 0, which it must not reach",
                     "camera:0 perspective/znear is 0 m, which it must not reach"}));
    EXPECT_EQ(WarningsAbout("\"extensions\":{\"KHR_lights_punctual\":{\"lights\":[{\"type\":\"point\",\"range\":0},"
                            "{\"type\":\"spot\",\"spot\":{\"outerConeAngle\":0}},"
                            "{\"type\":\"spot\",\"spot\":{\"innerConeAngle\":1.5707963267948966}}]}}"),
              (Texts{"light:0 range is 0 m, which it must not reach",
                     "light:1 spot/outerConeAngle is 0, which it must not reach",
                     "light:2 spot/innerConeAngle is 1.5707963267948966, which it must not reach"}));
    // The near plane of an orthographic camera may lie in the eye.
    EXPECT_EQ(WarningsAbout("\"cameras\":[{\"type\":\"orthographic\",\"orthographic\":"
                            "{\"xmag\":1,\"ymag\":1,\"znear\":0,\"zfar\":1}}]"),
              Texts());
}

TEST(Rules, AllowOnlyRootsInASceneAndEachOnce) {
    EXPECT_EQ(
        WarningsAbout("\"scenes\":[{\"nodes\":[0,1,0]},{\"nodes\":[0]}],\"nodes\":[{\"children\":[1]},{}]"),
        (Texts{"scene:0 nodes lists 0 twice", "node:1 has the parent node:0; the link from scene:0 is left out"}));
    EXPECT_EQ(WarningsAbout("\"nodes\":[{}],\"skins\":[{\"joints\":[0,0]}]"), Texts{"skin:0 joints lists 0 twice"});
}

TEST(Rules, HoldTheMembersOfOpenGroupsAgainstTheirType) {
    EXPECT_EQ(WarningsAbout("\"extensionsUsed\":{\"a\":1},\"extensionsRequired\":[5]"),
              (Texts{"document extensionsRequired/0 is 5, not a text",
                     "document extensionsUsed is an object, not an array; it is left out"}));
    EXPECT_EQ(
        WarningsAbout("\"nodes\":[{\"mesh\":0,\"weights\":[1,\"a\",[2]]}],\"meshes\":[{\"primitives\":["
                      "{\"attributes\":[0]},{\"attributes\":{\"A\":-1},\"targets\":[{\"B\":4},7]}]}]"),
        (Texts{"node:0 weights/1 is the text \"a\", not a number", "node:0 weights/2 is an array of 1, not a number",
               "mesh:0/primitive:0 attributes is an array of 1, not an object; it is left out",
               "mesh:0/primitive:1 targets/1 is 7, not an object",
               "mesh:0/primitive:1 attributes/A: there is no accessor:-1",
               "mesh:0/primitive:1 targets/0/B: there is no accessor:4"}));
    EXPECT_EQ(WarningsAbout("\"materials\":[{\"extensions\":7,\"normalTexture\":{\"index\":0,\"extensions\":[]}}],"
                            "\"textures\":[{}]"),
              (Texts{"material:0 extensions is 7, not an object",
                     "material:0 normalTexture/extensions is an array of 0, not an object"}));
}

TEST(Rules, MentionRequiredExtensionsThatAreOnlyShown) {
    EXPECT_EQ(WarningsAbout("\"extensionsRequired\":[\"KHR_lights_punctual\",\"ACME\\n\",\"KHR_texture_transform\"]"),
              Texts{"the file requires the extension \"ACME\\n\", which is only shown"});
}

TEST(Rules, KeepAnimationsOffANodeWithAMatrix) {
    EXPECT_EQ(
        WarningsAbout("\"nodes\":[{\"matrix\":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1]}],"
                      "\"accessors\":[{\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"}],"
                      "\"animations\":[{\"channels\":[{\"sampler\":0,\"target\":{\"node\":0,\"path\":\"scale\"}}],"
                      "\"samplers\":[{\"input\":0,\"output\":0}]}]"),
        Texts{"animation:0/channel:0 animates node:0, which has a matrix"});
}

}  // namespace
}  // namespace lyrsdk::inspect
