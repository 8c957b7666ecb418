// Names, paths, separators and case, inside create-or-find brackets and outside, against a plain lookup.
//
// An input is a sequence of steps that add, remove and look for properties of one page family.

#include <algorithm>
#include <map>
#include <utility>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using lyrfuzz::Fail;
using lyrfuzz::Input;
using lyrfuzz::Require;
using namespace lyrsdk;

constexpr std::size_t kMostPages = 4;
constexpr int kMostProperties = 60;
constexpr int kTypes = 2;

struct Property {
    // The page that holds it; -1 when it was removed.
    int mPage;
    int mParent;
    std::string mName;
    // Which page types it, -1: none.
    int mType;
};

struct Page {
    KLyrPropertyPage* mLibrary;
    int mInstanceOf;
    bool mOpen = false;
    // In an open bracket, the first property of each name below each parent.
    std::map<std::pair<int, std::string>, int> mNames;
};

// How a path is given.
struct Query {
    std::string mPath;
    std::string mSeparators;
    bool mHasSeparators;
    bool mCase;
    int mType;
};

std::string Folded(std::string pText) {
    for (char& lChar : pText)
        if (lChar >= 'A' && lChar <= 'Z')
            lChar = static_cast<char>(lChar - 'A' + 'a');
    return pText;
}

// A text ends at its first zero byte.
std::string Name(Input& pInput) {
    const std::uint8_t lSize = pInput.Byte();
    const std::string lText = pInput.Text(lSize < 250 ? lSize % 24u : lSize);
    return lText.substr(0, lText.find('\0'));
}

class Family {
public:
    Family() {
        for (KLyrPropertyPage*& lType : mTypes)
            lType = KLyrPropertyPage::Create("type", eINTEGER1);
        mPages.push_back({KLyrPropertyPage::Create("root", eINTEGER1), -1, false, {}});
        mProperties.push_back({0, -1, "root", -1});
    }
    ~Family() {
        // The instances first: they have nothing of their own to lose.
        for (std::size_t i = mPages.size(); i-- > 0;)
            mPages[i].mLibrary->Destroy();
        for (KLyrPropertyPage* lType : mTypes)
            lType->Destroy();
    }
    Family(const Family&) = delete;
    Family& operator=(const Family&) = delete;

    void Step(Input& pInput) {
        switch (pInput.Byte() % 10) {
            case 0:
            case 1:
            case 2:
                return Add(pInput);
            case 3:
                return Remove(pInput);
            case 4:
                return Begin(pInput);
            case 5:
                return End(pInput);
            case 6:
                return CreateInstance(pInput);
            case 7:
                return Label(pInput);
            default:
                return Look(pInput);
        }
    }

    void CheckAll() const {
        for (int lPage = 0; lPage < static_cast<int>(mPages.size()); ++lPage)
            for (int lId = 0; lId < static_cast<int>(mProperties.size()); ++lId)
                CheckOne(lPage, lId);
    }

private:
    int PageOf(Input& pInput) const { return static_cast<int>(pInput.Byte() % mPages.size()); }
    // Now and then one that there is not.
    int IdOf(Input& pInput) const { return static_cast<int>(pInput.Byte() % (mProperties.size() + 2)) - 1; }
    const Property& At(int pId) const { return mProperties[static_cast<std::size_t>(pId)]; }
    Page& PageAt(int pPage) { return mPages[static_cast<std::size_t>(pPage)]; }
    const Page& PageAt(int pPage) const { return mPages[static_cast<std::size_t>(pPage)]; }

    bool Sees(int pPage, int pId) const {
        if (pId < 0 || pId >= static_cast<int>(mProperties.size()) || At(pId).mPage < 0)
            return false;
        while (pPage >= 0 && pPage != At(pId).mPage)
            pPage = PageAt(pPage).mInstanceOf;
        return pPage >= 0;
    }

    void Add(Input& pInput) {
        const int lPage = PageOf(pInput);
        const int lParent = IdOf(pInput);
        const int lType = pInput.Byte() % (kTypes + 1) - 1;
        const std::string lName = Name(pInput);
        if (static_cast<int>(mProperties.size()) >= kMostProperties)
            return;
        KLyrPropertyPage* lLibrary = PageAt(lPage).mLibrary;
        const int lId = lType < 0 ? lLibrary->Add(lParent, lName.c_str(), eDOUBLE1)
                                  : lLibrary->Add(lParent, lName.c_str(), mTypes[lType]);
        Require(lId == static_cast<int>(mProperties.size()), "a new property has the wrong id");
        mProperties.push_back({lPage, lParent, lName, lType});
        if (PageAt(lPage).mOpen)
            PageAt(lPage).mNames.emplace(std::make_pair(lParent, lName), lId);
    }

    void Remove(Input& pInput) {
        const int lPage = PageOf(pInput);
        const int lId = IdOf(pInput);
        // The root stays, so that a page keeps something to begin a bracket with.
        if (lId == 0)
            return;
        const bool lOwn = Sees(lPage, lId) && At(lId).mPage == lPage;
        Require(PageAt(lPage).mLibrary->RemoveOwnEntry(lId) == lOwn, "a property is removed wrong");
        if (lOwn)
            mProperties[static_cast<std::size_t>(lId)].mPage = -1;
    }

    void Begin(Input& pInput) {
        const int lNumber = PageOf(pInput);
        Page& lPage = PageAt(lNumber);
        lPage.mLibrary->BeginCreateOrFindProperty();
        if (lPage.mOpen)
            return;
        lPage.mOpen = true;
        for (int lId = 0; lId < static_cast<int>(mProperties.size()); ++lId)
            if (Sees(lNumber, lId))
                lPage.mNames.emplace(std::make_pair(At(lId).mParent, At(lId).mName), lId);
    }

    void End(Input& pInput) {
        Page& lPage = PageAt(PageOf(pInput));
        lPage.mLibrary->EndCreateOrFindProperty();
        lPage.mOpen = false;
        lPage.mNames.clear();
    }

    void CreateInstance(Input& pInput) {
        const int lOf = PageOf(pInput);
        if (mPages.size() < kMostPages)
            mPages.push_back({KLyrPropertyPage::Create(PageAt(lOf).mLibrary), lOf, false, {}});
    }

    // Texts come back as they were given; the label may be the property's own name.
    void Label(Input& pInput) {
        const int lPage = PageOf(pInput);
        const int lId = IdOf(pInput);
        KLyrPropertyHandle lHandle(PageAt(lPage).mLibrary, lId);
        const std::string lText = Name(pInput);
        const bool lOwnName = pInput.Byte() % 4 == 0;
        const bool lSeen = Sees(lPage, lId);
        Require(lHandle.SetLabel(lOwnName ? lHandle.GetName() : lText.c_str()) == lSeen, "a label is set wrong");
        if (lSeen)
            Require((lOwnName ? At(lId).mName : lText) == lHandle.GetLabel(), "a label is another text");
    }

    // The names from below pFrom down to a property, joined: a path that leads there if no name has a separator in it.
    std::string PathTo(int pFrom, int pId, const std::string& pSeparators) const {
        std::string lPath;
        for (int lSteps = 0; lSteps < 8 && pId >= 0 && pId < static_cast<int>(mProperties.size()); ++lSteps) {
            lPath.insert(0, lPath.empty() ? At(pId).mName : At(pId).mName + pSeparators.substr(0, 1));
            pId = At(pId).mParent;
            if (pId == pFrom)
                break;
        }
        return lPath;
    }

    void Look(Input& pInput) {
        const int lPage = PageOf(pInput);
        const int lId = IdOf(pInput);
        const std::uint8_t lFlags = pInput.Byte();
        Query lQuery;
        lQuery.mCase = lFlags & 1;
        lQuery.mType = lFlags / 2 % (kTypes + 1) - 1;
        lQuery.mHasSeparators = lFlags & 32;
        if (lQuery.mHasSeparators)
            lQuery.mSeparators = pInput.Text(lFlags / 64u);
        lQuery.mSeparators = lQuery.mSeparators.substr(0, lQuery.mSeparators.find('\0'));
        lQuery.mPath = lFlags & 16 ? PathTo(lId, IdOf(pInput), lQuery.mSeparators) : Name(pInput);
        Compare(lPage, lId, lQuery);
        // The same in the other case.
        for (char& lChar : lQuery.mPath)
            if ((lChar >= 'A' && lChar <= 'Z') || (lChar >= 'a' && lChar <= 'z'))
                lChar = static_cast<char>(lChar ^ 0x20);
        Compare(lPage, lId, lQuery);
    }

    void Compare(int pPage, int pId, const Query& pQuery) const {
        const KLyrPropertyPage* lLibrary = PageAt(pPage).mLibrary;
        KLyrPropertyPage* lType = pQuery.mType < 0 ? nullptr : mTypes[pQuery.mType];
        const char* lSeparators = pQuery.mHasSeparators ? pQuery.mSeparators.c_str() : nullptr;
        const int lExpected = Find(pPage, pId, pQuery, 0);
        const int lFound = lLibrary->Find(pId, pQuery.mPath.c_str(), lType, pQuery.mCase, lSeparators);
        if (lFound != lExpected)
            Fail("\"" + pQuery.mPath + "\" below " + std::to_string(pId) + " of page " + std::to_string(pPage) +
                 ": found " + std::to_string(lFound) + ", not " + std::to_string(lExpected));
        const int lFast = lLibrary->FastFind(pId, pQuery.mPath.c_str(), lType, pQuery.mCase);
        Require(lFast == FindName(pPage, pId, pQuery.mPath, pQuery.mType, pQuery.mCase), "a name is found wrong");
    }

    int Find(int pPage, int pId, const Query& pQuery, std::size_t pFrom) const {
        const std::size_t lEnd =
            pQuery.mHasSeparators ? pQuery.mPath.find_first_of(pQuery.mSeparators, pFrom) : std::string::npos;
        const std::string lName = pQuery.mPath.substr(pFrom, lEnd - pFrom);
        if (lEnd == std::string::npos)
            return FindName(pPage, pId, lName, pQuery.mType, pQuery.mCase);
        const int lChild = FindName(pPage, pId, lName, -1, pQuery.mCase);
        return lChild == -1 ? -1 : Find(pPage, lChild, pQuery, lEnd + 1);
    }

    int FindName(int pPage, int pId, const std::string& pName, int pType, bool pCase) const {
        const Page& lPage = PageAt(pPage);
        if (lPage.mOpen) {
            const auto lHit = lPage.mNames.find({pId, pName});
            if (lHit == lPage.mNames.end())
                return -1;
            if (Sees(pPage, lHit->second) && (pType < 0 || At(lHit->second).mType == pType))
                return lHit->second;
        }
        // Nothing is a child of the root's parent.
        for (int lId = 1; pId != -1 && lId < static_cast<int>(mProperties.size()); ++lId) {
            const Property& lProperty = At(lId);
            const bool lIs = pCase ? lProperty.mName == pName : Folded(lProperty.mName) == Folded(pName);
            // Children have greater ids than their parent.
            if (Sees(pPage, lId) && lId > pId && lProperty.mParent == pId && lIs &&
                (pType < 0 || lProperty.mType == pType))
                return lId;
        }
        return -1;
    }

    void CheckOne(int pPage, int pId) const {
        const KLyrPropertyHandle lHandle(PageAt(pPage).mLibrary, pId);
        const bool lSeen = Sees(pPage, pId);
        Require((lSeen ? At(pId).mName : "") == lHandle.GetName(), "a name is another text");
        Require(lHandle.GetParent().GetId() == (lSeen ? At(pId).mParent : -1), "a parent is another property");
        if (!lSeen)
            return;
        Query lQuery{At(pId).mName, "", false, true, -1};
        Compare(pPage, At(pId).mParent, lQuery);
        // Its own stored text.
        Require(PageAt(pPage).mLibrary->FastFind(At(pId).mParent, lHandle.GetName(), nullptr, false) ==
                    FindName(pPage, At(pId).mParent, At(pId).mName, -1, false),
                "a name is found wrong by its own text");
    }

    KLyrPropertyPage* mTypes[kTypes] = {};
    std::vector<Page> mPages;
    // By id.
    std::vector<Property> mProperties;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t pSize) {
    constexpr int kMostSteps = 100;
    const lyrfuzz::LeakCheck lLeaks;
    Input lInput(pData, pSize);
    Family lFamily;
    for (int i = 0; i < kMostSteps && !lInput.AtEnd(); ++i)
        lFamily.Step(lInput);
    lFamily.CheckAll();
    return 0;
}
