#include "tests/model/pair.h"

#include <algorithm>
#include <cstring>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "tests/support/scarce_memory.h"

namespace lyrmodel {

using namespace lyrsdk;

bool LibraryFilter::Selects(const KLyrConnectionPoint* pPeer, kLyrConnectionType pType) const {
    const auto* lPeer = static_cast<const KLyrPropertyConnect*>(pPeer->GetData());
    return mFilter.Selects(Connect(nullptr, lPeer->GetPropertyId()), pType);
}

// --- values

namespace {

template <typename T>
void Store(void* pData, T pValue) {
    std::memcpy(pData, &pValue, sizeof(T));
}

template <typename T>
T Load(const void* pData) {
    T lValue;
    std::memcpy(&lValue, pData, sizeof(T));
    return lValue;
}

std::size_t ElementsOf(ELyrType pType) {
    return pType == eDOUBLE1 ? 1 : static_cast<std::size_t>(pType - eDOUBLE2 + 2);
}

// Puts the value into memory that holds one of its type.
void Fill(void* pData, const Value& pValue) {
    const ELyrType lType = static_cast<ELyrType>(pValue.mCode);
    switch (lType) {
        case eUBYTE1:
            return Store(pData, static_cast<unsigned char>(pValue.mInteger));
        case eSHORT1:
            return Store(pData, static_cast<short>(pValue.mInteger));
        case eBOOL1:
            return Store(pData, pValue.mInteger != 0);
        case eINTEGER1:
        case eENUM:
            return Store(pData, static_cast<int>(pValue.mInteger));
        case eTIME:
            return Store(pData, pValue.mInteger);
        case eFLOAT1:
            return Store(pData, static_cast<float>(pValue.mNumbers[0]));
        case eDOUBLE1:
        case eDOUBLE2:
        case eDOUBLE3:
        case eDOUBLE4:
            std::memcpy(pData, pValue.mNumbers.data(), ElementsOf(lType) * sizeof(double));
            return;
        case eSTRING:
            static_cast<KString*>(pData)->Assign(pValue.mBytes.data(), static_cast<int>(pValue.mBytes.size()));
            return;
        case eBLOB:
            static_cast<lyrBlob*>(pData)->Assign(pValue.mBytes.data(), static_cast<int>(pValue.mBytes.size()));
            return;
        default:
            return;
    }
}

}  // namespace

LibraryValue::LibraryValue(const Value& pValue) : mType(static_cast<ELyrType>(pValue.mCode)), mData(&mNothing) {
    const ScarceMemory::Pause lPause;
    if (HoldsValue(pValue.mCode))
        mData = lyrCreate(mType);
    Fill(mData, pValue);
}

LibraryValue::~LibraryValue() {
    if (HoldsValue(mType))
        lyrDestroy(mType, mData);
}

Value LibraryValue::Read() const {
    Value lValue(mType);
    switch (mType) {
        case eUBYTE1:
        case eBOOL1:
            lValue.mInteger = Load<unsigned char>(mData);
            break;
        case eSHORT1:
            lValue.mInteger = Load<short>(mData);
            break;
        case eINTEGER1:
        case eENUM:
            lValue.mInteger = Load<int>(mData);
            break;
        case eTIME:
            lValue.mInteger = Load<long long>(mData);
            break;
        case eFLOAT1:
            lValue.mNumbers[0] = static_cast<double>(Load<float>(mData));
            break;
        case eDOUBLE1:
        case eDOUBLE2:
        case eDOUBLE3:
        case eDOUBLE4:
            std::memcpy(lValue.mNumbers.data(), mData, ElementsOf(mType) * sizeof(double));
            break;
        case eSTRING: {
            const auto* lString = static_cast<const KString*>(mData);
            lValue.mBytes.assign(lString->Buffer(), static_cast<std::size_t>(lString->GetLen()));
            break;
        }
        case eBLOB: {
            const auto* lBlob = static_cast<const lyrBlob*>(mData);
            if (lBlob->GetSize())
                lValue.mBytes.assign(static_cast<const char*>(lBlob->GetData()),
                                     static_cast<std::size_t>(lBlob->GetSize()));
            break;
        }
        default:
            break;
    }
    return lValue;
}

// --- both sides

Pair* Pair::sgActive = nullptr;

Pair::Pair(Fault pFault) : mModel(pFault), mHandlerBefore(KSetAssertFailedHandler(&Pair::Receive)) {
    sgActive = this;
    for (int i = 1; i <= kFilters; ++i)
        RenewFilter(i, Filter{i == 1 ? 0 : 1 << i, i % 2 ? 1 : -1});
}

Pair::~Pair() {
    for (KLyrPropertyPage* lPage : mPages)
        if (lPage)
            lPage->Destroy();
    KLyrPlug::SetWipeMode(false);
    KSetAssertFailedHandler(mHandlerBefore);
    sgActive = nullptr;
}

void Pair::Receive(const char*, const char*, unsigned long, const char* pMessage, bool*) {
    sgActive->mReports.push_back(pMessage);
}

KLyrPropertyPage* Pair::Library(int pSlot) const {
    return pSlot < 0 ? nullptr : mPages[static_cast<std::size_t>(pSlot)];
}

int Pair::SlotOf(const KLyrPropertyPage* pPage) const {
    if (!pPage)
        return -1;
    const auto lFound = std::find(mPages.begin(), mPages.end(), pPage);
    return lFound == mPages.end() ? -2 : static_cast<int>(lFound - mPages.begin());
}

KLyrConnectionPointFilter* Pair::LibraryFilterAt(int pFilter) const {
    return pFilter ? mLibraryFilters[static_cast<std::size_t>(pFilter - 1)].get() : nullptr;
}

const Filter* Pair::ModelFilterAt(int pFilter) const {
    return pFilter ? &mModelFilters[static_cast<std::size_t>(pFilter - 1)] : nullptr;
}

void Pair::RenewFilter(int pFilter, const Filter& pSelection) {
    const auto lIndex = static_cast<std::size_t>(pFilter - 1);
    mModelFilters[lIndex] = pSelection;
    mLibraryFilters[lIndex].reset();
    mLibraryFilters[lIndex] = std::make_unique<LibraryFilter>(pSelection);
}

}  // namespace lyrmodel
