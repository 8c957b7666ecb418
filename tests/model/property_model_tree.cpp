// The property tree, names, descriptions and connections.

#include <strings.h>

#include <algorithm>
#include <climits>
#include <set>

#include "tests/model/property_model.h"

namespace lyrmodel {

int Page::GetParent(int pId) {
    const Found lFound = GetEntry(pId);
    return lFound ? lFound.mEntry->mParent : -1;
}

bool Page::IsDescendentOf(int pId, int pAncestor) {
    if (pAncestor <= 0)
        return true;
    std::set<int> lPassed;
    for (int lId = GetParent(pId); lId != -1 && lPassed.insert(lId).second; lId = GetParent(lId))
        if (lId == pAncestor)
            return true;
    return false;
}

int Page::GetMinimum(int pId, Entry** pEntry, Page** pHolder) {
    const int lFrom = pId == -1 ? 0 : pId;
    int lLeast = -1;
    Entry* lEntry = nullptr;
    Page* lHolder = nullptr;
    for (Page* lPage = this; lPage; lPage = lPage->mInstanceOf) {
        const auto lNext = lPage->mEntries.upper_bound(lFrom);
        if (lNext == lPage->mEntries.end() || (lLeast != -1 && lNext->first > lLeast))
            continue;
        lLeast = lNext->first;
        lEntry = &lNext->second;
        lHolder = lPage;
    }
    if (pHolder)
        *pHolder = lHolder;
    if (pEntry)
        *pEntry = lEntry;
    return lLeast;
}

int Page::GetChild(int pId) {
    if (pId == -1)
        return -1;
    Entry* lEntry = nullptr;
    int lId = GetMinimum(pId, &lEntry);
    while (lId != -1 && lEntry->mParent != pId)
        lId = GetMinimum(lId, &lEntry);
    return lId;
}

int Page::GetSibling(int pId) {
    const int lParent = pId == -1 ? -1 : GetParent(pId);
    if (lParent == -1)
        return -1;
    Entry* lEntry = nullptr;
    int lId = GetMinimum(pId, &lEntry);
    while (lId != -1 && lEntry->mParent != lParent)
        lId = GetMinimum(lId, &lEntry);
    return lId;
}

int Page::GetFirstDescendent(int pAncestor) {
    return GetNextDescendent(pAncestor, pAncestor);
}

int Page::GetNextDescendent(int pAncestor, int pId) {
    if (pId == -1)
        return -1;
    Entry* lEntry = nullptr;
    int lId = GetMinimum(pId, &lEntry);
    while (lId != -1 && (lEntry->mParent == -1 || !IsDescendentOf(lId, pAncestor)))
        lId = GetMinimum(lId, &lEntry);
    return lId;
}

int Page::GetCount() {
    const std::vector<int> lIds = VisibleIds();
    return lIds.empty() ? 0 : lIds.back() == INT_MAX ? INT_MAX : lIds.back() + 1;
}

// --- names

int Page::Find(int pId, const std::string& pName, Page* pTypeInfo, bool pCase, const char* pSeparators) {
    const std::size_t lEnd = pSeparators ? pName.find_first_of(pSeparators) : std::string::npos;
    if (lEnd == std::string::npos)
        return FastFind(pId, pName, pTypeInfo, pCase);
    const int lChild = FastFind(pId, pName.substr(0, lEnd), nullptr, pCase);
    return lChild == -1 ? -1 : Find(lChild, pName.substr(lEnd + 1), pTypeInfo, pCase, pSeparators);
}

int Page::FastFind(int pId, const std::string& pName, Page* pTypeInfo, bool pCase) {
    if (!mNames.empty()) {
        const auto lHit = mNames.find({pId, pName});
        if (lHit == mNames.end() && mWorld.mFault != Fault::eBracketLooksAtChildren)
            return -1;
        if (lHit != mNames.end() && GetEntry(lHit->second)) {
            const Info* lInfo = GetInfo(lHit->second);
            if (!pTypeInfo || (lInfo && lInfo->mTypeInfo == pTypeInfo))
                return lHit->second;
        }
    }
    for (int lChild = GetChild(pId); lChild != -1; lChild = GetSibling(lChild)) {
        const Info* lInfo = GetInfo(lChild);
        if (!lInfo || (pTypeInfo && lInfo->mTypeInfo != pTypeInfo))
            continue;
        if (pCase ? lInfo->mName == pName : strcasecmp(lInfo->mName.c_str(), pName.c_str()) == 0)
            return lChild;
    }
    return -1;
}

void Page::Begin() {
    if (mOpen)
        return;
    mOpen = true;
    Entry* lEntry = GetEntry(0).mEntry;
    int lId = 0;
    do {
        if (lEntry && lEntry->mInfo) {
            const auto lKey = std::make_pair(lEntry->mParent, lEntry->mInfo->mName);
            if (mWorld.mFault == Fault::eBracketKeepsTheLast)
                mNames[lKey] = lId;
            mNames.emplace(lKey, lId);
        }
        lId = GetMinimum(lId, &lEntry);
    } while (lId != -1);
}

void Page::End() {
    if (mOpen)
        mNames.clear();
    mOpen = false;
}

// --- descriptions

int Info::GetType() const {
    std::set<const Info*> lPassed;
    const Info* lInfo = this;
    while (lInfo && lInfo->mTypeInfo)
        lInfo = lPassed.insert(lInfo).second ? lInfo->mTypeInfo->GetInfo(0) : nullptr;
    return lInfo ? lInfo->mType : static_cast<int>(kNone);
}

bool Info::HasMinMax(int pIndex) const {
    return pIndex >= 0 && pIndex < kBoundCount && mBounds[static_cast<std::size_t>(pIndex)];
}

bool Info::SetMinMax(int pIndex, const Value* pValue, Reports& pReports) {
    if (pIndex < 0 || pIndex >= kBoundCount || !pValue)
        return false;
    const int lType = mBoundType != kNone ? mBoundType : GetType();
    if (!HoldsValue(lType) && lType != kReference)
        return false;
    // A code that stands for no value is refused before there is a bound.
    Value lUnused(lType);
    if (!HoldsValue(pValue->mCode))
        return Convert(lUnused, *pValue, pReports);
    mBoundType = lType;
    auto& lBound = mBounds[static_cast<std::size_t>(pIndex)];
    if (!lBound)
        lBound = Value(mBoundType);
    return Convert(*lBound, *pValue, pReports);
}

bool Info::GetMinMax(int pIndex, Value* pValue, Reports& pReports) const {
    return HasMinMax(pIndex) && pValue && Convert(*pValue, *mBounds[static_cast<std::size_t>(pIndex)], pReports);
}

int Info::AddEnumValue(const std::string& pName) {
    if (GetType() != kEnum || std::count(mEnums.begin(), mEnums.end(), pName))
        return -1;
    mEnums.push_back(pName);
    return static_cast<int>(mEnums.size()) - 1;
}

void Info::InsertEnumValue(int pIndex, const std::string& pName) {
    const int lCount = static_cast<int>(mEnums.size());
    if (GetType() == kEnum && pIndex >= 0)
        mEnums.insert(mEnums.begin() + std::min(pIndex, lCount), pName);
}

void Info::SetEnumValue(int pIndex, const std::string& pName) {
    if (GetType() == kEnum && pIndex >= 0 && pIndex < static_cast<int>(mEnums.size()))
        mEnums[static_cast<std::size_t>(pIndex)] = pName;
}

void Info::RemoveEnumValue(int pIndex) {
    if (GetType() == kEnum && pIndex >= 0 && pIndex < static_cast<int>(mEnums.size()))
        mEnums.erase(mEnums.begin() + pIndex);
}

std::optional<std::string> Info::GetEnumValue(int pIndex) const {
    if (GetType() != kEnum || mEnums.empty() || pIndex >= static_cast<int>(mEnums.size()))
        return std::nullopt;
    return mEnums[static_cast<std::size_t>(std::max(pIndex, 0))];
}

// --- connections

namespace {

void Remove(std::vector<Link>& pLinks, const Connect* pPeer) {
    const auto lIs = [&](const Link& pLink) { return pLink.mPeer == pPeer; };
    pLinks.erase(std::remove_if(pLinks.begin(), pLinks.end(), lIs), pLinks.end());
}

}  // namespace

bool Connect::IsConnectedSrc(const Connect* pSrc) const {
    return std::any_of(mSrcs.begin(), mSrcs.end(), [&](const Link& pLink) { return pLink.mPeer == pSrc; });
}

bool Connect::ConnectSrc(Connect* pSrc, int pType) {
    if (pSrc == this || IsConnectedSrc(pSrc))
        return false;
    mSrcs.push_back({pSrc, pType});
    pSrc->mDsts.push_back({this, pType});
    return true;
}

bool Connect::DisconnectSrc(Connect* pSrc) {
    if (!IsConnectedSrc(pSrc))
        return false;
    Remove(mSrcs, pSrc);
    Remove(pSrc->mDsts, this);
    return true;
}

void Connect::Wipe(bool pSourcesOnly) {
    for (const Link& lLink : mSrcs)
        Remove(lLink.mPeer->mDsts, this);
    mSrcs.clear();
    if (pSourcesOnly)
        return;
    for (const Link& lLink : mDsts)
        Remove(lLink.mPeer->mSrcs, this);
    mDsts.clear();
}

Connect* Page::OwnConnect(int pId) {
    Entry* lOwn = Own(pId);
    return lOwn ? lOwn->mConnect.get() : nullptr;
}

Connect* Page::MakeConnect(int pId) {
    ChangeEntryState(pId, kOverride);
    std::shared_ptr<Connect>& lConnect = Own(pId)->mConnect;
    if (!lConnect)
        lConnect = std::make_shared<Connect>(this, pId);
    return lConnect.get();
}

bool Page::ConnectSrc(int pDst, Page* pSrcPage, int pSrc, int pType) {
    if (!pSrcPage || !GetEntry(pDst) || !pSrcPage->GetEntry(pSrc) || (pSrcPage == this && pSrc == pDst))
        return false;
    return MakeConnect(pDst)->ConnectSrc(pSrcPage->MakeConnect(pSrc), pType);
}

bool Page::IsConnectedSrc(int pDst, Page* pSrcPage, int pSrc) {
    const Connect* lDst = OwnConnect(pDst);
    return lDst && pSrcPage && pSrcPage->OwnConnect(pSrc) && lDst->IsConnectedSrc(pSrcPage->OwnConnect(pSrc));
}

bool Page::DisconnectSrc(int pDst, Page* pSrcPage, int pSrc) {
    return IsConnectedSrc(pDst, pSrcPage, pSrc) && OwnConnect(pDst)->DisconnectSrc(pSrcPage->OwnConnect(pSrc));
}

std::vector<Link> Page::GetLinks(int pId, bool pSrcs, const Filter* pFilter) {
    const Connect* lConnect = OwnConnect(pId);
    std::vector<Link> lLinks;
    if (!lConnect)
        return lLinks;
    for (const Link& lLink : pSrcs ? lConnect->mSrcs : lConnect->mDsts)
        if (!pFilter || pFilter->Selects(*lLink.mPeer, lLink.mType))
            lLinks.push_back(lLink);
    return lLinks;
}

void Page::Wipe(int pId) {
    if (const Found lFound = GetItem(Item::eConnect, pId))
        lFound.mEntry->mConnect->Wipe(mWorld.mFault == Fault::eWipeTakesSourcesOnly);
}

}  // namespace lyrmodel
