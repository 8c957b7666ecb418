#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/lyrcore/klyrpropertyindex.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {

// --- value ---------------------------------------------------------------------------------------------------------

namespace {

// The first place behind pSize bytes where any value may stand.
constexpr std::size_t RoundUp(std::size_t pSize) {
    return (pSize + kLyrMaxValueAlignment - 1) / kLyrMaxValueAlignment * kLyrMaxValueAlignment;
}

constexpr std::size_t kValueOffset = RoundUp(sizeof(KLyrPropertyValue));

}  // namespace

KLyrPropertyValue* KLyrPropertyValue::Create(const void* pValue, ELyrType pType) {
    const std::size_t lSize = lyrStorageSize(pType);
    char* lMemory = static_cast<char*>(LyrSdkMalloc(lSize != 0 ? kValueOffset + lSize : sizeof(KLyrPropertyValue)));
    if (!lMemory)
        return nullptr;
    auto* lItem = ::new (lMemory) KLyrPropertyValue(pType, lSize != 0 ? lMemory + kValueOffset : nullptr);
    // A copy within one type fails only for want of memory.
    if (pValue && lyrHoldsValue(pType) && !lItem->Set(pValue, pType)) {
        LyrSdkDelete(lItem);
        return nullptr;
    }
    return lItem;
}

KLyrPropertyValue::KLyrPropertyValue(ELyrType pType, void* pMemory) : mRef(0), mType(pType), mValue(pMemory) {
    lyrConstruct(pType, pMemory);
}

KLyrPropertyValue* KLyrPropertyValue::Clone(KLyrPropertyPage*) const {
    return Create(mValue, mType);
}

// --- info ----------------------------------------------------------------------------------------------------------

namespace {

// A bound is a raw block: its type, which few descriptions have to keep, and behind it the value.
constexpr std::size_t kBoundOffset = RoundUp(sizeof(ELyrType));

// A default value; null when there is no memory.
void* CreateBound(ELyrType pType) {
    char* lMemory = static_cast<char*>(LyrSdkMalloc(kBoundOffset + lyrStorageSize(pType)));
    if (!lMemory)
        return nullptr;
    ::new (lMemory) ELyrType(pType);
    lyrConstruct(pType, lMemory + kBoundOffset);
    return lMemory + kBoundOffset;
}

ELyrType TypeOfBound(const void* pBound) {
    return *reinterpret_cast<const ELyrType*>(static_cast<const char*>(pBound) - kBoundOffset);
}

void DestroyBound(void* pBound) {
    lyrDestruct(TypeOfBound(pBound), pBound);
    LyrSdkFree(static_cast<char*>(pBound) - kBoundOffset);
}

}  // namespace

KLyrPropertyInfo* KLyrPropertyInfo::Create(const char* pName, ELyrType pType) {
    return Named(LyrSdkNew<KLyrPropertyInfo>(pName, pType), pName);
}

KLyrPropertyInfo* KLyrPropertyInfo::Create(const char* pName, KLyrTypeInfo* pTypeInfo) {
    return Named(New(pName, pTypeInfo), pName);
}

KLyrPropertyInfo* KLyrPropertyInfo::Clone(KLyrPropertyPage*) const {
    return mTypeInfo ? New(mName, mTypeInfo) : LyrSdkNew<KLyrPropertyInfo>(mName, mType);
}

template <typename Name>
KLyrPropertyInfo* KLyrPropertyInfo::New(const Name& pName, KLyrTypeInfo* pTypeInfo) {
    static_assert(sizeof(KLyrPropertyInfo) % alignof(Link) == 0, "the link lies behind the description");
    void* lMemory = LyrSdkMalloc(sizeof(KLyrPropertyInfo) + (pTypeInfo ? sizeof(Link) : 0));
    return lMemory ? ::new (lMemory) KLyrPropertyInfo(pName, pTypeInfo) : nullptr;
}

// A description whose name found no memory is none.
KLyrPropertyInfo* KLyrPropertyInfo::Named(KLyrPropertyInfo* pInfo, const char* pName) {
    if (pInfo && pInfo->mName.IsEmpty() && pName && *pName) {
        LyrSdkDelete(pInfo);
        return nullptr;
    }
    return pInfo;
}

KLyrPropertyInfo::KLyrPropertyInfo(const char* pName, ELyrType pType) : mName(pName), mType(pType) {}

KLyrPropertyInfo::KLyrPropertyInfo(const KLyrStringSymbol& pName, ELyrType pType) : mName(pName), mType(pType) {}

KLyrPropertyInfo::KLyrPropertyInfo(const char* pName, KLyrTypeInfo* pTypeInfo) : mName(pName), mTypeInfo(pTypeInfo) {
    LinkToTypeInfo();
}

KLyrPropertyInfo::KLyrPropertyInfo(const KLyrStringSymbol& pName, KLyrTypeInfo* pTypeInfo)
    : mName(pName), mTypeInfo(pTypeInfo) {
    LinkToTypeInfo();
}

KLyrPropertyInfo::~KLyrPropertyInfo() {
    if (mTypeInfo)
        UnlinkFromTypeInfo();
    if (AnyBound())
        DestroyBounds();
}

void KLyrPropertyInfo::DestroyBounds() {
    for (void* lSlot : mMinMaxValue)
        if (lSlot)
            DestroyBound(lSlot);
}

void KLyrPropertyInfo::LinkToTypeInfo() {
    if (!mTypeInfo)
        return;
    ::new (this + 1) Link;
    detail::Insert<&KLyrPropertyInfo::OfTypeInfo>(this, mTypeInfo->mTypedInfos);
}

void KLyrPropertyInfo::UnlinkFromTypeInfo() {
    detail::TakeOut<&KLyrPropertyInfo::OfTypeInfo>(this);
    mTypeInfo = nullptr;
}

// Roots whose descriptions were exchanged by hand can type each other in a circle. The second walker moves at half
// speed; when the first one meets it, there is no end.
ELyrType KLyrPropertyInfo::GetType() const {
    const KLyrPropertyInfo* lInfo = this;
    const KLyrPropertyInfo* lSlow = this;
    for (bool lOdd = false; lInfo && lInfo->mTypeInfo; lOdd = !lOdd) {
        lInfo = lInfo->mTypeInfo->GetPropertyItem<KLyrPropertyInfo>(nullptr, 0);
        if (lInfo == lSlow)
            return eUNIDENTIFIED;
        if (lOdd)
            lSlow = lSlow->mTypeInfo->GetPropertyItem<KLyrPropertyInfo>(nullptr, 0);
    }
    return lInfo ? lInfo->mType : eUNIDENTIFIED;
}

// A bound that is there, or null. All are of one type.
const void* KLyrPropertyInfo::AnyBound() const {
    for (const void* lSlot : mMinMaxValue)
        if (lSlot)
            return lSlot;
    return nullptr;
}

// A refused conversion leaves the bound there with its default value; a source that is no value at all leaves nothing.
bool KLyrPropertyInfo::SetMinMax(eValueIndex pIndex, const void* pValue, ELyrType pValueType) {
    if (!IsBound(pIndex) || !pValue)
        return false;
    const void* lAny = AnyBound();
    const ELyrType lBoundType = lAny ? TypeOfBound(lAny) : GetType();
    if (lyrStorageSize(lBoundType) == 0)
        return false;
    if (!lyrHoldsValue(pValueType)) {
        unsigned char lUnused = 0;
        return lyrCopy(&lUnused, eUBYTE1, pValue, pValueType);
    }
    void*& lSlot = mMinMaxValue[pIndex];
    if (!lSlot)
        lSlot = CreateBound(lBoundType);
    return lSlot && lyrCopy(lSlot, lBoundType, pValue, pValueType);
}

bool KLyrPropertyInfo::GetMinMax(eValueIndex pIndex, void* pValue, ELyrType pValueType) const {
    if (!HasMinMax(pIndex))
        return false;
    const void* lSlot = mMinMaxValue[pIndex];
    return lyrCopy(pValue, pValueType, lSlot, TypeOfBound(lSlot));
}

const char* KLyrPropertyInfo::GetEnumValue(int pIndex) const {
    return GetType() == eENUM && mEnumList ? mEnumList->GetStringAt(pIndex) : nullptr;
}

// The list, made when it is not there yet; null for another type and for want of memory.
KStringList* KLyrPropertyInfo::EnumListForWriting() {
    if (GetType() != eENUM)
        return nullptr;
    if (!mEnumList)
        mEnumList.Reset(LyrSdkNew<KStringList>());
    return mEnumList ? mEnumList.operator->() : nullptr;
}

int KLyrPropertyInfo::AddEnumValue(const char* pName) {
    KStringList* lList = EnumListForWriting();
    return lList && lList->FindIndex(pName) == -1 ? lList->Add(pName, 0) : -1;
}

void KLyrPropertyInfo::InsertEnumValue(int pIndex, const char* pName) {
    if (KStringList* lList = EnumListForWriting())
        lList->InsertAt(pIndex, pName, 0);
}

void KLyrPropertyInfo::SetEnumValue(int pIndex, const char* pName) {
    if (KStringList* lList = EnumListForWriting())
        lList->SetStringAt(pIndex, pName);
}

void KLyrPropertyInfo::RemoveEnumValue(int pIndex) {
    if (KStringList* lList = EnumListForWriting())
        lList->RemoveAt(pIndex);
}

// --- connect -------------------------------------------------------------------------------------------------------

KLyrPropertyConnect* KLyrPropertyConnect::Create(KLyrPropertyPage* pPage, int pId) {
    return LyrSdkNew<KLyrPropertyConnect>(pPage, pId);
}

KLyrPropertyConnect::KLyrPropertyConnect(KLyrPropertyPage* pPage, int pId)
    : mRef(0), mConnectionPoint(this), mPage(pPage), mId(pId) {
    if (mPage)
        detail::Insert<&KLyrPropertyConnect::mOfPage>(this, mPage->mConnects);
}

// The property that this item leads to is gone.
void KLyrPropertyConnect::Retire() {
    WipeAllConnections();
    detail::TakeOut<&KLyrPropertyConnect::mOfPage>(this);
    mPage = nullptr;
}

KLyrPropertyConnect::~KLyrPropertyConnect() {
    detail::TakeOut<&KLyrPropertyConnect::mOfPage>(this);
    if (KLyrPlug::GetWipeMode())
        mConnectionPoint.WipeConnectionList();
}

bool KLyrPropertyConnect::ConnectSrc(KLyrPropertyConnect* pSrc, kLyrConnectionType pType) {
    return pSrc && mConnectionPoint.ConnectSrc(&pSrc->mConnectionPoint, pType);
}

bool KLyrPropertyConnect::DisconnectSrc(KLyrPropertyConnect* pSrc) {
    return pSrc && mConnectionPoint.DisconnectSrc(&pSrc->mConnectionPoint);
}

bool KLyrPropertyConnect::IsConnectedSrc(KLyrPropertyConnect* pSrc) {
    return pSrc && mConnectionPoint.IsConnectedSrc(&pSrc->mConnectionPoint);
}

KLyrPropertyConnect* KLyrPropertyConnect::GetSrc(KLyrConnectionPointFilter* pFilter, int pIndex) {
    const KLyrConnectionPoint* lPoint = mConnectionPoint.GetSrc(pIndex, pFilter);
    return lPoint ? static_cast<KLyrPropertyConnect*>(lPoint->GetData()) : nullptr;
}

KLyrPropertyConnect* KLyrPropertyConnect::GetDst(KLyrConnectionPointFilter* pFilter, int pIndex) {
    const KLyrConnectionPoint* lPoint = mConnectionPoint.GetDst(pIndex, pFilter);
    return lPoint ? static_cast<KLyrPropertyConnect*>(lPoint->GetData()) : nullptr;
}

// --- entry ---------------------------------------------------------------------------------------------------------

KLyrPropertyEntry* KLyrPropertyEntry::Create(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                                             KLyrPropertyConnect* pConnect) {
    return LyrSdkNew<KLyrPropertyEntry>(pParentId, pInfo, pValue, pConnect);
}

KLyrPropertyEntry::KLyrPropertyEntry(int pParentId, KLyrPropertyInfo* pInfo, KLyrPropertyValue* pValue,
                                     KLyrPropertyConnect* pConnect)
    : mInfo(pInfo), mValue(pValue), mConnect(pConnect), mParentId(pParentId), mFlags(LyrPropertyFlags::eNO_FLAG) {
    if (mInfo)
        mInfo->IncRef();
    if (mValue)
        mValue->IncRef();
    if (mConnect)
        mConnect->IncRef();
}

KLyrPropertyEntry::~KLyrPropertyEntry() {
    if (mInfo)
        mInfo->DecRef();
    if (mValue)
        mValue->DecRef();
    if (mConnect)
        mConnect->DecRef();
}

// The page finds the entry by the name of its description.
void KLyrPropertyEntry::Set(KLyrPropertyInfo* pInfo) {
    if (mIndexed)
        KLyrPropertyIndex::TakeOutName(this);
    Replace(mInfo, pInfo);
    if (mIndexed)
        KLyrPropertyIndex::PutInName(this);
}

}  // namespace lyrsdk
