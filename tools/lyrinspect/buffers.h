#pragma once

// The binary data behind a scene: buffers, the views into them, and the accessors that give views a type.
//
// The inspector needs little of it: key times, small blobs, counts and bounds. So a buffer is read only when something
// that is shown lies in it, and one that is missing, short or malformed is a warning; what would have come from it is
// then simply not there. Every number of the file is checked before it is used.

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/lyrinspect/document.h"
#include "tools/lyrinspect/warnings.h"

namespace tinygltf {
class Model;
struct Accessor;
}  // namespace tinygltf

namespace lyrsdk::inspect {

// What the chunk of a binary file and the folder of the scene offer to a buffer.
struct BufferSource {
    std::string_view binary;
    bool hasBinary = false;
    std::string folder;
};

class Buffers {
public:
    // Reads what pDocument needs. Both arguments are used only during the call.
    Buffers(const Json& pDocument, const BufferSource& pSource, Warnings& pWarnings);
    ~Buffers();
    Buffers(const Buffers&) = delete;
    Buffers& operator=(const Buffers&) = delete;

    // The accessor, or null when the index is out of range or the accessor is malformed.
    const tinygltf::Accessor* AccessorAt(int pAccessor) const;

    // The elements' count and, where the accessor states them, the bounds of every component.
    std::size_t CountOf(int pAccessor) const;
    const std::vector<double>& MinOf(int pAccessor) const;
    const std::vector<double>& MaxOf(int pAccessor) const;

    // The smallest and the largest value of an accessor of floats, computed. False when there is no data.
    bool ScanFloats(int pAccessor, double& pMin, double& pMax) const;

    // The accessor's elements, tightly packed. Empty when there is no data or it is more than pLimit bytes.
    std::vector<unsigned char> AccessorBytes(int pAccessor, std::size_t pLimit) const;

    // The bytes of a buffer view. Empty when there is no data or it is more than pLimit bytes.
    std::vector<unsigned char> ViewBytes(int pView, std::size_t pLimit) const;

private:
    struct Span {
        const unsigned char* data = nullptr;
        std::size_t size = 0;
        std::size_t stride = 0;
        std::size_t element = 0;
        std::size_t count = 0;
    };
    // Where the elements lie in their buffer view, without the data; false when there is no usable view or they reach
    // out of it.
    bool LayoutOf(int pAccessor, Span& pSpan) const;
    bool SpanOf(int pAccessor, Span& pSpan) const;
    void CheckLayouts(const Json& pAccessors, Warnings& pWarnings) const;

    std::unique_ptr<tinygltf::Model> mModel;
    // Which buffers hold their bytes, which views and accessors are usable.
    std::vector<bool> mHasBytes;
    std::vector<bool> mViewValid;
    std::vector<bool> mAccessorValid;
};

// The bytes of a data address ("data:...;base64,..."). Empty when it is none, or is malformed.
std::vector<unsigned char> DecodeDataAddress(const std::string& pAddress);

// Where a relative address of a file leads, percent escapes resolved. False for another scheme, for an absolute address
// and for one with a zero byte.
bool ResolveAddress(const std::string& pFolder, const std::string& pAddress, std::string& pPath);

}  // namespace lyrsdk::inspect
