#include "tools/lyrinspect/printer.h"

#include <algorithm>
#include <ostream>

#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "tools/lyrinspect/text.h"
#include "tools/lyrinspect/values.h"

namespace lyrsdk::inspect {

namespace {

constexpr int kMaxEndsShown = 8;
constexpr std::size_t kMaxValueLength = 160;
constexpr char kEndLead[] = "               ";

// "node:1 "Lamp" children", and only the object where the root itself is meant.
std::string EndText(const KLyrPropertyHandle& pEnd, char pSeparator) {
    const SceneObject* lObject = ObjectOf(pEnd);
    const std::string lPath = Escaped(PathOf(pEnd, pSeparator));
    const std::string lTitle = lObject ? TitleOf(*lObject) : std::string("?");
    return lPath.empty() ? lTitle : lTitle + ' ' + lPath;
}

std::string ChoicesText(const KLyrPropertyHandle& pProperty) {
    std::string lText;
    for (int i = 0; i < pProperty.GetEnumCount(); ++i)
        lText += (i == 0 ? "" : "|") + Escaped(pProperty.GetEnumValue(i));
    return lText;
}

}  // namespace

bool IsOwn(const SceneObject& pObject, const KLyrPropertyHandle& pProperty) {
    return pObject.isPrototype || pProperty.GetUserTag() >= pObject.firstOwnTag ||
           pProperty.GetValueInheritType(false) == eLyrOverride ||
           pProperty.GetFlagsInheritType(LyrPropertyFlags::AllFlags(), false) == eLyrOverride ||
           pProperty.GetSrcCount(nullptr) > 0 || pProperty.GetDstCount(nullptr) > 0;
}

std::string FlagsText(LyrPropertyFlags::eLyrPropertyFlags pFlags) {
    return Gathered([pFlags](std::ostream& pStream) { lyrDumpFlags(pStream, pFlags); });
}

Printer::Printer(std::ostream& pOutput, const PrintStyle& pStyle) : mOutput(pOutput), mStyle(pStyle) {}

void Printer::Print(const SceneObject& pObject) {
    PrintHeading(pObject);
    PrintConnections(pObject.root);
    const std::vector<Line> lLines = CollectLines(pObject);
    for (const int lLine : SelectLines(pObject, lLines, 0))
        PrintLine(pObject, lLines[static_cast<std::size_t>(lLine)]);
}

void Printer::Print(const SceneObject& pObject, const KLyrPropertyHandle& pBelow) {
    const std::vector<Line> lLines = CollectLines(pObject);
    const std::vector<int> lSelected = SelectLines(pObject, lLines, pBelow.GetUserTag());
    if (lSelected.empty())
        return;
    PrintHeading(pObject);
    for (const int lLine : lSelected)
        PrintLine(pObject, lLines[static_cast<std::size_t>(lLine)]);
}

void Printer::PrintPrototype(const SceneObject& pPrototype) {
    mDescribing = true;
    Print(pPrototype);
    mDescribing = false;
}

void Printer::PrintHeading(const SceneObject& pObject) {
    mOutput << TitleOf(pObject);
    const auto* lPrototype = static_cast<const SceneObject*>(pObject.root.GetReferenceTo());
    if (lPrototype)
        mOutput << " (instance of " << AddressOf(*lPrototype) << ")\n";
    else
        mOutput << " (prototype)\n";
}

// The lines of an object, indexed by user tag. The properties are visited in the order of their ids, in which a parent
// stands in front of its children; asking each for its next sibling would scan the page for the last one of every
// group.
std::vector<Printer::Line> Printer::CollectLines(const SceneObject& pObject) const {
    std::vector<Line> lLines(static_cast<std::size_t>(std::max(pObject.nextTag, 1)));
    lLines[0].property = pObject.root;
    const KLyrPropertyHandle& lRoot = pObject.root;
    for (KLyrPropertyHandle lProperty = lRoot.GetFirstDescendent(); lProperty.Valid();
         lProperty = lRoot.GetNextDescendent(lProperty)) {
        const std::size_t lTag = static_cast<std::size_t>(lProperty.GetUserTag());
        const std::size_t lParentTag = static_cast<std::size_t>(lProperty.GetParent().GetUserTag());
        if (lTag == 0 || lTag >= lLines.size() || lParentTag >= lLines.size())
            continue;
        Line& lLine = lLines[lTag];
        Line& lParent = lLines[lParentTag];
        lLine.property = lProperty;
        lLine.depth = lParent.depth + 1;
        lLine.path = (lParentTag == 0 ? "" : lParent.path + mStyle.separator) + Escaped(lProperty.GetName());
        lParent.children.push_back(static_cast<int>(lTag));
    }
    return lLines;
}

// The lines to print, from pTop down. Depth first, without recursion: a file may nest deep.
std::vector<int> Printer::SelectLines(const SceneObject& pObject, const std::vector<Line>& pLines, int pTop) const {
    std::vector<int> lSelected;
    std::vector<int> lStack;
    if (pTop >= 0 && static_cast<std::size_t>(pTop) < pLines.size())
        lStack.push_back(pTop);
    while (!lStack.empty()) {
        const int lIndex = lStack.back();
        const Line& lLine = pLines[static_cast<std::size_t>(lIndex)];
        lStack.pop_back();
        lStack.insert(lStack.end(), lLine.children.rbegin(), lLine.children.rend());
        if (lLine.depth > 0 && (!mStyle.onlyOverrides || IsOwn(pObject, lLine.property)))
            lSelected.push_back(lIndex);
    }
    return lSelected;
}

void Printer::PrintLine(const SceneObject& pObject, const Line& pLine) {
    const KLyrPropertyHandle& lProperty = pLine.property;
    const std::string lIndent(2 * static_cast<std::size_t>(std::min(pLine.depth - 1, 40)), ' ');
    mOutput << "  " << (IsOwn(pObject, lProperty) ? "own        " : "inherited  ") << lIndent << pLine.path << ": "
            << TypeNameOf(lProperty);
    const std::string lValue = ValueText(lProperty);
    if (!lValue.empty())
        mOutput << " = " << Shortened(lValue, kMaxValueLength);
    const std::string lFlags = FlagsText(lProperty.GetFlags());
    if (!lFlags.empty())
        mOutput << " [" << lFlags << ']';
    const std::string lLimits = LimitsText(lProperty);
    if (!lLimits.empty())
        mOutput << " limits " << lLimits;
    const std::string lSoftLimits = SoftLimitsText(lProperty);
    if (!lSoftLimits.empty())
        mOutput << " soft " << lSoftLimits;
    if (mDescribing && lProperty.GetEnumCount() > 0)
        mOutput << " choices " << ChoicesText(lProperty);
    if (mDescribing)
        mOutput << " label " << Quoted(lProperty.GetLabel());
    mOutput << '\n';
    PrintConnections(lProperty);
}

void Printer::PrintConnections(const KLyrPropertyHandle& pProperty) {
    if (pProperty.GetSrcCount(nullptr) > 0)
        PrintEnds(pProperty, true);
    if (pProperty.GetDstCount(nullptr) > 0)
        PrintEnds(pProperty, false);
}

// One end a line, grouped by type.
void Printer::PrintEnds(const KLyrPropertyHandle& pProperty, bool pSources) {
    struct {
        ConnectionTypeFilter* filter;
        const char* name;
    } const lTypes[] = {{&mContains, "contains"}, {&mReferences, "reference"}, {&mData, "data"}};
    for (const auto& lType : lTypes) {
        const int lCount = pSources ? pProperty.GetSrcCount(lType.filter) : pProperty.GetDstCount(lType.filter);
        for (int i = 0; i < std::min(lCount, kMaxEndsShown); ++i) {
            const KLyrPropertyHandle lEnd =
                pSources ? pProperty.GetSrc(lType.filter, i) : pProperty.GetDst(lType.filter, i);
            mOutput << kEndLead << (pSources ? "<- " : "-> ") << EndText(lEnd, mStyle.separator) << " (" << lType.name
                    << ")\n";
        }
        if (lCount > kMaxEndsShown)
            mOutput << kEndLead << (pSources ? "<- " : "-> ") << "and " << lCount - kMaxEndsShown << " more ("
                    << lType.name << ")\n";
    }
    KLyrPropertyHandle(pProperty).ClearConnectCache();
}

}  // namespace lyrsdk::inspect
