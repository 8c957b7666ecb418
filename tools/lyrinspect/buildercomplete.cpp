// What the builder computes from more than an object's own members.

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "tools/lyrinspect/builder.h"
#include "tools/lyrinspect/text.h"
#include "tools/lyrinspect/values.h"

namespace lyrsdk::inspect {

namespace {

// Larger data is left where it is.
constexpr std::size_t kMaxBlobBytes = 4096;

KLyrPropertyHandle At(const SceneObject& pObject, const char* pPath) {
    return pObject.root.Find(pPath, "/", true);
}

int IntAt(const SceneObject& pObject, const char* pPath, int pDefault) {
    int lValue = pDefault;
    const KLyrPropertyHandle lProperty = At(pObject, pPath);
    return lProperty.GetType() == eINTEGER1 && lProperty.Get(&lValue, eINTEGER1) ? lValue : pDefault;
}

bool IsOverridden(const SceneObject& pObject, const char* pPath) {
    return At(pObject, pPath).GetValueInheritType(false) == eLyrOverride;
}

bool HasChoice(const SceneObject& pObject, const char* pPath, const char* pChoice) {
    KLyrPropertyHandle lProperty = At(pObject, pPath);
    int lIndex = 0;
    if (!lProperty.Get(&lIndex, eENUM))
        return false;
    const char* lName = lProperty.GetEnumValue(lIndex);
    return lName && std::strcmp(lName, pChoice) == 0;
}

void Hide(const SceneObject& pObject, const char* pPath) {
    At(pObject, pPath).ModifyFlags(LyrPropertyFlags::eHIDDEN, true);
}

void SetBlob(const SceneObject& pObject, const char* pPath, const std::vector<unsigned char>& pBytes) {
    if (!pBytes.empty() && pBytes.size() <= kMaxBlobBytes)
        SetBytes(At(pObject, pPath), pBytes.data(), pBytes.size());
}

int Clamped(std::size_t pCount) {
    return static_cast<int>(std::min<std::size_t>(pCount, 0x7FFFFFFF));
}

}  // namespace

// The group of the other projection is there, as in every instance, but means nothing.
void Builder::CompleteCamera(const SceneObject& pCamera) {
    const bool lPerspective = HasChoice(pCamera, "type", "perspective");
    Hide(pCamera, lPerspective ? "orthographic" : "perspective");
}

void Builder::CompleteLight(const SceneObject& pLight) {
    if (!HasChoice(pLight, "type", "spot"))
        Hide(pLight, "spot");
}

bool Builder::CheckAccessor(const SceneObject& pObject, const char* pPath, int pAccessor) {
    const Json& lAccessors = ArrayOf(mInput.document, "accessors");
    if (pAccessor >= 0 && static_cast<std::size_t>(pAccessor) < lAccessors.size())
        return true;
    mWarnings.Add(AddressOf(pObject) + ' ' + pPath + ": there is no accessor:" + std::to_string(pAccessor));
    return false;
}

// The members are named by the file and hold accessor numbers.
void Builder::CheckAttributes(const SceneObject& pPrimitive, const Json& pAttributes, const std::string& pPath) {
    if (!pAttributes.is_object())
        return;
    for (const auto& lAttribute : pAttributes.items()) {
        const std::string lPath = pPath + '/' + Shortened(Escaped(lAttribute.key()), 40);
        int lAccessor = -1;
        if (ToInt(lAttribute.value(), lAccessor))
            CheckAccessor(pPrimitive, lPath.c_str(), lAccessor);
        else
            mWarnings.Add(AddressOf(pPrimitive) + ' ' + lPath + " is not an index");
    }
}

void Builder::CompletePrimitive(const SceneObject& pPrimitive, const Json& pJson) {
    const Json* lAttributes = MemberOf(pJson, "attributes");
    if (lAttributes)
        CheckAttributes(pPrimitive, *lAttributes, "attributes");
    const Json& lTargets = ArrayOf(pJson, "targets");
    for (std::size_t i = 0; i < lTargets.size(); ++i)
        CheckAttributes(pPrimitive, lTargets[i], "targets/" + std::to_string(i));
    const int lPositions = IntAt(pPrimitive, "attributes/POSITION", -1);
    if (mInput.buffers.AccessorAt(lPositions)) {
        SetInt(At(pPrimitive, "vertexCount"), Clamped(mInput.buffers.CountOf(lPositions)));
        const std::vector<double>& lMin = mInput.buffers.MinOf(lPositions);
        const std::vector<double>& lMax = mInput.buffers.MaxOf(lPositions);
        if (lMin.size() == 3 && lMax.size() == 3) {
            SetNumbers(At(pPrimitive, "boundsMin"), lMin.data());
            SetNumbers(At(pPrimitive, "boundsMax"), lMax.data());
        }
    }
    const int lIndices = IntAt(pPrimitive, "indices", -1);
    if (IsOverridden(pPrimitive, "indices") && CheckAccessor(pPrimitive, "indices", lIndices) &&
        mInput.buffers.AccessorAt(lIndices))
        SetInt(At(pPrimitive, "indexCount"), Clamped(mInput.buffers.CountOf(lIndices)));
}

void Builder::CompleteImage(const SceneObject& pImage, const Json& pJson) {
    const Json* lAddress = MemberOf(pJson, "uri");
    if (lAddress && lAddress->is_string()) {
        const std::string& lText = lAddress->get_ref<const std::string&>();
        if (lText.compare(0, 5, "data:") == 0) {
            const std::vector<unsigned char> lBytes = DecodeDataAddress(lText);
            if (lBytes.empty())
                mWarnings.Add(AddressOf(pImage) + " has a data uri that cannot be decoded");
            SetBlob(pImage, "data", lBytes);
            return;
        }
        std::string lPath;
        struct stat lStatus = {};
        if (!ResolveAddress(mInput.folder, lText, lPath))
            mWarnings.Add(AddressOf(pImage) + " lies at " + Shortened(Quoted(lText), 80) + ", which is not read");
        else if (stat(lPath.c_str(), &lStatus) != 0)
            mWarnings.Add(AddressOf(pImage) + " is missing: " + Shortened(Quoted(lText), 80));
        return;
    }
    if (!IsOverridden(pImage, "bufferView")) {
        mWarnings.Add(AddressOf(pImage) + " states neither a uri nor a bufferView");
        return;
    }
    const Json& lViews = ArrayOf(mInput.document, "bufferViews");
    const int lView = IntAt(pImage, "bufferView", -1);
    if (lView < 0 || static_cast<std::size_t>(lView) >= lViews.size())
        mWarnings.Add(AddressOf(pImage) + " bufferView: there is no bufferView:" + std::to_string(lView));
    else
        SetBlob(pImage, "data", mInput.buffers.ViewBytes(lView, kMaxBlobBytes));
}

void Builder::CompleteSkin(const SceneObject& pSkin, const Json& pJson) {
    const Json* lJoints = MemberOf(pJson, "joints");
    const std::size_t lCount = lJoints && lJoints->is_array() ? lJoints->size() : 0;
    if (lCount > 0)
        SetInt(At(pSkin, "jointCount"), Clamped(lCount));
    const Json* lMatrices = MemberOf(pJson, "inverseBindMatrices");
    int lAccessor = -1;
    if (!lMatrices)
        return;
    if (!ToInt(*lMatrices, lAccessor)) {
        mWarnings.Add(AddressOf(pSkin) + " inverseBindMatrices is " + Described(*lMatrices) + ", not an index");
        return;
    }
    if (!CheckAccessor(pSkin, "inverseBindMatrices", lAccessor))
        return;
    if (mInput.buffers.AccessorAt(lAccessor) && mInput.buffers.CountOf(lAccessor) < lCount)
        mWarnings.Add(AddressOf(pSkin) + " has " + Counted(lCount, "joint") + ", but only " +
                      Counted(mInput.buffers.CountOf(lAccessor), "inverse bind matrix", "inverse bind matrices"));
    SetBlob(pSkin, "inverseBindMatrices", mInput.buffers.AccessorBytes(lAccessor, kMaxBlobBytes));
}

void Builder::CompleteChannel(const SceneObject& pChannel, double& pStart, double& pEnd) {
    const int lInput = IntAt(pChannel, "sampler/input", -1);
    const int lOutput = IntAt(pChannel, "sampler/output", -1);
    if (IsOverridden(pChannel, "sampler/output") && CheckAccessor(pChannel, "sampler/output", lOutput))
        SetBlob(pChannel, "keyValues", mInput.buffers.AccessorBytes(lOutput, kMaxBlobBytes));
    if (!IsOverridden(pChannel, "sampler/input") || !CheckAccessor(pChannel, "sampler/input", lInput) ||
        !mInput.buffers.AccessorAt(lInput))
        return;
    SetInt(At(pChannel, "keyCount"), Clamped(mInput.buffers.CountOf(lInput)));
    SetBlob(pChannel, "keyTimes", mInput.buffers.AccessorBytes(lInput, kMaxBlobBytes));
    const std::vector<double>& lMin = mInput.buffers.MinOf(lInput);
    const std::vector<double>& lMax = mInput.buffers.MaxOf(lInput);
    double lFrom = 0;
    double lTo = 0;
    if (lMin.size() == 1 && lMax.size() == 1) {
        lFrom = lMin[0];
        lTo = lMax[0];
    } else if (!mInput.buffers.ScanFloats(lInput, lFrom, lTo)) {
        return;
    }
    if (!std::isfinite(lFrom) || !std::isfinite(lTo) || lTo < lFrom) {
        mWarnings.Add(AddressOf(pChannel) + " has key times that are no range");
        return;
    }
    SetSeconds(At(pChannel, "start"), lFrom);
    SetSeconds(At(pChannel, "end"), lTo);
    pStart = lFrom;
    pEnd = lTo;
}

void Builder::CompleteAnimation(const SceneObject& pAnimation, double pStart, double pEnd) {
    SetSeconds(At(pAnimation, "start"), pStart);
    SetSeconds(At(pAnimation, "end"), pEnd);
    SetSeconds(At(pAnimation, "duration"), pEnd - pStart);
}

}  // namespace lyrsdk::inspect
