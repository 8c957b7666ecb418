// A world once more, with everything that is shared shared in the same way.

#include "tests/model/property_model.h"

namespace lyrmodel {
namespace {

// The copies of objects, by their originals.
template <typename T>
class Copies {
public:
    std::shared_ptr<T>& Of(const std::shared_ptr<T>& pOriginal) { return mCopies[pOriginal.get()]; }
    T* At(const T* pOriginal) const { return mCopies.at(pOriginal).get(); }
    const std::map<const T*, std::shared_ptr<T>>& All() const { return mCopies; }

private:
    std::map<const T*, std::shared_ptr<T>> mCopies;
};

template <typename T>
std::shared_ptr<T> CopyOf(Copies<T>& pCopies, const std::shared_ptr<T>& pOriginal) {
    if (!pOriginal)
        return nullptr;
    std::shared_ptr<T>& lCopy = pCopies.Of(pOriginal);
    if (!lCopy)
        lCopy = std::make_shared<T>(*pOriginal);
    return lCopy;
}

}  // namespace

void World::CopyFrom(const World& pOther) {
    // Links are dropped first, so that no end looks for its other one.
    for (int lSlot : LiveSlots()) {
        for (auto& lEntry : At(lSlot)->mEntries) {
            if (Connect* lConnect = lEntry.second.mConnect.get()) {
                lConnect->mSrcs.clear();
                lConnect->mDsts.clear();
            }
        }
    }
    for (auto& lPage : mPages)
        lPage.reset();
    mFault = pOther.mFault;
    mReports = pOther.mReports;

    for (int lSlot : pOther.LiveSlots())
        mPages[static_cast<std::size_t>(lSlot)] = std::make_unique<Page>(*this, lSlot);
    const auto lHere = [this](const Page* pPage) { return pPage ? At(pPage->mSlot) : nullptr; };
    Copies<int> lNextIds;
    Copies<Info> lInfos;
    Copies<Value> lValues;
    std::map<const Connect*, std::shared_ptr<Connect>> lConnects;
    for (int lSlot : pOther.LiveSlots()) {
        const Page& lFrom = *pOther.At(lSlot);
        Page& lTo = *At(lSlot);
        lTo.mInstanceOf = lHere(lFrom.mInstanceOf);
        for (const Page* lInstance : lFrom.mInstances)
            lTo.mInstances.push_back(lHere(lInstance));
        lTo.mData = lFrom.mData;
        lTo.mOpen = lFrom.mOpen;
        lTo.mNames = lFrom.mNames;
        lTo.mNextId = CopyOf(lNextIds, lFrom.mNextId);
        for (const auto& [lId, lEntry] : lFrom.mEntries) {
            Entry& lCopy = lTo.mEntries[lId];
            lCopy.mParent = lEntry.mParent;
            lCopy.mFlags = lEntry.mFlags;
            lCopy.mMask = lEntry.mMask;
            lCopy.mInfo = CopyOf(lInfos, lEntry.mInfo);
            lCopy.mValue = CopyOf(lValues, lEntry.mValue);
            if (lEntry.mConnect)
                lCopy.mConnect = lConnects[lEntry.mConnect.get()] =
                    std::make_shared<Connect>(lHere(lEntry.mConnect->mPage), lEntry.mConnect->mId);
        }
    }
    for (const auto& lInfo : lInfos.All())
        lInfo.second->mTypeInfo = lHere(lInfo.second->mTypeInfo);
    for (const auto& [lFrom, lTo] : lConnects) {
        for (const Link& lLink : lFrom->mSrcs)
            lTo->mSrcs.push_back({lConnects.at(lLink.mPeer).get(), lLink.mType});
        for (const Link& lLink : lFrom->mDsts)
            lTo->mDsts.push_back({lConnects.at(lLink.mPeer).get(), lLink.mType});
    }
}

}  // namespace lyrmodel
