#include <climits>
#include <new>

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// Adding a property that is typed by a page: the page's properties are copied below it, depth first.

namespace lyrsdk {
namespace {

// The tree of a type page as it stands when its expansion begins, linked so that no step has to search for children.
// Children come behind their parent and in ascending order of id, as in every walk over a page.
class TypeTree {
public:
    // Nodes are named by their index; -1 is none.
    struct Node {
        int mId;
        int mFirstChild;
        int mLastChild;
        int mNextSibling;
    };

    // The tree of pPage without the ids from pEnd on; null when there is no memory.
    static TypeTree* Create(KLyrPropertyPage* pPage, long long pEnd) {
        TypeTree* lTree = LyrSdkNew<TypeTree>(pPage);
        if (lTree && !lTree->Build(pEnd)) {
            LyrSdkDelete(lTree);
            lTree = nullptr;
        }
        return lTree;
    }

    explicit TypeTree(KLyrPropertyPage* pPage) : mPage(pPage) {}
    ~TypeTree() { LyrSdkFree(mNodes); }
    TypeTree(const TypeTree&) = delete;
    TypeTree& operator=(const TypeTree&) = delete;

    KLyrPropertyPage* Page() const { return mPage; }
    const Node& At(int pNode) const { return mNodes[pNode]; }

private:
    // Node 0 is the root, whether the page has an entry for it or not.
    bool Build(long long pEnd) {
        std::size_t lCount = 1;
        for (int lId = 0; (lId = Next(lId, pEnd)) != -1;)
            ++lCount;
        if (lCount > INT_MAX || lCount > static_cast<std::size_t>(-1) / sizeof(Node))
            return false;  // LCOV_EXCL_LINE: takes more properties than memory holds
        mNodes = static_cast<Node*>(LyrSdkMalloc(sizeof(Node) * lCount));
        if (!mNodes)
            return false;
        ::new (&mNodes[0]) Node{0, -1, -1, -1};
        int lNode = 1;
        for (int lId = 0; (lId = Next(lId, pEnd)) != -1; ++lNode) {
            ::new (&mNodes[lNode]) Node{lId, -1, -1, -1};
            const int lParent = Find(mPage->GetParent(lId), lNode);
            if (lParent >= 0)
                Append(mNodes[lParent], lNode);
        }
        return true;
    }

    int Next(int pId, long long pEnd) const {
        const int lId = mPage->GetMinimumPropertyIdAndEntry(pId);
        return lId < pEnd ? lId : -1;
    }

    // The node of pId among the first pCount, which are in order; -1 when there is none.
    int Find(int pId, int pCount) const {
        int lLow = 0;
        for (int lHigh = pCount; lHigh - lLow > 1;) {
            const int lMiddle = lLow + (lHigh - lLow) / 2;
            (mNodes[lMiddle].mId <= pId ? lLow : lHigh) = lMiddle;
        }
        return mNodes[lLow].mId == pId ? lLow : -1;
    }

    void Append(Node& pParent, int pChild) {
        (pParent.mLastChild < 0 ? pParent.mFirstChild : mNodes[pParent.mLastChild].mNextSibling) = pChild;
        pParent.mLastChild = pChild;
    }

    KLyrPropertyPage* mPage;
    Node* mNodes = nullptr;
};

}  // namespace

// One level of an expansion: the children of one property of a type page that are still to be copied. The levels are
// kept on the heap, because a tree may be deeper than the stack. A page that is being expanded is marked with the level
// at the bottom, so that it is known at once; what a report's handler adds meanwhile is another expansion.
class KLyrPropertyPage::ExpansionLevel {
public:
    using Level = ExpansionLevel;

    // The first level of pTree, which it owns from then on.
    ExpansionLevel(Level* pBelow, TypeTree* pTree, int pCopyParent)
        : mBelow(pBelow),
          mBottom(pBelow ? pBelow->mBottom : this),
          mTree(pTree),
          mNode(pTree->At(0).mFirstChild),
          mCopyParent(pCopyParent),
          mOwnsTree(true),
          mMarkBefore(Page()->mExpansion) {
        Page()->mExpansion = mBottom;
    }
    // The level of the children of node pOf, within the tree of pBelow.
    ExpansionLevel(Level* pBelow, int pOf, int pCopyParent)
        : mBelow(pBelow),
          mBottom(pBelow->mBottom),
          mTree(pBelow->mTree),
          mNode(mTree->At(pOf).mFirstChild),
          mCopyParent(pCopyParent) {}
    ~ExpansionLevel() {
        if (!mOwnsTree)
            return;
        Page()->mExpansion = mMarkBefore;
        LyrSdkDelete(mTree);
    }
    ExpansionLevel(const ExpansionLevel&) = delete;
    ExpansionLevel& operator=(const ExpansionLevel&) = delete;

    // Opens the tree of a type page on top of pBelow; null when there is no memory.
    static Level* Open(Level* pBelow, KLyrPropertyPage* pPage, long long pEnd, int pCopyParent) {
        TypeTree* lTree = TypeTree::Create(pPage, pEnd);
        Level* lLevel = lTree ? LyrSdkNew<Level>(pBelow, lTree, pCopyParent) : nullptr;
        if (!lLevel)
            LyrSdkDelete(lTree);
        return lLevel;
    }

    Level* Below() const { return mBelow; }
    KLyrPropertyPage* Page() const { return mTree->Page(); }
    int CopyParent() const { return mCopyParent; }
    // The node to copy next, and steps on; -1 when there is none.
    int TakeNode() {
        const int lNode = mNode;
        if (lNode >= 0)
            mNode = mTree->At(lNode).mNextSibling;
        return lNode;
    }
    int IdOf(int pNode) const { return mTree->At(pNode).mId; }
    bool HasChildren(int pNode) const { return mTree->At(pNode).mFirstChild >= 0; }

    // Whether pPage is being expanded here or below.
    bool Expands(const KLyrPropertyPage* pPage) const { return pPage->mExpansion == mBottom; }

private:
    Level* mBelow;
    const Level* mBottom;
    TypeTree* mTree;
    int mNode;
    int mCopyParent;
    bool mOwnsTree = false;
    const Level* mMarkBefore = nullptr;
};

namespace {

bool RefuseRecursion() {
    LYRSDK_REPORT("lyrfilesdk/lyrcore/klyrpropertypage", __LINE__, "Recursive type info");
    return true;
}

}  // namespace

// A copy of property pFromId of page pFrom, without its children.
int KLyrPropertyPage::AddClone(int pParentId, const KLyrPropertyPage* pFrom, int pFromId) {
    const KLyrPropertyInfo* lFromInfo = pFrom->GetPropertyItem<KLyrPropertyInfo>(nullptr, pFromId);
    const KLyrPropertyValue* lFromValue = pFrom->GetPropertyItem<KLyrPropertyValue>(nullptr, pFromId);
    const KLyrPropertyConnect* lFromConnect = pFrom->GetPropertyItem<KLyrPropertyConnect>(nullptr, pFromId);
    KLyrPropertyInfo* lInfo = lFromInfo ? lFromInfo->Clone(this) : nullptr;
    KLyrPropertyValue* lValue = lFromValue ? lFromValue->Clone(this) : nullptr;
    KLyrPropertyConnect* lConnect = lFromConnect ? lFromConnect->Clone(this) : nullptr;
    if (lConnect)
        lConnect->mId = mIdGenerator->PeekNextId();

    const bool lWhole = (lInfo || !lFromInfo) && (lValue || !lFromValue) && (lConnect || !lFromConnect);
    const int lId = lWhole ? AddEntry(pParentId, lInfo, lValue, lConnect) : -1;
    if (lId < 0) {
        detail::Discard(lInfo);
        detail::Discard(lValue);
        detail::Discard(lConnect);
    }
    return lId;
}

// Copies the properties of pTypeInfo under the new property pId. A typed child is expanded from its own type page, so
// what its type page holds below it is left out; any other child brings its own children along. Pages of this family
// may show the copies while they are made, so ids from pId on are not taken as theirs.
bool KLyrPropertyPage::Expand(int pId, KLyrPropertyPage* pTypeInfo) {
    using Level = ExpansionLevel;
    if (pTypeInfo == this)
        return RefuseRecursion();
    const auto lEndOf = [this, pId](const KLyrPropertyPage* pPage) {
        return pPage->mIdGenerator == mIdGenerator ? pId : INT_MAX + 1ll;
    };
    Level* lTop = Level::Open(nullptr, pTypeInfo, lEndOf(pTypeInfo), pId);
    bool lDone = lTop != nullptr;
    while (lTop) {
        const int lNode = lDone ? lTop->TakeNode() : -1;
        if (lNode < 0) {
            Level* lBelow = lTop->Below();
            LyrSdkDelete(lTop);
            lTop = lBelow;
            continue;
        }
        const int lCopy = AddClone(lTop->CopyParent(), lTop->Page(), lTop->IdOf(lNode));
        KLyrPropertyPage* lType = lTop->Page()->GetTypeInfo(lTop->IdOf(lNode));
        Level* lNext = lTop;
        if (lCopy < 0)
            lNext = nullptr;
        else if (lType && (lType == this || lTop->Expands(lType)))
            RefuseRecursion();
        else if (lType)
            lNext = Level::Open(lTop, lType, lEndOf(lType), lCopy);
        else if (lTop->HasChildren(lNode))
            lNext = LyrSdkNew<Level>(lTop, lNode, lCopy);
        lDone = lNext != nullptr;
        lTop = lNext ? lNext : lTop;
    }
    return lDone;
}

}  // namespace lyrsdk
