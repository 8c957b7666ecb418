#pragma once

// Properties to walk over with range-for.
//
//     for (const KLyrPropertyHandle& lChild : lyrChildren(lProperty))
//         Show(lChild);
//
// A range is a plain value: it takes no memory and keeps nothing alive. It is empty for a handle without a page and for
// an id that does not exist. Each begin() starts anew. Iterators are input iterators.
//
// What may change meanwhile. A step asks the page where it goes on, and remembers no more than where it stands:
//   - The property or connection that the walk stands at may go, and for all but lyrAncestors others may too. None
//     that stays is left out. (A disconnected peer in front of the place where a walk over peers stands moves the
//     rest up: one is left out for each.)
//   - What is added is met when it comes behind the place: larger ids, later connections and instances.
//   - The page that lyrInstances stands at may be destroyed. Its last one comes in its place and is met there.
//   - The page that the range was made of has to stay, and for lyrAllInstances every page.
//
// Cost of a step: that of the page's step (see klyrpropertypage.h); after the place was removed, lyrChildren looks at
// the ids up to the next child. lyrOwnProperties looks at every id of the page. The instances of a page are a constant
// step each, those of all levels too up to kLyrInstanceLevels of them, below that a search among the siblings.

#include <cstddef>
#include <iterator>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// The levels of instances that are walked without a search.
inline constexpr int kLyrInstanceLevels = 12;

namespace detail {

// The walks: First and Next give a handle that is not valid behind the last one.

class LYRSDK_API ChildWalk {
public:
    explicit ChildWalk(const KLyrPropertyHandle& pParent) : mParent(pParent) {}
    KLyrPropertyHandle First();
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    KLyrPropertyHandle mParent;
};

class LYRSDK_API DescendentWalk {
public:
    explicit DescendentWalk(const KLyrPropertyHandle& pAncestor) : mAncestor(pAncestor) {}
    KLyrPropertyHandle First();
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom) { return mAncestor.GetNextDescendent(pFrom); }

private:
    KLyrPropertyHandle mAncestor;
};

class LYRSDK_API AncestorWalk {
public:
    explicit AncestorWalk(const KLyrPropertyHandle& pProperty) : mProperty(pProperty) {}
    KLyrPropertyHandle First() { return Next(mProperty); }
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    KLyrPropertyHandle mProperty;
    // Parents may run in a circle: a mark is left at growing distances, and meeting it ends the walk.
    int mMark = -1;
    unsigned mStepsLeft = 1;
    unsigned mStride = 1;
};

class LYRSDK_API PropertyWalk {
public:
    PropertyWalk(const KLyrPropertyHandle& pPage, bool pOwn) : mPage(pPage.GetPage()), mOwn(pOwn) {}
    KLyrPropertyHandle First();
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    bool IsMeant(int pId) const;

    KLyrPropertyPage* mPage;
    bool mOwn;
};

class LYRSDK_API InstanceWalk {
public:
    explicit InstanceWalk(const KLyrPropertyHandle& pProperty) : mProperty(pProperty) {}
    KLyrPropertyHandle First() { return mProperty.GetPage() && HasProperty() ? At(0) : KLyrPropertyHandle(); }
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    bool HasProperty() const { return mProperty.GetPage()->GetPropertyEntry(mProperty.GetId()) != nullptr; }
    KLyrPropertyHandle At(int pIndex);

    KLyrPropertyHandle mProperty;
    int mIndex = 0;
};

class LYRSDK_API AllInstancesWalk {
public:
    explicit AllInstancesWalk(const KLyrPropertyHandle& pProperty) : mProperty(pProperty) {}
    KLyrPropertyHandle First();
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    KLyrPropertyPage* Enter(KLyrPropertyPage* pPage, int pIndex);

    KLyrPropertyHandle mProperty;
    // How deep the walk stands, and where on the first levels.
    int mLevel = 0;
    int mIndices[kLyrInstanceLevels] = {};
};

// The other ends of a property's connections.
class LYRSDK_API PeerWalk {
public:
    PeerWalk(const KLyrPropertyHandle& pProperty, KLyrConnectionPointFilter* pFilter, bool pSources)
        : mProperty(pProperty), mFilter(pFilter), mSources(pSources) {}
    KLyrPropertyHandle First() { return At(0); }
    KLyrPropertyHandle Next(const KLyrPropertyHandle& pFrom);

private:
    KLyrPropertyHandle At(int pIndex);

    KLyrPropertyHandle mProperty;
    KLyrConnectionPointFilter* mFilter;
    bool mSources;
    int mIndex = 0;
};

}  // namespace detail

// A range of handles. Made by the functions below.
template <typename Walk>
class KLyrHandleRange {
public:
    // A place in the walk.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;  // an input iterator
        using value_type = KLyrPropertyHandle;              // a handle
        using difference_type = std::ptrdiff_t;             // of no use
        using pointer = const KLyrPropertyHandle*;          // to a handle
        using reference = const KLyrPropertyHandle&;        // to a handle

        // Begins the walk, or stands at its end.
        Iterator(const Walk& pWalk, bool pAtEnd) : mWalk(pWalk) {
            if (!pAtEnd)
                Put(mWalk.First());
        }
        // The property that the walk stands at. Not to be used at the end.
        const KLyrPropertyHandle& operator*() const { return mHandle; }
        const KLyrPropertyHandle* operator->() const { return &mHandle; }
        Iterator& operator++() {
            if (mHandle.Valid())
                Put(mWalk.Next(mHandle));
            return *this;
        }
        Iterator operator++(int) {
            const Iterator lBefore = *this;
            ++*this;
            return lBefore;
        }
        // Equal at the same property, and at the end.
        bool operator==(const Iterator& pOther) const { return mHandle == pOther.mHandle; }
        bool operator!=(const Iterator& pOther) const { return mHandle != pOther.mHandle; }

    private:
        // The end is one value.
        void Put(const KLyrPropertyHandle& pHandle) { mHandle = pHandle.Valid() ? pHandle : KLyrPropertyHandle(); }

        Walk mWalk;
        KLyrPropertyHandle mHandle;
    };

    // Of a walk that has not begun.
    explicit KLyrHandleRange(const Walk& pWalk) : mWalk(pWalk) {}
    // The first property, and the place behind the last.
    Iterator begin() const { return Iterator(mWalk, false); }
    Iterator end() const { return Iterator(mWalk, true); }
    // Whether there is nothing to walk over.
    bool IsEmpty() const { return begin() == end(); }

private:
    Walk mWalk;
};

// The children of a property, in ascending order of their ids.
inline KLyrHandleRange<detail::ChildWalk> lyrChildren(const KLyrPropertyHandle& pParent) {
    return KLyrHandleRange<detail::ChildWalk>(detail::ChildWalk(pParent));
}
// All below a property, in ascending order of their ids. What was below one that went is below the root only.
inline KLyrHandleRange<detail::DescendentWalk> lyrDescendents(const KLyrPropertyHandle& pAncestor) {
    return KLyrHandleRange<detail::DescendentWalk>(detail::DescendentWalk(pAncestor));
}
// The parent of a property, that one's parent and so on, the root last. A walk over parents that run in a circle ends,
// after at most three steps for each of those on the way.
inline KLyrHandleRange<detail::AncestorWalk> lyrAncestors(const KLyrPropertyHandle& pProperty) {
    return KLyrHandleRange<detail::AncestorWalk>(detail::AncestorWalk(pProperty));
}

// Every property that the page of pPage sees, in ascending order of ids.
inline KLyrHandleRange<detail::PropertyWalk> lyrProperties(const KLyrPropertyHandle& pPage) {
    return KLyrHandleRange<detail::PropertyWalk>(detail::PropertyWalk(pPage, false));
}
// Those of which the page holds something itself: a description, a value, flags or connections. On a page that is no
// instance these are all.
inline KLyrHandleRange<detail::PropertyWalk> lyrOwnProperties(const KLyrPropertyHandle& pPage) {
    return KLyrHandleRange<detail::PropertyWalk>(detail::PropertyWalk(pPage, true));
}

// The same property on the pages that are instances of its page. A page that was destroyed and lives on for its
// instances is among them.
inline KLyrHandleRange<detail::InstanceWalk> lyrInstances(const KLyrPropertyHandle& pProperty) {
    return KLyrHandleRange<detail::InstanceWalk>(detail::InstanceWalk(pProperty));
}
// The same property on the instances, on theirs too, and so on, each page in front of its instances.
inline KLyrHandleRange<detail::AllInstancesWalk> lyrAllInstances(const KLyrPropertyHandle& pProperty) {
    return KLyrHandleRange<detail::AllInstancesWalk>(detail::AllInstancesWalk(pProperty));
}

// The sources of a property, in order of connection; with a filter, those that it selects.
inline KLyrHandleRange<detail::PeerWalk> lyrSources(const KLyrPropertyHandle& pProperty,
                                                    KLyrConnectionPointFilter* pFilter = nullptr) {
    return KLyrHandleRange<detail::PeerWalk>(detail::PeerWalk(pProperty, pFilter, true));
}
// The destinations, likewise.
inline KLyrHandleRange<detail::PeerWalk> lyrDestinations(const KLyrPropertyHandle& pProperty,
                                                         KLyrConnectionPointFilter* pFilter = nullptr) {
    return KLyrHandleRange<detail::PeerWalk>(detail::PeerWalk(pProperty, pFilter, false));
}

}  // namespace lyrsdk
