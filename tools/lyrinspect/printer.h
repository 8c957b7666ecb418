#pragma once

// Writes objects and their properties as text.
//
//   node:1 "Left lamp" (instance of node)
//     own        name: string = "Left lamp"
//     inherited  transform: Transform [UI_GROUP, UI_EXPANDED]
//     own          transform/translation: double3 = -1,0,0 [ANIMATABLE]
//     own        mesh: reference
//                  <- mesh:0 "Lamp" (reference)
//
// An arrow to the left is a source, one to the right a destination, with the type of the connection behind it.
// A property is own when the page holds its value or flags, when the object added it, or when it is connected.

#include <iosfwd>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrconnectionpoint.h"
#include "tools/lyrinspect/scene.h"

namespace lyrsdk::inspect {

struct PrintStyle {
    char separator = '/';
    bool onlyOverrides = false;
};

// Selects the connections of one type.
class ConnectionTypeFilter : public KLyrConnectionPointFilter {
public:
    explicit ConnectionTypeFilter(kLyrConnectionType pType) : mType(pType) {}
    bool Selects(const KLyrConnectionPoint*, kLyrConnectionType pType) const override { return pType == mType; }

private:
    kLyrConnectionType mType;
};

class Printer {
public:
    Printer(std::ostream& pOutput, const PrintStyle& pStyle);

    // The object's heading, the connections of the object as a whole, and its properties.
    void Print(const SceneObject& pObject);
    // The heading, one of the object's properties and what is below it; nothing when the style leaves all of them out.
    void Print(const SceneObject& pObject, const KLyrPropertyHandle& pBelow);

    // A prototype, with the label of every property and the values of every enumeration.
    void PrintPrototype(const SceneObject& pPrototype);

private:
    struct Line {
        KLyrPropertyHandle property;
        int depth = 0;
        std::string path;
        std::vector<int> children;
    };

    void PrintHeading(const SceneObject& pObject);
    void PrintLine(const SceneObject& pObject, const Line& pLine);
    std::vector<Line> CollectLines(const SceneObject& pObject) const;
    std::vector<int> SelectLines(const SceneObject& pObject, const std::vector<Line>& pLines, int pTop) const;
    void PrintConnections(const KLyrPropertyHandle& pProperty);
    void PrintEnds(const KLyrPropertyHandle& pProperty, bool pSources);

    std::ostream& mOutput;
    PrintStyle mStyle;
    bool mDescribing = false;
    ConnectionTypeFilter mContains{eLyrConnectionContains};
    ConnectionTypeFilter mReferences{eLyrConnectionReference};
    ConnectionTypeFilter mData{eLyrConnectionData};
};

// Whether the object has something of its own there: value, flags, connections, or the property as a whole.
bool IsOwn(const SceneObject& pObject, const KLyrPropertyHandle& pProperty);

// "ANIMATABLE, UI_GROUP"; empty without flags.
std::string FlagsText(LyrPropertyFlags::eLyrPropertyFlags pFlags);

}  // namespace lyrsdk::inspect
