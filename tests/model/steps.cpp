// The operations on pages, descriptions, values and names, on both sides.

#include <algorithm>
#include <climits>
#include <memory>

#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "tests/model/driver.h"

namespace lyrmodel {

using namespace lyrsdk;

namespace {

constexpr int kMostProperties = 40;
constexpr int kMostDepth = 6;

void* PointerOf(int pNumber) {
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(pNumber));
}

int NumberOf(const void* pPointer) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(pPointer));
}

ELyrType Type(const Arguments& pA) {
    return static_cast<ELyrType>(pA.mType);
}

// The value of the arguments for the library: null when there is none.
struct Given {
    explicit Given(const Arguments& pA) : mValue(pA.mValue ? *pA.mValue : Value(pA.mType)), mNull(!pA.mValue) {}
    void* Data() { return mNull ? nullptr : mValue.Data(); }

    LibraryValue mValue;
    bool mNull;
};

}  // namespace

// --- pages

bool Driver::HasRoom(const Page* pPage, int pCount) const {
    return !pPage ||
           const_cast<Page*>(pPage)->VisibleIds().size() + static_cast<std::size_t>(pCount) <= kMostProperties;
}

void Driver::Created(const KLyrPropertyHandle& pLibrary, const Page* pModel) {
    mPair.mPages[static_cast<std::size_t>(pModel->mSlot)] = pLibrary.GetPage();
    mSame.Same("new page", pLibrary, pModel, 0);
}

void Driver::CreateRoot(const Arguments&) {
    if (mPair.mModel.FreeSlot() >= 0)
        Created(KLyrPropertyHandle::Create(), mPair.mModel.CreateInstance(nullptr));
}

void Driver::CreateNamed(const Arguments& pA) {
    if (mPair.mModel.FreeSlot() >= 0)
        Created(KLyrPropertyHandle::Create(pA.Name(), Type(pA)), mPair.mModel.Create(pA.NameOrEmpty(), pA.mType));
}

// Of the page, or of its youngest instance's youngest instance and so on, so that chains become long.
void Driver::CreateInstance(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    while (pA.mBools[0] && lPage && !lPage->mInstances.empty())
        lPage = lPage->mInstances.back();
    if (mPair.mModel.FreeSlot() < 0 || (lPage && lPage->Depth() >= kMostDepth))
        return;
    Created(KLyrPropertyHandle::Create(mPair.Handle(Pair::SlotOf(lPage), 0)), mPair.mModel.CreateInstance(lPage));
}

// A type page's properties may be typed themselves. How many copies that makes is asked as if a page that is there took
// them; the one that leaves out least has the answer.
bool Driver::HasRoomForNew(Page* pTypeInfo) {
    int lCount = 0;
    for (int i = 0; pTypeInfo && i < World::kSlots; ++i)
        if (Page* lPage = mPair.mModel.At(i))
            lCount = std::max(lCount, lPage->CountOfTyped(pTypeInfo));
    return lCount <= 2 * kMostProperties;
}

void Driver::CreateTyped(const Arguments& pA) {
    if (mPair.mModel.FreeSlot() >= 0 && HasRoomForNew(pA.mPages[0]))
        Created(KLyrPropertyHandle::Create(pA.Name(), HandleAt(pA)),
                mPair.mModel.Create(pA.NameOrEmpty(), pA.mPages[0]));
}

void Driver::Destroyed(int pSlot, bool pResult) {
    mSame.Same("destroyed", pResult, true);
    mPair.mPages[static_cast<std::size_t>(pSlot)] = nullptr;
    mPair.mModel.Destroy(mPair.mModel.At(pSlot));
}

void Driver::DestroyPage(const Arguments& pA) {
    // One page always stays, so that the run goes on with something.
    if (pA.mPages[0] && mPair.mModel.LiveSlots().size() > 1)
        Destroyed(pA.mSlots[0], mPair.Handle(pA.mSlots[0], 0).Destroy());
}

void Driver::Destroy(const Arguments& pA) {
    if (pA.mPages[0] && pA.mIds[0] == 0)
        return DestroyPage(pA);
    KLyrPropertyHandle lHandle = HandleAt(pA);
    const bool lResult = lHandle.Destroy();
    const Found lFound = pA.mPages[0] ? pA.mPages[0]->GetEntry(pA.mIds[0]) : Found();
    mSame.Same("destroyed", lResult, static_cast<bool>(lFound));
    if (lFound)
        lFound.mPage->RemoveOwnEntry(pA.mIds[0]);
    mSame.Same("handle left", lHandle, lFound ? nullptr : pA.mPages[0], lFound ? -1 : pA.mIds[0]);
}

void Driver::RemoveOwnEntry(const Arguments& pA) {
    if (pA.mPages[0])
        mSame.Same("removed", mPair.Library(pA.mSlots[0])->RemoveOwnEntry(pA.mIds[0]),
                   pA.mPages[0]->RemoveOwnEntry(pA.mIds[0]));
}

void Driver::SetPageData(const Arguments& pA) {
    mPair.Handle(pA.mSlots[0], 0).SetPageDataPtr(PointerOf(pA.mNumber));
    if (pA.mPages[0])
        pA.mPages[0]->mData = pA.mNumber;
    mSame.Same("data", NumberOf(mPair.Handle(pA.mSlots[0], 0).GetPageDataPtr()), pA.mPages[0] ? pA.mNumber : 0);
}

void Driver::GetReferencedBy(const Arguments& pA) {
    int lExpected = 0;
    if (pA.mPages[0] && !pA.mPages[0]->mInstances.empty()) {
        const std::vector<Page*>& lInstances = pA.mPages[0]->mInstances;
        const bool lInside = pA.mNumber >= 0 && pA.mNumber < static_cast<int>(lInstances.size());
        lExpected = lInstances[lInside ? static_cast<std::size_t>(pA.mNumber) : 0]->mData;
    }
    mSame.Same("referenced by", NumberOf(mPair.Handle(pA.mSlots[0], 0).GetReferencedBy(pA.mNumber)), lExpected);
}

void Driver::SetParent(const Arguments& pA) {
    mSame.Same("parent set", HandleAt(pA).SetParent(HandleAt(pA, 1)), false);
    if (pA.mPages[0])
        mSame.Same("parent set on the page", mPair.Library(pA.mSlots[0])->Reparent(pA.mIds[0], pA.mIds[1]), false);
}

// A few ids on, back, or now and then to the last ones that there are.
void Driver::SkipIds(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    if (!lPage)
        return;
    const int lLast = INT_MAX - static_cast<int>(pA.mBits % 3);
    const int lTo =
        pA.mBits >= 250 || *lPage->mNextId > INT_MAX - 8 ? lLast : *lPage->mNextId + static_cast<int>(pA.mBits % 6) - 2;
    mSame.Same("ids skipped", mPair.Library(pA.mSlots[0])->GetIdGenerator()->SkipTo(lTo), lPage->SkipTo(lTo));
}

void Driver::TakeId(const Arguments& pA) {
    if (pA.mPages[0])
        mSame.Same("id taken", mPair.Library(pA.mSlots[0])->GetIdGenerator()->GetNextIdAndInc(),
                   pA.mPages[0]->TakeId());
}

void Driver::CompareHandles(const Arguments& pA) {
    const KLyrPropertyHandle lHandle = HandleAt(pA), lOther = HandleAt(pA, 1);
    const bool lSamePage = pA.mPages[0] == pA.mPages[1];
    const bool lSame = lSamePage && pA.mIds[0] == pA.mIds[1];
    mSame.Same("handles equal", lHandle == lOther, lSame);
    mSame.Same("handles differ", lHandle != lOther, !lSame);
    mSame.Same("handle is the other", lHandle.Is(lOther), lSame);
    mSame.Same("handle is itself", lHandle, pA.mPages[0], pA.mIds[0]);
    mSame.Same("handle is none", lHandle == KLyrPropertyHandle(), !pA.mPages[0] && pA.mIds[0] == -1);
    if (pA.mPages[0])
        mSame.Same("page is the other", mPair.Library(pA.mSlots[0])->Is(mPair.Library(pA.mSlots[1])), lSamePage);
}

// --- adding

void Driver::Added(const KLyrPropertyHandle& pLibrary, const Page* pPage, int pId) {
    mSame.Same("added", pLibrary, pId >= 0 ? pPage : nullptr, pId);
}

void Driver::Add(const Arguments& pA) {
    if (!HasRoom(pA.mPages[0], 1))
        return;
    const KLyrPropertyHandle lAdded = HandleAt(pA).Add(pA.Name(), Type(pA));
    Added(lAdded, pA.mPages[0], pA.mPages[0] ? pA.mPages[0]->Add(pA.mIds[0], pA.NameOrEmpty(), pA.mType) : -1);
}

void Driver::AddTyped(const Arguments& pA) {
    if (pA.mPages[0] && !HasRoom(pA.mPages[0], pA.mPages[0]->CountOfTyped(pA.mPages[1])))
        return;
    const KLyrPropertyHandle lAdded = HandleAt(pA).Add(pA.Name(), HandleAt(pA, 1));
    Added(lAdded, pA.mPages[0], pA.mPages[0] ? pA.mPages[0]->Add(pA.mIds[0], pA.NameOrEmpty(), pA.mPages[1]) : -1);
}

std::shared_ptr<Info> Driver::NewInfo(const Arguments& pA) {
    if (!(pA.mBits & 1))
        return nullptr;
    auto lInfo = std::make_shared<Info>();
    lInfo->mName = pA.NameOrEmpty();
    if (pA.mBits & 16)
        lInfo->mTypeInfo = pA.mPages[1];
    else
        lInfo->mType = pA.mType;
    return lInfo;
}

// With items made one by one. The number says which: 1 description, 2 value, 4 connection, 8 children, 16 typed.
void Driver::AddItems(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    if (!lPage || !HasRoom(lPage, lPage->CountOfTyped(pA.mPages[1])))
        return;
    const std::shared_ptr<Info> lModelInfo = NewInfo(pA);
    const bool lTyped = pA.mBits & 16, lValue = pA.mBits & 2, lConnect = pA.mBits & 4, lRecursive = pA.mBits & 8;
    KLyrPropertyPage* lLibrary = mPair.Library(pA.mSlots[0]);
    KLyrPropertyInfo* lInfo = !lModelInfo ? nullptr
                              : lTyped    ? KLyrPropertyInfo::Create(pA.Name(), mPair.Library(pA.mSlots[1]))
                                          : KLyrPropertyInfo::Create(pA.Name(), Type(pA));
    KLyrPropertyValue* lValueItem = lValue ? KLyrPropertyValue::Create(nullptr, Type(pA)) : nullptr;
    const int lNext = lLibrary->GetIdGenerator()->PeekNextId();
    KLyrPropertyConnect* lConnectItem = lConnect ? KLyrPropertyConnect::Create(lLibrary, lNext) : nullptr;
    const bool lAll = (lInfo || !lModelInfo) && (lValueItem || !lValue) && (lConnectItem || !lConnect);
    const int lId = lAll ? lLibrary->Add(pA.mIds[0], lInfo, lValueItem, lConnectItem, lRecursive) : -1;
    // What was not added is still the caller's.
    if (lId < 0) {
        detail::Discard(lInfo);
        detail::Discard(lValueItem);
        detail::Discard(lConnectItem);
    }
    mSame.Same(
        "added", lId,
        lPage->Add(pA.mIds[0], lModelInfo, lValue ? std::make_shared<Value>(pA.mType) : nullptr, lConnect, lRecursive));
}

std::shared_ptr<Info> Driver::SharedInfo(const Arguments& pA) {
    const Found lFound = pA.mBits & 1 ? pA.mPages[1]->GetItem(Item::eInfo, pA.mIds[1]) : Found();
    return lFound ? lFound.mEntry->mInfo : nullptr;
}

std::shared_ptr<Value> Driver::SharedValue(const Arguments& pA) {
    const Found lFound = pA.mBits & 2 ? pA.mPages[1]->GetItem(Item::eValue, pA.mIds[1]) : Found();
    return lFound ? lFound.mEntry->mValue : nullptr;
}

// With the items of another property, which both then hold. The number says which: 1 description, 2 value, 4 children.
void Driver::AddShared(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    if (!lPage || !pA.mPages[1])
        return;
    const std::shared_ptr<Info> lModelInfo = SharedInfo(pA);
    const std::shared_ptr<Value> lModelValue = SharedValue(pA);
    const KLyrPropertyPage* lFrom = mPair.Library(pA.mSlots[1]);
    KLyrPropertyInfo* lInfo = lModelInfo ? lFrom->GetPropertyItem<KLyrPropertyInfo>(nullptr, pA.mIds[1]) : nullptr;
    KLyrPropertyValue* lValue = lModelValue ? lFrom->GetPropertyItem<KLyrPropertyValue>(nullptr, pA.mIds[1]) : nullptr;
    const bool lRecursive = pA.mBits & 4;
    if (HasRoom(lPage, lModelInfo && lRecursive ? lPage->CountOfTyped(lModelInfo->mTypeInfo) : 1))
        mSame.Same("added", mPair.Library(pA.mSlots[0])->Add(pA.mIds[0], lInfo, lValue, nullptr, lRecursive),
                   lPage->Add(pA.mIds[0], lModelInfo, lModelValue, false, lRecursive));
}

// --- values

void Driver::Set(const Arguments& pA) {
    Given lGiven(pA);
    const bool lCheck = pA.mBools[0];
    Page* lPage = pA.mPages[0];
    const Value* lValue = pA.mValue ? &*pA.mValue : nullptr;
    mSame.Same("set", HandleAt(pA).Set(lGiven.Data(), Type(pA), lCheck),
               lPage && lPage->Set(pA.mIds[0], lValue, pA.mType, lCheck));
}

void Driver::Get(const Arguments& pA) {
    Given lGiven(pA);
    Value lModel = pA.mValue ? *pA.mValue : Value(pA.mType);
    Page* lPage = pA.mPages[0];
    const bool lLibrary = HandleAt(pA).Get(lGiven.Data(), Type(pA));
    mSame.SameValue("got", lLibrary, lPage && lPage->Get(pA.mIds[0], pA.mValue ? &lModel : nullptr), lGiven.mValue,
                    lModel);
}

void Driver::GetDefaultValue(const Arguments& pA) {
    Given lGiven(pA);
    Value lModel = pA.mValue ? *pA.mValue : Value(pA.mType);
    Page* lPage = pA.mPages[0];
    const bool lLibrary = HandleAt(pA).GetDefaultValue(lGiven.Data(), Type(pA));
    mSame.SameValue("default got", lLibrary, lPage && lPage->GetDefaultValue(pA.mIds[0], pA.mValue ? &lModel : nullptr),
                    lGiven.mValue, lModel);
}

// --- descriptions

namespace {

Info* InfoAt(const Arguments& pA) {
    return pA.mPages[0] ? pA.mPages[0]->GetInfo(pA.mIds[0]) : nullptr;
}

bool HasEnumValue(const Arguments& pA) {
    const Info* lInfo = InfoAt(pA);
    return lInfo && pA.mNumber >= 0 && pA.mNumber < static_cast<int>(lInfo->mEnums.size());
}

}  // namespace

void Driver::SetLabel(const Arguments& pA) {
    mSame.Same("label set", HandleAt(pA).SetLabel(pA.Name()), InfoAt(pA) != nullptr);
    if (Info* lInfo = InfoAt(pA))
        lInfo->mLabel = pA.NameOrEmpty();
}

// From the name or from the label itself.
void Driver::SetLabelToOwnText(const Arguments& pA) {
    KLyrPropertyHandle lHandle = HandleAt(pA);
    mSame.Same("label set", lHandle.SetLabel(pA.mBools[0] ? lHandle.GetName() : lHandle.GetLabel()),
               InfoAt(pA) != nullptr);
    if (pA.mBools[0] && InfoAt(pA))
        InfoAt(pA)->mLabel = InfoAt(pA)->mName;
}

void Driver::SetUserTag(const Arguments& pA) {
    mSame.Same("tag set", HandleAt(pA).SetUserTag(pA.mNumber), InfoAt(pA) != nullptr);
    if (Info* lInfo = InfoAt(pA))
        lInfo->mUserTag = pA.mNumber;
}

void Driver::SetUserData(const Arguments& pA) {
    mSame.Same("data set", HandleAt(pA).SetUserData(PointerOf(pA.mNumber)), InfoAt(pA) != nullptr);
    if (Info* lInfo = InfoAt(pA))
        lInfo->mUserData = pA.mNumber;
}

void Driver::SetMinMax(const Arguments& pA) {
    if (!pA.mPages[0])
        return mSame.Same("min set", HandleAt(pA).SetMin(nullptr, Type(pA)), false);
    Given lGiven(pA);
    const Value* lValue = pA.mValue ? &*pA.mValue : nullptr;
    KLyrPropertyHandle lHandle = HandleAt(pA);
    const auto lIndex = static_cast<KLyrPropertyInfo::eValueIndex>(pA.mNumber);
    const bool lLibrary =
        pA.mBits % 2      ? mPair.Library(pA.mSlots[0])->SetMinMax(pA.mIds[0], lIndex, lGiven.Data(), Type(pA))
        : pA.mNumber == 0 ? lHandle.SetMin(lGiven.Data(), Type(pA))
        : pA.mNumber == 1 ? lHandle.SetSoftMin(lGiven.Data(), Type(pA))
        : pA.mNumber == 2 ? lHandle.SetMax(lGiven.Data(), Type(pA))
        : pA.mNumber == 3 ? lHandle.SetSoftMax(lGiven.Data(), Type(pA))
                          : mPair.Library(pA.mSlots[0])->SetMinMax(pA.mIds[0], lIndex, lGiven.Data(), Type(pA));
    mSame.Same("bound set", lLibrary, InfoAt(pA) && InfoAt(pA)->SetMinMax(pA.mNumber, lValue, mPair.mModel.mReports));
}

void Driver::GetMinMax(const Arguments& pA) {
    Given lGiven(pA);
    Value lModel = pA.mValue ? *pA.mValue : Value(pA.mType);
    KLyrPropertyHandle lHandle = HandleAt(pA);
    const int lIndex = pA.mNumber & 3;
    const bool lLibrary = lIndex == 0   ? lHandle.GetMin(lGiven.Data(), Type(pA))
                          : lIndex == 1 ? lHandle.GetSoftMin(lGiven.Data(), Type(pA))
                          : lIndex == 2 ? lHandle.GetMax(lGiven.Data(), Type(pA))
                                        : lHandle.GetSoftMax(lGiven.Data(), Type(pA));
    const bool lResult =
        InfoAt(pA) && InfoAt(pA)->GetMinMax(lIndex, pA.mValue ? &lModel : nullptr, mPair.mModel.mReports);
    mSame.SameValue("bound got", lLibrary, lResult, lGiven.mValue, lModel);
    if (!pA.mPages[0])
        return;
    // The page takes any index.
    const KLyrPropertyPage* lPage = mPair.Library(pA.mSlots[0]);
    const auto lAny = static_cast<KLyrPropertyInfo::eValueIndex>(pA.mNumber);
    mSame.Same("bound there", lPage->HasMinMax(pA.mIds[0], lAny), InfoAt(pA) && InfoAt(pA)->HasMinMax(pA.mNumber));
    const bool lAnyLibrary = lPage->GetMinMax(pA.mIds[0], lAny, lGiven.Data(), Type(pA));
    const bool lAnyResult =
        InfoAt(pA) && InfoAt(pA)->GetMinMax(pA.mNumber, pA.mValue ? &lModel : nullptr, mPair.mModel.mReports);
    mSame.SameValue("bound got from the page", lAnyLibrary, lAnyResult, lGiven.mValue, lModel);
}

void Driver::AddEnumValue(const Arguments& pA) {
    mSame.Same("text added", HandleAt(pA).AddEnumValue(pA.Name()),
               InfoAt(pA) ? InfoAt(pA)->AddEnumValue(pA.NameOrEmpty()) : -1);
}

void Driver::InsertEnumValue(const Arguments& pA) {
    HandleAt(pA).InsertEnumValue(pA.mNumber, pA.Name());
    mSame.Count("text inserted", InfoAt(pA) && InfoAt(pA)->GetType() == kEnum && pA.mNumber >= 0);
    if (InfoAt(pA))
        InfoAt(pA)->InsertEnumValue(pA.mNumber, pA.NameOrEmpty());
}

void Driver::SetEnumValue(const Arguments& pA) {
    HandleAt(pA).SetEnumValue(pA.mNumber, pA.Name());
    mSame.Count("text set", HasEnumValue(pA));
    if (InfoAt(pA))
        InfoAt(pA)->SetEnumValue(pA.mNumber, pA.NameOrEmpty());
}

void Driver::RemoveEnumValue(const Arguments& pA) {
    HandleAt(pA).RemoveEnumValue(pA.mNumber);
    mSame.Count("text removed", HasEnumValue(pA));
    if (InfoAt(pA))
        InfoAt(pA)->RemoveEnumValue(pA.mNumber);
}

void Driver::GetEnumValue(const Arguments& pA) {
    mSame.Same("text", HandleAt(pA).GetEnumValue(pA.mNumber),
               InfoAt(pA) ? InfoAt(pA)->GetEnumValue(pA.mNumber) : std::optional<std::string>(""));
}

// --- names and the tree

void Driver::BeginCreateOrFind(const Arguments& pA) {
    mPair.Handle(pA.mSlots[0], 0).BeginCreateOrFindProperty();
    mSame.Count("bracket opened", pA.mPages[0] && !pA.mPages[0]->mOpen);
    if (pA.mPages[0])
        pA.mPages[0]->Begin();
}

void Driver::EndCreateOrFind(const Arguments& pA) {
    mPair.Handle(pA.mSlots[0], 0).EndCreateOrFindProperty();
    mSame.Count("bracket closed", pA.mPages[0] && pA.mPages[0]->mOpen);
    if (pA.mPages[0])
        pA.mPages[0]->End();
}

void Driver::FindAll(const Arguments& pA, const char* pSeparators, bool pTyped) {
    const KLyrPropertyHandle lHandle = HandleAt(pA), lType = mPair.Handle(pA.mSlots[1], 0);
    const bool lCase = pA.mBools[0];
    const KLyrPropertyHandle lFound = pTyped && pSeparators ? lHandle.Find(pA.Name(), pSeparators, lType, lCase)
                                      : pTyped              ? lHandle.Find(pA.Name(), lType, lCase)
                                      : pSeparators         ? lHandle.Find(pA.Name(), pSeparators, lCase)
                                                            : lHandle.Find(pA.Name(), lCase);
    Page* lPage = pA.mPages[0];
    mSame.Same(
        "found", lFound, lPage,
        lPage ? lPage->Find(pA.mIds[0], pA.NameOrEmpty(), pTyped ? pA.mPages[1] : nullptr, lCase, pSeparators) : -1);
}

void Driver::Find(const Arguments& pA) {
    FindAll(pA, nullptr, false);
}

void Driver::FindTyped(const Arguments& pA) {
    FindAll(pA, nullptr, true);
}

void Driver::FindPath(const Arguments& pA) {
    constexpr const char* lSeparators[] = {"|", "|", "|/", "/", ""};
    FindAll(pA, lSeparators[pA.mBits % 5], false);
}

void Driver::FindTypedPath(const Arguments& pA) {
    constexpr const char* lSeparators[] = {"|", "|/"};
    FindAll(pA, lSeparators[pA.mBits % 2], true);
}

// By name alone: what would separate names in a path is part of one.
void Driver::FastFind(const Arguments& pA) {
    if (pA.mPages[0])
        mSame.Same(
            "found",
            mPair.Library(pA.mSlots[0])->FastFind(pA.mIds[0], pA.Name(), mPair.Library(pA.mSlots[1]), pA.mBools[0]),
            pA.mPages[0]->FastFind(pA.mIds[0], pA.NameOrEmpty(), pA.mPages[1], pA.mBools[0]));
}

void Driver::IsChildOf(const Arguments& pA) {
    const bool lOne = pA.mPages[0] && pA.mPages[0] == pA.mPages[1];
    mSame.Same("child", HandleAt(pA).IsChildOf(HandleAt(pA, 1)),
               lOne && pA.mPages[0]->GetParent(pA.mIds[0]) == pA.mIds[1]);
    if (pA.mPages[0])
        mSame.Same("child on the page", mPair.Library(pA.mSlots[0])->IsChildOf(pA.mIds[0], pA.mIds[1]),
                   pA.mPages[0]->GetParent(pA.mIds[0]) == pA.mIds[1]);
}

void Driver::IsDescendentOf(const Arguments& pA) {
    const bool lOne = pA.mPages[0] && pA.mPages[0] == pA.mPages[1];
    mSame.Same("descendant", HandleAt(pA).IsDescendentOf(HandleAt(pA, 1)),
               lOne && pA.mPages[0]->IsDescendentOf(pA.mIds[0], pA.mIds[1]));
    if (pA.mPages[0])
        mSame.Same("descendant on the page", mPair.Library(pA.mSlots[0])->IsDescendentOf(pA.mIds[0], pA.mIds[1]),
                   pA.mPages[0]->IsDescendentOf(pA.mIds[0], pA.mIds[1]));
}

void Driver::GetNextDescendent(const Arguments& pA) {
    Page* lPage = pA.mPages[0];
    mSame.Same("next descendant", HandleAt(pA).GetNextDescendent(HandleAt(pA, 1)), lPage,
               lPage ? lPage->GetNextDescendent(pA.mIds[0], pA.mIds[1]) : -1);
}

void Driver::GetMinimum(const Arguments& pA) {
    if (!pA.mPages[0])
        return;
    const KLyrPropertyPage* lLibrary = mPair.Library(pA.mSlots[0]);
    for (int lId : {pA.mIds[0], pA.mNumber}) {
        KLyrPropertyEntry* lEntry = nullptr;
        Page* lHolder = nullptr;
        const int lModel = pA.mPages[0]->GetMinimum(lId, nullptr, &lHolder);
        mSame.Same("id that follows", lLibrary->GetMinimumPropertyIdAndEntry(lId, &lEntry), lModel);
        const KLyrPropertyPage* lExpected = mPair.Library(Pair::SlotOf(lHolder));
        mSame.Same("entry that follows", lEntry == (lExpected ? lExpected->GetPropertyEntry(lModel) : nullptr), true);
        mSame.Same("id that follows, without its entry", lLibrary->GetMinimumPropertyIdAndEntry(lId), lModel);
    }
}

void Driver::LookAt(const Arguments& pA) {
    mSame.SetTally(nullptr);
    mSame.Property(pA.mSlots[0], pA.mIds[0]);
}

}  // namespace lyrmodel
