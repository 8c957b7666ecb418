#include <strings.h>

#include <climits>
#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace {

// A part of a text with an end of its own; on the heap only when it is long.
class Segment {
public:
    // False when there is no memory.
    bool Assign(const char* pText, std::size_t pLength) {
        mIsLong = pLength >= sizeof(mShort);
        if (mIsLong)
            return pLength <= INT_MAX && mLong.Assign(pText, static_cast<int>(pLength));
        std::memcpy(mShort, pText, pLength);
        mShort[pLength] = '\0';
        return true;
    }
    const char* Buffer() const { return mIsLong ? mLong.Buffer() : mShort; }

private:
    bool mIsLong = false;
    // cppcheck-suppress uninitMemberVarPrivate ; Assign sets it, and clearing it first would cost every lookup
    char mShort[256];
    KString mLong;
};

}  // namespace

int KLyrPropertyPage::Find(int pId, const char* pName, KLyrPropertyPage* pTypeInfo, bool pCaseSensitive,
                           const char* pChildrenSeparators) const {
    if (!pName)
        pName = "";
    if (!pChildrenSeparators)
        return FastFind(pId, pName, pTypeInfo, pCaseSensitive);
    Segment lSegment;
    for (std::size_t lLength; pName[lLength = std::strcspn(pName, pChildrenSeparators)] != '\0';) {
        if (!lSegment.Assign(pName, lLength))
            return -1;
        pId = FastFind(pId, lSegment.Buffer(), nullptr, pCaseSensitive);
        if (pId == -1)
            return -1;
        pName += lLength + 1;
    }
    return FastFind(pId, pName, pTypeInfo, pCaseSensitive);
}

int KLyrPropertyPage::FastFind(int pId, const char* pName, KLyrPropertyPage* pTypeInfo, bool pCaseSensitive) const {
    if (!pName)
        pName = "";
    int lFound = -1;
    if (FindInCache(pId, pName, pTypeInfo, lFound))
        return lFound;
    return FindByScan(pId, pName, pTypeInfo, pCaseSensitive);
}

// Whether the bracket's map decides; always with case. It does not for a property that is gone or of another type.
bool KLyrPropertyPage::FindInCache(int pId, const char* pName, const KLyrPropertyPage* pTypeInfo, int& pFound) const {
    const KNameMap& lNames = mCreateOrFind.mSecond;
    if (lNames.GetSize() == 0)
        return false;
    const KNameMap::RecordType* lRecord = lNames.Find(KPair<int, const char*>(pId, pName));
    pFound = lRecord ? lRecord->GetValue() : -1;
    if (pFound == -1)
        return true;
    return GetPropertyEntry(pFound) && (!pTypeInfo || GetTypeInfo(pFound) == pTypeInfo);
}

// Equal names are one text, so a name that was never interned is nobody's.
int KLyrPropertyPage::FindByScan(int pId, const char* pName, const KLyrPropertyPage* pTypeInfo,
                                 bool pCaseSensitive) const {
    const char* lText = pCaseSensitive ? KLyrStringSymbol::FindText(pName) : nullptr;
    if (pCaseSensitive && !lText)
        return -1;
    for (int lChild = GetChild(pId); lChild != -1; lChild = GetSibling(lChild)) {
        const KLyrPropertyInfo* lInfo = GetPropertyItem<KLyrPropertyInfo>(nullptr, lChild);
        if (!lInfo || (pTypeInfo && lInfo->GetTypeInfo() != pTypeInfo))
            continue;
        const char* lName = lInfo->GetNameText();
        if (pCaseSensitive ? lName == lText : strcasecmp(lName, pName) == 0)
            return lChild;
    }
    return -1;
}

void KLyrPropertyPage::BeginCreateOrFindProperty() {
    if (mCreateOrFind.mFirst != 0)
        return;
    KNameMap& lNames = mCreateOrFind.mSecond;
    lNames.Reserve(20);
    int lId = 0;
    KLyrPropertyEntry* lEntry = GetPropertyEntry(0);
    if (!lEntry)
        lId = GetMinimumPropertyIdAndEntry(0, &lEntry);
    for (; lId != -1; lId = GetMinimumPropertyIdAndEntry(lId, &lEntry)) {
        const KLyrPropertyInfo* lInfo = lEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr));
        if (lInfo && !lNames.Insert(KPair<int, const char*>(lEntry->GetParentId(), lInfo->GetNameText()), lId).mFirst) {
            // A map with gaps would answer wrongly; without one the children are looked at.
            lNames.Clear();
            return;
        }
    }
    mCreateOrFind.mFirst = 1;
    // The map points at the names' texts, which must outlive properties that go while it is there.
    KLyrStringSymbol::BracketOpened();
}

void KLyrPropertyPage::EndCreateOrFindProperty() {
    if (mCreateOrFind.mFirst == 0)
        return;
    --mCreateOrFind.mFirst;
    mCreateOrFind.mSecond.Clear();
    KLyrStringSymbol::BracketClosed();
}

}  // namespace lyrsdk
