#pragma once

// Lists of strings, each with a number of the caller's.
//
// A list owns its items and is linear where it moves or searches them. Null texts are empty texts. Invalid indexes and
// missing memory change nothing and give the failure result: -1, false or null. A text handed in may be one of the
// list's own.

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/components/kbaselib/klib/karrayul.h"
#include "lyrfilesdk/components/kbaselib/klib/kstring.h"

namespace lyrsdk {

// A number that the caller attaches to a string.
using kReference = unsigned int;

// An item of a list.
struct LYRSDK_API KStringListItem {
    // The text.
    KString mString;
    // The number that the caller gave with it.
    kReference mReference = 0;
};

static_assert(sizeof(void*) != 4 || sizeof(KStringListItem) == 8, "string and reference");

// A list of items, each a text with a number.
template <typename Item>
class LYRSDK_API KStringListTemplate {
public:
    KStringListTemplate() = default;  // empty
    virtual ~KStringListTemplate();
    KStringListTemplate(const KStringListTemplate&) = delete;
    KStringListTemplate& operator=(const KStringListTemplate&) = delete;

    // Replaces a string; its reference stays. False for an invalid index or without memory.
    virtual bool SetStringAt(int pIndex, const char* pText);
    // Inserts in front of the string at pIndex; past the end appends. The index of the new string, or -1 for a negative
    // index or without memory.
    virtual int InsertAt(int pIndex, const char* pText, kReference pReference);
    // Removes a string. Nothing happens for an invalid index.
    virtual void RemoveAt(int pIndex);
    // Removes every string.
    virtual void Clear();
    // Gives all strings joined, a line feed behind each. False, and pText unchanged, without memory.
    virtual bool GetText(KString& pText) const;
    // Replaces the list by the lines of pText, with references 0; a last line needs no line feed. What GetText gave
    // makes the same strings again, provided that none of them contains a line feed. False, and the list unchanged,
    // without memory.
    virtual bool SetText(const char* pText);

    // The number of strings.
    int GetCount() const { return mList.GetCount(); }
    // The text at the index, or null past the end. A negative index gives the first text. Valid until that string is
    // changed or removed; its bytes may be overwritten in place, its length not.
    char* GetStringAt(int pIndex) const;
    // The reference at the index, or 0.
    kReference GetReferenceAt(int pIndex) const;
    // The first index whose string equals pText, or -1.
    int FindIndex(const char* pText) const;
    // Appends. The index of the new string, or -1 without memory.
    int Add(const char* pText, kReference pReference) { return InsertAt(GetCount(), pText, pReference); }

private:
    int InsertItem(int pIndex, const char* pText, int pLength, kReference pReference);
    void DeleteItems();

    KArrayTemplate<Item*> mList;
};

extern template class KStringListTemplate<KStringListItem>;

// The list of plain items.
class LYRSDK_API KStringList : public KStringListTemplate<KStringListItem> {
public:
    KStringList();  // empty
    ~KStringList() override;
};

}  // namespace lyrsdk
