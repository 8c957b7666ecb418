#include "tools/lyrinspect/buffers.h"

#include <sys/stat.h>
#include <tiny_gltf.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include "tools/lyrinspect/container.h"
#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr std::size_t kMaxBufferBytes = std::size_t{1} << 30;

int IndexIn(const Json& pObject, const char* pName, std::size_t pCount) {
    const Json* lMember = MemberOf(pObject, pName);
    int lIndex = -1;
    return lMember && ToInt(*lMember, lIndex) && lIndex >= 0 && static_cast<std::size_t>(lIndex) < pCount ? lIndex : -1;
}

// The member's size, pDefault when it is absent; false when it is there and is no size.
bool SizeOf(const Json& pObject, const char* pName, std::size_t pDefault, std::size_t& pSize) {
    const Json* lMember = MemberOf(pObject, pName);
    pSize = pDefault;
    return !lMember || ToSize(*lMember, pSize);
}

// tinygltf stops at the first thing it dislikes. It is therefore given a document that holds only the data sections,
// rebuilt from what has been checked, with a harmless stand-in wherever something failed its check.
Json StandInBuffer() {
    return {{"byteLength", 1}, {"uri", "data:application/octet-stream;base64,AA=="}};
}
Json StandInView() {
    return {{"buffer", 0}, {"byteLength", 1}};
}
Json StandInAccessor() {
    return {{"componentType", TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE}, {"count", 1}, {"type", "SCALAR"}};
}

// Which buffers hold something that is shown.
class Needs {
public:
    explicit Needs(const Json& pDocument) : mDocument(pDocument), mBuffers(ArrayOf(pDocument, "buffers").size()) {
        for (const Json& lAnimation : ArrayOf(pDocument, "animations")) {
            for (const Json& lSampler : ArrayOf(lAnimation, "samplers")) {
                Accessor(lSampler, "input");
                Accessor(lSampler, "output");
            }
        }
        for (const Json& lSkin : ArrayOf(pDocument, "skins"))
            Accessor(lSkin, "inverseBindMatrices");
        for (const Json& lImage : ArrayOf(pDocument, "images"))
            View(lImage, "bufferView");
    }

    bool Buffer(std::size_t pIndex) const { return mBuffers[pIndex]; }

private:
    void View(const Json& pUser, const char* pName) {
        const Json& lViews = ArrayOf(mDocument, "bufferViews");
        const int lView = IndexIn(pUser, pName, lViews.size());
        const int lBuffer =
            lView < 0 ? -1 : IndexIn(lViews[static_cast<std::size_t>(lView)], "buffer", mBuffers.size());
        if (lBuffer >= 0)
            mBuffers[static_cast<std::size_t>(lBuffer)] = true;
    }
    void Accessor(const Json& pUser, const char* pName) {
        const Json& lAccessors = ArrayOf(mDocument, "accessors");
        const int lAccessor = IndexIn(pUser, pName, lAccessors.size());
        if (lAccessor >= 0)
            View(lAccessors[static_cast<std::size_t>(lAccessor)], "bufferView");
    }

    const Json& mDocument;
    std::vector<bool> mBuffers;
};

// The bytes of every buffer that is needed and can be had, and the warnings for those that cannot.
class BufferReader {
public:
    BufferReader(const Json& pDocument, const BufferSource& pSource, Warnings& pWarnings)
        : mSource(pSource), mWarnings(pWarnings) {
        const Json& lBuffers = ArrayOf(pDocument, "buffers");
        const Needs lNeeds(pDocument);
        for (std::size_t i = 0; i < lBuffers.size(); ++i) {
            mBytes.emplace_back();
            mLengths.push_back(0);
            const std::string lProblem = Read(lBuffers[i], i, lNeeds.Buffer(i));
            if (!lProblem.empty())
                mWarnings.Add("buffer:" + std::to_string(i) + ' ' + lProblem);
        }
    }

    std::size_t Count() const { return mBytes.size(); }
    // 0 for a malformed buffer.
    std::size_t Length(std::size_t pIndex) const { return mLengths[pIndex]; }
    const std::string& Bytes(std::size_t pIndex) const { return mBytes[pIndex]; }

private:
    std::string Read(const Json& pBuffer, std::size_t pIndex, bool pNeeded) {
        std::size_t lLength = 0;
        if (!SizeOf(pBuffer, "byteLength", 0, lLength) || lLength == 0)
            return "has no valid byteLength";
        mLengths[pIndex] = lLength;
        const Json* lAddress = MemberOf(pBuffer, "uri");
        if (lAddress && !lAddress->is_string())
            return "has a uri that is " + Described(*lAddress);
        std::string lBytes;
        std::string lProblem;
        if (!lAddress)
            lProblem = FromChunk(pIndex, lBytes);
        else if (lAddress->get_ref<const std::string&>().compare(0, 5, "data:") == 0)
            lProblem = pNeeded ? FromData(lAddress->get_ref<const std::string&>(), lBytes) : std::string();
        else
            lProblem = FromFile(lAddress->get_ref<const std::string&>(), lLength, pNeeded, lBytes);
        if (!lProblem.empty() || lBytes.empty())
            return lProblem;
        if (lBytes.size() < lLength)
            return "has " + Counted(lBytes.size(), "byte") + ", not the " + std::to_string(lLength) + " it states";
        lBytes.resize(lLength);
        mBytes[pIndex] = std::move(lBytes);
        return std::string();
    }

    std::string FromChunk(std::size_t pIndex, std::string& pBytes) const {
        if (pIndex != 0 || !mSource.hasBinary)
            return "has no uri, and there is no binary chunk for it";
        pBytes = mSource.binary;
        return pBytes.empty() ? "lies in an empty binary chunk" : std::string();
    }

    static std::string FromData(const std::string& pAddress, std::string& pBytes) {
        const std::vector<unsigned char> lData = DecodeDataAddress(pAddress);
        pBytes.assign(lData.begin(), lData.end());
        return lData.empty() ? "has a data uri that cannot be decoded" : std::string();
    }

    std::string FromFile(const std::string& pAddress, std::size_t pLength, bool pNeeded, std::string& pBytes) const {
        const std::string lName = Shortened(Quoted(pAddress), 80);
        std::string lPath;
        if (!ResolveAddress(mSource.folder, pAddress, lPath))
            return "lies at " + lName + ", which is not read";
        struct stat lStatus = {};
        if (stat(lPath.c_str(), &lStatus) != 0 || !S_ISREG(lStatus.st_mode))
            return "is missing: " + lName;
        if (lStatus.st_size < 0 || static_cast<std::size_t>(lStatus.st_size) < pLength)
            return "states " + Counted(pLength, "byte") + ", but " + lName + " has " + std::to_string(lStatus.st_size);
        std::string lError;
        if (pNeeded && !ReadFileBytes(lPath, kMaxBufferBytes, pBytes, lError))
            return "cannot be read from " + lName + ": " + lError;
        return std::string();
    }

    const BufferSource& mSource;
    Warnings& mWarnings;
    std::vector<std::string> mBytes;
    std::vector<std::size_t> mLengths;
};

bool CheckView(const Json& pView, const BufferReader& pBuffers, Json& pChecked) {
    const int lBuffer = IndexIn(pView, "buffer", pBuffers.Count());
    std::size_t lOffset = 0;
    std::size_t lLength = 0;
    std::size_t lStride = 0;
    if (lBuffer < 0 || !SizeOf(pView, "byteOffset", 0, lOffset) || !SizeOf(pView, "byteLength", 0, lLength) ||
        !SizeOf(pView, "byteStride", 0, lStride))
        return false;
    const std::size_t lSize = pBuffers.Length(static_cast<std::size_t>(lBuffer));
    if (lLength == 0 || lOffset > lSize || lLength > lSize - lOffset || lStride > 252 || lStride % 4 != 0 ||
        (lStride == 0 && pView.contains("byteStride")))
        return false;
    pChecked = {{"buffer", lBuffer}, {"byteOffset", lOffset}, {"byteLength", lLength}};
    if (lStride > 0)
        pChecked["byteStride"] = lStride;
    return true;
}

int ComponentCount(const std::string& pType) {
    constexpr struct {
        const char* name;
        int count;
    } kTypes[] = {{"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16}};
    for (const auto& lType : kTypes) {
        if (pType == lType.name)
            return lType.count;
    }
    return 0;
}

bool AreBounds(const Json* pBounds, int pComponents) {
    if (!pBounds)
        return true;
    if (!pBounds->is_array() || pBounds->size() != static_cast<std::size_t>(pComponents))
        return false;
    return std::all_of(pBounds->begin(), pBounds->end(), [](const Json& pBound) { return pBound.is_number(); });
}

bool CheckAccessor(const Json& pAccessor, std::size_t pViews, Json& pChecked) {
    const Json* lType = MemberOf(pAccessor, "type");
    const Json* lView = MemberOf(pAccessor, "bufferView");
    std::size_t lCount = 0;
    std::size_t lOffset = 0;
    std::size_t lComponent = 0;
    if (!lType || !lType->is_string() || !SizeOf(pAccessor, "count", 0, lCount) ||
        !SizeOf(pAccessor, "byteOffset", 0, lOffset) || !SizeOf(pAccessor, "componentType", 0, lComponent))
        return false;
    const int lComponents = ComponentCount(lType->get_ref<const std::string&>());
    const bool lKnown = lComponent >= TINYGLTF_COMPONENT_TYPE_BYTE && lComponent <= TINYGLTF_COMPONENT_TYPE_FLOAT &&
                        lComponent != TINYGLTF_COMPONENT_TYPE_INT;
    const Json* lMin = MemberOf(pAccessor, "min");
    const Json* lMax = MemberOf(pAccessor, "max");
    if (lComponents == 0 || !lKnown || lCount == 0 || !AreBounds(lMin, lComponents) || !AreBounds(lMax, lComponents))
        return false;
    pChecked = {{"type", *lType}, {"componentType", lComponent}, {"count", lCount}, {"byteOffset", lOffset}};
    if (lView) {
        const int lIndex = IndexIn(pAccessor, "bufferView", pViews);
        if (lIndex < 0)
            return false;
        // The data of a sparse accessor is that of its view only in part; better none than the wrong one.
        if (!pAccessor.contains("sparse"))
            pChecked["bufferView"] = lIndex;
    }
    if (lMin)
        pChecked["min"] = *lMin;
    if (lMax)
        pChecked["max"] = *lMax;
    return true;
}

// tinygltf asks for the files of its stand-in document here: "buffer-3" is buffer 3.
bool HasFile(const std::string& pPath, void*) {
    return pPath.find("buffer-") != std::string::npos;
}
std::string SamePath(const std::string& pPath, void*) {
    return pPath;
}
bool GiveBuffer(std::vector<unsigned char>* pBytes, std::string*, const std::string& pPath, void* pReader) {
    const std::size_t lName = pPath.rfind("buffer-");
    const std::size_t lIndex = lName == std::string::npos ? 0 : std::strtoul(pPath.c_str() + lName + 7, nullptr, 10);
    const auto* lReader = static_cast<const BufferReader*>(pReader);
    if (lName == std::string::npos || lIndex >= lReader->Count())
        return false;
    pBytes->assign(lReader->Bytes(lIndex).begin(), lReader->Bytes(lIndex).end());
    return true;
}

std::string FirstLine(const std::string& pText) {
    return Shortened(Escaped(pText.substr(0, pText.find('\n'))), 160);
}

}  // namespace

std::vector<unsigned char> DecodeDataAddress(const std::string& pAddress) {
    std::vector<unsigned char> lBytes;
    std::string lMediaType;
    if (!tinygltf::IsDataURI(pAddress) || !tinygltf::DecodeDataURI(&lBytes, lMediaType, pAddress, 0, false))
        lBytes.clear();
    return lBytes;
}

bool ResolveAddress(const std::string& pFolder, const std::string& pAddress, std::string& pPath) {
    std::string lName;
    for (std::size_t i = 0; i < pAddress.size(); ++i) {
        const bool lEscape = pAddress[i] == '%' && i + 2 < pAddress.size() &&
                             std::isxdigit(static_cast<unsigned char>(pAddress[i + 1])) &&
                             std::isxdigit(static_cast<unsigned char>(pAddress[i + 2]));
        lName += lEscape ? static_cast<char>(std::stoi(pAddress.substr(i + 1, 2), nullptr, 16)) : pAddress[i];
        i += lEscape ? 2 : 0;
    }
    const std::size_t lColon = pAddress.find(':');
    const bool lScheme = lColon != std::string::npos && lColon < pAddress.find('/');
    if (lName.empty() || lName[0] == '/' || lScheme || lName.find('\0') != std::string::npos)
        return false;
    pPath = pFolder.empty() ? lName : pFolder + '/' + lName;
    return true;
}

Buffers::Buffers(const Json& pDocument, const BufferSource& pSource, Warnings& pWarnings)
    : mModel(std::make_unique<tinygltf::Model>()) {
    BufferReader lReader(pDocument, pSource, pWarnings);
    Json lData = {{"asset", {{"version", "2.0"}}}};
    for (std::size_t i = 0; i < lReader.Count(); ++i) {
        mHasBytes.push_back(!lReader.Bytes(i).empty());
        lData["buffers"].push_back(mHasBytes[i]
                                       ? Json{{"byteLength", lReader.Length(i)}, {"uri", "buffer-" + std::to_string(i)}}
                                       : StandInBuffer());
    }
    const Json& lViews = ArrayOf(pDocument, "bufferViews");
    for (std::size_t i = 0; i < lViews.size(); ++i) {
        Json lChecked = StandInView();
        mViewValid.push_back(CheckView(lViews[i], lReader, lChecked));
        if (!mViewValid[i])
            pWarnings.Add("bufferView:" + std::to_string(i) + " is malformed or reaches out of its buffer");
        lData["bufferViews"].push_back(lChecked);
    }
    const Json& lAccessors = ArrayOf(pDocument, "accessors");
    for (std::size_t i = 0; i < lAccessors.size(); ++i) {
        Json lChecked = StandInAccessor();
        mAccessorValid.push_back(CheckAccessor(lAccessors[i], lViews.size(), lChecked));
        if (!mAccessorValid[i])
            pWarnings.Add("accessor:" + std::to_string(i) + " is malformed");
        lData["accessors"].push_back(lChecked);
    }
    tinygltf::TinyGLTF lLoader;
    lLoader.SetFsCallbacks({&HasFile, &SamePath, &GiveBuffer, nullptr, &lReader});
    const std::string lText = lData.dump();
    std::string lError;
    std::string lWarning;
    const bool lFits = lText.size() <= std::size_t{0xFFFFFFFF};
    if (!lFits || !lLoader.LoadASCIIFromString(mModel.get(), &lError, &lWarning, lText.c_str(),
                                               static_cast<unsigned int>(lText.size()), "")) {
        pWarnings.Add("the buffers are left out: " + FirstLine(lFits ? lError : "too many"));
        *mModel = tinygltf::Model();
    }
    CheckLayouts(lAccessors, pWarnings);
}

Buffers::~Buffers() = default;

const tinygltf::Accessor* Buffers::AccessorAt(int pAccessor) const {
    const std::size_t lIndex = static_cast<std::size_t>(pAccessor);
    const bool lValid = pAccessor >= 0 && lIndex < mModel->accessors.size() && mAccessorValid[lIndex];
    return lValid ? &mModel->accessors[lIndex] : nullptr;
}

std::size_t Buffers::CountOf(int pAccessor) const {
    const tinygltf::Accessor* lAccessor = AccessorAt(pAccessor);
    return lAccessor ? lAccessor->count : 0;
}

const std::vector<double>& Buffers::MinOf(int pAccessor) const {
    static const std::vector<double> sNone;
    const tinygltf::Accessor* lAccessor = AccessorAt(pAccessor);
    return lAccessor ? lAccessor->minValues : sNone;
}

const std::vector<double>& Buffers::MaxOf(int pAccessor) const {
    static const std::vector<double> sNone;
    const tinygltf::Accessor* lAccessor = AccessorAt(pAccessor);
    return lAccessor ? lAccessor->maxValues : sNone;
}

bool Buffers::LayoutOf(int pAccessor, Span& pSpan) const {
    const tinygltf::Accessor* lAccessor = AccessorAt(pAccessor);
    if (!lAccessor || lAccessor->bufferView < 0 || !mViewValid[static_cast<std::size_t>(lAccessor->bufferView)])
        return false;
    const tinygltf::BufferView& lView = mModel->bufferViews[static_cast<std::size_t>(lAccessor->bufferView)];
    const int lComponent = tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(lAccessor->componentType));
    const int lComponents = tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(lAccessor->type));
    const int lStride = lAccessor->ByteStride(lView);
    if (lComponent <= 0 || lComponents <= 0 || lStride <= 0)
        return false;
    pSpan.element = static_cast<std::size_t>(lComponent) * static_cast<std::size_t>(lComponents);
    pSpan.stride = static_cast<std::size_t>(lStride);
    pSpan.count = lAccessor->count;
    if (lAccessor->byteOffset > lView.byteLength || pSpan.element > lView.byteLength - lAccessor->byteOffset)
        return false;
    return (lView.byteLength - lAccessor->byteOffset - pSpan.element) / pSpan.stride >= pSpan.count - 1;
}

bool Buffers::SpanOf(int pAccessor, Span& pSpan) const {
    if (!LayoutOf(pAccessor, pSpan))
        return false;
    const tinygltf::Accessor* lAccessor = AccessorAt(pAccessor);
    const tinygltf::BufferView& lView = mModel->bufferViews[static_cast<std::size_t>(lAccessor->bufferView)];
    if (!mHasBytes[static_cast<std::size_t>(lView.buffer)])
        return false;
    pSpan.data =
        mModel->buffers[static_cast<std::size_t>(lView.buffer)].data.data() + lView.byteOffset + lAccessor->byteOffset;
    pSpan.size = (pSpan.count - 1) * pSpan.stride + pSpan.element;
    return true;
}

void Buffers::CheckLayouts(const Json& pAccessors, Warnings& pWarnings) const {
    std::size_t lSparse = 0;
    for (std::size_t i = 0; i < pAccessors.size(); ++i) {
        const int lIndex = static_cast<int>(i);
        const tinygltf::Accessor* lAccessor = AccessorAt(lIndex);
        Span lSpan;
        lSparse += lAccessor && pAccessors[i].contains("sparse") ? 1 : 0;
        if (lAccessor && lAccessor->bufferView >= 0 && mViewValid[static_cast<std::size_t>(lAccessor->bufferView)] &&
            !LayoutOf(lIndex, lSpan))
            pWarnings.Add("accessor:" + std::to_string(i) + " reaches out of its bufferView");
    }
    if (lSparse > 0)
        pWarnings.Add(Counted(lSparse, "sparse accessor") + ", the data of which is not shown");
}

bool Buffers::ScanFloats(int pAccessor, double& pMin, double& pMax) const {
    Span lSpan;
    if (!SpanOf(pAccessor, lSpan) || AccessorAt(pAccessor)->componentType != TINYGLTF_COMPONENT_TYPE_FLOAT)
        return false;
    for (std::size_t i = 0; i < lSpan.count; ++i) {
        float lValue = 0;
        std::memcpy(&lValue, lSpan.data + i * lSpan.stride, sizeof lValue);
        pMin = i == 0 ? lValue : std::min(pMin, static_cast<double>(lValue));
        pMax = i == 0 ? lValue : std::max(pMax, static_cast<double>(lValue));
    }
    return true;
}

std::vector<unsigned char> Buffers::AccessorBytes(int pAccessor, std::size_t pLimit) const {
    std::vector<unsigned char> lBytes;
    Span lSpan;
    if (!SpanOf(pAccessor, lSpan) || lSpan.count > pLimit / lSpan.element)
        return lBytes;
    for (std::size_t i = 0; i < lSpan.count; ++i)
        lBytes.insert(lBytes.end(), lSpan.data + i * lSpan.stride, lSpan.data + i * lSpan.stride + lSpan.element);
    return lBytes;
}

std::vector<unsigned char> Buffers::ViewBytes(int pView, std::size_t pLimit) const {
    const std::size_t lIndex = static_cast<std::size_t>(pView);
    if (pView < 0 || lIndex >= mModel->bufferViews.size() || !mViewValid[lIndex])
        return {};
    const tinygltf::BufferView& lView = mModel->bufferViews[lIndex];
    if (lView.byteLength > pLimit || !mHasBytes[static_cast<std::size_t>(lView.buffer)])
        return {};
    const unsigned char* lData = mModel->buffers[static_cast<std::size_t>(lView.buffer)].data.data() + lView.byteOffset;
    return std::vector<unsigned char>(lData, lData + lView.byteLength);
}

}  // namespace lyrsdk::inspect
