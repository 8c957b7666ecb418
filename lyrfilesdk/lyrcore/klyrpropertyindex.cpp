#include "lyrfilesdk/lyrcore/klyrpropertyindex.h"

#include <cstring>

#include "lyrfilesdk/klyrplugins/klyrtexthash.h"

namespace lyrsdk {
namespace {

// Records that an index makes room for at a time, and records of entries that went which it always puts up with.
constexpr unsigned kRecords = 32;
constexpr unsigned kFirstSlots = 128;

char Fold(char pChar) {
    return pChar >= 'A' && pChar <= 'Z' ? static_cast<char>(pChar + ('a' - 'A')) : pChar;
}

bool AreNamesakes(const char* pLeft, const char* pRight) {
    if (std::strcmp(pLeft, pRight) == 0)
        return true;
    while (*pLeft && Fold(*pLeft) == Fold(*pRight)) {
        ++pLeft;
        ++pRight;
    }
    return *pLeft == *pRight;
}

KLyrPropertyInfo* InfoOf(const KLyrPropertyEntry* pEntry) {
    return pEntry->Get(static_cast<const KLyrPropertyInfo*>(nullptr));
}

}  // namespace

// --- keys and hashes -----------------------------------------------------------------------------------------------

KLyrPropertyIndex::Name::Name(const char* pText)
    : mText(pText), mHash(detail::HashWithoutCase(pText, std::strlen(pText))) {}

// Parents follow each other by their ids; a factor of all bits keeps what they make of one name apart.
unsigned KLyrPropertyIndex::Hash(int pParentId, std::uint32_t pHashOfName) {
    const std::uint64_t lHash = detail::MultiplyAndFold(
        pHashOfName * 0x9E3779B97F4A7C15u, detail::SeedOfHashes().mLeft + static_cast<unsigned>(pParentId));
    return static_cast<unsigned>(lHash ^ lHash >> 32);
}

// No id is negative, but what a search starts from may be.
KLyrPropertyIndex::Key KLyrPropertyIndex::KeyOf(int pParentId, int pId) {
    const Key lParent = static_cast<unsigned>(pParentId) ^ 0x80000000u;
    return lParent << 32 | (pId < 0 ? 0u : static_cast<unsigned>(pId) + 1u);
}

bool KLyrPropertyIndex::AreOfOneParent(Key pLeft, Key pRight) {
    return pLeft >> 32 == pRight >> 32;
}

int KLyrPropertyIndex::IdOf(const Record* pRecord) {
    return static_cast<int>(static_cast<unsigned>(pRecord->GetKey()) - 1u);
}

KLyrPropertyIndex::Record* KLyrPropertyIndex::RecordOf(const KLyrPropertyEntry* pEntry) {
    return static_cast<Record*>(pEntry->mIndexed);
}

int KLyrPropertyIndex::IdOf(const KLyrPropertyEntry* pEntry) {
    return IdOf(RecordOf(pEntry));
}

// --- entries -------------------------------------------------------------------------------------------------------

KLyrPropertyIndex* KLyrPropertyIndex::Create(const KLyrPropertyPage::KEntryMap& pEntries) {
    KLyrPropertyIndex* lIndex = LyrSdkNew<KLyrPropertyIndex>();
    if (!lIndex)
        return nullptr;
    const unsigned lCount = static_cast<unsigned>(pEntries.GetSize());
    unsigned lSlots = kFirstSlots;
    while (lSlots / 2 <= lCount && lSlots != 0)  // LCOV_EXCL_BR_LINE: 0 takes more properties than memory holds
        lSlots *= 2;
    if (!lIndex->mChildren.Reserve(lCount + lCount / 2 + kRecords) || !lIndex->ResizeTable(lSlots)) {
        Destroy(lIndex);
        return nullptr;
    }
    for (const auto* lRecord = pEntries.Minimum(); lRecord; lRecord = lRecord->Successor())
        lIndex->Add(lRecord->GetKey(), lRecord->GetValue(), nullptr);
    for (const auto* lRecord = pEntries.Minimum(); lRecord; lRecord = lRecord->Successor())
        lIndex->FindFirstChild(lRecord->GetValue());
    return lIndex;
}

void KLyrPropertyIndex::Destroy(KLyrPropertyIndex* pIndex) {
    LyrSdkDelete(pIndex);
}

void KLyrPropertyIndex::Forget() {
    for (auto lIt = mChildren.Begin(); lIt != mChildren.End(); ++lIt)
        lIt->GetValue().mEntry->mIndexed = nullptr;
}

// The map's allocator takes nothing back; see the page's own map.
bool KLyrPropertyIndex::MakeRoom() {
    const unsigned lLive = static_cast<unsigned>(mChildren.GetSize());
    const bool lMostlyDead = mChildren.GetReservedCount() > std::size_t(2) * lLive + kRecords;
    if (!lMostlyDead || !mChildren.Compact(lLive + kRecords))
        return mChildren.Reserve(kRecords + lLive / 2);
    for (Record* lRecord = mChildren.Minimum(); lRecord; lRecord = lRecord->Successor())
        lRecord->GetValue().mEntry->mIndexed = lRecord;
    return true;
}

// Half of a table's slots are used at most, and one more.
bool KLyrPropertyIndex::Add(int pId, KLyrPropertyEntry* pEntry, KLyrPropertyEntry* pParent) {
    if (!mChildren.HasRoom() && !MakeRoom())
        return false;
    const unsigned lSlots = mTableMask + 1;
    if (static_cast<unsigned>(mChildren.GetSize()) > lSlots / 2 && !ResizeTable(lSlots * 2))
        return false;
    const Node lNode{pEntry, pEntry, nullptr, this, 0, -1};
    pEntry->mIndexed = mChildren.Insert(KeyOf(pEntry->GetParentId(), pId), lNode).mFirst;
    PutIn(pEntry);
    // As unsigned numbers, all ids are below -1.
    if (pParent && pId > pEntry->GetParentId() &&
        static_cast<unsigned>(pId) < static_cast<unsigned>(FirstChild(pParent)))
        NodeOf(pParent).mFirstChild = pId;
    return true;
}

void KLyrPropertyIndex::Remove(KLyrPropertyEntry* pEntry, KLyrPropertyEntry* pParent) {
    if (pParent && FirstChild(pParent) == IdOf(pEntry))
        NodeOf(pParent).mFirstChild = NextSibling(pEntry);
    TakeOut(pEntry);
    mChildren.Remove(RecordOf(pEntry)->GetKey());
    pEntry->mIndexed = nullptr;
}

void KLyrPropertyIndex::FindFirstChild(KLyrPropertyEntry* pEntry) {
    const int lId = IdOf(pEntry);
    NodeOf(pEntry).mFirstChild = NextChild(lId, lId);
}

int KLyrPropertyIndex::NextChild(int pParentId, int pAfter) const {
    const Key lKey = KeyOf(pParentId, pAfter);
    const Record* lRecord = mChildren.UpperBound(lKey);
    return lRecord && AreOfOneParent(lRecord->GetKey(), lKey) ? IdOf(lRecord) : -1;
}

int KLyrPropertyIndex::NextSibling(const KLyrPropertyEntry* pEntry) {
    const Record* lRecord = RecordOf(pEntry);
    const Record* lNext = lRecord->Successor();
    return lNext && AreOfOneParent(lNext->GetKey(), lRecord->GetKey()) ? IdOf(lNext) : -1;
}

// --- namesakes -----------------------------------------------------------------------------------------------------

// An entry stands above those of lower rank. Ids that come in order have ranks in no order, which keeps a tree flat.
// One multiplication alone would give equal distances, and with some seeds long rising runs.
std::uint64_t KLyrPropertyIndex::RankOf(const KLyrPropertyEntry* pEntry) {
    const detail::HashSeed& lSeed = detail::SeedOfHashes();
    const std::uint64_t lSpread =
        detail::MultiplyAndFold(lSeed.mLeft ^ static_cast<unsigned>(IdOf(pEntry)), lSeed.mRight);
    return detail::MultiplyAndFold(lSpread, lSeed.mLeft | 1);
}

// The entry of the tree with the smallest id above pAfter, or null.
const KLyrPropertyEntry* KLyrPropertyIndex::NextIn(const KLyrPropertyEntry* pTree, int pAfter) {
    const KLyrPropertyEntry* lNext = nullptr;
    while (pTree) {
        const bool lIsBehind = IdOf(pTree) > pAfter;
        if (lIsBehind)
            lNext = pTree;
        pTree = lIsBehind ? NodeOf(pTree).mBefore : NodeOf(pTree).mBehind;
    }
    return lNext;
}

const KLyrPropertyEntry* KLyrPropertyIndex::NextNamesake(int pParentId, const Name& pName, int pAfter) const {
    return NextIn(mTable[FindSlot(pParentId, pName.mText, Hash(pParentId, pName.mHash))], pAfter);
}

const KLyrPropertyEntry* KLyrPropertyIndex::NextNamesake(const KLyrPropertyEntry* pEntry) {
    const KLyrPropertyIndex* lIndex = NodeOf(pEntry).mIndex;
    return NextIn(lIndex->mTable[lIndex->SlotOf(pEntry)], IdOf(pEntry));
}

// The slot of the tree, or the free one that it would take.
unsigned KLyrPropertyIndex::FindSlot(int pParentId, const char* pName, unsigned pHash) const {
    unsigned lSlot = pHash & mTableMask;
    while (const KLyrPropertyEntry* lTop = mTable[lSlot]) {
        if (NodeOf(lTop).mHash == pHash && lTop->GetParentId() == pParentId &&
            AreNamesakes(InfoOf(lTop)->GetNameText(), pName))
            break;
        lSlot = (lSlot + 1) & mTableMask;
    }
    return lSlot;
}

unsigned KLyrPropertyIndex::SlotOf(const KLyrPropertyEntry* pEntry) const {
    return FindSlot(pEntry->GetParentId(), InfoOf(pEntry)->GetNameText(), NodeOf(pEntry).mHash);
}

void KLyrPropertyIndex::PutInName(KLyrPropertyEntry* pEntry) {
    NodeOf(pEntry).mIndex->PutIn(pEntry);
}

void KLyrPropertyIndex::TakeOutName(KLyrPropertyEntry* pEntry) {
    NodeOf(pEntry).mIndex->TakeOut(pEntry);
}

// There are fewer trees than slots: every one has an entry, and Add counts those. The entry takes the place of the
// first one on its way down that has a lower rank, and that one's subtree is split.
void KLyrPropertyIndex::PutIn(KLyrPropertyEntry* pEntry) {
    const KLyrPropertyInfo* lInfo = InfoOf(pEntry);
    if (!lInfo)
        return;
    const int lId = IdOf(pEntry);
    Node& lNode = NodeOf(pEntry);
    lNode.mHash = Hash(pEntry->GetParentId(), detail::HashWithoutCaseOfSymbol(lInfo->GetNameText()));
    KLyrPropertyEntry** lLink = &mTable[SlotOf(pEntry)];
    while (*lLink && RankOf(*lLink) >= RankOf(pEntry))
        lLink = IdOf(*lLink) < lId ? &NodeOf(*lLink).mBehind : &NodeOf(*lLink).mBefore;

    KLyrPropertyEntry* lRest = *lLink;
    *lLink = pEntry;
    KLyrPropertyEntry** lBefore = &lNode.mBefore;
    KLyrPropertyEntry** lBehind = &lNode.mBehind;
    while (lRest) {
        const bool lIsBefore = IdOf(lRest) < lId;
        KLyrPropertyEntry**& lEnd = lIsBefore ? lBefore : lBehind;
        *lEnd = lRest;
        lEnd = lIsBefore ? &NodeOf(lRest).mBehind : &NodeOf(lRest).mBefore;
        lRest = *lEnd;
    }
    *lBefore = *lBehind = nullptr;
}

// The subtrees of the entry are merged in its place.
void KLyrPropertyIndex::TakeOut(KLyrPropertyEntry* pEntry) {
    Node& lNode = NodeOf(pEntry);
    if (lNode.mBefore == pEntry)
        return;
    const unsigned lSlot = SlotOf(pEntry);
    KLyrPropertyEntry** lLink = &mTable[lSlot];
    while (*lLink != pEntry)
        lLink = IdOf(*lLink) < IdOf(pEntry) ? &NodeOf(*lLink).mBehind : &NodeOf(*lLink).mBefore;

    KLyrPropertyEntry* lBefore = lNode.mBefore;
    KLyrPropertyEntry* lBehind = lNode.mBehind;
    while (lBefore && lBehind) {
        const bool lBeforeIsTop = RankOf(lBefore) >= RankOf(lBehind);
        KLyrPropertyEntry*& lTop = lBeforeIsTop ? lBefore : lBehind;
        *lLink = lTop;
        lLink = lBeforeIsTop ? &NodeOf(lTop).mBehind : &NodeOf(lTop).mBefore;
        lTop = *lLink;
    }
    *lLink = lBefore ? lBefore : lBehind;
    lNode.mBefore = pEntry;
    if (!mTable[lSlot])
        FreeSlot(lSlot);
}

// Pulls later trees of the run back into the hole, so that the table needs no marks for what was removed.
void KLyrPropertyIndex::FreeSlot(unsigned pSlot) {
    unsigned lHole = pSlot;
    for (unsigned i = (lHole + 1) & mTableMask; mTable[i]; i = (i + 1) & mTableMask) {
        const unsigned lHome = NodeOf(mTable[i]).mHash & mTableMask;
        if (((i - lHome) & mTableMask) >= ((i - lHole) & mTableMask)) {
            mTable[lHole] = mTable[i];
            lHole = i;
        }
    }
    mTable[lHole] = nullptr;
}

bool KLyrPropertyIndex::ResizeTable(unsigned pSlots) {
    const std::uint64_t lBytes = std::uint64_t(pSlots) * sizeof(KLyrPropertyEntry*);
    if (lBytes == 0 || lBytes > static_cast<std::size_t>(-1))
        return false;  // LCOV_EXCL_LINE: takes more properties than memory holds
    KLyrPropertyEntry** lTable = static_cast<KLyrPropertyEntry**>(LyrSdkMalloc(static_cast<std::size_t>(lBytes)));
    if (!lTable)
        return false;
    for (unsigned i = 0; i < pSlots; ++i)
        lTable[i] = nullptr;
    for (unsigned i = 0; mTable && i <= mTableMask; ++i) {
        if (!mTable[i])
            continue;
        unsigned lSlot = NodeOf(mTable[i]).mHash & (pSlots - 1);
        while (lTable[lSlot])
            lSlot = (lSlot + 1) & (pSlots - 1);
        lTable[lSlot] = mTable[i];
    }
    LyrSdkFree(mTable);
    mTable = lTable;
    mTableMask = pSlots - 1;
    return true;
}

}  // namespace lyrsdk
