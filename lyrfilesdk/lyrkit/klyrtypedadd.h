#pragma once

// Adding properties with all that belongs to them, in one expression.
//
//     lyrAdd(lParent, "Intensity", 1.0);
//
//     KLyrPropertyHandle lPower = lyrBuild(lParent, "Power", 60.0)
//                                     .Limits(0.0, 150.0)
//                                     .Label("Power (W)")
//                                     .Flags(LyrPropertyFlags::eANIMATABLE);
//
// The type comes from the value, or is given in its place: a type code, or a page that types the property and whose
// properties come along as children. The value becomes the property's default.
//
// All or nothing: when a step fails, what was added is destroyed again, children included, the steps behind it do
// nothing, and the result is the default handle. Into and GetFailure say which step it was. The ids that were given out
// on the way stay used. The parent has to exist, unlike for the handle's Add.
//
// Cost: that of the handle's calls; the builder itself takes no memory. A step is done when it is called: a builder
// that is dropped without asking for the handle leaves the property as it is by then.

#include <initializer_list>
#include <string_view>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

namespace lyrsdk {

// Adds a property of the given code with the value at pValue, of the same code, as its default; with null the type's
// own default. The default handle, and nothing is added, when there is no such parent, no memory, or no such value.
LYRSDK_API KLyrPropertyHandle lyrAdd(const KLyrPropertyHandle& pParent, const char* pName, ELyrType pType,
                                     const void* pValue = nullptr);

// The same with the type of the value; texts make a property of type eSTRING.
template <typename T>
KLyrPropertyHandle lyrAdd(const KLyrPropertyHandle& pParent, const char* pName, const T& pValue) {
    return detail::WithStored(pValue, KLyrPropertyHandle(), [&pParent, pName](const void* pStored, ELyrType pType) {
        return lyrAdd(pParent, pName, pType, pStored);
    });
}

// The steps of a builder.
enum ELyrBuildStep : int {
    eLyrBuildDone = 0,   // none failed
    eLyrBuildAdd,        // no such parent, no memory, or no such value
    eLyrBuildDefault,    // the value is not converted to the property's type, no such text, or no memory
    eLyrBuildMin,        // as eLyrBuildDefault
    eLyrBuildMax,        // as eLyrBuildDefault
    eLyrBuildSoftMin,    // as eLyrBuildDefault
    eLyrBuildSoftMax,    // as eLyrBuildDefault
    eLyrBuildEnumTexts,  // no enumeration, a text that is there already, or no memory
    eLyrBuildLabel,      // no memory
    eLyrBuildUserTag,    // the property is gone
    eLyrBuildUserData,   // the property is gone
    eLyrBuildFlags,      // a flag that is none, or no memory
};

// What a step sets, such as "soft minimum"; "done" for eLyrBuildDone and "unknown" for what is none. A literal.
LYRSDK_API const char* lyrResultText(ELyrBuildStep pStep);

// A property that is being added. Made by lyrBuild.
class LYRSDK_API KLyrPropertyBuilder {
public:
    // The flags.
    using eLyrPropertyFlags = LyrPropertyFlags::eLyrPropertyFlags;

    // For the property pAdded, which was just added; the default handle stands for one that could not be.
    explicit KLyrPropertyBuilder(const KLyrPropertyHandle& pAdded)
        : mHandle(pAdded), mFailed(pAdded.Valid() ? eLyrBuildDone : eLyrBuildAdd) {}

    // The value that the property starts with.
    template <typename T>
    KLyrPropertyBuilder& Default(const T& pValue) {
        return Step(eLyrBuildDefault, pValue, [this](const void* pStored, ELyrType pType) {
            return lyrSet(mHandle, pStored, pType, eLyrSetPin) == eLyrSetWritten;
        });
    }

    // The index of one of the texts of an enumeration, as the value that it starts with.
    KLyrPropertyBuilder& DefaultText(std::string_view pText);

    // The hard and soft bounds. They are kept and given back; lyrValidate and lyrClamp hold values against them.
    template <typename T>
    KLyrPropertyBuilder& Min(const T& pValue) {
        return Step(eLyrBuildMin, pValue,
                    [this](const void* pBound, ELyrType pType) { return mHandle.SetMin(pBound, pType); });
    }
    template <typename T>
    KLyrPropertyBuilder& Max(const T& pValue) {
        return Step(eLyrBuildMax, pValue,
                    [this](const void* pBound, ELyrType pType) { return mHandle.SetMax(pBound, pType); });
    }
    template <typename T>
    KLyrPropertyBuilder& SoftMin(const T& pValue) {
        return Step(eLyrBuildSoftMin, pValue,
                    [this](const void* pBound, ELyrType pType) { return mHandle.SetSoftMin(pBound, pType); });
    }
    template <typename T>
    KLyrPropertyBuilder& SoftMax(const T& pValue) {
        return Step(eLyrBuildSoftMax, pValue,
                    [this](const void* pBound, ELyrType pType) { return mHandle.SetSoftMax(pBound, pType); });
    }
    // Both bounds at once.
    template <typename T, typename U>
    KLyrPropertyBuilder& Limits(const T& pMin, const U& pMax) {
        return Min(pMin).Max(pMax);
    }
    template <typename T, typename U>
    KLyrPropertyBuilder& SoftLimits(const T& pMin, const U& pMax) {
        return SoftMin(pMin).SoftMax(pMax);
    }

    // The texts of an enumeration, behind those that are there.
    KLyrPropertyBuilder& EnumTexts(std::initializer_list<const char*> pTexts);
    // A text for people.
    KLyrPropertyBuilder& Label(const char* pLabel);
    // A number for the application.
    KLyrPropertyBuilder& UserTag(int pUserTag);
    // A pointer for the application, not owned.
    KLyrPropertyBuilder& UserData(const void* pUserData);
    // Turns these on.
    KLyrPropertyBuilder& Flags(eLyrPropertyFlags pFlags);

    // The property, or the default handle when a step failed.
    KLyrPropertyHandle GetHandle() const { return mHandle; }
    // The same as GetHandle.
    operator KLyrPropertyHandle() const { return mHandle; }
    // The step that failed, eLyrBuildDone when none did.
    ELyrBuildStep GetFailure() const { return mFailed; }
    // Both: writes the handle and gives the failure.
    ELyrBuildStep Into(KLyrPropertyHandle& pHandle) const {
        pHandle = mHandle;
        return mFailed;
    }

private:
    template <typename T, typename Use>
    KLyrPropertyBuilder& Step(ELyrBuildStep pStep, const T& pValue, Use pUse) {
        if (mHandle.Valid() && !detail::WithStored(pValue, false, pUse))
            Fail(pStep);
        return *this;
    }
    KLyrPropertyBuilder& Check(ELyrBuildStep pStep, bool pDone) {
        if (mHandle.Valid() && !pDone)
            Fail(pStep);
        return *this;
    }
    void Fail(ELyrBuildStep pStep);

    KLyrPropertyHandle mHandle;
    ELyrBuildStep mFailed;
};

// Adds a property as lyrAdd does, for more to be said of it.
template <typename T>
KLyrPropertyBuilder lyrBuild(const KLyrPropertyHandle& pParent, const char* pName, const T& pValue) {
    return KLyrPropertyBuilder(lyrAdd(pParent, pName, pValue));
}
// Typed by the page of pTypeInfo, whose properties are copied as children; without a page this fails.
LYRSDK_API KLyrPropertyBuilder lyrBuild(const KLyrPropertyHandle& pParent, const char* pName,
                                        const KLyrPropertyHandle& pTypeInfo);

}  // namespace lyrsdk
