#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

// The description of a property. Readers and writers both take the item where the chain holds it: a description is
// shared by all pages that see it, and a change through one of them is a change for all.

namespace lyrsdk {
namespace {

KLyrPropertyInfo* Description(const KLyrPropertyPage* pPage, int pId) {
    return pPage->GetPropertyItem<KLyrPropertyInfo>(nullptr, pId);
}

}  // namespace

ELyrType KLyrPropertyPage::GetType(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetType() : eUNIDENTIFIED;
}

const char* KLyrPropertyPage::GetName(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetNameText() : "";
}

KLyrPropertyPage* KLyrPropertyPage::GetTypeInfo(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetTypeInfo() : nullptr;
}

const char* KLyrPropertyPage::GetLabel(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetLabel() : "";
}

bool KLyrPropertyPage::SetLabel(int pId, const char* pLabel) {
    KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo && lInfo->SetLabel(pLabel);
}

int KLyrPropertyPage::GetUserTag(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetUserTag() : 0;
}

bool KLyrPropertyPage::SetUserTag(int pId, int pUserTag) {
    KLyrPropertyInfo* lInfo = Description(this, pId);
    if (lInfo)
        lInfo->SetUserTag(pUserTag);
    return lInfo != nullptr;
}

void* KLyrPropertyPage::GetUserData(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetUserData() : nullptr;
}

bool KLyrPropertyPage::SetUserData(int pId, const void* pUserData) {
    KLyrPropertyInfo* lInfo = Description(this, pId);
    if (lInfo)
        lInfo->SetUserData(pUserData);
    return lInfo != nullptr;
}

bool KLyrPropertyPage::SetMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex, const void* pValue,
                                 ELyrType pValueType) {
    KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo && lInfo->SetMinMax(pIndex, pValue, pValueType);
}

bool KLyrPropertyPage::GetMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex, void* pValue,
                                 ELyrType pValueType) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo && lInfo->GetMinMax(pIndex, pValue, pValueType);
}

bool KLyrPropertyPage::HasMinMax(int pId, KLyrPropertyInfo::eValueIndex pIndex) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo && lInfo->HasMinMax(pIndex);
}

int KLyrPropertyPage::AddEnumValue(int pId, const char* pName) {
    KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->AddEnumValue(pName) : -1;
}

void KLyrPropertyPage::InsertEnumValue(int pId, int pIndex, const char* pName) {
    if (KLyrPropertyInfo* lInfo = Description(this, pId))
        lInfo->InsertEnumValue(pIndex, pName);
}

int KLyrPropertyPage::GetEnumCount(int pId) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetEnumCount() : 0;
}

void KLyrPropertyPage::SetEnumValue(int pId, int pIndex, const char* pName) {
    if (KLyrPropertyInfo* lInfo = Description(this, pId))
        lInfo->SetEnumValue(pIndex, pName);
}

void KLyrPropertyPage::RemoveEnumValue(int pId, int pIndex) {
    if (KLyrPropertyInfo* lInfo = Description(this, pId))
        lInfo->RemoveEnumValue(pIndex);
}

const char* KLyrPropertyPage::GetEnumValue(int pId, int pIndex) const {
    const KLyrPropertyInfo* lInfo = Description(this, pId);
    return lInfo ? lInfo->GetEnumValue(pIndex) : "";
}

}  // namespace lyrsdk
