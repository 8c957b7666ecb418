#include <locale.h>
#include <strings.h>

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "lyrfilesdk/components/kbaselib/klib/kstring.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/lyrcore/klyrpropertyindex.h"
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

// Whether strcasecmp takes no characters for equal but the two cases of an ASCII letter.
bool OnlyAsciiHasCase() {
    if (MB_CUR_MAX > 1)
        return true;
#ifdef __GLIBC__
    // Usually it is the locale that every program starts with.
    static const locale_t sFirst = newlocale(LC_CTYPE_MASK, "C", nullptr);
    if (sFirst && *__ctype_tolower_loc() == sFirst->__ctype_tolower)
        return true;
#endif
    for (int lChar = 0x80; lChar <= 0xFF; ++lChar)
        if (std::tolower(lChar) != lChar)
            return false;
    return true;
}

}  // namespace

// What a lookup compares with. The index takes names for equal that are so but for the case of ASCII letters; where the
// locale has other letters in a single byte, it must not be asked without case.
struct KLyrPropertyPage::NameToFind {
    NameToFind(int pParentId, const char* pText, const KLyrPropertyPage* pTypeInfo, bool pCaseSensitive)
        : mParentId(pParentId), mText(pText), mTypeInfo(pTypeInfo), mCaseSensitive(pCaseSensitive) {}
    // What an index is asked for. The name is hashed for the first one.
    const KLyrPropertyIndex::Name& Hashed() const { return mName ? *mName : mName.emplace(mText); }
    bool IsMetBy(const KLyrPropertyInfo* pInfo) const {
        if (!pInfo || (mTypeInfo && pInfo->GetTypeInfo() != mTypeInfo))
            return false;
        const char* lName = pInfo->GetNameText();
        if (!mCaseSensitive)
            return strcasecmp(lName, mText) == 0;
        return *lName == *mText && std::strcmp(lName, mText) == 0;
    }

    int mParentId;
    const char* mText;
    const KLyrPropertyPage* mTypeInfo;
    bool mCaseSensitive;
    mutable std::optional<KLyrPropertyIndex::Name> mName;
};

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
    if (pId == -1)
        return -1;
    const NameToFind lSought(pId, pName, pTypeInfo, pCaseSensitive);
    lFound = FindHeld(lSought, pId);
    while (lFound != -1 && mInstanceOf && !lSought.IsMetBy(GetPropertyItem<KLyrPropertyInfo>(nullptr, lFound)))
        lFound = FindHeld(lSought, lFound);
    return lFound;
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

// The smallest id above pAbove for which some page of the chain holds what is sought. Another description may hide it.
int KLyrPropertyPage::FindHeld(const NameToFind& pSought, int pAbove) const {
    int lFound = -1;
    for (const KLyrPropertyPage* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        const int lOwn = lPage->FindOwn(pSought, pAbove, lFound);
        lFound = lOwn != -1 ? lOwn : lFound;
    }
    return lFound;
}

// The same on this very page, below pBelow unless that is -1.
int KLyrPropertyPage::FindOwn(const NameToFind& pSought, int pAbove, int pBelow) const {
    const KLyrPropertyIndex* lIndex = GetIndex();
    if (lIndex && (pSought.mCaseSensitive || OnlyAsciiHasCase())) {
        const KLyrPropertyEntry* lEntry = lIndex->NextNamesake(pSought.mParentId, pSought.Hashed(), pAbove);
        for (; lEntry; lEntry = KLyrPropertyIndex::NextNamesake(lEntry)) {
            const int lId = KLyrPropertyIndex::IdOf(lEntry);
            if (pBelow != -1 && lId >= pBelow)
                break;
            if (pSought.IsMetBy(lEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr))))
                return lId;
        }
        return -1;
    }
    const KEntryMap::RecordType* lRecord = mEntries.UpperBound(pAbove);
    for (; lRecord && (pBelow == -1 || lRecord->GetKey() < pBelow); lRecord = lRecord->Successor())
        if (lRecord->GetValue()->GetParentId() == pSought.mParentId &&
            pSought.IsMetBy(lRecord->GetValue()->Get(static_cast<const KLyrPropertyInfo*>(nullptr))))
            return lRecord->GetKey();
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
