#include "lyrfilesdk/klyrplugins/klyrsymbol.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <thread>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kmemory.h"
#include "lyrfilesdk/klyrplugins/klyrtexthash.h"

namespace lyrsdk {
namespace {

// What stands in front of a shared text. The characters follow in the same block.
struct Entry {
    // The next entry of the same bucket.
    Entry* mChain;
    // The next entry of the list of texts to look at when the last bracket closes; itself at the end of the list, null
    // outside of it.
    Entry* mNextIdle;
    // Goes from 1 to 0, and from 0 to 1, only under the table's lock; everything else happens without it.
    std::atomic<std::size_t> mCount;
    std::size_t mLength;
    unsigned int mHash;
    // 0 until it is asked for. Two threads that ask at once write the same.
    std::atomic<std::uint32_t> mHashWithoutCase;

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

// Of a text that is not empty.
Key MakeKey(const char* pText) {
    const std::size_t lLength = std::strlen(pText);
    const std::uint64_t lHash = detail::HashText<detail::AsWritten>(pText, lLength);
    return {pText, lLength, static_cast<unsigned int>(lHash ^ lHash >> 32)};
}

// A lock that is held for a short time but when the table grows, at a fraction of a mutex's price when nobody else
// wants it. Of the threads that have to wait all but one sleep. Constant-initialised and trivially destroyed.
class ShortLock {
public:
    void lock() {
        bool lTaken = false;
        if (!mTaken.compare_exchange_strong(lTaken, true, std::memory_order_acquire, std::memory_order_relaxed))
            Wait();  // LCOV_EXCL_LINE: as below
    }
    void unlock() { mTaken.store(false, std::memory_order_release); }

private:
    // LCOV_EXCL_START: how far a thread gets here depends on when others lose their processor
    // The holder may have lost its processor, so that more than a few tries are better spent on letting it run. A
    // thread of higher priority does not let it run by yielding, and has to sleep.
    void Wait() {
        constexpr int kFewTries = 64;
        constexpr int kManyTries = 4096;
        const std::lock_guard<std::mutex> lGuard(mWaiting);
        int lTries = 0;
        while (mTaken.load(std::memory_order_relaxed) || mTaken.exchange(true, std::memory_order_acquire)) {
            if (lTries == kManyTries)
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            else if (++lTries > kFewTries)
                std::this_thread::yield();
        }
    }
    // LCOV_EXCL_STOP

    std::atomic<bool> mTaken{false};
    std::mutex mWaiting;
};

// All shared texts. Everything but the lock itself is guarded by the lock. Constant-initialised and never destroyed, so
// that symbols with static storage may come before it and go after it.
class Table {
public:
    ShortLock& Lock() { return mLock; }

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
        Entry* lEntry = ::new (lMemory) Entry{nullptr, nullptr, {1}, pKey.mLength, pKey.mHash, {0}};
        std::memcpy(lEntry->Text(), pKey.mText, pKey.mLength + 1);
        Link(lEntry);
        ++mEntryCount;
        return lEntry;
    }

    // What becomes of an entry whose count has fallen to 0.
    void Retire(Entry* pEntry) {
        if (mOpenBrackets == 0) {
            Free(pEntry);
        } else if (!pEntry->mNextIdle) {
            pEntry->mNextIdle = mIdle ? mIdle : pEntry;
            mIdle = pEntry;
        }
    }

    void BracketOpened() { ++mOpenBrackets; }

    void BracketClosed() {
        if (mOpenBrackets == 0 || --mOpenBrackets > 0)
            return;
        while (Entry* lEntry = mIdle) {
            mIdle = lEntry->mNextIdle != lEntry ? lEntry->mNextIdle : nullptr;
            lEntry->mNextIdle = nullptr;
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
        // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): it is in its bucket
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

    ShortLock mLock;
    // A power of two.
    std::size_t mBucketCount = 0;
    Entry** mBuckets = nullptr;
    std::size_t mEntryCount = 0;
    std::size_t mOpenBrackets = 0;
    Entry* mIdle = nullptr;
};

Table sgTable;

static_assert(std::is_trivially_destructible_v<Table>, "symbols may go after it");

}  // namespace

// An address in the program and one on the stack: either may be the same in every process.
detail::HashSeed::HashSeed() {
    static const char sPlace = 0;
    const char lPlace = 0;
    const std::uint64_t lAddresses =
        reinterpret_cast<std::uintptr_t>(&sPlace) ^ std::uint64_t(reinterpret_cast<std::uintptr_t>(&lPlace)) << 28;
    mLeft = MultiplyAndFold(lAddresses ^ 0x9E3779B97F4A7C15u, 0xBF58476D1CE4E5B9u);
    mRight = MultiplyAndFold(lAddresses ^ 0x94D049BB133111EBu, 0xD6E8FEB86659FD93u);
}

std::uint32_t detail::HashWithoutCaseOfSymbol(const char* pBuffer) {
    if (!*pBuffer)
        return HashWithoutCase(pBuffer, 0);
    Entry* lEntry = EntryOf(pBuffer);
    std::uint32_t lHash = lEntry->mHashWithoutCase.load(std::memory_order_relaxed);
    if (lHash == 0) {
        lHash = HashWithoutCase(pBuffer, lEntry->mLength);
        lEntry->mHashWithoutCase.store(lHash, std::memory_order_relaxed);
    }
    return lHash;
}

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
        const std::lock_guard<ShortLock> lGuard(sgTable.Lock());
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
    const std::lock_guard<ShortLock> lGuard(sgTable.Lock());
    Entry* lEntry = sgTable.Find(lKey);
    return lEntry ? lEntry->Text() : nullptr;
}

void KLyrStringSymbol::BracketOpened() {
    const std::lock_guard<ShortLock> lGuard(sgTable.Lock());
    sgTable.BracketOpened();
}

void KLyrStringSymbol::BracketClosed() {
    const std::lock_guard<ShortLock> lGuard(sgTable.Lock());
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
    const std::lock_guard<ShortLock> lGuard(sgTable.Lock());
    if (lEntry->mCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        sgTable.Retire(lEntry);
}

bool KLyrStringSymbol::HasText(const char* pText) const {
    return std::strcmp(Buffer(), pText ? pText : "") == 0;
}

}  // namespace lyrsdk
