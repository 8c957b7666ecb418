#pragma once

// Owners of one object.
//
// KScopedPtr is one pointer, null allowed. It deletes the object through its policy when it is destroyed or reset.
// KLyrSdkScopedPtr owns what LyrSdkNew made. Neither can be copied.
//
// Two kinds of misuse are reported: using a null pointer, and resetting to the pointer that is already held. The line
// numbers of the reports are fixed names of the check sites, not places in this file.

#include "lyrfilesdk/components/kbaselib/klib/kassert.h"
#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {

// The path that the reports of scoped pointers carry.
inline constexpr char sgScopedPtrPath[] = "lyrfilesdk/components/kbaselib/klib/kscopedptr";

// Deletes objects made by LyrSdkNew.
template <typename T>
struct LyrSdkDeletionPolicy {
    // Deletes *pPointer and sets it to null. A null *pPointer or pPointer is ignored.
    static void DeleteIt(T** pPointer) {
        if (pPointer && *pPointer) {
            LyrSdkDelete(*pPointer);
            *pPointer = nullptr;
        }
    }
};

// The owner of one object. Policy::DeleteIt(T**) deletes it.
template <typename T, typename Policy>
class KScopedPtr {
public:
    // Takes ownership of pPointer.
    explicit KScopedPtr(T* pPointer = nullptr) : mPointer(pPointer) {}
    ~KScopedPtr() { Policy::DeleteIt(&mPointer); }
    KScopedPtr(const KScopedPtr&) = delete;
    KScopedPtr& operator=(const KScopedPtr&) = delete;

    // Whether nothing is held.
    bool operator!() const { return !mPointer; }
    // Whether an object is held.
    explicit operator bool() const { return mPointer != nullptr; }

    // The held pointer, or null. Still owned.
    T* Get() const { return mPointer; }

    // The held pointer; null is reported, and returned.
    T* operator->() const {
        LYRSDK_CHECK(mPointer != nullptr, sgScopedPtrPath, 127, "ptr != 0");
        return mPointer;
    }

    // Deletes the held object and takes ownership of pPointer. Resetting to the pointer that is held is reported; the
    // object is deleted all the same, and the pointer that stays behind must be swapped out before it is used or freed.
    void Reset(T* pPointer = nullptr) {
        LYRSDK_CHECK(!pPointer || pPointer != mPointer, sgScopedPtrPath, 113, "p == 0 || p != ptr");
        KScopedPtr lOld(pPointer);
        Swap(lOld);
    }

    // Exchanges the two pointers.
    void Swap(KScopedPtr& pOther) {
        T* lPointer = mPointer;
        mPointer = pOther.mPointer;
        pOther.mPointer = lPointer;
    }

private:
    T* mPointer;
};

// The owner of an object made by LyrSdkNew.
template <typename T>
class KLyrSdkScopedPtr : public KScopedPtr<T, LyrSdkDeletionPolicy<T>> {
public:
    // Takes ownership of pPointer.
    explicit KLyrSdkScopedPtr(T* pPointer = nullptr) : KScopedPtr<T, LyrSdkDeletionPolicy<T>>(pPointer) {}
};

}  // namespace lyrsdk
