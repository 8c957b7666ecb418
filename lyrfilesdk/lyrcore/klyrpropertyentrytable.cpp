#include <algorithm>
#include <climits>
#include <cstdint>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"

namespace lyrsdk {
namespace {

// A table has at most so many slots for each entry. Within that it has room for entries to come, as many slots again
// and these.
constexpr std::uint64_t kSlotsAnEntry = 4;
constexpr std::uint64_t kMoreSlots = 32;

// Entries that follow each other by their ids.
struct Run {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): there is a first entry
    std::uint64_t Span() const { return static_cast<std::uint64_t>(mLast - mFirst->GetKey()) + 1; }
    std::uint64_t MostSlots() const { return kSlotsAnEntry * mCount; }

    const KLyrPropertyPage::KEntryMap::RecordType* mFirst = nullptr;
    int mLast = 0;
    std::uint64_t mCount = 0;
};

// Where the slots are laid: over all entries if half of them would be used, else over the run that leaves the most of
// the slots that it may have. No such run begins with entries that take more slots than they may have.
Run DensestRun(const KLyrPropertyPage::KEntryMap& pEntries) {
    Run lRun;
    lRun.mFirst = pEntries.Minimum();
    lRun.mLast = pEntries.Maximum()->GetKey();
    lRun.mCount = static_cast<std::uint64_t>(pEntries.GetSize());
    if (lRun.Span() <= 2 * lRun.mCount)
        return lRun;

    Run lBest;
    for (auto* lRecord = pEntries.Minimum(); lRecord; lRecord = lRecord->Successor()) {
        lRun.mLast = lRecord->GetKey();
        if (!lBest.mFirst || lRun.Span() > lRun.MostSlots())
            lRun = Run{lRecord, lRecord->GetKey(), 0};
        ++lRun.mCount;
        if (!lBest.mFirst || lRun.MostSlots() - lRun.Span() > lBest.MostSlots() - lBest.Span())
            lBest = lRun;
    }
    return lBest;
}

}  // namespace

// Memory for the entries is more than their slots take, so that no size overflows. No id is larger than INT_MAX.
KLyrPropertyPage::EntryTable* KLyrPropertyPage::EntryTable::Renew(const KEntryMap& pEntries, EntryTable* pOld) {
    const Run lRun = DensestRun(pEntries);
    const std::uint64_t lSpan = lRun.Span();
    const std::uint64_t lRoom =
        std::min({lSpan + kMoreSlots, lRun.MostSlots() - lSpan, static_cast<std::uint64_t>(INT_MAX - lRun.mLast)});
    const std::size_t lSlots = static_cast<std::size_t>(lSpan + lRoom);
    void* lMemory = LyrSdkMalloc(sizeof(EntryTable) + lSlots * sizeof(KLyrPropertyEntry*));
    if (!lMemory)
        return pOld;
    auto* lTable = ::new (lMemory) EntryTable{
        pOld ? pOld->mIndex : nullptr, static_cast<unsigned>(lRun.mFirst->GetKey()), static_cast<unsigned>(lSlots), 0};
    std::fill_n(lTable->Slots(), lSlots, nullptr);
    for (auto* lRecord = lRun.mFirst; lRecord && lTable->HasSlot(lRecord->GetKey()); lRecord = lRecord->Successor())
        lTable->At(lRecord->GetKey()) = lRecord->GetValue();
    LyrSdkFree(pOld);
    return lTable;
}

bool KLyrPropertyPage::EntryTable::Add(int pId, KLyrPropertyEntry* pEntry, int pCount) {
    ++mAdded;
    if (HasSlot(pId)) {
        At(pId) = pEntry;
        return true;
    }
    const bool lIsDue = mAdded >= static_cast<unsigned>(pCount) / 4;
    if (lIsDue)
        mAdded = 0;
    return !lIsDue;
}

}  // namespace lyrsdk
