// Everything that pages and properties show, asked of both sides.

#include "tests/model/arguments.h"
#include "tests/model/pair.h"

namespace lyrmodel {

using namespace lyrsdk;

namespace {

std::string Join(const Reports& pReports) {
    std::string lText;
    for (const std::string& lReport : pReports)
        lText += "[" + lReport + "]";
    return lText;
}

int NumberOf(const void* pPointer) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(pPointer));
}

template <typename T>
int HolderSlot(const Pair& pPair, const KLyrPropertyPage* pPage, int pId, const T* pItem) {
    KLyrPropertyPage* lHolder = nullptr;
    const bool lFound = pPage->GetPropertyItem(pItem, pId, &lHolder) != nullptr;
    return lFound == (lHolder != nullptr) ? pPair.SlotOf(lHolder) : -3;
}

}  // namespace

void Comparison::Differs(const char* pWhat, const std::string& pLibrary, const std::string& pModel) {
    if (!IsSame())
        return;
    mWhat = pWhat;
    mDifference = mWhat + ": the library says " + pLibrary + ", the model " + pModel;
    if (mSlot >= 0)
        mDifference += " (page " + std::to_string(mSlot) + " id " + std::to_string(mHandle.GetId()) + ")";
}

void Comparison::Same(const char* pWhat, const char* pLibrary, const std::string& pModel) {
    Count(pWhat, pLibrary != nullptr);
    if (!pLibrary || pModel != pLibrary)
        Differs(pWhat, pLibrary ? "\"" + std::string(pLibrary) + "\"" : "null", "\"" + pModel + "\"");
}

void Comparison::Same(const char* pWhat, const char* pLibrary, const std::optional<std::string>& pModel) {
    if (pModel)
        return Same(pWhat, pLibrary, *pModel);
    Count(pWhat, false);
    if (pLibrary)
        Differs(pWhat, "\"" + std::string(pLibrary) + "\"", "null");
}

void Comparison::Same(const char* pWhat, const KLyrPropertyHandle& pLibrary, const Page* pPage, int pId) {
    Count(pWhat, pId >= 0);
    const int lSlot = mPair.SlotOf(pLibrary.GetPage());
    if (lSlot != Pair::SlotOf(pPage))
        Differs(pWhat, "page " + std::to_string(lSlot), "page " + std::to_string(Pair::SlotOf(pPage)));
    if (pLibrary.GetId() != pId)
        Differs(pWhat, "id " + std::to_string(pLibrary.GetId()), "id " + std::to_string(pId));
}

void Comparison::SameValue(const char* pWhat, bool pLibrary, bool pModel, const LibraryValue& pRead,
                           const Value& pExpected) {
    Same(pWhat, pLibrary, pModel);
    const Value lRead = pRead.Read();
    if (!SameBits(lRead, pExpected))
        Differs(pWhat, ToText(lRead), ToText(pExpected));
}

void Comparison::SameReports() {
    const Reports lModel = mPair.mModel.TakeReports();
    const Reports lLibrary = std::exchange(mPair.mReports, {});
    for (const std::string& lReport : lLibrary)
        Count(lReport.c_str(), true);
    if (lLibrary != lModel)
        Differs("reports", Join(lLibrary), Join(lModel));
}

void Comparison::All() {
    for (int i = 0; i < World::kSlots && IsSame(); ++i) {
        if (mPair.mModel.At(i))
            OfPage(i);
        else
            Same("page there", mPair.Library(i) != nullptr, false);
    }
    mSlot = -1;
}

void Comparison::OfPage(int pSlot) {
    mSlot = pSlot;
    mLibrary = mPair.Library(pSlot);
    mModel = mPair.mModel.At(pSlot);
    mHandle = KLyrPropertyHandle(mLibrary, 0);
    Same("instance of", mPair.SlotOf(mLibrary->GetInstanceOf()), Pair::SlotOf(mModel->mInstanceOf));
    Same("instances", mLibrary->GetInstances().GetCount(), static_cast<int>(mModel->mInstances.size()));
    for (std::size_t i = 0; i < mModel->mInstances.size() && IsSame(); ++i)
        Same("instance", mPair.SlotOf(mLibrary->GetInstances().GetAt(static_cast<int>(i))),
             Pair::SlotOf(mModel->mInstances[i]));
    Same("referenced by", mHandle.GetReferencedByCount(), static_cast<int>(mModel->mInstances.size()));
    Same("is referenced", mHandle.IsReferencedBy(), !mModel->mInstances.empty());
    const int lAbove = mModel->mInstanceOf ? mModel->mInstanceOf->mData : 0;
    Same("reference", NumberOf(mHandle.GetReferenceTo()), lAbove);
    Same("is a reference", mHandle.IsAReferenceTo(), lAbove != 0);
    Same("data", NumberOf(mLibrary->GetDataPtr()), mModel->mData);
    Same("next id", mLibrary->GetIdGenerator()->PeekNextId(), *mModel->mNextId);
    Same("entry count", mLibrary->GetPropertyEntryCount(), mModel->GetCount());
    const std::vector<int> lIds = mModel->VisibleIds();
    int lSeen = 0;
    for (int lId : lIds) {
        if (!IsSame())
            return;
        Property(pSlot, lId);
        mSlot = pSlot;
        if (lId == 0)
            continue;
        lSeen = mLibrary->GetMinimumPropertyIdAndEntry(lSeen);
        Same("id that follows", lSeen, lId);
    }
    Same("end of the ids", mLibrary->GetMinimumPropertyIdAndEntry(lSeen), -1);
    for (int i = 0; i < 3 && !lIds.empty(); ++i)
        Names(lIds[(static_cast<std::size_t>(*mModel->mNextId) + 7 * static_cast<std::size_t>(i)) % lIds.size()]);
    SameReports();
}

void Comparison::Names(int pId) {
    mHandle = KLyrPropertyHandle(mLibrary, pId);
    for (const std::string& lName : lyrmodel::Names()) {
        Same("found", mHandle.Find(lName.c_str(), true).GetId(), mModel->Find(pId, lName, nullptr, true, nullptr));
        Same("found without case", mHandle.Find(lName.c_str(), false).GetId(),
             mModel->Find(pId, lName, nullptr, false, nullptr));
    }
}

void Comparison::Property(int pSlot, int pId) {
    mSlot = pSlot;
    mLibrary = mPair.Library(pSlot);
    mModel = mPair.mModel.At(pSlot);
    mHandle = KLyrPropertyHandle(mLibrary, pId);
    Same("valid", mHandle.Valid(), mModel && pId != -1);
    Tree(pId);
    Description(pId);
    Bounds(pId);
    Values(pId);
    Flags(pId);
    Connections(pId);
    if (mModel)
        States(pId);
    SameReports();
    mSlot = -1;
}

void Comparison::Tree(int pId) {
    Same("parent", mHandle.GetParent(), mModel, mModel ? mModel->GetParent(pId) : -1);
    Same("child", mHandle.GetChild(), mModel, mModel ? mModel->GetChild(pId) : -1);
    Same("sibling", mHandle.GetSibling(), mModel, mModel ? mModel->GetSibling(pId) : -1);
    Same("first descendant", mHandle.GetFirstDescendent(), mModel, mModel ? mModel->GetFirstDescendent(pId) : -1);
    if (!mModel)
        return;
    const std::string lName = mModel->GetInfo(pId) ? mModel->GetInfo(pId)->mName : "";
    const int lParent = mModel->GetParent(pId);
    Same("found by its name", mLibrary->Find(lParent, lName.c_str(), nullptr, true, nullptr),
         mModel->Find(lParent, lName, nullptr, true, nullptr));
    Same("next descendant of its parent", mLibrary->GetNextDescendent(lParent, pId),
         mModel->GetNextDescendent(lParent, pId));
    Same("child of its parent", mLibrary->IsChildOf(pId, lParent), true);
    Same("descendant of its parent", mLibrary->IsDescendentOf(pId, lParent), mModel->IsDescendentOf(pId, lParent));
}

void Comparison::Description(int pId) {
    const Info* lInfo = mModel ? mModel->GetInfo(pId) : nullptr;
    Same("name", mHandle.GetName(), lInfo ? lInfo->mName : "");
    Same("type", static_cast<int>(mHandle.GetType()), lInfo ? lInfo->GetType() : 0);
    Same("type info", mHandle.GetTypeInfo(), lInfo ? lInfo->mTypeInfo : nullptr, mModel ? 0 : -1);
    Same("label", mHandle.GetLabel(), lInfo ? lInfo->mLabel : "");
    Same("user tag", mHandle.GetUserTag(), lInfo ? lInfo->mUserTag : 0);
    Same("user data", NumberOf(mHandle.GetUserData()), lInfo ? lInfo->mUserData : 0);
    const int lEnums = lInfo ? static_cast<int>(lInfo->mEnums.size()) : 0;
    Same("enumeration texts", mHandle.GetEnumCount(), lEnums);
    for (int i = -1; i <= lEnums; ++i)
        Same("enumeration text", mHandle.GetEnumValue(i),
             lInfo ? lInfo->GetEnumValue(i) : std::optional<std::string>(""));
}

void Comparison::Bounds(int pId) {
    Info* lInfo = mModel ? mModel->GetInfo(pId) : nullptr;
    const auto lHas = [&](int pIndex) { return lInfo && lInfo->HasMinMax(pIndex); };
    Same("min there", mHandle.HasMin(), lHas(0));
    Same("soft min there", mHandle.HasSoftMin(), lHas(1));
    Same("max there", mHandle.HasMax(), lHas(2));
    Same("soft max there", mHandle.HasSoftMax(), lHas(3));
    for (int i = 0; i < kBoundCount; ++i) {
        if (!lHas(i) || !HoldsValue(lInfo->mBoundType))
            continue;
        Value lModel(lInfo->mBoundType);
        LibraryValue lLibrary(lModel);
        const auto lIndex = static_cast<KLyrPropertyInfo::eValueIndex>(i);
        const bool lResult = mLibrary->GetMinMax(pId, lIndex, lLibrary.Data(), lLibrary.Type());
        SameValue("bound", lResult, lInfo->GetMinMax(i, &lModel, mPair.mModel.mReports), lLibrary, lModel);
    }
}

void Comparison::Values(int pId) {
    const Found lFound = mModel ? mModel->GetItem(Item::eValue, pId) : Found();
    const int lStored = lFound ? lFound.mEntry->mValue->mCode : static_cast<int>(kNone);
    const bool lReads = HoldsValue(lStored);
    for (int lCode : {lReads ? lStored : static_cast<int>(kInt), static_cast<int>(kString)}) {
        Value lModel(lCode);
        LibraryValue lLibrary(lModel);
        const bool lResult = mHandle.Get(lLibrary.Data(), lLibrary.Type());
        SameValue("value", lResult, mModel && mModel->Get(pId, &lModel), lLibrary, lModel);
    }
    Value lModel(kString);
    LibraryValue lLibrary(lModel);
    const bool lResult = mHandle.GetDefaultValue(lLibrary.Data(), lLibrary.Type());
    SameValue("default value", lResult, mModel && mModel->GetDefaultValue(pId, &lModel), lLibrary, lModel);
    for (bool lCheck : {false, true})
        Same("value state", static_cast<int>(mHandle.GetValueInheritType(lCheck)),
             mModel ? mModel->GetValueInherit(pId, lCheck) : kOverride);
}

void Comparison::States(int pId) {
    KLyrPropertyPage* lHolder = nullptr;
    const KLyrPropertyEntry* lEntry = mLibrary->GetPropertyEntry(pId, &lHolder);
    const Found lFound = mModel->GetEntry(pId);
    Same("entry seen", lEntry != nullptr, static_cast<bool>(lFound));
    Same("holder of the entry", mPair.SlotOf(lHolder), Pair::SlotOf(lFound.mPage));
    const auto lSlot = [&](Item pItem) { return Pair::SlotOf(mModel->GetItem(pItem, pId).mPage); };
    Same("holder of the description", HolderSlot<KLyrPropertyInfo>(mPair, mLibrary, pId, nullptr), lSlot(Item::eInfo));
    Same("holder of the value", HolderSlot<KLyrPropertyValue>(mPair, mLibrary, pId, nullptr), lSlot(Item::eValue));
    Same("holder of the connections", HolderSlot<KLyrPropertyConnect>(mPair, mLibrary, pId, nullptr),
         lSlot(Item::eConnect));
    Same("holder of the flags", HolderSlot<KLyrPropertyFlags>(mPair, mLibrary, pId, nullptr), lSlot(Item::eFlags));
    const auto lFirst = [&](Item pItem) { return Pair::SlotOf(mModel->GetFirstItem(pItem, pId)); };
    Same("first holder of the description",
         mPair.SlotOf(mLibrary->GetFirstPropertyItem<KLyrPropertyInfo>(pId, nullptr)), lFirst(Item::eInfo));
    Same("first holder of the value", mPair.SlotOf(mLibrary->GetFirstPropertyItem<KLyrPropertyValue>(pId, nullptr)),
         lFirst(Item::eValue));
    Same("first holder of the connections",
         mPair.SlotOf(mLibrary->GetFirstPropertyItem<KLyrPropertyConnect>(pId, nullptr)), lFirst(Item::eConnect));
    Same("first holder of the flags", mPair.SlotOf(mLibrary->GetFirstPropertyItem<KLyrPropertyFlags>(pId, nullptr)),
         lFirst(Item::eFlags));
}

void Comparison::Flags(int pId) {
    Same("flags", static_cast<unsigned>(mHandle.GetFlags()), mModel ? mModel->GetFlags(pId) : 0u);
    for (unsigned lFlags : {1u, 2u, 0x40u, 0x7FFFu})
        for (bool lCheck : {false, true})
            Same("flags state",
                 static_cast<int>(
                     mHandle.GetFlagsInheritType(static_cast<LyrPropertyFlags::eLyrPropertyFlags>(lFlags), lCheck)),
                 mModel ? mModel->GetFlagsInheritType(lFlags, lCheck, pId) : kInherit);
    if (!mModel || !mModel->Own(pId) || !IsSame())
        return;
    const auto* lOwn = mLibrary->GetPropertyItem<KLyrPropertyFlags>(nullptr, pId);
    Same("flags set here", lOwn ? lOwn->GetMask() : ~0u, mModel->Own(pId)->mMask);
    Same("flags held here", lOwn ? static_cast<unsigned>(lOwn->GetFlags()) : ~0u, mModel->Own(pId)->mFlags);
}

void Comparison::Connections(int pId) {
    Links(pId, 0);
    // Through one filter at a time, so that sub-points are made at many different moments.
    if (mModel && !mModel->GetLinks(pId, true, nullptr).empty())
        Links(pId, 1 + pId % Pair::kFilters);
    if (mModel && !mModel->GetLinks(pId, false, nullptr).empty())
        Links(pId, 1 + (pId % Pair::kFilters + 1) % Pair::kFilters);
}

void Comparison::Links(int pId, int pFilter) {
    KLyrConnectionPointFilter* lFilter = mPair.LibraryFilterAt(pFilter);
    for (bool lSrcs : {true, false}) {
        const std::vector<Link> lLinks =
            mModel ? mModel->GetLinks(pId, lSrcs, mPair.ModelFilterAt(pFilter)) : std::vector<Link>();
        Same(lSrcs ? "sources" : "destinations", lSrcs ? mHandle.GetSrcCount(lFilter) : mHandle.GetDstCount(lFilter),
             static_cast<int>(lLinks.size()));
        if (!IsSame())
            return;
        const KLyrPropertyConnect* lItem =
            mLibrary ? mLibrary->GetPropertyItem<KLyrPropertyConnect>(nullptr, pId) : nullptr;
        for (int i = 0; i < static_cast<int>(lLinks.size()); ++i) {
            const Link& lLink = lLinks[static_cast<std::size_t>(i)];
            Same(lSrcs ? "source" : "destination", lSrcs ? mHandle.GetSrc(lFilter, i) : mHandle.GetDst(lFilter, i),
                 lLink.mPeer->mPage, lLink.mPeer->mId);
            if (pFilter || !lItem)
                continue;
            const KLyrConnectionPoint& lPoint = lItem->GetConnectionPoint();
            Same("connection type", static_cast<int>(lSrcs ? lPoint.GetSrcType(i) : lPoint.GetDstType(i)), lLink.mType);
        }
    }
}

}  // namespace lyrmodel
