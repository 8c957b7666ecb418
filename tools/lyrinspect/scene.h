#pragma once

// The objects of a scene and the pages behind them.
//
//   SceneObject  <--data pointer--  page of the object  --instance of-->  prototype page  --data pointer--> SceneObject
//
// The scene owns every page it makes. Records stay where they are until the scene goes.

#include <array>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/lyrinspect/prototypes.h"

namespace lyrsdk::inspect {

struct SceneObject {
    ObjectKind kind = ObjectKind::eDocument;
    bool isPrototype = false;
    // The position in the file's array; a primitive and a channel stand in an array of their mesh or animation.
    int index = 0;
    const SceneObject* owner = nullptr;
    // As stated in the file; empty where there is none.
    std::string name;
    // An object without a name is not one with an empty name.
    bool isNamed = false;
    KLyrPropertyHandle root;
    // The user tag that the next property of this object gets.
    int nextTag = 0;
    // The first user tag of a property that the object added to those of its prototype.
    int firstOwnTag = 0;
};

// A property that the prototype of a kind has. An id means the same property in all objects of a kind.
struct KnownProperty {
    int id = -1;
    // Null where there is no such property.
    const PropertyFacts* facts = nullptr;
};

class Scene {
public:
    Scene();
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // A new object: an instance of its kind's prototype that overrides nothing. Null when there is no memory for it.
    SceneObject* AddObject(ObjectKind pKind, int pIndex, const SceneObject* pOwner = nullptr);

    // The objects of a kind, in the order of creation; for kinds without an owner that is the order of the file, and
    // the position is the index.
    const std::vector<SceneObject*>& Objects(ObjectKind pKind) const;
    // Null when the index is out of range.
    SceneObject* ObjectAt(ObjectKind pKind, int pIndex) const;
    std::size_t ObjectCount() const { return mObjects.size(); }

    const Prototypes& GetPrototypes() const { return mPrototypes; }
    // False when there was no memory for a page or a property.
    bool IsComplete() const { return mComplete && mPrototypes.IsComplete(); }
    const SceneObject& PrototypeObject(ObjectKind pKind) const;

    // The property that the prototype has at this path of names with '/' between them, seen through the object; invalid
    // when it has none. Costs no search in the pages.
    KLyrPropertyHandle Known(const SceneObject& pObject, const std::string& pPath) const;
    // The id of that property, or -1.
    int KnownId(ObjectKind pKind, const std::string& pPath) const;
    // The property that the member of that name in an object of the file states.
    KnownProperty StatedBy(ObjectKind pKind, const std::string& pMember) const;

    // A new property below pParent, typed by the type page of that name, with the next user tag of pObject. The default
    // handle when there is no memory for it.
    KLyrPropertyHandle AddProperty(SceneObject& pObject, KLyrPropertyHandle pParent, const std::string& pName,
                                   const char* pType, LyrPropertyFlags::eLyrPropertyFlags pFlags);

    // What the inspector knows about a property of a prototype, seen through any object; without a row for the root and
    // for what an object added.
    const PropertyFacts& FactsOf(const SceneObject& pObject, const KLyrPropertyHandle& pProperty) const;

private:
    Prototypes mPrototypes;
    std::array<SceneObject, kKindCount> mPrototypeObjects;
    std::array<std::unordered_map<std::string, int>, kKindCount> mKnownIds;
    std::array<std::unordered_map<std::string, KnownProperty>, kKindCount> mMembers;
    std::deque<SceneObject> mObjects;
    std::array<std::vector<SceneObject*>, kKindCount> mByKind;
    bool mComplete = true;
};

// The record behind a handle's page, null for a page that is none of a scene's objects.
const SceneObject* ObjectOf(const KLyrPropertyHandle& pProperty);

// "node:3", "mesh:0/primitive:1", "document"; for a prototype its kind's name.
std::string AddressOf(const SceneObject& pObject);

// The address, with the name in quotation marks behind it where there is one.
std::string TitleOf(const SceneObject& pObject);

// The names from below the root down to the property, with pSeparator between them; empty for the root.
std::string PathOf(const KLyrPropertyHandle& pProperty, char pSeparator);

}  // namespace lyrsdk::inspect
