#include "tools/lyrinspect/scene.h"

#include <algorithm>

#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

// A name in a heading or a message, in bytes.
constexpr std::size_t kMaxNameLength = 80;

// The members of an object in the file are the properties below the root; a node's has those of its transform among
// them.
bool IsStatedByAMember(const SceneObject& pPrototype, const KLyrPropertyHandle& pProperty) {
    const KLyrPropertyHandle lParent = pProperty.GetParent();
    return lParent == pPrototype.root ||
           (pPrototype.kind == ObjectKind::eNode && lParent == pPrototype.root.Find("transform", true));
}

}  // namespace

Scene::Scene() {
    for (std::size_t i = 0; i < kKindCount; ++i) {
        SceneObject& lObject = mPrototypeObjects[i];
        const Prototype& lPrototype = mPrototypes.Of(static_cast<ObjectKind>(i));
        lObject.kind = static_cast<ObjectKind>(i);
        lObject.isPrototype = true;
        lObject.root = lPrototype.page;
        lObject.nextTag = static_cast<int>(lPrototype.facts.size());
        lObject.root.SetPageDataPtr(&lObject);
        for (KLyrPropertyHandle lStep = lObject.root.GetFirstDescendent(); lStep.Valid();
             lStep = lObject.root.GetNextDescendent(lStep)) {
            const PropertyFacts& lFacts = FactsOf(lObject, lStep);
            mKnownIds[i].emplace(PathOf(lStep, '/'), lStep.GetId());
            if (lFacts.row && !lFacts.row->derived && IsStatedByAMember(lObject, lStep))
                mMembers[i].emplace(lStep.GetName(), KnownProperty{lStep.GetId(), &lFacts});
        }
    }
}

// A prototype's list of instances is searched when an instance goes. Taking the one at its front each time finds it at
// once; in the order of creation the search would be quadratic.
Scene::~Scene() {
    for (SceneObject& lPrototype : mPrototypeObjects) {
        while (auto* lObject = static_cast<SceneObject*>(
                   lPrototype.root.IsReferencedBy() ? lPrototype.root.GetReferencedBy(0) : nullptr)) {
            if (!lObject->root.Destroy())
                break;
        }
    }
}

SceneObject* Scene::AddObject(ObjectKind pKind, int pIndex, const SceneObject* pOwner) {
    const Prototype& lPrototype = mPrototypes.Of(pKind);
    // Without a prototype the page would be a family of its own, which no prototype would lead to.
    const KLyrPropertyHandle lRoot =
        lPrototype.page.Valid() ? KLyrPropertyHandle::Create(lPrototype.page) : KLyrPropertyHandle();
    mComplete = mComplete && lRoot.Valid();
    if (!lRoot.Valid())
        return nullptr;
    SceneObject& lObject = mObjects.emplace_back();
    lObject.kind = pKind;
    lObject.index = pIndex;
    lObject.owner = pOwner;
    lObject.root = lRoot;
    lObject.nextTag = static_cast<int>(lPrototype.facts.size());
    lObject.firstOwnTag = lObject.nextTag;
    lObject.root.SetPageDataPtr(&lObject);
    mByKind[static_cast<std::size_t>(pKind)].push_back(&lObject);
    return &lObject;
}

const std::vector<SceneObject*>& Scene::Objects(ObjectKind pKind) const {
    return mByKind[static_cast<std::size_t>(pKind)];
}

SceneObject* Scene::ObjectAt(ObjectKind pKind, int pIndex) const {
    const std::vector<SceneObject*>& lObjects = Objects(pKind);
    return pIndex >= 0 && static_cast<std::size_t>(pIndex) < lObjects.size()
               ? lObjects[static_cast<std::size_t>(pIndex)]
               : nullptr;
}

const SceneObject& Scene::PrototypeObject(ObjectKind pKind) const {
    return mPrototypeObjects[static_cast<std::size_t>(pKind)];
}

KLyrPropertyHandle Scene::Known(const SceneObject& pObject, const std::string& pPath) const {
    const int lId = KnownId(pObject.kind, pPath);
    return lId == -1 ? KLyrPropertyHandle() : KLyrPropertyHandle(pObject.root.GetPage(), lId);
}

int Scene::KnownId(ObjectKind pKind, const std::string& pPath) const {
    const std::unordered_map<std::string, int>& lIds = mKnownIds[static_cast<std::size_t>(pKind)];
    const auto lFound = lIds.find(pPath);
    return lFound == lIds.end() ? -1 : lFound->second;
}

KnownProperty Scene::StatedBy(ObjectKind pKind, const std::string& pMember) const {
    const std::unordered_map<std::string, KnownProperty>& lMembers = mMembers[static_cast<std::size_t>(pKind)];
    const auto lFound = lMembers.find(pMember);
    return lFound == lMembers.end() ? KnownProperty() : lFound->second;
}

KLyrPropertyHandle Scene::AddProperty(SceneObject& pObject, KLyrPropertyHandle pParent, const std::string& pName,
                                      const char* pType, LyrPropertyFlags::eLyrPropertyFlags pFlags) {
    KLyrPropertyHandle lProperty = pParent.Add(pName.c_str(), mPrototypes.TypePage(pType));
    mComplete = mComplete && lProperty.Valid();
    if (!lProperty.Valid())
        return KLyrPropertyHandle();
    lProperty.SetUserTag(pObject.nextTag++);
    if (pFlags != LyrPropertyFlags::eNO_FLAG)
        lProperty.ModifyFlags(pFlags, true);
    return lProperty;
}

const PropertyFacts& Scene::FactsOf(const SceneObject& pObject, const KLyrPropertyHandle& pProperty) const {
    static const PropertyFacts sNone{};
    const std::vector<PropertyFacts>& lFacts = mPrototypes.Of(pObject.kind).facts;
    const int lTag = pProperty.GetUserTag();
    return lTag > 0 && static_cast<std::size_t>(lTag) < lFacts.size() ? lFacts[static_cast<std::size_t>(lTag)] : sNone;
}

const SceneObject* ObjectOf(const KLyrPropertyHandle& pProperty) {
    return static_cast<const SceneObject*>(pProperty.GetPageDataPtr());
}

std::string AddressOf(const SceneObject& pObject) {
    std::string lKind = KindName(pObject.kind);
    if (pObject.isPrototype || pObject.kind == ObjectKind::eDocument)
        return lKind;
    const std::string lAddress = lKind + ':' + std::to_string(pObject.index);
    return pObject.owner ? AddressOf(*pObject.owner) + '/' + lAddress : lAddress;
}

std::string TitleOf(const SceneObject& pObject) {
    const std::string lAddress = AddressOf(pObject);
    return pObject.name.empty() ? lAddress : lAddress + ' ' + Quoted(Shortened(pObject.name, kMaxNameLength));
}

std::string PathOf(const KLyrPropertyHandle& pProperty, char pSeparator) {
    std::vector<std::string> lNames;
    KLyrPropertyHandle lStep = pProperty;
    KLyrPropertyHandle lParent = lStep.GetParent();
    while (lParent.Valid()) {
        lNames.emplace_back(lStep.GetName());
        lStep = lParent;
        lParent = lStep.GetParent();
    }
    std::string lPath;
    for (auto lName = lNames.rbegin(); lName != lNames.rend(); ++lName) {
        if (lName != lNames.rbegin())
            lPath += pSeparator;
        lPath += *lName;
    }
    return lPath;
}

}  // namespace lyrsdk::inspect
