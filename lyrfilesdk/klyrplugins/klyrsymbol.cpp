#include "lyrfilesdk/klyrplugins/klyrsymbol.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <mutex>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"

namespace lyrsdk {
namespace {

// What stands in front of a shared text. The characters follow in the same block.
struct Entry {
    // The next entry of the same bucket.
    Entry* mChain;
    // The next entry of the list of texts to look at when the last bracket closes.
    Entry* mNextIdle;
    bool mOnIdleList;
    // Goes from 1 to 0, and from 0 to 1, only under the table's lock; everything else happens without it.
    std::atomic<std::size_t> mCount;
    std::size_t mLength;
    unsigned int mHash;

    char* Text() { return reinterpret_cast<char*>(this + 1); }
};

Entry* EntryOf(const char* pText) {
    return reinterpret_cast<Entry*>(const_cast<char*>(pText) - sizeof(Entry));
}

struct Key {
    const char* mText;
    std::size_t mLength;
    unsigned int mHash;
};

Key MakeKey(const char* pText) {
    // FNV-1a, and a last mix because the buckets are chosen by the low bits alone.
    unsigned int lHash = 2166136261u;
    const char* lEnd = pText;
    for (; *lEnd; ++lEnd)
        lHash = (lHash ^ static_cast<unsigned char>(*lEnd)) * 16777619u;
    lHash = (lHash ^ (lHash >> 16)) * 0x85EBCA6Bu;
    lHash = (lHash ^ (lHash >> 13)) * 0xC2B2AE35u;
    return {pText, static_cast<std::size_t>(lEnd - pText), lHash ^ (lHash >> 16)};
}

// All shared texts. Everything but the lock itself is guarded by the lock. Constant-initialised and never destroyed, so
// that symbols with static storage may come before it and go after it.
class Table {
public:
    std::mutex& Lock() { return mLock; }

    Entry* Find(const Key& pKey) const {
        if (!mBuckets)
            return nullptr;
        for (Entry* lEntry = mBuckets[pKey.mHash & (mBucketCount - 1)]; lEntry; lEntry = lEntry->mChain) {
            if (lEntry->mHash == pKey.mHash && lEntry->mLength == pKey.mLength &&
                std::memcmp(lEntry->Text(), pKey.mText, pKey.mLength) == 0)
                return lEntry;
        }
        return nullptr;
    }

    // A new entry with a count of 1; null when there is no memory.
    Entry* Insert(const Key& pKey) {
        // A table that cannot grow goes on with longer chains.
        if (mEntryCount >= mBucketCount && !Grow() && !mBuckets)
            return nullptr;
        void* lMemory = LyrSdkMalloc(sizeof(Entry) + pKey.mLength + 1);
        if (!lMemory) {
            GiveBackWhenEmpty();
            return nullptr;
        }
        Entry* lEntry = ::new (lMemory) Entry{nullptr, nullptr, false, {1}, pKey.mLength, pKey.mHash};
        std::memcpy(lEntry->Text(), pKey.mText, pKey.mLength + 1);
        Link(lEntry);
        ++mEntryCount;
        return lEntry;
    }

    // What becomes of an entry whose count has fallen to 0.
    void Retire(Entry* pEntry) {
        if (mOpenBrackets == 0) {
            Free(pEntry);
        } else if (!pEntry->mOnIdleList) {
            pEntry->mOnIdleList = true;
            pEntry->mNextIdle = mIdle;
            mIdle = pEntry;
        }
    }

    void BracketOpened() { ++mOpenBrackets; }

    void BracketClosed() {
        if (mOpenBrackets == 0 || --mOpenBrackets > 0)
            return;
        while (Entry* lEntry = mIdle) {
            mIdle = lEntry->mNextIdle;
            lEntry->mOnIdleList = false;
            // It may have been interned again since.
            if (lEntry->mCount.load(std::memory_order_acquire) == 0)
                Free(lEntry);
        }
    }

private:
    static constexpr std::size_t kFirstBucketCount = 64;

    void Link(Entry* pEntry) {
        Entry*& lBucket = mBuckets[pEntry->mHash & (mBucketCount - 1)];
        pEntry->mChain = lBucket;
        lBucket = pEntry;
    }

    bool Grow() {
        // There are as many entries as buckets, each larger than two buckets: the product fits as they did.
        const std::size_t lCount = mBuckets ? mBucketCount * 2 : kFirstBucketCount;
        void* lMemory = LyrSdkMalloc(lCount * sizeof(Entry*));
        if (!lMemory)
            return false;
        Entry** lOldBuckets = mBuckets;
        const std::size_t lOldCount = mBucketCount;
        mBuckets = static_cast<Entry**>(lMemory);
        mBucketCount = lCount;
        for (std::size_t i = 0; i < lCount; ++i)
            mBuckets[i] = nullptr;
        for (std::size_t i = 0; i < lOldCount; ++i) {
            while (Entry* lEntry = lOldBuckets[i]) {
                lOldBuckets[i] = lEntry->mChain;
                Link(lEntry);
            }
        }
        LyrSdkFree(lOldBuckets);
        return true;
    }

    void Free(Entry* pEntry) {
        Entry** lLink = &mBuckets[pEntry->mHash & (mBucketCount - 1)];
        while (*lLink != pEntry)
            lLink = &(*lLink)->mChain;
        *lLink = pEntry->mChain;
        pEntry->~Entry();
        LyrSdkFree(pEntry);
        --mEntryCount;
        GiveBackWhenEmpty();
    }

    void GiveBackWhenEmpty() {
        if (mEntryCount > 0)
            return;
        LyrSdkFree(mBuckets);
        mBuckets = nullptr;
        mBucketCount = 0;
    }

    std::mutex mLock;
    // A power of two.
    std::size_t mBucketCount = 0;
    Entry** mBuckets = nullptr;
    std::size_t mEntryCount = 0;
    std::size_t mOpenBrackets = 0;
    Entry* mIdle = nullptr;
};

Table sgTable;

}  // namespace

const char KLyrStringSymbol::sgEmptyText[1] = "";

KLyrStringSymbol& KLyrStringSymbol::operator=(const KLyrStringSymbol& pOther) noexcept {
    AddReference(pOther.mText);
    Release(std::exchange(mText, pOther.mText));
    return *this;
}

KLyrStringSymbol& KLyrStringSymbol::operator=(KLyrStringSymbol&& pOther) noexcept {
    if (this != &pOther)
        Release(std::exchange(mText, std::exchange(pOther.mText, nullptr)));
    return *this;
}

KLyrStringSymbol& KLyrStringSymbol::operator=(const char* pText) {
    Assign(pText);
    return *this;
}

bool KLyrStringSymbol::Assign(const char* pText) {
    const char* lNewText = nullptr;
    if (pText && *pText) {
        const Key lKey = MakeKey(pText);
        std::lock_guard<std::mutex> lGuard(sgTable.Lock());
        Entry* lEntry = sgTable.Find(lKey);
        if (lEntry)
            lEntry->mCount.fetch_add(1, std::memory_order_relaxed);
        else
            lEntry = sgTable.Insert(lKey);
        if (!lEntry)
            return false;
        lNewText = lEntry->Text();
    }
    Release(std::exchange(mText, lNewText));
    return true;
}

const char* KLyrStringSymbol::FindText(const char* pText) {
    if (!pText || !*pText)
        return sgEmptyText;
    const Key lKey = MakeKey(pText);
    std::lock_guard<std::mutex> lGuard(sgTable.Lock());
    Entry* lEntry = sgTable.Find(lKey);
    return lEntry ? lEntry->Text() : nullptr;
}

void KLyrStringSymbol::BracketOpened() {
    std::lock_guard<std::mutex> lGuard(sgTable.Lock());
    sgTable.BracketOpened();
}

void KLyrStringSymbol::BracketClosed() {
    std::lock_guard<std::mutex> lGuard(sgTable.Lock());
    sgTable.BracketClosed();
}

void KLyrStringSymbol::AddReference(const char* pText) noexcept {
    if (pText)
        EntryOf(pText)->mCount.fetch_add(1, std::memory_order_relaxed);
}

void KLyrStringSymbol::Release(const char* pText) noexcept {
    if (!pText)
        return;
    Entry* lEntry = EntryOf(pText);
    std::size_t lCount = lEntry->mCount.load(std::memory_order_relaxed);
    while (lCount > 1) {
        if (lEntry->mCount.compare_exchange_weak(lCount, lCount - 1, std::memory_order_release,
                                                 std::memory_order_relaxed))
            return;
    }
    // The last count falls under the lock, so that a text is never found in the table after its count was seen to reach
    // 0 and before it is gone.
    std::lock_guard<std::mutex> lGuard(sgTable.Lock());
    if (lEntry->mCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        sgTable.Retire(lEntry);
}

bool KLyrStringSymbol::HasText(const char* pText) const {
    return std::strcmp(Buffer(), pText ? pText : "") == 0;
}

}  // namespace lyrsdk
