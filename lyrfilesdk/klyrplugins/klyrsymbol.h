#pragma once

// Interned texts: equal texts share one copy, so that two symbols are equal exactly when their pointers are.
//
//     mText -----------------------------v
//     [ chain | idle | count | hash ... ][ c h a r s \0 ]
//
// One pointer, null for the empty text. The shared copies live in one table for the whole process. A copy counts the
// symbols that hold it and is freed with the last of them; while a bracket is open anywhere, freeing waits until the
// last bracket closes, and a text that is interned again in the meantime keeps its address. When the last text goes,
// the table gives its memory back.
//
// Making a symbol from a text costs the length of the text, hashed and compared once, and takes the table's lock. The
// hash differs from process to process, so that no list of names is slow by design; nothing that can be seen depends on
// it. Copying a symbol counts and takes no lock; destroying one takes the lock only when it holds the last count.
// Different symbols may be used by different threads at the same time, whether or not their texts are equal. The memory
// hook is called while the table is locked and must not use symbols. Without memory a symbol made from a text is empty,
// and an assignment keeps the old text.

#include <utility>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"

namespace lyrsdk {

class LYRSDK_API KLyrStringSymbol {
public:
    constexpr KLyrStringSymbol() noexcept = default;  // the empty text
    // The symbol of a text, or of the text of another symbol. Null is the empty text.
    KLyrStringSymbol(const char* pText) { Assign(pText); }
    KLyrStringSymbol(const KLyrStringSymbol& pOther) noexcept : mText(pOther.mText) { AddReference(mText); }
    KLyrStringSymbol(KLyrStringSymbol&& pOther) noexcept : mText(std::exchange(pOther.mText, nullptr)) {}
    ~KLyrStringSymbol() { Release(mText); }

    // Becomes the symbol of another one's text, or of a text; null is the empty text.
    KLyrStringSymbol& operator=(const KLyrStringSymbol& pOther) noexcept;
    KLyrStringSymbol& operator=(KLyrStringSymbol&& pOther) noexcept;
    KLyrStringSymbol& operator=(const char* pText);

    // Takes a text, which may be the symbol's own or part of it; null is the empty text. False, and unchanged, when
    // there is no memory.
    bool Assign(const char* pText);

    // Whether this is the empty text.
    bool IsEmpty() const { return !mText; }
    // The shared copy, never null; every empty symbol gives the same pointer. It lives as long as a symbol of this
    // text.
    const char* Buffer() const { return mText ? mText : sgEmptyText; }
    // What Buffer gives.
    operator const char*() const { return Buffer(); }

    // By identity, in constant time. A text that was not taken for want of memory makes its symbol equal to the empty
    // one.
    friend bool operator==(const KLyrStringSymbol& pLeft, const KLyrStringSymbol& pRight) {
        return pLeft.mText == pRight.mText;
    }
    friend bool operator!=(const KLyrStringSymbol& pLeft, const KLyrStringSymbol& pRight) {
        return pLeft.mText != pRight.mText;
    }
    // By the bytes; null is the empty text.
    friend bool operator==(const KLyrStringSymbol& pLeft, const char* pRight) { return pLeft.HasText(pRight); }
    friend bool operator==(const char* pLeft, const KLyrStringSymbol& pRight) { return pRight.HasText(pLeft); }
    friend bool operator!=(const KLyrStringSymbol& pLeft, const char* pRight) { return !pLeft.HasText(pRight); }
    friend bool operator!=(const char* pLeft, const KLyrStringSymbol& pRight) { return !pRight.HasText(pLeft); }

    // The shared copy of pText, which Buffer of its symbols gives, or null when the table holds no such text. Interns
    // nothing. The empty text and null give what an empty symbol gives.
    static const char* FindText(const char* pText);

    // While brackets are open, the texts of symbols that go are kept. Brackets nest and are counted over all threads.
    // Closing the last one frees the texts that no symbol holds, at a cost of their number; closing without an open
    // bracket does nothing.
    static void BracketOpened();
    static void BracketClosed();

private:
    static void AddReference(const char* pText) noexcept;
    static void Release(const char* pText) noexcept;
    bool HasText(const char* pText) const;

    static const char sgEmptyText[1];

    const char* mText = nullptr;
};

static_assert(sizeof(KLyrStringSymbol) == sizeof(char*), "a symbol is one pointer");

}  // namespace lyrsdk
