#pragma once

// Puts what the JSON of one object states into the object's properties.
//
// A member that the prototype knows is set on the object's page, which so overrides that one value. A member that it
// does not know becomes a user property, with nested children for objects and arrays. References to other objects are
// collected and connected when all objects are there.

#include <string>
#include <vector>

#include "tools/lyrinspect/document.h"
#include "tools/lyrinspect/scene.h"
#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

// An index in the file: the property that states it, and what it points at.
struct Reference {
    const SceneObject* object;
    KLyrPropertyHandle property;
    ObjectKind target;
    int index;
};

// Whether the properties of an extension have rows, rather than being shown as they stand.
bool IsKnownExtension(const std::string& pName);

class ObjectReader {
public:
    // pSeparator is the separator of paths, for the warnings about names that hold it.
    ObjectReader(Scene& pScene, Warnings& pWarnings, char pSeparator)
        : mScene(pScene), mWarnings(pWarnings), mSeparator(pSeparator) {}

    // Reads every member of pJson but those named in pSkipped. A value that is no object is a warning.
    void Read(SceneObject& pObject, const Json& pJson, const std::vector<const char*>& pSkipped);

    // Reads the members of pJson into a property of the object that has their rows below it.
    void ReadInto(SceneObject& pObject, const KLyrPropertyHandle& pProperty, const Json& pJson);

    std::vector<Reference>& References() { return mReferences; }

    // Adds a warning for the odd names that were met, if there were any.
    void ReportNames();

private:
    void ReadBelow(KLyrPropertyHandle pParent, const Json& pJson, const std::vector<const char*>& pSkipped);
    void ReadMembers(const KLyrPropertyHandle& pParent, const Json& pJson, const std::vector<const char*>& pSkipped);
    void ReadMember(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue);
    void ReadKnown(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue);
    void TakeText(const KLyrPropertyHandle& pProperty, const std::string& pText);
    void CheckLimits(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts);
    void ReadGroup(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue);
    void CheckElements(const KLyrPropertyHandle& pProperty, const std::string& pType, const Json& pValue);
    void ReadReference(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue);
    void ReadExtensions(const KLyrPropertyHandle& pParent, const Json& pValue);
    bool ReadKnownExtension(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue);
    KnownProperty FindStated(const KLyrPropertyHandle& pParent, const std::string& pName) const;
    void AddValue(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue,
                  LyrPropertyFlags::eLyrPropertyFlags pFlags, bool pNumbersAreDouble);
    void AddMembers(const KLyrPropertyHandle& pParent, const Json& pValue, LyrPropertyFlags::eLyrPropertyFlags pFlags,
                    bool pNumbersAreDouble);
    std::string Text(const std::string& pText);
    void Warn(const KLyrPropertyHandle& pProperty, const std::string& pText);
    // About what stands, or would stand, below the property under that name.
    void WarnBelow(const KLyrPropertyHandle& pProperty, const std::string& pName, const std::string& pText);

    Scene& mScene;
    Warnings& mWarnings;
    char mSeparator;
    SceneObject* mObject = nullptr;
    std::vector<Reference> mReferences;
    std::size_t mSeparatorNames = 0;
    std::size_t mEmptyNames = 0;
    std::size_t mZeroTexts = 0;
    std::string mFirstSeparatorName;
};

}  // namespace lyrsdk::inspect
