#pragma once

// What a dump goes through: pages with their numbers, properties depth first, and the ends of connections. Internal to
// the kit.

#include "lyrfilesdk/components/kbaselib/klib/kmap.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrkit/klyrkititems.h"

namespace lyrsdk {
namespace detail {

inline bool Exists(const KLyrPropertyHandle& pProperty) {
    return pProperty.GetPage() && pProperty.GetPage()->GetPropertyEntry(pProperty.GetId());
}

inline KLyrPropertyPage* TopOf(KLyrPropertyPage* pPage) {
    while (pPage && pPage->GetInstanceOf())
        pPage = pPage->GetInstanceOf();
    return pPage;
}

// --- numbers -------------------------------------------------------------------------------------------------------

// Pages in the order in which they come up. The order of their addresses does not show.
class PageNumbers {
public:
    // -1 when there is no memory.
    int Of(const KLyrPropertyPage* pPage) {
        const auto lRecord = mNumbers.Insert(pPage, mNumbers.GetSize()).mFirst;
        mComplete = mComplete && lRecord;
        return lRecord ? lRecord->GetValue() : -1;
    }
    // Without giving it one: -1 when it has none.
    int Find(const KLyrPropertyPage* pPage) const {
        const auto lRecord = mNumbers.Find(pPage);
        return lRecord ? lRecord->GetValue() : -1;
    }
    int GetCount() const { return mNumbers.GetSize(); }
    bool IsComplete() const { return mComplete; }

private:
    KMap<const KLyrPropertyPage*, int, KLyrLessCompare<const KLyrPropertyPage*>, KBaseAllocator> mNumbers;
    bool mComplete = true;
};

// The families that some pages belong to. Those without a number for want of memory are left out.
class Families {
public:
    // Numbers all of their pages.
    Families(const KLyrPropertyHandle* pPages, int pCount, PageNumbers& pNumbers)
        : mPages(pPages), mCount(pPages ? pCount : 0), mNumbers(pNumbers) {
        for (int i = 0; i < mCount; ++i) {
            KLyrPropertyPage* lTop = TopOf(mPages[i].GetPage());
            if (!lTop || pNumbers.Find(lTop) >= 0)
                continue;
            for (PagesBelow lPages(lTop); lPages; lPages.Next())
                pNumbers.Of(lPages.Page());
        }
        mPageCount = pNumbers.GetCount();
    }

    // Pages up to this number belong to them.
    int GetPageCount() const { return mPageCount; }
    bool Has(const KLyrPropertyPage* pPage) const {
        const int lNumber = mNumbers.Find(pPage);
        return lNumber >= 0 && lNumber < mPageCount;
    }

    // pVisitor(page) for each page once, in the order of the numbers.
    template <typename Visitor>
    void Visit(Visitor pVisitor) const {
        int lShown = 0;
        for (int i = 0; i < mCount; ++i) {
            KLyrPropertyPage* lTop = TopOf(mPages[i].GetPage());
            if (!lTop || mNumbers.Find(lTop) != lShown)
                continue;
            for (PagesBelow lPages(lTop); lPages; lPages.Next()) {
                pVisitor(lPages.Page());
                ++lShown;
            }
        }
    }

private:
    const KLyrPropertyHandle* mPages;
    int mCount;
    const PageNumbers& mNumbers;
    int mPageCount = 0;
};

// --- the walk ------------------------------------------------------------------------------------------------------

// pVisitor(id, depth) for a property and all below it, depth first. Children have larger ids than their parents here,
// so that the walk ends whatever the parent ids are.
template <typename Visitor>
void VisitTree(const KLyrPropertyPage* pPage, int pTop, Visitor pVisitor) {
    int lDepth = 0;
    for (int lId = pTop; lId != -1;) {
        pVisitor(lId, lDepth);
        int lNext = pPage->GetChild(lId);
        if (lNext != -1)
            ++lDepth;
        while (lNext == -1 && lId != pTop) {
            lNext = pPage->GetSibling(lId);
            if (lNext == -1) {
                lId = pPage->GetParent(lId);
                --lDepth;
            }
        }
        lId = lNext;
    }
}

// No tree of the page that begins with another property has this one.
inline bool BeginsTree(const KLyrPropertyPage* pPage, int pId) {
    const int lParent = pPage->GetParent(pId);
    return lParent < 0 || lParent >= pId || !pPage->GetPropertyEntry(lParent);
}

template <typename Visitor>
void VisitPage(const KLyrPropertyPage* pPage, Visitor pVisitor) {
    if (pPage->GetPropertyEntry(0))
        VisitTree(pPage, 0, pVisitor);
    for (int lId = 0; (lId = pPage->GetMinimumPropertyIdAndEntry(lId)) != -1;) {
        if (BeginsTree(pPage, lId))
            VisitTree(pPage, lId, pVisitor);
    }
}

template <typename Visitor>
void VisitBelow(const KLyrPropertyHandle& pFrom, Visitor pVisitor) {
    if (pFrom.GetId() == 0)
        VisitPage(pFrom.GetPage(), pVisitor);
    else
        VisitTree(pFrom.GetPage(), pFrom.GetId(), pVisitor);
}

// --- connections ---------------------------------------------------------------------------------------------------

// One end of a connection of a property; without a page when that is gone.
struct End {
    KLyrPropertyHandle mProperty;
    kLyrConnectionType mType;
};

inline End SrcOf(KLyrPropertyConnect& pItem, int pIndex) {
    const KLyrPropertyConnect* lPeer = pItem.GetSrc(nullptr, pIndex);
    return {lPeer ? KLyrPropertyHandle(lPeer->GetPage(), lPeer->GetPropertyId()) : KLyrPropertyHandle(),
            pItem.GetConnectionPoint().GetSrcType(pIndex)};
}

inline End DstOf(KLyrPropertyConnect& pItem, int pIndex) {
    const KLyrPropertyConnect* lPeer = pItem.GetDst(nullptr, pIndex);
    return {lPeer ? KLyrPropertyHandle(lPeer->GetPage(), lPeer->GetPropertyId()) : KLyrPropertyHandle(),
            pItem.GetConnectionPoint().GetDstType(pIndex)};
}

}  // namespace detail
}  // namespace lyrsdk
