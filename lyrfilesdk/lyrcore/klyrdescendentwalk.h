#pragma once

// What a page family remembers of the last walk over descendants; internal to the library.
//
// Descendants come in the order of their ids, wherever in the tree they are. So a step that does not find the next one
// among the next ids collects all of them, in k log n, and the steps after it look there. The numbers are kept in a
// block that grows with the pages, so that a walk allocates nothing.
//
// There is one list for all. When another walk wants it, that one first looks at as many ids in vain as the list has:
// walks that take turns cost what looking at every id does, and not a new list a step.
//
// Adding properties and overriding them leaves what was collected valid: a new property has a larger id than all that
// were there. Removing one makes it a list of candidates. Everything else makes the next step collect anew.

#include <cstddef>

namespace lyrsdk {

class KLyrPropertyPage;

class KLyrDescendentWalk {
public:
    // Room for pCount ids in place of pOld, which may be null; pOld itself when there is no memory.
    static KLyrDescendentWalk* Enlarge(KLyrDescendentWalk* pOld, std::size_t pCount);
    static void Destroy(KLyrDescendentWalk* pWalk);

    bool IsOf(const KLyrPropertyPage* pPage, int pAncestorId) const {
        return mPage == pPage && mAncestorId == pAncestorId;
    }
    void Forget() { mPage = nullptr; }
    void PropertyRemoved() { mExact = false; }
    bool IsExact() const { return mExact; }

    // Collects the descendants of pAncestorId, those with ids below pEnd. False when there is not room for all.
    bool Collect(const KLyrPropertyPage* pPage, int pAncestorId, int pEnd);
    // The id up to which, without it, the list goes.
    int GetEnd() const { return mEnd; }
    int GetCount() const { return mCount; }
    // Counts an id that was looked at in vain. True when collecting has become worth its cost.
    bool IsDueAfterMiss();
    // The smallest id in the list that is larger than pId, or -1. O(log n), and O(1) for the one that was given last.
    int NextBehind(int pId);
    // What NextBehind gave is no descendant any more. One run of such ids is left out at once from then on, so that
    // removing the first descendant again and again does not meet all that went before.
    void LastIsGone();

private:
    const KLyrPropertyPage* mPage = nullptr;
    int mAncestorId = -1;
    bool mExact = false;
    int mEnd = 0;
    int mCount = 0;
    int mPosition = 0;  // of the answer that was given last
    int mGoneFrom = 0;  // the run of ids that are left out
    int mGoneTo = 0;
    int mMisses = 0;
    int mCapacity = 0;
    int* mIds = nullptr;
};

}  // namespace lyrsdk
