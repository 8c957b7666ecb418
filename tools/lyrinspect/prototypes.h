#pragma once

// The pages that every scene stands on: one type page for each plain and compound type, one prototype page for each
// kind of object.
//
//   type page        root property: the type's name and type code; children: the members of a compound type
//                    data pointer: TypeRecord
//   prototype page   root property: the kind's name; below it the kind's properties with defaults, limits,
//   enumerations,
//                    labels and flags
//                    data pointer: SceneObject, which the owner of the scene sets
//
// A property's user tag is its number within its object: 0 for the root, 1 and up for the prototype's properties, and
// on from there for those that an object adds. It is what leads from a handle to the row behind it in constant time.

#include <array>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tools/lyrinspect/propertyrows.h"

namespace lyrsdk::inspect {

struct TypeRecord {
    std::string name;
    KLyrPropertyHandle page;
    // Null for a plain type.
    const CompoundType* compound = nullptr;
};

// What the inspector knows about one property of a prototype beyond what its page holds.
struct PropertyFacts {
    const PropertyRow* row = nullptr;
    ELyrType type = eUNIDENTIFIED;
    // reference: the kind that an index in the file points at, and whether the file has an array of them.
    ObjectKind target = ObjectKind::eCount;
    bool many = false;
    // enum: the number that stands for each value in the file; empty where the file writes the text.
    std::vector<int> codes;
};

struct Prototype {
    KLyrPropertyHandle page;
    // Indexed by user tag; element 0 is the root, without a row.
    std::vector<PropertyFacts> facts;
};

class Prototypes {
public:
    Prototypes();
    // Every instance of a prototype must be gone by then, or it takes copies of all that it inherits.
    ~Prototypes();
    Prototypes(const Prototypes&) = delete;
    Prototypes& operator=(const Prototypes&) = delete;

    const Prototype& Of(ObjectKind pKind) const { return mPrototypes[static_cast<std::size_t>(pKind)]; }

    // The type page of that name ("double3", "Transform"); the default handle when there is none.
    KLyrPropertyHandle TypePage(const std::string& pName) const;

    std::size_t TypePageCount() const { return mTypes.size(); }

    // False when there was no memory for a page or a property.
    bool IsComplete() const { return mComplete; }

private:
    TypeRecord& AddType(const std::string& pName, const KLyrPropertyHandle& pPage);
    void MakePlainTypes();
    void MakeCompoundTypes();
    void MakePrototype(ObjectKind pKind);
    KLyrPropertyHandle AddRow(const KLyrPropertyHandle& pRoot, const PropertyRow& pRow);
    void Describe(KLyrPropertyHandle pProperty, const PropertyRow& pRow, std::vector<PropertyFacts>* pFacts);
    void DescribeMembers(const KLyrPropertyHandle& pProperty, const TypeRecord& pType,
                         std::vector<PropertyFacts>* pFacts);

    // A deque, because pages point at the records.
    std::deque<TypeRecord> mTypes;
    std::map<std::string, TypeRecord*> mTypesByName;
    std::array<Prototype, kKindCount> mPrototypes;
    bool mComplete = true;
};

// The name of the type page behind a property, "" when it has none.
std::string TypeNameOf(const KLyrPropertyHandle& pProperty);

}  // namespace lyrsdk::inspect
