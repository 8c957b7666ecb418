#include <algorithm>
#include <cstring>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LYRSDK_HAS_ADDRESS_SANITIZER
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define LYRSDK_HAS_ADDRESS_SANITIZER
#endif
#ifdef LYRSDK_HAS_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace lyrsdk::detail {
namespace {

// The address sanitizer reports who looks at an entry that went.
#ifdef LYRSDK_HAS_ADDRESS_SANITIZER
constexpr bool kHides = true;
void Hide(void* pMemory, std::size_t pSize) {
    __asan_poison_memory_region(pMemory, pSize);
}
void Show(void* pMemory, std::size_t pSize) {
    __asan_unpoison_memory_region(pMemory, pSize);
}
#else
constexpr bool kHides = false;
void Hide(void*, std::size_t) {}
void Show(void*, std::size_t) {}
#endif

// A chunk has room for so many entries, the first one for half of them, those of a page with many entries for a part of
// their number.
constexpr unsigned kFewest = 8;
constexpr unsigned kPart = 8;

constexpr std::size_t kSize = sizeof(KLyrPropertyEntry);

// Behind the pointer to the chunk before.
constexpr std::size_t kFirst = sizeof(void*);

static_assert(kFirst % alignof(KLyrPropertyEntry) == 0 && kSize >= sizeof(void*), "entries lie behind each other");

void* NextOf(const void* pMemory) {
    void* lNext = nullptr;
    std::memcpy(&lNext, pMemory, sizeof(lNext));
    return lNext;
}

void SetNext(void* pMemory, void* pNext) {
    std::memcpy(pMemory, &pNext, sizeof(pNext));
}

}  // namespace

void* EntryPool::Take() {
    if (!mFree && !MakeRoom())
        return nullptr;
    void* lMemory = mFree;
    Show(lMemory, kSize);
    mFree = NextOf(lMemory);
    return lMemory;
}

void EntryPool::GiveBack(void* pMemory) {
    SetNext(pMemory, mFree);
    mFree = pMemory;
    Hide(pMemory, kSize);
}

bool EntryPool::MakeRoom() {
    const unsigned lCount = mCount == 0 ? kFewest / 2 : std::max(kFewest, mCount / kPart);
    // As many entries as in all chunks before do not fill half of the memory.
    char* lChunk = static_cast<char*>(LyrSdkMalloc(kFirst + lCount * kSize));
    if (!lChunk)
        return false;
    SetNext(lChunk, mChunks);
    mChunks = lChunk;
    mCount += lCount;
    for (unsigned i = lCount; i-- > 0;)
        GiveBack(lChunk + kFirst + i * kSize);
    return true;
}

void EntryPool::Clear() {
    while (kHides && mFree)
        Take();
    while (void* lChunk = mChunks) {
        mChunks = NextOf(lChunk);
        LyrSdkFree(lChunk);
    }
    mFree = nullptr;
    mCount = 0;
}

}  // namespace lyrsdk::detail
