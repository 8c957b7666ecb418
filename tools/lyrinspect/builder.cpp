#include "tools/lyrinspect/builder.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

#include "tools/lyrinspect/nodetree.h"
#include "tools/lyrinspect/rules.h"
#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr kLyrConnectionType kContains = eLyrConnectionContains;
constexpr kLyrConnectionType kReference = eLyrConnectionReference;
constexpr kLyrConnectionType kData = eLyrConnectionData;

// The arrays of the document that become objects of their own, and those that only hold data for them.
constexpr const char* kSections[] = {"scenes",  "nodes",       "meshes",   "materials", "textures",
                                     "images",  "samplers",    "cameras",  "skins",     "animations",
                                     "buffers", "bufferViews", "accessors"};

}  // namespace

Builder::Builder(const BuildInput& pInput, Scene& pScene, Warnings& pWarnings, Progress& pProgress)
    : mInput(pInput),
      mScene(pScene),
      mWarnings(pWarnings),
      mProgress(pProgress),
      mReader(pScene, pWarnings, pInput.separator) {}

void Builder::Build() {
    AddDocument();
    AddObjects();
    ConnectReferences();
    for (const SceneObject* lChannel : mScene.Objects(ObjectKind::eChannel))
        ConnectAnimated(*lChannel);
    CheckNames();
    mReader.ReportNames();
}

void Builder::AddDocument() {
    for (const char* lSection : kSections)
        ArrayOf(mInput.document, lSection, std::string(), mWarnings);
    AddOne(ObjectKind::eDocument, mInput.document, 0, {std::begin(kSections), std::end(kSections)});
    CheckRequiredExtensions();
}

// A program that draws the scene would have to give up here. To show it is possible, but not all may mean what it says.
void Builder::CheckRequiredExtensions() {
    for (const Json& lName : ArrayOf(mInput.document, "extensionsRequired")) {
        if (lName.is_string() && !IsKnownExtension(lName.get_ref<const std::string&>()))
            mWarnings.Add("the file requires the extension " +
                          Shortened(Quoted(lName.get_ref<const std::string&>()), 80) + ", which is only shown");
    }
}

void Builder::AddObjects() {
    Json* lDocument = &mInput.document;
    std::size_t lSteps = 0;
    for (const char* lList : {"nodes", "meshes", "materials"})
        lSteps += ArrayOf(*lDocument, lList).size();
    mProgress.Begin("building", lSteps);
    AddList(ObjectKind::eScene, lDocument, "scenes", {});
    AddList(ObjectKind::eNode, lDocument, "nodes", {});
    AddList(ObjectKind::eMesh, lDocument, "meshes", {"primitives"});
    AddList(ObjectKind::eMaterial, lDocument, "materials", {});
    AddList(ObjectKind::eTexture, lDocument, "textures", {});
    AddList(ObjectKind::eImage, lDocument, "images", {});
    AddList(ObjectKind::eSampler, lDocument, "samplers", {});
    AddList(ObjectKind::eCamera, lDocument, "cameras", {});
    AddList(ObjectKind::eLight, OwnerOfLights(), "lights", {});
    AddList(ObjectKind::eSkin, lDocument, "skins", {"inverseBindMatrices"});
    AddList(ObjectKind::eAnimation, lDocument, "animations", {"channels", "samplers"});
}

// Null when the document has no such extension.
Json* Builder::OwnerOfLights() const {
    Json* lExtensions = MemberOf(mInput.document, "extensions");
    Json* lLights = lExtensions ? MemberOf(*lExtensions, "KHR_lights_punctual") : nullptr;
    if (lLights)
        ArrayOf(*lLights, "lights", "KHR_lights_punctual", mWarnings);
    return lLights;
}

void Builder::AddList(ObjectKind pKind, Json* pOwner, const char* pName, const std::vector<const char*>& pSkipped) {
    Json* lObjects = pOwner ? MemberOf(*pOwner, pName) : nullptr;
    if (!lObjects || !lObjects->is_array())
        return;
    int lIndex = 0;
    for (Json& lObject : *lObjects) {
        AddOne(pKind, lObject, lIndex++, pSkipped);
        lObject = nullptr;
        mProgress.Step();
    }
}

void Builder::AddOne(ObjectKind pKind, const Json& pJson, int pIndex, const std::vector<const char*>& pSkipped) {
    SceneObject* lObject = mScene.AddObject(pKind, pIndex);
    if (!lObject)
        return;
    mReader.Read(*lObject, pJson, pSkipped);
    CheckRules(*lObject, pJson, mWarnings);
    switch (pKind) {
        case ObjectKind::eMesh:
            AddPrimitives(*lObject, pJson);
            break;
        case ObjectKind::eAnimation:
            AddChannels(*lObject, pJson);
            break;
        case ObjectKind::eCamera:
            CompleteCamera(*lObject);
            break;
        case ObjectKind::eLight:
            CompleteLight(*lObject);
            break;
        case ObjectKind::eImage:
            CompleteImage(*lObject, pJson);
            break;
        case ObjectKind::eSkin:
            CompleteSkin(*lObject, pJson);
            break;
        default:
            break;
    }
}

void Builder::AddPrimitives(SceneObject& pMesh, const Json& pJson) {
    const Json& lPrimitives = ArrayOf(pJson, "primitives", AddressOf(pMesh), mWarnings);
    for (std::size_t i = 0; i < lPrimitives.size(); ++i) {
        SceneObject* lPrimitive = mScene.AddObject(ObjectKind::ePrimitive, static_cast<int>(i), &pMesh);
        if (!lPrimitive)
            return;
        mReader.Read(*lPrimitive, lPrimitives[i], {});
        CheckRules(*lPrimitive, lPrimitives[i], mWarnings);
        CompletePrimitive(*lPrimitive, lPrimitives[i]);
        ConnectContained(pMesh, "primitives", *lPrimitive, "mesh");
    }
}

void Builder::AddChannels(SceneObject& pAnimation, const Json& pJson) {
    const Json& lChannels = ArrayOf(pJson, "channels", AddressOf(pAnimation), mWarnings);
    const Json& lSamplers = ArrayOf(pJson, "samplers", AddressOf(pAnimation), mWarnings);
    const std::vector<SceneObject*>& lObjects = mScene.Objects(ObjectKind::eChannel);
    const std::size_t lFirst = lObjects.size();
    for (std::size_t i = 0; i < lChannels.size(); ++i)
        AddChannel(pAnimation, lChannels[i], static_cast<int>(i), lSamplers);
    double lStart = 0;
    double lEnd = 0;
    bool lTimed = false;
    for (std::size_t i = lFirst; i < lObjects.size(); ++i) {
        double lFrom = 0;
        double lTo = -1;
        CompleteChannel(*lObjects[i], lFrom, lTo);
        if (lTo < lFrom)
            continue;
        lStart = lTimed ? std::min(lStart, lFrom) : lFrom;
        lEnd = lTimed ? std::max(lEnd, lTo) : lTo;
        lTimed = true;
    }
    if (lTimed)
        CompleteAnimation(pAnimation, lStart, lEnd);
}

void Builder::AddChannel(SceneObject& pAnimation, const Json& pJson, int pIndex, const Json& pSamplers) {
    SceneObject* lChannel = mScene.AddObject(ObjectKind::eChannel, pIndex, &pAnimation);
    if (!lChannel)
        return;
    mReader.Read(*lChannel, pJson, {"sampler"});
    CheckRules(*lChannel, pJson, mWarnings);
    ConnectContained(pAnimation, "channels", *lChannel, "animation");
    const Json* lSampler = MemberOf(pJson, "sampler");
    int lIndex = -1;
    if (!lSampler)
        return;
    if (!ToInt(*lSampler, lIndex) || lIndex < 0 || static_cast<std::size_t>(lIndex) >= pSamplers.size()) {
        mWarnings.Add(AddressOf(*lChannel) + " sampler: " + AddressOf(pAnimation) + " has no sampler " +
                      Described(*lSampler));
        return;
    }
    const Json& lTimesAndValues = pSamplers[static_cast<std::size_t>(lIndex)];
    mReader.ReadInto(*lChannel, lChannel->root.Find("sampler", true), lTimesAndValues);
    CheckChannelSampler(*lChannel, lTimesAndValues, mWarnings);
}

void Builder::ConnectReferences() {
    mProgress.Begin("connecting", mReader.References().size());
    const int lChildrenId = mScene.KnownId(ObjectKind::eNode, "children");
    std::vector<Reference> lChildren;
    std::vector<Reference> lRoots;
    for (const Reference& lReference : mReader.References()) {
        mProgress.Step();
        const SceneObject* lTarget = mScene.ObjectAt(lReference.target, lReference.index);
        KLyrPropertyHandle lProperty = lReference.property;
        if (!lTarget) {
            mWarnings.Add(AddressOf(*lReference.object) + ' ' + PathOf(lProperty, mInput.separator) + ": there is no " +
                          KindName(lReference.target) + ':' + std::to_string(lReference.index));
            continue;
        }
        const ObjectKind lFrom = lReference.object->kind;
        if (lFrom == ObjectKind::eScene && lReference.target == ObjectKind::eNode)
            lRoots.push_back(lReference);
        else if (lFrom == ObjectKind::eNode && lProperty.GetId() == lChildrenId)
            lChildren.push_back(lReference);
        else
            lProperty.ConnectSrc(lTarget->root, kReference);
    }
    ConnectNodes(lChildren, lRoots);
}

void Builder::ConnectNodes(const std::vector<Reference>& pChildren, const std::vector<Reference>& pRoots) {
    std::vector<NodeEdge> lEdges;
    lEdges.reserve(pChildren.size());
    for (const Reference& lReference : pChildren)
        lEdges.push_back({lReference.object->index, lReference.index});
    const std::size_t lCount = mScene.Objects(ObjectKind::eNode).size();
    const int lParentId = mScene.KnownId(ObjectKind::eNode, "parent");
    const auto lParentOf = [lParentId](const SceneObject& pNode) {
        return KLyrPropertyHandle(pNode.root.GetPage(), lParentId);
    };
    const auto lTitle = [this](int pIndex) { return TitleOf(*mScene.ObjectAt(ObjectKind::eNode, pIndex)); };
    const std::vector<int> lParents = BuildNodeTree(lCount, lEdges, lTitle, mWarnings);
    for (const Reference& lReference : pChildren) {
        const SceneObject* lChild = mScene.ObjectAt(ObjectKind::eNode, lReference.index);
        KLyrPropertyHandle lChildren = lReference.property;
        if (lParents[static_cast<std::size_t>(lReference.index)] == lReference.object->index)
            lChildren.ConnectDst(lParentOf(*lChild), kContains);
    }
    for (const Reference& lReference : pRoots) {
        const SceneObject* lRoot = mScene.ObjectAt(ObjectKind::eNode, lReference.index);
        const int lParent = lParents[static_cast<std::size_t>(lReference.index)];
        KLyrPropertyHandle lNodes = lReference.property;
        if (lParent < 0)
            lNodes.ConnectDst(lParentOf(*lRoot), kContains);
        else
            mWarnings.Add(TitleOf(*lRoot) + " has the parent " + lTitle(lParent) + "; the link from " +
                          TitleOf(*lReference.object) + " is left out");
    }
}

void Builder::ConnectContained(const SceneObject& pOwner, const char* pList, const SceneObject& pPart,
                               const char* pBack) {
    KLyrPropertyHandle lList = mScene.Known(pOwner, pList);
    lList.ConnectDst(mScene.Known(pPart, pBack), kContains);
}

void Builder::ConnectAnimated(const SceneObject& pChannel) {
    const KLyrPropertyHandle lNode = pChannel.root.Find("target/node", "/", true).GetSrc(nullptr, 0);
    KLyrPropertyHandle lPath = pChannel.root.Find("target/path", "/", true);
    int lChoice = 0;
    // Without a node an extension may say what is animated; without a path nothing does.
    if (!lNode.Valid() || lPath.GetValueInheritType(false) != eLyrOverride || !lPath.Get(&lChoice, eENUM))
        return;
    const std::string lName = lPath.GetEnumValue(lChoice);
    const KLyrPropertyHandle lAnimated =
        lNode.Find((lName == "weights" ? lName : "transform/" + lName).c_str(), "/", true);
    if (lName != "weights" && lNode.Find("transform/matrix", "/", true).GetValueInheritType(false) == eLyrOverride)
        mWarnings.Add(AddressOf(pChannel) + " animates " + TitleOf(*ObjectOf(lNode)) + ", which has a matrix");
    KLyrPropertyHandle lValue = pChannel.root.Find("value", true);
    lValue.ConnectDst(lAnimated, kData);
}

// Names need not be unique, but --object takes them.
void Builder::CheckNames() {
    for (std::size_t i = 0; i < kKindCount; ++i) {
        const ObjectKind lKind = static_cast<ObjectKind>(i);
        const std::vector<SceneObject*>& lObjects = mScene.Objects(lKind);
        std::unordered_set<std::string_view> lNames(lObjects.size());
        std::size_t lEmpty = 0;
        std::size_t lRepeated = 0;
        const SceneObject* lFirst = nullptr;
        for (const SceneObject* lObject : lObjects) {
            if (!lObject->isNamed)
                continue;
            if (lObject->name.empty()) {
                ++lEmpty;
            } else if (!lNames.insert(lObject->name).second) {
                ++lRepeated;
                lFirst = lFirst ? lFirst : lObject;
            }
        }
        if (lEmpty > 0)
            mWarnings.Add(Counted(lEmpty, KindName(lKind), KindPlural(lKind)) + " with an empty name");
        if (lRepeated > 0)
            mWarnings.Add(Counted(lRepeated, KindName(lKind), KindPlural(lKind)) +
                          " with a name that an earlier one has, the first " + TitleOf(*lFirst));
    }
}

}  // namespace lyrsdk::inspect
