#include "lyrfilesdk/lyrkit/klyrtypedadd.h"

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrenumeration.h"

namespace lyrsdk {
namespace {

bool IsThere(const KLyrPropertyHandle& pHandle) {
    return pHandle.GetPage() && pHandle.GetPage()->GetPropertyEntry(pHandle.GetId());
}

}  // namespace

KLyrPropertyHandle lyrAdd(const KLyrPropertyHandle& pParent, const char* pName, ELyrType pType, const void* pValue) {
    if (!IsThere(pParent))
        return KLyrPropertyHandle();
    KLyrPropertyHandle lParent = pParent;
    KLyrPropertyHandle lAdded = lParent.Add(pName, pType);
    if (lAdded.Valid() && pValue && lyrSet(lAdded, pValue, pType, eLyrSetPin) != eLyrSetWritten)
        lAdded.Destroy();
    return lAdded;
}

KLyrPropertyBuilder lyrBuild(const KLyrPropertyHandle& pParent, const char* pName,
                             const KLyrPropertyHandle& pTypeInfo) {
    if (!IsThere(pParent) || !pTypeInfo.GetPage())
        return KLyrPropertyBuilder(KLyrPropertyHandle());
    KLyrPropertyHandle lParent = pParent;
    return KLyrPropertyBuilder(lParent.Add(pName, pTypeInfo));
}

KLyrPropertyBuilder& KLyrPropertyBuilder::DefaultText(std::string_view pText) {
    return Check(eLyrBuildDefault, lyrSetEnumText(mHandle, pText, eLyrSetPin) == eLyrSetWritten);
}

KLyrPropertyBuilder& KLyrPropertyBuilder::EnumTexts(std::initializer_list<const char*> pTexts) {
    for (const char* lText : pTexts)
        Check(eLyrBuildEnumTexts, mHandle.AddEnumValue(lText) >= 0);
    return *this;
}

KLyrPropertyBuilder& KLyrPropertyBuilder::Label(const char* pLabel) {
    return Check(eLyrBuildLabel, mHandle.SetLabel(pLabel));
}

KLyrPropertyBuilder& KLyrPropertyBuilder::UserTag(int pUserTag) {
    return Check(eLyrBuildUserTag, mHandle.SetUserTag(pUserTag));
}

KLyrPropertyBuilder& KLyrPropertyBuilder::UserData(const void* pUserData) {
    return Check(eLyrBuildUserData, mHandle.SetUserData(pUserData));
}

KLyrPropertyBuilder& KLyrPropertyBuilder::Flags(eLyrPropertyFlags pFlags) {
    const bool lDefined = (pFlags & ~LyrPropertyFlags::AllFlags()) == 0;
    return Check(eLyrBuildFlags, lDefined && mHandle.ModifyFlags(pFlags, true));
}

// The descendants of a new property are its copies of a type page's, and what was added below it since. Each goes
// before its parent, because nobody finds it behind that.
void KLyrPropertyBuilder::Fail(ELyrBuildStep pStep) {
    mFailed = pStep;
    for (KLyrPropertyHandle lHandle = mHandle; lHandle.Valid();) {
        const KLyrPropertyHandle lChild = lHandle.GetChild();
        const KLyrPropertyHandle lParent = lHandle == mHandle ? KLyrPropertyHandle() : lHandle.GetParent();
        if (!lChild.Valid())
            lHandle.Destroy();
        lHandle = lChild.Valid() ? lChild : lParent;
    }
    mHandle = KLyrPropertyHandle();
}

}  // namespace lyrsdk
