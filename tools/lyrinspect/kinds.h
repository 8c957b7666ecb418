#pragma once

// The kinds of object in a scene.

#include <cstddef>

namespace lyrsdk::inspect {

enum class ObjectKind {
    eDocument,
    eScene,
    eNode,
    eMesh,
    ePrimitive,
    eMaterial,
    eTexture,
    eImage,
    eSampler,
    eCamera,
    eLight,
    eSkin,
    eAnimation,
    eChannel,
    eCount,
};

constexpr std::size_t kKindCount = static_cast<std::size_t>(ObjectKind::eCount);

// "node", "mesh": the kind as it stands in addresses, in tables and on the prototype page.
const char* KindName(ObjectKind pKind);

// "nodes", "meshes".
const char* KindPlural(ObjectKind pKind);

// The kind of that name, or eCount.
ObjectKind KindOfName(const char* pName);

}  // namespace lyrsdk::inspect
