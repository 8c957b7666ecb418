// Pages and their properties: lookups, adding, values, making and destroying.

#include "tests/model/property_model.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

namespace lyrmodel {

bool Entry::Has(Item pItem) const {
    switch (pItem) {
        case Item::eInfo:
            return mInfo != nullptr;
        case Item::eValue:
            return mValue != nullptr;
        case Item::eConnect:
            return mConnect != nullptr;
        default:
            return true;
    }
}

Entry* Page::Own(int pId) {
    const auto lFound = mEntries.find(pId);
    return lFound == mEntries.end() ? nullptr : &lFound->second;
}

Found Page::GetEntry(int pId) {
    for (Page* lPage = this; lPage; lPage = lPage->mInstanceOf)
        if (Entry* lEntry = lPage->Own(pId))
            return {lEntry, lPage};
    return {};
}

Found Page::GetItem(Item pItem, int pId) {
    for (Page* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        Entry* lEntry = lPage->Own(pId);
        if (lEntry && lEntry->Has(pItem))
            return {lEntry, lPage};
    }
    return {};
}

Page* Page::GetFirstItem(Item pItem, int pId) {
    Page* lFirst = nullptr;
    for (Page* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        Entry* lEntry = lPage->Own(pId);
        if (lEntry && lEntry->Has(pItem))
            lFirst = lPage;
    }
    return lFirst;
}

Info* Page::GetInfo(int pId) {
    const Found lFound = GetItem(Item::eInfo, pId);
    return lFound ? lFound.mEntry->mInfo.get() : nullptr;
}

std::vector<int> Page::VisibleIds() {
    std::vector<int> lIds;
    for (Page* lPage = this; lPage; lPage = lPage->mInstanceOf)
        for (const auto& lEntry : lPage->mEntries)
            lIds.push_back(lEntry.first);
    std::sort(lIds.begin(), lIds.end());
    lIds.erase(std::unique(lIds.begin(), lIds.end()), lIds.end());
    return lIds;
}

int Page::Depth() {
    int lDepth = 1;
    for (Page* lPage = mInstanceOf; lPage; lPage = lPage->mInstanceOf)
        ++lDepth;
    return lDepth;
}

// --- adding

int Page::TakeId() {
    const int lId = *mNextId;
    if (lId >= 0)
        *mNextId = lId == INT_MAX ? -1 : lId + 1;
    return lId;
}

bool Page::SkipTo(int pNextId) {
    if (*mNextId < 0 || pNextId < *mNextId)
        return false;
    *mNextId = pNextId;
    return true;
}

int Page::AddEntry(int pParent, const Plan& pPlan) {
    const int lId = mWorld.mAddsLeft == 0 ? -1 : TakeId();
    if (lId < 0)
        return -1;
    if (mWorld.mAddsLeft > 0)
        --mWorld.mAddsLeft;
    Entry& lEntry = mEntries[lId];
    lEntry.mParent = pParent;
    lEntry.mInfo = pPlan.mInfo;
    lEntry.mValue = pPlan.mValue;
    if (pPlan.mConnect)
        lEntry.mConnect = std::make_shared<Connect>(this, lId);
    lEntry.ModifyFlags(kAllFlags, false);
    if (!mNames.empty() && pPlan.mInfo) {
        const auto lKey = std::make_pair(pParent, pPlan.mInfo->mName);
        if (mWorld.mFault == Fault::eBracketKeepsTheLast)
            mNames[lKey] = lId;
        mNames.emplace(lKey, lId);
    }
    return lId;
}

int Page::Add(int pParent, const std::string& pName, int pType) {
    auto lInfo = std::make_shared<Info>();
    lInfo->mName = pName;
    lInfo->mType = pType;
    return Add(pParent, lInfo, std::make_shared<Value>(pType), false, true);
}

int Page::Add(int pParent, const std::string& pName, Page* pTypeInfo) {
    auto lInfo = std::make_shared<Info>();
    lInfo->mName = pName;
    lInfo->mTypeInfo = pTypeInfo;
    return Add(pParent, lInfo, std::make_shared<Value>(pTypeInfo ? pTypeInfo->GetType(0) : 0), false, true);
}

// All of it or nothing.
int Page::Add(int pParent, std::shared_ptr<Info> pInfo, std::shared_ptr<Value> pValue, bool pConnect, bool pRecursive) {
    Plan lPlan = PlanOf(std::move(pInfo), std::move(pValue), pConnect);
    std::vector<Page*> lAbove;
    if (pRecursive)
        PlanType(lPlan, lAbove);
    const int lFirst = *mNextId;
    const int lId = AddPlanned(pParent, lPlan);
    if (lId < 0 && lFirst >= 0)
        UndoAdd(lFirst);
    return lId;
}

void Page::UndoAdd(int pFirst) {
    mEntries.erase(mEntries.lower_bound(pFirst), mEntries.end());
    for (auto lName = mNames.begin(); lName != mNames.end();)
        lName = lName->second >= pFirst ? mNames.erase(lName) : std::next(lName);
}

int Page::CountOfTyped(Page* pTypeInfo) {
    struct {
        int Of(const Plan& pPlan) const {
            int lCount = 1;
            for (const Plan& lChild : pPlan.mChildren)
                lCount += Of(lChild);
            return lCount;
        }
    } lCount;
    auto lInfo = std::make_shared<Info>();
    lInfo->mTypeInfo = pTypeInfo;
    Plan lPlan = PlanOf(lInfo, nullptr, false);
    std::vector<Page*> lAbove;
    PlanType(lPlan, lAbove);
    return lCount.Of(lPlan);
}

Page::Plan Page::PlanOf(std::shared_ptr<Info> pInfo, std::shared_ptr<Value> pValue, bool pConnect) {
    Plan lPlan;
    lPlan.mInfo = std::move(pInfo);
    lPlan.mValue = std::move(pValue);
    lPlan.mConnect = pConnect;
    return lPlan;
}

// The whole copy is laid out before the first property of it is made, so that a type page which sees the new ones still
// counts as it stood before.
void Page::PlanType(Plan& pPlan, std::vector<Page*>& pAbove) {
    Page* lTypeInfo = pPlan.mInfo ? pPlan.mInfo->mTypeInfo : nullptr;
    if (!lTypeInfo)
        return;
    pPlan.mRecursive = lTypeInfo == this || std::count(pAbove.begin(), pAbove.end(), lTypeInfo);
    if (pPlan.mRecursive)
        return;
    pAbove.push_back(lTypeInfo);
    pPlan.mChildren = PlanOfChildren(lTypeInfo, 0, pAbove);
    pAbove.pop_back();
}

std::vector<Page::Plan> Page::PlanOfChildren(Page* pTypePage, int pId, std::vector<Page*>& pAbove) {
    std::vector<Plan> lPlans;
    for (int lChild = pTypePage->GetChild(pId); lChild != -1; lChild = pTypePage->GetSibling(lChild)) {
        Plan lPlan;
        if (const Info* lInfo = pTypePage->GetInfo(lChild)) {
            lPlan.mInfo = std::make_shared<Info>();
            lPlan.mInfo->mName = lInfo->mName;
            lPlan.mInfo->mType = lInfo->mType;
            lPlan.mInfo->mTypeInfo = lInfo->mTypeInfo;
        }
        if (const Found lValue = pTypePage->GetItem(Item::eValue, lChild))
            lPlan.mValue = std::make_shared<Value>(*lValue.mEntry->mValue);
        lPlan.mConnect = static_cast<bool>(pTypePage->GetItem(Item::eConnect, lChild));
        if (lPlan.mInfo && lPlan.mInfo->mTypeInfo)
            PlanType(lPlan, pAbove);
        else if (mWorld.mFault != Fault::eUntypedChildrenStayBehind)
            lPlan.mChildren = PlanOfChildren(pTypePage, lChild, pAbove);
        lPlans.push_back(lPlan);
    }
    return lPlans;
}

int Page::AddPlanned(int pParent, const Plan& pPlan) {
    const int lId = AddEntry(pParent, pPlan);
    if (lId >= 0 && pPlan.mRecursive)
        mWorld.mReports.push_back("Recursive type info");
    for (const Plan& lChild : pPlan.mChildren)
        if (lId < 0 || AddPlanned(lId, lChild) < 0)
            return -1;
    return lId;
}

// --- values

bool Page::Get(int pId, Value* pValue) {
    const Found lFound = GetItem(Item::eValue, pId);
    if (!pValue || !lFound || (!HoldsValue(lFound.mEntry->mValue->mCode) && lFound.mEntry->mValue->mCode != kReference))
        return false;
    return Convert(*pValue, *lFound.mEntry->mValue, mWorld.mReports);
}

bool Page::GetDefaultValue(int pId, Value* pValue) {
    if (mWorld.mFault == Fault::eDefaultIsNearest)
        return Get(pId, pValue);
    Page* lFirst = GetFirstItem(Item::eValue, pId);
    return lFirst && lFirst->Get(pId, pValue);
}

// Whether the value is what the page inherits. If the page held its own, that one is then dropped.
bool Page::EqualsInherited(int pId, const Value& pValue, bool& pDropped) {
    const Found lSeen = GetItem(Item::eValue, pId);
    const bool lInherited = lSeen && lSeen.mPage != this;
    Page* lFrom = lInherited ? this : mInstanceOf;
    if (!lFrom)
        return false;
    Value lScratch(pValue.mCode);
    if (!lFrom->Get(pId, &lScratch) || !CompareEqual(pValue, lScratch, mWorld.mReports))
        return false;
    if (!lInherited) {
        ChangeItemState(Item::eValue, pId, kInherit);
        pDropped = true;
    }
    return true;
}

bool Page::Set(int pId, const Value* pValue, int pType, bool pCheck) {
    const Found lSeen = GetItem(Item::eValue, pId);
    if (!pValue || !lSeen)
        return false;
    const int lStored = lSeen.mEntry->mValue->mCode;
    Value lUnused(lStored);
    // A code that stands for no value is refused before anything becomes the page's own.
    if (!HoldsValue(pType))
        return (HoldsValue(lStored) || lStored == kReference) && Convert(lUnused, *pValue, mWorld.mReports);
    bool lDropped = false;
    if (pCheck && mWorld.mFault != Fault::eEqualInheritedIsStored && EqualsInherited(pId, *pValue, lDropped))
        return lDropped;
    if (mWorld.mFault == Fault::eRefusedPairLeavesNoCopy && !Convert(lUnused, *pValue, mWorld.mReports))
        return false;
    ChangeItemState(Item::eValue, pId, kOverride);
    Value& lOwn = *Own(pId)->mValue;
    return (HoldsValue(lOwn.mCode) || lOwn.mCode == kReference) && Convert(lOwn, *pValue, mWorld.mReports);
}

int Page::GetType(int pId) {
    const Info* lInfo = GetInfo(pId);
    return lInfo ? lInfo->GetType() : kNone;
}

bool Page::RemoveOwnEntry(int pId) {
    return mEntries.erase(pId) != 0;
}

// --- making and destroying pages

// Everything that the instance sees of a property becomes its own, and reads the same.
void Page::HandDown(Page& pInstance, int pId) {
    if (!pInstance.GetEntry(pId))
        return;
    const unsigned lFlags = pInstance.GetFlags(pId);
    const Info* lSeen = pInstance.GetInfo(pId);
    const std::string lLabel = lSeen ? lSeen->mLabel : "";
    pInstance.ChangeEntryState(pId, kOverride);
    pInstance.ChangeItemState(Item::eInfo, pId, kOverride);
    pInstance.ChangeItemState(Item::eValue, pId, kOverride);
    Entry& lOwn = *pInstance.Own(pId);
    if (lOwn.mInfo && mWorld.mFault == Fault::eCloneKeepsTheLabel)
        lOwn.mInfo->mLabel = lLabel;
    if (!GetEntry(pId) || mWorld.mFault == Fault::eDestroyForgetsFlags)
        return;
    lOwn.mFlags = lFlags;
    lOwn.mMask |= kAllFlags;
}

void Page::Leave() {
    for (Page* lInstance : mInstances) {
        for (int lId : VisibleIds())
            HandDown(*lInstance, lId);
        lInstance->mInstanceOf = nullptr;
    }
    for (int lSlot : mWorld.LiveSlots()) {
        for (auto& lEntry : mWorld.At(lSlot)->mEntries) {
            Info* lInfo = lEntry.second.mInfo.get();
            if (!lInfo || lInfo->mTypeInfo != this)
                continue;
            lInfo->mType = GetType(0);
            lInfo->mTypeInfo = nullptr;
        }
    }
    mEntries.clear();
    if (!mInstanceOf)
        return;
    std::vector<Page*>& lSiblings = mInstanceOf->mInstances;
    *std::find(lSiblings.begin(), lSiblings.end(), this) = lSiblings.back();
    lSiblings.pop_back();
}

World::~World() {
    for (int lSlot : LiveSlots())
        Destroy(At(lSlot));
}

Page* World::At(int pSlot) const {
    return pSlot >= 0 && pSlot < kSlots ? mPages[static_cast<std::size_t>(pSlot)].get() : nullptr;
}

int World::FreeSlot() const {
    for (int i = 0; i < kSlots; ++i)
        if (!At(i))
            return i;
    return -1;
}

std::vector<int> World::LiveSlots() const {
    std::vector<int> lSlots;
    for (int i = 0; i < kSlots; ++i)
        if (At(i))
            lSlots.push_back(i);
    return lSlots;
}

Page* World::CreateFamily() {
    const int lSlot = FreeSlot();
    auto& lPage = mPages[static_cast<std::size_t>(lSlot)];
    lPage = std::make_unique<Page>(*this, lSlot);
    lPage->mNextId = std::make_shared<int>(0);
    return lPage.get();
}

Page* World::CreateInstance(Page* pInstanceOf) {
    if (!pInstanceOf)
        return Create("", kNone);
    Page* lPage = CreateFamily();
    lPage->mInstanceOf = pInstanceOf;
    lPage->mNextId = pInstanceOf->mNextId;
    pInstanceOf->mInstances.push_back(lPage);
    return lPage;
}

Page* World::Create(const std::string& pName, int pType) {
    Page* lPage = CreateFamily();
    lPage->Add(-1, pName, pType);
    return lPage;
}

Page* World::Create(const std::string& pName, Page* pTypeInfo) {
    Page* lPage = CreateFamily();
    lPage->Add(-1, pName, pTypeInfo);
    return lPage;
}

void World::Destroy(Page* pPage) {
    pPage->Leave();
    mPages[static_cast<std::size_t>(pPage->mSlot)].reset();
}

Reports World::TakeReports() {
    return std::exchange(mReports, {});
}

}  // namespace lyrmodel
