#include "tools/lyrinspect/container.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::uint32_t kJsonChunk = 0x4E4F534A;
constexpr std::uint32_t kBinaryChunk = 0x004E4942;

std::uint32_t ReadWord(std::string_view pBytes, std::size_t pOffset) {
    std::uint32_t lWord = 0;
    for (std::size_t i = 0; i < 4; ++i)
        lWord |= static_cast<std::uint32_t>(static_cast<unsigned char>(pBytes[pOffset + i])) << (8 * i);
    return lWord;
}

struct Chunk {
    std::uint32_t type = 0;
    std::string_view bytes;
};

// Takes the next chunk off the front of pRest.
bool TakeChunk(std::string_view& pRest, Chunk& pChunk, std::string& pError) {
    if (pRest.size() < kChunkHeaderSize) {
        pError = "truncated: a chunk header is cut off";
        return false;
    }
    const std::size_t lLength = ReadWord(pRest, 0);
    pChunk.type = ReadWord(pRest, 4);
    pRest.remove_prefix(kChunkHeaderSize);
    if (lLength > pRest.size()) {
        pError =
            "truncated: a chunk says " + Counted(lLength, "byte") + ", " + std::to_string(pRest.size()) + " are left";
        return false;
    }
    pChunk.bytes = pRest.substr(0, lLength);
    pRest.remove_prefix(lLength);
    return true;
}

bool CheckHeader(std::string_view& pBytes, Warnings& pWarnings, std::string& pError) {
    if (pBytes.size() < kHeaderSize) {
        pError = "truncated: the header is cut off";
        return false;
    }
    const std::uint32_t lVersion = ReadWord(pBytes, 4);
    const std::size_t lLength = ReadWord(pBytes, 8);
    if (lVersion != 2) {
        pError = "container version " + std::to_string(lVersion) + " is not supported, only 2 is";
        return false;
    }
    if (lLength > pBytes.size()) {
        pError = "truncated: the header says " + Counted(lLength, "byte") + ", the file has " +
                 std::to_string(pBytes.size());
        return false;
    }
    if (lLength < kHeaderSize) {
        pError = "damaged: the header says " + Counted(lLength, "byte") + ", less than the header itself has";
        return false;
    }
    if (lLength < pBytes.size())
        pWarnings.Add(Counted(pBytes.size() - lLength, "byte") + " behind the end of the scene");
    pBytes = pBytes.substr(kHeaderSize, lLength - kHeaderSize);
    return true;
}

}  // namespace

bool ReadFileBytes(const std::string& pPath, std::size_t pLimit, std::string& pBytes, std::string& pError) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> lFile(std::fopen(pPath.c_str(), "rb"), &std::fclose);
    struct stat lStatus = {};
    if (!lFile || fstat(fileno(lFile.get()), &lStatus) != 0) {
        pError = std::strerror(errno);
        return false;
    }
    if (S_ISDIR(lStatus.st_mode)) {
        pError = "is a directory";
        return false;
    }
    pBytes.clear();
    const bool lSized = S_ISREG(lStatus.st_mode) && lStatus.st_size > 0;
    const std::size_t lSize = lSized ? static_cast<std::size_t>(lStatus.st_size) : 0;
    if (lSize > pLimit) {
        pError = "larger than " + Counted(pLimit, "byte");
        return false;
    }
    pBytes.reserve(lSize);
    char lBuffer[65536];
    std::size_t lCount = 0;
    while ((lCount = std::fread(lBuffer, 1, sizeof lBuffer, lFile.get())) > 0) {
        if (lCount > pLimit - pBytes.size()) {
            pError = "larger than " + Counted(pLimit, "byte");
            return false;
        }
        pBytes.append(lBuffer, lCount);
    }
    if (std::ferror(lFile.get())) {
        pError = std::strerror(errno);
        return false;
    }
    return true;
}

bool SplitContainer(std::string_view pBytes, Container& pContainer, Warnings& pWarnings, std::string& pError) {
    pContainer = Container();
    if (pBytes.empty()) {
        pError = "the file is empty";
        return false;
    }
    if (pBytes.substr(0, 4) != "glTF") {
        pContainer.json = pBytes;
        return true;
    }
    std::string_view lRest = pBytes;
    Chunk lChunk;
    if (!CheckHeader(lRest, pWarnings, pError) || !TakeChunk(lRest, lChunk, pError))
        return false;
    if (lChunk.type != kJsonChunk) {
        pError = "damaged: the first chunk is not JSON";
        return false;
    }
    pContainer.json = lChunk.bytes;
    // Some writers pad the text with zero bytes instead of blanks.
    while (!pContainer.json.empty() && pContainer.json.back() == '\0')
        pContainer.json.remove_suffix(1);
    while (!lRest.empty()) {
        if (!TakeChunk(lRest, lChunk, pError))
            return false;
        if (lChunk.type == kBinaryChunk && !pContainer.hasBinary) {
            pContainer.binary = lChunk.bytes;
            pContainer.hasBinary = true;
        }
    }
    return true;
}

}  // namespace lyrsdk::inspect
