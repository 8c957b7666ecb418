#pragma once

// A property of a page family, looked up once and then reached on every page of the family by its id.
//
//     const KLyrBoundProperty lPower(lLamp, "electric/power");
//     for (const KLyrPropertyHandle& lInstance : lyrAllInstances(lLamp))
//         lPower.Set(lInstance, 60.0);
//
// An id means the same property on every page of a family and is never given out again, so that what is bound stays
// bound whatever else comes and goes. On each use the page is asked whether it is of the family, which a constant look
// tells, and whether the property is still there. Pages that came to be roots of their own because the page that they
// were instances of was destroyed stay in the family.
//
// It keeps the family's id counter alive (a few bytes), and no page. It is used by the thread that uses the family;
// copies count as uses. A handle given here must not be of a page that was destroyed.
//
// Cost: binding is one Find; a read or write that of lyrGet or lyrSet and one search more.

#include <optional>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

namespace lyrsdk {

// What a bound property is on a page.
enum ELyrBoundState : int {
    eLyrBoundHere = 0,   // the page sees it
    eLyrBoundToNothing,  // it was not found when it was bound
    eLyrBoundElsewhere,  // the page is of another family, or there is none
    eLyrBoundGone,       // the page does not see it: it was destroyed, or belongs to another branch of the family
};

// A state in words, such as "not on this page"; "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(ELyrBoundState pState);

class LYRSDK_API KLyrBoundProperty {
public:
    // Bound to nothing.
    KLyrBoundProperty() = default;
    // Bound to the property itself; to nothing when the handle is not valid or the property does not exist.
    explicit KLyrBoundProperty(const KLyrPropertyHandle& pProperty);
    // Bound to what the handle's Find gives for a path below pFrom; to nothing when it finds nothing.
    KLyrBoundProperty(const KLyrPropertyHandle& pFrom, const char* pPath, const char* pSeparators = "/",
                      bool pCaseSensitive = true)
        : KLyrBoundProperty(pFrom.Find(pPath, pSeparators, pCaseSensitive)) {}
    // Bound to what pOther is bound to.
    KLyrBoundProperty(const KLyrBoundProperty& pOther);
    // Bound to what pOther is bound to.
    KLyrBoundProperty& operator=(const KLyrBoundProperty& pOther);
    ~KLyrBoundProperty() { Release(); }

    // Whether it was found.
    bool IsBound() const { return mFamily != nullptr; }
    // The id, -1 when it was not found.
    int GetId() const { return mId; }

    // What it is on the page of pPage, whose id does not matter.
    ELyrBoundState GetState(const KLyrPropertyHandle& pPage) const;
    // The property on the page of pPage; the default handle unless it is there.
    KLyrPropertyHandle On(const KLyrPropertyHandle& pPage) const {
        return GetState(pPage) == eLyrBoundHere ? KLyrPropertyHandle(pPage.GetPage(), mId) : KLyrPropertyHandle();
    }

    // As lyrGet and lyrSet do for the property on the page of pPage: nullopt and eLyrSetRefused unless it is there.
    template <typename T>
    std::optional<T> Get(const KLyrPropertyHandle& pPage) const {
        return lyrGet<T>(On(pPage));
    }
    template <typename T>
    ELyrSetResult Set(const KLyrPropertyHandle& pPage, const T& pValue, ELyrSetMode pMode = eLyrSetCollapse) const {
        return lyrSet(On(pPage), pValue, pMode);
    }

private:
    void Release();

    KLyrPropertyIdGenerator* mFamily = nullptr;
    int mId = -1;
};

// As lyrWhyRefused for the property on the page of pPage. Why it is not there comes first: it was bound to nothing,
// there is no such page, the page is of another family, or does not see the property.
LYRSDK_API KLyrReason lyrWhyRefused(const KLyrBoundProperty& pProperty, const KLyrPropertyHandle& pPage,
                                    ELyrType pValueType, ELyrAccess pAccess, const void* pValue = nullptr);

}  // namespace lyrsdk
