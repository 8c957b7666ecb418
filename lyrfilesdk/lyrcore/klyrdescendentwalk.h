#pragma once

// What a page family remembers of the last two walks over descendants; internal to the library.
//
// Descendants come in the order of their ids, wherever in the tree they are. So a step that does not find the next one
// among the next ids collects all of them, in k log n, and the steps after it look there. Two lists are kept, so that
// one walk may go on within another one or in turn with it. The numbers are in a block that grows with the pages, so
// that a walk allocates nothing; it takes 8 to 16 bytes a property.
//
// A third walk that wants a list first looks at as many ids in vain as the one that it takes the place of has: walks
// that take turns cost what looking at every id does, and not a new list a step.
//
// Adding properties and overriding them leaves what was collected valid: a new property has a larger id than all that
// were there, and is taken into a list when a walk comes to the list's end. So does removing a property without
// children, which is left out from then on. Removing one with children makes it a list of candidates. Everything else
// makes the next step collect anew.

#include <cstddef>

namespace lyrsdk {

class KLyrPropertyPage;

class KLyrDescendentWalk {
public:
    // Room for two lists of pCount ids in place of pOld, whose lists go on in it and which may be null; pOld itself
    // when there is no memory.
    static KLyrDescendentWalk* Enlarge(KLyrDescendentWalk* pOld, std::size_t pCount);
    static void Destroy(KLyrDescendentWalk* pWalk);

    // Turns to the list of this ancestor's descendants; false when there is none. What follows is about that list.
    bool TurnTo(const KLyrPropertyPage* pPage, int pAncestorId);
    void Forget() { mLists[0].mPage = mLists[1].mPage = nullptr; }
    // Lets go of a page that is destroyed.
    void PageGoes(const KLyrPropertyPage* pPage);
    void PropertyRemoved(int pId);

    // Collects the descendants of pAncestorId, those with ids below pEnd, and turns to them. False when there is not
    // room for all.
    bool Collect(const KLyrPropertyPage* pPage, int pAncestorId, int pEnd);
    // Whether all that is in the list are descendants, and whether all of them still exist, too.
    bool IsExact() const { return mList->mState != eCandidates; }
    bool IsWhole() const { return mList->mState == eWhole; }
    bool Has(int pId) const;
    // Takes in the property behind the list, which is there, or passes over it when it is no descendant. False when
    // there is no room for it.
    bool Take(int pId, bool pIsDescendent);
    // The id up to which, without it, the list goes.
    int GetEnd() const { return mList->mEnd; }
    int GetCount() const { return mList->mCount; }
    // Counts an id that a walk without a list looked at in vain. True when collecting has become worth its cost.
    bool IsDueAfterMiss();
    // The smallest id in the list that is larger than pId, or -1. O(log n), and O(1) for the one that was given last.
    int NextBehind(int pId);
    // What NextBehind gave is no descendant any more. One run of such ids is left out at once from then on, so that
    // removing the first descendant again and again does not meet all that went before.
    void LastIsGone();

private:
    enum EState { eWhole, eSomeGone, eCandidates };
    struct List {
        const KLyrPropertyPage* mPage = nullptr;  // null for no list
        int mAncestorId = -1;
        EState mState = eCandidates;
        int mEnd = 0;
        int mCount = 0;
        int mPosition = 0;  // of the answer that was given last
        int mGoneFrom = 0;  // the run of ids that are left out
        int mGoneTo = 0;
        int* mIds = nullptr;
    };

    // The one to take the place of.
    List& OtherList() { return mList == mLists ? mLists[1] : mLists[0]; }

    List mLists[2];
    List* mList = mLists;
    int mMisses = 0;
    int mCapacity = 0;  // of each
};

}  // namespace lyrsdk
