#include "tools/lyrinspect/rules.h"

#include <algorithm>
#include <bitset>
#include <iterator>
#include <string>
#include <string_view>

namespace lyrsdk::inspect {

namespace {

enum class Demand {
    // The member is there whenever the object that it belongs to is.
    eRequired,
    // The same, and it is not an empty array or object.
    eFilled,
    // The member is not an empty array or object.
    eNotEmpty,
    // The member is there when "type" is its name.
    eChosen,
    // The member does not stand beside the other one.
    eExcludes,
    // The member does not stand without the other one.
    eNeeds,
    // The member is a smaller number than the other one.
    eBelow,
    // The member is a number other than zero.
    eNotZero,
};

struct Rule {
    constexpr Rule(ObjectKind pKind, Demand pDemand, std::string_view pMember, std::string_view pOther)
        : kind(pKind), demand(pDemand), member(pMember), other(pOther), first(pMember.substr(0, pMember.find('/'))) {}

    ObjectKind kind;
    Demand demand;
    std::string_view member;
    std::string_view other;
    // The first name of the member's path.
    std::string_view first;
};

// In the order of ObjectKind.
constexpr Rule kRules[] = {
    {ObjectKind::eScene, Demand::eNotEmpty, "nodes", ""},
    {ObjectKind::eNode, Demand::eNotEmpty, "children", ""},
    {ObjectKind::eNode, Demand::eNotEmpty, "weights", ""},
    {ObjectKind::eNode, Demand::eExcludes, "matrix", "translation"},
    {ObjectKind::eNode, Demand::eExcludes, "matrix", "rotation"},
    {ObjectKind::eNode, Demand::eExcludes, "matrix", "scale"},
    {ObjectKind::eNode, Demand::eNeeds, "skin", "mesh"},
    {ObjectKind::eNode, Demand::eNeeds, "weights", "mesh"},
    {ObjectKind::eNode, Demand::eRequired, "extensions/KHR_lights_punctual/light", ""},
    {ObjectKind::eMesh, Demand::eFilled, "primitives", ""},
    {ObjectKind::eMesh, Demand::eNotEmpty, "weights", ""},
    {ObjectKind::ePrimitive, Demand::eFilled, "attributes", ""},
    {ObjectKind::ePrimitive, Demand::eNotEmpty, "targets", ""},
    {ObjectKind::eMaterial, Demand::eRequired, "pbrMetallicRoughness/baseColorTexture/index", ""},
    {ObjectKind::eMaterial, Demand::eRequired, "pbrMetallicRoughness/metallicRoughnessTexture/index", ""},
    {ObjectKind::eMaterial, Demand::eRequired, "normalTexture/index", ""},
    {ObjectKind::eMaterial, Demand::eRequired, "occlusionTexture/index", ""},
    {ObjectKind::eMaterial, Demand::eRequired, "emissiveTexture/index", ""},
    {ObjectKind::eImage, Demand::eExcludes, "uri", "bufferView"},
    {ObjectKind::eImage, Demand::eNeeds, "bufferView", "mimeType"},
    {ObjectKind::eCamera, Demand::eRequired, "type", ""},
    {ObjectKind::eCamera, Demand::eExcludes, "perspective", "orthographic"},
    {ObjectKind::eCamera, Demand::eChosen, "perspective", ""},
    {ObjectKind::eCamera, Demand::eRequired, "perspective/yfov", ""},
    {ObjectKind::eCamera, Demand::eRequired, "perspective/znear", ""},
    {ObjectKind::eCamera, Demand::eBelow, "perspective/znear", "perspective/zfar"},
    {ObjectKind::eCamera, Demand::eChosen, "orthographic", ""},
    {ObjectKind::eCamera, Demand::eRequired, "orthographic/xmag", ""},
    {ObjectKind::eCamera, Demand::eNotZero, "orthographic/xmag", ""},
    {ObjectKind::eCamera, Demand::eRequired, "orthographic/ymag", ""},
    {ObjectKind::eCamera, Demand::eNotZero, "orthographic/ymag", ""},
    {ObjectKind::eCamera, Demand::eRequired, "orthographic/znear", ""},
    {ObjectKind::eCamera, Demand::eRequired, "orthographic/zfar", ""},
    {ObjectKind::eCamera, Demand::eBelow, "orthographic/znear", "orthographic/zfar"},
    {ObjectKind::eLight, Demand::eRequired, "type", ""},
    {ObjectKind::eLight, Demand::eChosen, "spot", ""},
    {ObjectKind::eLight, Demand::eBelow, "spot/innerConeAngle", "spot/outerConeAngle"},
    {ObjectKind::eSkin, Demand::eFilled, "joints", ""},
    {ObjectKind::eAnimation, Demand::eFilled, "channels", ""},
    {ObjectKind::eAnimation, Demand::eFilled, "samplers", ""},
    {ObjectKind::eChannel, Demand::eRequired, "sampler", ""},
    {ObjectKind::eChannel, Demand::eRequired, "target", ""},
    {ObjectKind::eChannel, Demand::eRequired, "target/path", ""},
};

constexpr bool AreInOrder() {
    for (std::size_t i = 1; i < std::size(kRules); ++i)
        if (kRules[i].kind < kRules[i - 1].kind)
            return false;
    return true;
}
static_assert(AreInOrder(), "the rules of one kind are looked up together");

struct ByKind {
    bool operator()(const Rule& pRule, ObjectKind pKind) const { return pRule.kind < pKind; }
    bool operator()(ObjectKind pKind, const Rule& pRule) const { return pKind < pRule.kind; }
};

// Takes the first name off pPath.
std::string_view TakeName(std::string_view& pPath) {
    const std::size_t lSlash = pPath.find('/');
    const std::string_view lName = pPath.substr(0, lSlash);
    pPath.remove_prefix(lSlash == std::string_view::npos ? pPath.size() : lSlash + 1);
    return lName;
}

// The member at pPath, null when it is not there. pMissing says whether an object lacks it.
const Json* MemberAt(const Json& pJson, std::string_view pPath, bool& pMissing) {
    const Json* lJson = &pJson;
    while (lJson && !pPath.empty()) {
        const std::string_view lName = TakeName(pPath);
        pMissing = pPath.empty() && lJson->is_object();
        lJson = MemberOf(*lJson, lName);
    }
    pMissing = pMissing && !lJson;
    return lJson;
}

bool IsEmpty(const Json* pJson) {
    return pJson && pJson->is_structured() && pJson->empty();
}

bool IsNumber(const Json* pJson) {
    return pJson && pJson->is_number();
}

// Whether it is the lack of the member that may be wrong.
bool IsDemandFor(Demand pDemand) {
    return pDemand == Demand::eRequired || pDemand == Demand::eFilled || pDemand == Demand::eChosen;
}

// What is wrong, as the end of a sentence that starts with the object; empty when nothing is.
std::string Complaint(const Rule& pRule, const Json& pJson) {
    bool lMissing = false;
    const Json* lMember = MemberAt(pJson, pRule.member, lMissing);
    if (!lMember && !(lMissing && IsDemandFor(pRule.demand)))
        return "";
    const std::string lName(pRule.member);
    bool lOtherMissing = false;
    const Json* lOther = MemberAt(pJson, pRule.other, lOtherMissing);
    switch (pRule.demand) {
        case Demand::eRequired:
            return lMissing ? "has no " + lName : "";
        case Demand::eFilled:
            return lMissing || IsEmpty(lMember) ? "has no " + lName : "";
        case Demand::eNotEmpty:
            return IsEmpty(lMember) ? lName + " is empty" : "";
        case Demand::eChosen: {
            const Json* lType = MemberOf(pJson, "type");
            return lMissing && lType && *lType == lName ? "is of type " + lName + ", but has no " + lName : "";
        }
        case Demand::eExcludes:
            return lMember && lOther ? "has both " + lName + " and " + std::string(pRule.other) : "";
        case Demand::eNeeds:
            return lMember && lOtherMissing ? "has " + lName + ", but no " + std::string(pRule.other) : "";
        case Demand::eBelow:
            return IsNumber(lMember) && IsNumber(lOther) && lMember->get<double>() >= lOther->get<double>()
                       ? lName + ' ' + lMember->dump() + " is not below " + std::string(pRule.other) + ' ' +
                             lOther->dump()
                       : "";
        default:
            return IsNumber(lMember) && lMember->get<double>() == 0 ? lName + " is 0" : "";
    }
}

void Check(const Rule& pRule, const SceneObject& pObject, const Json& pJson, const char* pPart, Warnings& pWarnings) {
    const std::string lComplaint = Complaint(pRule, pJson);
    if (!lComplaint.empty())
        pWarnings.Add(AddressOf(pObject) + pPart + ' ' + lComplaint);
}

}  // namespace

void CheckRules(const SceneObject& pObject, const Json& pJson, Warnings& pWarnings) {
    if (!pJson.is_object())
        return;
    const auto lRules = std::equal_range(std::begin(kRules), std::end(kRules), pObject.kind, ByKind());
    const std::size_t lCount = static_cast<std::size_t>(lRules.second - lRules.first);
    // Most rules are about members that the object does not state.
    std::bitset<std::size(kRules)> lStated;
    for (const auto& lMember : pJson.get_ref<const Json::object_t&>()) {
        for (std::size_t i = 0; i < lCount; ++i) {
            if (lRules.first[i].first == lMember.first)
                lStated.set(i);
        }
    }
    for (std::size_t i = 0; i < lCount; ++i) {
        const Rule& lRule = lRules.first[i];
        if (lStated.test(i) || (lRule.first == lRule.member && IsDemandFor(lRule.demand)))
            Check(lRule, pObject, pJson, "", pWarnings);
    }
}

void CheckChannelSampler(const SceneObject& pChannel, const Json& pSampler, Warnings& pWarnings) {
    for (const char* lName : {"input", "output"})
        Check({ObjectKind::eChannel, Demand::eRequired, lName, ""}, pChannel, pSampler, " sampler", pWarnings);
}

}  // namespace lyrsdk::inspect
