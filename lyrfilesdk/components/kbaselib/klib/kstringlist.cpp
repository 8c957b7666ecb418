#include "lyrfilesdk/components/kbaselib/klib/kstringlist.h"

#include <climits>
#include <cstring>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

// The length as Assign takes it: -1 for a text that no string can hold.
int LengthOf(const char* pText) {
    const std::size_t lLength = pText ? std::strlen(pText) : 0;
    return lLength <= static_cast<std::size_t>(INT_MAX) ? static_cast<int>(lLength) : -1;
}

}  // namespace

template <typename Item>
KStringListTemplate<Item>::~KStringListTemplate() {
    DeleteItems();
}

template <typename Item>
void KStringListTemplate<Item>::DeleteItems() {
    for (int lIndex = 0; lIndex < mList.GetCount(); ++lIndex)
        LyrSdkDelete(mList[lIndex]);
    mList.Clear();
}

template <typename Item>
bool KStringListTemplate<Item>::SetStringAt(int pIndex, const char* pText) {
    return mList.ValidateIndex(pIndex) && mList[pIndex]->mString.Assign(pText, LengthOf(pText));
}

template <typename Item>
int KStringListTemplate<Item>::InsertAt(int pIndex, const char* pText, kReference pReference) {
    return InsertItem(pIndex, pText, LengthOf(pText), pReference);
}

template <typename Item>
int KStringListTemplate<Item>::InsertItem(int pIndex, const char* pText, int pLength, kReference pReference) {
    Item* lItem = LyrSdkNew<Item>();
    if (!lItem)
        return -1;
    lItem->mReference = pReference;
    const int lIndex = lItem->mString.Assign(pText, pLength) ? mList.InsertAt(pIndex, lItem) : -1;
    if (lIndex == -1)
        LyrSdkDelete(lItem);
    return lIndex;
}

template <typename Item>
void KStringListTemplate<Item>::RemoveAt(int pIndex) {
    if (mList.ValidateIndex(pIndex))
        LyrSdkDelete(mList.RemoveAt(pIndex));
}

template <typename Item>
void KStringListTemplate<Item>::Clear() {
    DeleteItems();
}

template <typename Item>
bool KStringListTemplate<Item>::GetText(KString& pText) const {
    KString lText;
    for (int lIndex = 0; lIndex < mList.GetCount(); ++lIndex)
        if (!lText.Append(mList[lIndex]->mString) || !lText.Append("\n", 1))
            return false;
    pText = static_cast<KString&&>(lText);
    return true;
}

template <typename Item>
bool KStringListTemplate<Item>::SetText(const char* pText) {
    KStringListTemplate lLines;
    while (pText && *pText) {
        const std::size_t lLength = std::strcspn(pText, "\n");
        if (lLength > static_cast<std::size_t>(INT_MAX) ||
            lLines.InsertItem(lLines.GetCount(), pText, static_cast<int>(lLength), 0) == -1)
            return false;
        pText += lLength;
        pText += *pText == '\n';
    }
    mList.Swap(lLines.mList);
    return true;
}

template <typename Item>
char* KStringListTemplate<Item>::GetStringAt(int pIndex) const {
    if (pIndex >= mList.GetCount())
        return nullptr;
    Item* lItem = mList[pIndex];
    return lItem ? lItem->mString.Buffer() : nullptr;
}

template <typename Item>
kReference KStringListTemplate<Item>::GetReferenceAt(int pIndex) const {
    return mList.ValidateIndex(pIndex) ? mList[pIndex]->mReference : 0;
}

template <typename Item>
int KStringListTemplate<Item>::FindIndex(const char* pText) const {
    for (int lIndex = 0; lIndex < mList.GetCount(); ++lIndex)
        if (mList[lIndex]->mString == pText)
            return lIndex;
    return -1;
}

template class KStringListTemplate<KStringListItem>;

KStringList::KStringList() = default;
KStringList::~KStringList() = default;

}  // namespace lyrsdk
