// The model of an editor's property panel: what a window would show of the objects that are selected, and what becomes
// of the texts that are typed into it.

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

struct Row {
    std::string mLabel;
    std::string mValue;
    std::string mLimits;
    // '*' when an object holds a value of its own, which can be reverted.
    char mMark;
    std::string mNote;
};

// --- one property --------------------------------------------------------------------------------------------------

std::string LabelOf(const KLyrPropertyHandle& pProperty) {
    const char* lLabel = pProperty.GetLabel();
    return *lLabel ? lLabel : pProperty.GetName();
}

std::string ValueOf(const KLyrPropertyHandle& pProperty) {
    if (const char* lText = lyrGetEnumText(pProperty))
        return lText;
    return lyrGet<KString>(pProperty).value_or(KString()).Buffer();
}

// What may be typed in: the choices of an enumeration, or "0..100". Empty when there are no bounds.
std::string LimitsOf(const KLyrPropertyHandle& pProperty, bool pSoft) {
    std::ostringstream lText;
    for (int i = 0; i < pProperty.GetEnumCount(); ++i)
        lText << (i > 0 ? "|" : "") << pProperty.GetEnumValue(i);
    lyrDumpLimits(lText, pProperty, pSoft);
    return lText.str();
}

// A sentence for the user; empty when the text will do as a value. Hard limits are not to be left, soft ones are only
// where a slider ends.
std::string WhyNot(const KLyrPropertyHandle& pProperty, const KString& pText) {
    const std::string lQuoted = std::string("'") + pText.Buffer() + "'";
    if (pProperty.GetFlags() & LyrPropertyFlags::eUI_DISABLED)
        return LabelOf(pProperty) + " cannot be changed.";
    if (pProperty.GetType() == eENUM) {
        const bool lIsChoice = lyrFindEnumIndex(pProperty, pText.Buffer()) >= 0;
        return lIsChoice ? "" : lQuoted + " is none of " + LimitsOf(pProperty, false) + ".";
    }
    const KLyrReason lReason = lyrWhyRefused(pProperty, eSTRING, eLyrWrite, &pText);
    if (!lReason.IsEmpty())
        return lReason.mText;
    const bool lIsInside = lyrValidate(pProperty, pText, eLyrHardLimits) == eLyrWithinLimits;
    return lIsInside ? "" : lQuoted + " is outside " + LimitsOf(pProperty, false) + ".";
}

bool Write(const KLyrPropertyHandle& pProperty, const KString& pText) {
    const bool lIsEnum = pProperty.GetType() == eENUM;
    return (lIsEnum ? lyrSetEnumText(pProperty, pText.Buffer()) : lyrSet(pProperty, pText)) != eLyrSetRefused;
}

// --- the panel -----------------------------------------------------------------------------------------------------

// Looks at one object or more of one family. A property is bound once and then reached on each of them by its id.
class Panel {
public:
    explicit Panel(std::vector<KLyrPropertyHandle> pObjects) : mObjects(std::move(pObjects)) {}

    std::vector<Row> GetRows() const {
        std::vector<Row> lRows;
        for (const KLyrPropertyHandle& lProperty : lyrDescendents(mObjects.front()))
            if (!(lProperty.GetFlags() & LyrPropertyFlags::eHIDDEN) && IsOnAll(KLyrBoundProperty(lProperty)))
                lRows.push_back(RowOf(lProperty));
        return lRows;
    }

    // Gives all objects the value; none of them when it does not do for one. Empty when it is done, else why not.
    std::string Edit(const char* pPath, const char* pText) const {
        const KLyrBoundProperty lBound(mObjects.front(), pPath);
        const KString lText(pText);
        if (!IsOnAll(lBound))
            return std::string("Not all objects have '") + pPath + "'.";
        for (const KLyrPropertyHandle& lObject : mObjects) {
            std::string lWhyNot = WhyNot(lBound.On(lObject), lText);
            if (!lWhyNot.empty())
                return lWhyNot;
        }
        for (const KLyrPropertyHandle& lObject : mObjects)
            if (!Write(lBound.On(lObject), lText))
                return "There is no memory for the value.";
        return "";
    }

    // A slider that is dragged stops at the soft limits.
    bool Drag(const char* pPath, double pValue) const {
        const KLyrBoundProperty lBound(mObjects.front(), pPath);
        for (const KLyrPropertyHandle& lObject : mObjects) {
            const std::optional<double> lInside = lyrClamp(lBound.On(lObject), pValue, eLyrAllLimits);
            if (!lInside || lBound.Set(lObject, *lInside) == eLyrSetRefused)
                return false;
        }
        return true;
    }

    // Goes back to what the pages above show: a property and all below it; all of the objects with an empty path. The
    // number of values that went.
    int Revert(const std::string& pPath) const {
        int lCount = 0;
        for (const KLyrPropertyHandle& lObject : mObjects)
            lCount += pPath.empty() ? lyrRevertAll(lObject, KLyrRevert::eValue)
                                    : lyrRevertSubtree(lObject.Find(pPath.c_str(), "/", true), KLyrRevert::eValue);
        return lCount;
    }

private:
    // An instance may have properties that others lack.
    bool IsOnAll(const KLyrBoundProperty& pBound) const {
        return std::all_of(mObjects.begin(), mObjects.end(), [&pBound](const KLyrPropertyHandle& pObject) {
            return pBound.GetState(pObject) == eLyrBoundHere;
        });
    }

    Row RowOf(const KLyrPropertyHandle& pProperty) const {
        const KLyrBoundProperty lBound(pProperty);
        Row lRow{LabelOf(pProperty), ValueOf(pProperty), LimitsOf(pProperty, false), ' ', ""};
        if (!pProperty.GetParent().Is(mObjects.front()))
            lRow.mLabel.insert(0, "  ");
        for (const KLyrPropertyHandle& lObject : mObjects) {
            const KLyrPropertyHandle lSame = lBound.On(lObject);
            if (ValueOf(lSame) != lRow.mValue)
                lRow.mValue = "(several)";
            Explain(lSame, lRow);
        }
        return lRow;
    }

    static void Explain(const KLyrPropertyHandle& pProperty, Row& pRow) {
        const KLyrItemOrigin lValue = lyrExplain(pProperty).mValue;
        if (lValue.mOrigin == KLyrOrigin::eOwn && lValue.mIfInherited.Valid()) {
            pRow.mMark = '*';
            pRow.mNote = "was " + ValueOf(lValue.mIfInherited);
        }
        const ELyrLimitVerdict lVerdict = lyrValidate(pProperty, eLyrSoftLimits);
        if (lVerdict == eLyrBelowSoftMin || lVerdict == eLyrAboveSoftMax)
            pRow.mNote = "usually " + LimitsOf(pProperty, true);
    }

    std::vector<KLyrPropertyHandle> mObjects;
};

// --- the session ---------------------------------------------------------------------------------------------------

// All that the panel shows comes from the descriptions; none of it knows what a lamp is.
bool Describe(const KLyrPropertyHandle& pLamp) {
    const KLyrPropertyHandle lPower =
        lyrBuild(pLamp, "power", 60.0).Limits(0.0, 100.0).SoftLimits(5.0, 75.0).Label("Power (W)");
    const KLyrPropertyHandle lKind =
        lyrBuild(pLamp, "kind", eENUM).EnumTexts({"point", "spot", "area"}).DefaultText("point").Label("Kind");
    const KLyrPropertyHandle lShadow = lyrBuild(pLamp, "shadow", true).Label("Shadow");
    const KLyrPropertyHandle lSamples = lyrBuild(lShadow, "samples", 8).Limits(1, 64).Label("Samples");
    const KLyrPropertyHandle lSerial =
        lyrBuild(pLamp, "serial", "L-100").Label("Serial number").Flags(LyrPropertyFlags::eUI_DISABLED);
    const KLyrPropertyHandle lCache = lyrBuild(pLamp, "cache", 0).Flags(LyrPropertyFlags::eHIDDEN);
    return lPower.Valid() && lKind.Valid() && lSamples.Valid() && lSerial.Valid() && lCache.Valid();
}

void Show(const char* pTitle, const Panel& pPanel) {
    std::cout << '\n' << pTitle << '\n';
    for (const Row& lRow : pPanel.GetRows()) {
        std::ostringstream lLine;
        lLine << lRow.mMark << ' ' << std::left << std::setw(15) << lRow.mLabel << std::setw(10) << lRow.mValue
              << std::setw(16) << lRow.mLimits << lRow.mNote;
        const std::string lText = lLine.str();
        std::cout << lText.substr(0, lText.find_last_not_of(' ') + 1) << '\n';
    }
}

void Type(const Panel& pPanel, const char* pPath, const char* pText) {
    const std::string lWhyNot = pPanel.Edit(pPath, pText);
    std::cout << pPath << " = " << pText << ": " << (lWhyNot.empty() ? "done" : lWhyNot) << '\n';
}

bool Run(const KLyrPropertyHandle& pDesk, const KLyrPropertyHandle& pHall) {
    const Panel lDesk({pDesk});
    Type(lDesk, "power", "80");
    Type(lDesk, "power", "120");
    Type(lDesk, "power", "bright");
    Type(lDesk, "kind", "spot");
    Type(lDesk, "kind", "laser");
    Type(lDesk, "serial", "L-101");
    Type(lDesk, "shadow/colour", "red");
    Show("desk lamp", lDesk);

    const Panel lBoth({pDesk, pHall});
    Show("both lamps", lBoth);
    std::cout << "\nreverted: " << lBoth.Revert("kind") << '\n';
    Type(lBoth, "shadow", "false");
    if (!lBoth.Drag("shadow/samples", 1000) || !lBoth.Drag("power", 90))
        return false;
    Show("both lamps", lBoth);
    std::cout << "\nreverted below shadow: " << lBoth.Revert("shadow") << '\n';
    std::cout << "reverted on the desk lamp: " << lDesk.Revert("") << '\n';
    Show("both lamps", lBoth);
    return true;
}

}  // namespace

int main() {
    const KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
    const KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);
    const KLyrOwnedPage lHall = KLyrOwnedPage::Create(*lLamp);
    return Describe(*lLamp) && Run(*lDesk, *lHall) ? 0 : 1;
}
