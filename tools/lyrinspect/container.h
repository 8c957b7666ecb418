#pragma once

// The outermost layer of a scene file: its bytes, and the two chunks of a binary one.
//
//   .gltf   JSON text
//   .glb    "glTF" | version u32 | length u32 | { chunk length u32 | chunk type u32 | bytes }...   little endian
//           first chunk "JSON", the second may be "BIN\0", others are skipped
//
// The two are told apart by their first four bytes, never by the name of the file.

#include <string>
#include <string_view>

#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

// Reads a whole file, at most pLimit bytes of it. False, with one line in pError, when it cannot be read or is larger.
bool ReadFileBytes(const std::string& pPath, std::size_t pLimit, std::string& pBytes, std::string& pError);

struct Container {
    std::string_view json;
    std::string_view binary;
    bool hasBinary = false;
};

// Finds the chunks in pBytes, which the result points into. False, with one line in pError, for a damaged binary file.
bool SplitContainer(std::string_view pBytes, Container& pContainer, Warnings& pWarnings, std::string& pError);

}  // namespace lyrsdk::inspect
