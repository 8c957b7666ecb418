#pragma once

// A page with an owner: it is destroyed when the owner goes.
//
//     KLyrOwnedPage lLamp = KLyrOwnedPage::Create("lamp", eUNIDENTIFIED);
//     lyrAdd(*lLamp, "power", 60.0);
//     KLyrOwnedPage lDesk = KLyrOwnedPage::Create(*lLamp);  // an instance
//     lyrSet(lDesk->Find("power", true), 40.0);
//
// It is as large as a handle and can be moved, not copied. *owner and owner-> are the handle of the root property,
// which is the default handle when it owns nothing: all handle functions can then be called, and fail. Destroy through
// owner-> is good: it leaves an owner of nothing.
//
// Pitfalls:
//   - A page has one owner. It must not be destroyed by a handle that is kept elsewhere.
//   - Pages may go in any order, but one that goes before its instances gives them copies of all they see in it. Owners
//     on the stack and members go in the reverse order, so make an instance behind the page it comes from. A
//     std::vector destroys its first element first: take them off its back.
//
// Cost: that of the handle's Create and Destroy. It takes no memory of its own.

#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

class LYRSDK_API KLyrOwnedPage {
public:
    // Owns nothing.
    KLyrOwnedPage() = default;
    // Takes over the page of a root property; owns nothing when the handle is that of no page or of another property.
    explicit KLyrOwnedPage(const KLyrPropertyHandle& pRoot) {
        if (pRoot.GetPage() && pRoot.GetId() == 0)
            mRoot = pRoot;
    }
    // Takes over the page of another owner, which owns nothing from then on.
    KLyrOwnedPage(KLyrOwnedPage&& pOther) noexcept : mRoot(pOther.Release()) {}
    // Destroys its page and takes over that of another owner, which owns nothing from then on; its own it keeps.
    KLyrOwnedPage& operator=(KLyrOwnedPage&& pOther) noexcept {
        Reset(pOther.Release());
        return *this;
    }
    KLyrOwnedPage(const KLyrOwnedPage&) = delete;
    KLyrOwnedPage& operator=(const KLyrOwnedPage&) = delete;
    ~KLyrOwnedPage() { mRoot.Destroy(); }

    // Make a page as the handle's Create does; nothing is owned when there is no memory.

    // A page whose root property is "" of type eUNIDENTIFIED.
    static KLyrOwnedPage Create() { return KLyrOwnedPage(KLyrPropertyHandle::Create()); }
    // An instance of that handle's page.
    static KLyrOwnedPage Create(const KLyrPropertyHandle& pInstanceOf) {
        return KLyrOwnedPage(KLyrPropertyHandle::Create(pInstanceOf));
    }
    // A page whose root property has this name and type.
    static KLyrOwnedPage Create(const char* pName, ELyrType pType) {
        return KLyrOwnedPage(KLyrPropertyHandle::Create(pName, pType));
    }
    // Typed by the page of pTypeInfo, whose properties are copied as children.
    static KLyrOwnedPage Create(const char* pName, const KLyrPropertyHandle& pTypeInfo) {
        return KLyrOwnedPage(KLyrPropertyHandle::Create(pName, pTypeInfo));
    }

    // Whether it owns a page.
    explicit operator bool() const { return mRoot.Valid(); }
    // The root property; the default handle when it owns nothing. A copy of it is no owner, and good as long as the
    // page is there.
    const KLyrPropertyHandle& operator*() const& { return mRoot; }
    const KLyrPropertyHandle& operator*() const&& = delete;
    // For a call on the root property.
    KLyrPropertyHandle* operator->() { return &mRoot; }
    // The same on a constant owner, for calls that change nothing.
    const KLyrPropertyHandle* operator->() const { return &mRoot; }

    // Gives the page up without destroying it; the default handle when it owns nothing.
    KLyrPropertyHandle Release() { return std::exchange(mRoot, KLyrPropertyHandle()); }
    // Destroys the page that it owns and takes over another one as the constructor does. Its own page it keeps.
    void Reset(const KLyrPropertyHandle& pRoot = KLyrPropertyHandle()) {
        KLyrOwnedPage lOther(pRoot);
        if (lOther.mRoot == mRoot)
            lOther.Release();
        else
            std::swap(mRoot, lOther.mRoot);
    }

private:
    KLyrPropertyHandle mRoot;
};

}  // namespace lyrsdk
