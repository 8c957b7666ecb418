// An importer: reads meshes and the objects that repeat them from a text, and goes on behind a line that does not do.

#include <forward_list>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrsdk.h"

using namespace lyrsdk;

namespace {

// A mesh is a page, an object an instance of it. Below them: path, kind of value, value.
constexpr const char* kText = R"(# A kitchen.
mesh
mesh chair
  size        point  0.45 0.9 0.45
  seat/height number 0.46
  legs        count  four
  legs        count  4
  material    text   oak
  made        date   2024-05-17 09:30
mesh table
  size        point  1.8 0.74
  size        point  1.8 0.74 0.9
  colour      rgb    1 0 0
  top//edge   number 0.02
object chair lisa's chair
  material    text   walnut
  legs        count  4
object chair stool
  legs        number 3.5
  size        text   small
  seat/padded switch true
object bench by the door
  material    text   pine
mesh chair
object table the table
)";

class Importer {
public:
    Importer() {
        const std::pair<const char*, ELyrType> lKinds[] = {{"number", eDOUBLE1}, {"count", eINTEGER1},
                                                           {"switch", eBOOL1},   {"point", eDOUBLE3},
                                                           {"text", eSTRING},    {"date", eDATETIME}};
        for (const auto& [lName, lType] : lKinds)
            if (!lyrAdd(*mKinds, lName, lType).Valid())
                Refuse("no memory for values of a kind");
    }
    // The number of lines that were refused, each with a report.
    int Read(std::istream& pText) {
        for (std::string lLine; std::getline(pText, lLine);) {
            ++mLine;
            std::istringstream lWords(lLine);
            std::string lFirst;
            if (lWords >> lFirst && lFirst[0] != '#')
                ReadLine(lFirst, lWords);
        }
        mBracket.reset();
        return mRefused;
    }

    bool Dump() const {
        KLyrDumpStyle lStyle;
        lStyle.mOnlyOwn = true;
        return lyrDumpFamilies(std::cout, mPages.data(), static_cast<int>(mPages.size()), lStyle);
    }

private:
    void Refuse(const std::string& pWhy) {
        ++mRefused;
        std::cout << "line " << mLine << ": " << pWhy << '\n';
    }

    void ReadLine(const std::string& pFirst, std::istringstream& pWords) {
        if (pFirst == "mesh")
            BeginMesh(RestOf(pWords));
        else if (pFirst == "object")
            BeginObject(pWords);
        else if (mBracket)
            ReadProperty(pFirst, pWords);
    }

    static std::string RestOf(std::istringstream& pWords) {
        std::string lRest;
        std::getline(pWords >> std::ws, lRest);
        return lRest;
    }

    // --- pages: the lines that follow belong to the one that the bracket is on ---------------------------------------

    void Begin(KLyrOwnedPage pPage) {
        mPage = *pPage;
        mPages.push_back(mPage);
        mOwned.push_front(std::move(pPage));
        mBracket.emplace(mPage);
    }

    void BeginMesh(const std::string& pName) {
        mBracket.reset();
        if (pName.empty())
            return Refuse("a mesh without a name; what follows is left out");
        if (FindMesh(pName).Valid())
            return Refuse("there is a mesh '" + pName + "' already; what follows is left out");
        Begin(KLyrOwnedPage::Create(pName.c_str(), eUNIDENTIFIED));
    }

    void BeginObject(std::istringstream& pWords) {
        std::string lMeshName;
        pWords >> lMeshName;
        const KLyrPropertyHandle lMesh = FindMesh(lMeshName);
        mBracket.reset();
        if (!lMesh.Valid())
            return Refuse("there is no mesh '" + lMeshName + "'; what follows is left out");
        Begin(KLyrOwnedPage::Create(lMesh));
        // Only the instance has this one. All others it sees in its mesh.
        if (!lyrAdd(mPage, "name", RestOf(pWords)).Valid())
            Refuse("no memory for a name");
    }

    // Instances show the name of their mesh, and come behind it.
    KLyrPropertyHandle FindMesh(const std::string& pName) const {
        for (const KLyrPropertyHandle& lPage : mPages)
            if (lPage.GetName() == pName)
                return lPage;
        return KLyrPropertyHandle();
    }

    // --- properties ------------------------------------------------------------------------------------------------

    // All is looked at before something is added: a line that is refused leaves nothing behind.
    void ReadProperty(const std::string& pPath, std::istringstream& pWords) {
        std::string lKind;
        pWords >> lKind;
        const KLyrPropertyHandle lValue = mKinds->Find(lKind.c_str(), true);
        if (pPath.front() == '/' || pPath.back() == '/' || pPath.find("//") != std::string::npos)
            Refuse("there is an empty name in '" + pPath + "'");
        else if (!lValue.Valid())
            Refuse("there is no kind of value '" + lKind + "'");
        else if (ReadValue(lValue, RestOf(pWords)))
            Store(FindOrAdd(pPath, lValue.GetType()), lValue);
    }

    // The kind's own property takes the text, which is converted to its type. No text is converted to a point.
    bool ReadValue(const KLyrPropertyHandle& pValue, const std::string& pText) {
        if (pValue.GetType() == eDOUBLE3)
            return ReadPoint(pValue, pText);
        const KString lText(pText.c_str());
        const KLyrReason lReason = lyrWhyRefused(pValue, eSTRING, eLyrWrite, &lText);
        if (!lReason.IsEmpty())
            Refuse(lReason.mText);
        return lReason.IsEmpty() && lyrSet(pValue, lText) == eLyrSetWritten;
    }

    bool ReadPoint(const KLyrPropertyHandle& pValue, const std::string& pText) {
        std::istringstream lWords(pText);
        lyrDouble3 lPoint;
        std::string lMore;
        const bool lIsRead = lWords >> lPoint[0] >> lPoint[1] >> lPoint[2] && !(lWords >> lMore);
        if (!lIsRead)
            Refuse("'" + pText + "' is not three numbers");
        return lIsRead && lyrSet(pValue, lPoint) == eLyrSetWritten;
    }

    // The property at the end of a path. What is missing on the way is added as groups, which have no value.
    KLyrPropertyHandle FindOrAdd(const std::string& pPath, ELyrType pType) {
        KLyrPropertyHandle lAt = mPage;
        std::istringstream lNames(pPath);
        for (std::string lName; lAt.Valid() && std::getline(lNames, lName, '/');) {
            const KLyrPropertyHandle lFound = lAt.Find(lName.c_str(), true);
            lAt = lFound.Valid() ? lFound : lyrAdd(lAt, lName.c_str(), lNames.eof() ? pType : eUNIDENTIFIED);
        }
        return lAt;
    }

    // A property that was there keeps its type. What an object shares with its mesh is not stored a second time.
    void Store(const KLyrPropertyHandle& pProperty, const KLyrPropertyHandle& pValue) {
        if (!pProperty.Valid())
            return Refuse("no memory for a property");
        const ELyrConversionVerdict lVerdict = lyrConversionVerdict(pValue.GetType(), pProperty.GetType());
        const KLyrReason lReason = lyrWhyRefused(pProperty, pValue.GetType(), eLyrWrite);
        if (!lReason.IsEmpty())
            return Refuse(lReason.mText);
        if (lVerdict == eLyrTruncates || lVerdict == eLyrWraps)
            std::cout << "line " << mLine << ": " << lyrVerdictText(lVerdict) << " as " << pProperty.GetName() << " is "
                      << lyrTypeName(pProperty.GetType()) << '\n';
        bool lIsStored = false;
        const bool lIsRead =
            lyrVisit(pValue, [&](const auto& pRead) { lIsStored = lyrSet(pProperty, pRead) != eLyrSetRefused; });
        if (!lIsRead || !lIsStored)
            Refuse("no memory for a value");
    }

    // A property of each kind of value, which takes one after the other.
    KLyrOwnedPage mKinds = KLyrOwnedPage::Create("kinds", eUNIDENTIFIED);
    // As they are read. They go the other way round: objects come behind their meshes and go before them.
    std::vector<KLyrPropertyHandle> mPages;
    std::forward_list<KLyrOwnedPage> mOwned;
    KLyrPropertyHandle mPage;
    // Around the lines of a page: a map of all names that it sees answers every lookup on it meanwhile. To make the map
    // is one look at the whole page, which a few lookups are not worth.
    std::optional<KLyrLookupBracket> mBracket;
    int mLine = 0;
    int mRefused = 0;
};

}  // namespace

int main() {
    std::istringstream lText(kText);
    Importer lImporter;
    const int lRefused = lImporter.Read(lText);
    std::cout << lRefused << " lines refused\n\n";
    return lImporter.Dump() ? 0 : 1;
}
