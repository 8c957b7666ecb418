#pragma once

// Page families as a few lines of plain code: what handles must show, written for reading and not for speed. It knows
// numbers, names, flags, inheritance, types, brackets and connections; it shares nothing with the library.

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrtypes.h"

namespace lyrsdk::model {

class Page;

struct Info {
    std::string mName;
    ELyrType mType = eUNIDENTIFIED;
    Page* mTypeInfo = nullptr;
    std::string mLabel;
    int mTag = 0;
};

struct Value {
    ELyrType mType = eUNIDENTIFIED;  // eDOUBLE1, eINTEGER1 or no storage
    double mNumber = 0;

    bool Set(double pNumber) {
        mNumber = mType == eINTEGER1 ? std::trunc(pNumber) : pNumber;
        return mType != eUNIDENTIFIED;
    }
};

using End = std::pair<Page*, int>;

struct Connect {
    std::vector<End> mSrcs, mDsts;
};

struct Entry {
    int mParent = -1;
    std::optional<Info> mInfo;
    std::optional<Value> mValue;
    std::optional<Connect> mConnect;
    unsigned mFlags = 0, mMask = 0;

    bool IsEmpty() const { return !mInfo && !mValue && !mConnect && mMask == 0; }
};

// The items that inherit one by one.
template <typename T>
std::optional<T>& ItemOf(Entry& pEntry);
template <>
inline std::optional<Info>& ItemOf(Entry& pEntry) {
    return pEntry.mInfo;
}
template <>
inline std::optional<Value>& ItemOf(Entry& pEntry) {
    return pEntry.mValue;
}
template <>
inline std::optional<Connect>& ItemOf(Entry& pEntry) {
    return pEntry.mConnect;
}

constexpr unsigned kAllFlags = 0x7FFF;

class Page {
public:
    explicit Page(Page* pInstanceOf) : mInstanceOf(pInstanceOf) {
        mNextId = pInstanceOf ? pInstanceOf->mNextId : std::make_shared<int>(0);
    }

    // --- lookup through the chain
    Entry* Own(int pId) {
        const auto lIt = mEntries.find(pId);
        return lIt == mEntries.end() ? nullptr : &lIt->second;
    }
    Page* Holder(int pId) { return Own(pId) ? this : mInstanceOf ? mInstanceOf->Holder(pId) : nullptr; }
    Entry* Seen(int pId) { return Holder(pId) ? Holder(pId)->Own(pId) : nullptr; }
    template <typename T>
    Page* ItemHolder(int pId) {
        Entry* lOwn = Own(pId);
        if (lOwn && ItemOf<T>(*lOwn))
            return this;
        return mInstanceOf ? mInstanceOf->ItemHolder<T>(pId) : nullptr;
    }
    template <typename T>
    T* Item(int pId) {
        Page* lHolder = ItemHolder<T>(pId);
        return lHolder ? &*ItemOf<T>(*lHolder->Own(pId)) : nullptr;
    }
    std::set<int> Ids() const {
        std::set<int> lIds = mInstanceOf ? mInstanceOf->Ids() : std::set<int>();
        for (const auto& lEntry : mEntries)
            lIds.insert(lEntry.first);
        return lIds;
    }
    ELyrType Type(int pId) {
        const Info* lInfo = Item<Info>(pId);
        return !lInfo ? eUNIDENTIFIED : lInfo->mTypeInfo ? lInfo->mTypeInfo->Type(0) : lInfo->mType;
    }
    std::vector<int> Children(int pId) {
        std::vector<int> lChildren;
        for (int lId : Ids())
            if (lId > pId && pId != -1 && Seen(lId)->mParent == pId)
                lChildren.push_back(lId);
        return lChildren;
    }

    // The first child of pParent behind pAfter, or -1.
    int ChildBehind(int pParent, int pAfter) {
        for (int lId : Children(pParent))
            if (lId > pAfter)
                return lId;
        return -1;
    }
    bool IsBelow(int pId, int pAncestor) {
        std::set<int> lMet;
        while (pAncestor > 0 && Seen(pId) && lMet.insert(pId).second) {
            pId = Seen(pId)->mParent;
            if (pId == pAncestor)
                return true;
        }
        return pAncestor <= 0;
    }

    // --- adding
    int Add(int pParent, const std::string& pName, ELyrType pType) {
        return Put(pParent, Info{pName, pType, nullptr, "", 0}, Value{pType, 0}, std::nullopt);
    }
    int Add(int pParent, const std::string& pName, Page* pType, int& pReports) {
        const ELyrType lType = pType ? pType->Type(0) : eUNIDENTIFIED;
        const int lId = Put(pParent, Info{pName, eUNIDENTIFIED, pType, "", 0}, Value{lType, 0}, std::nullopt);
        std::vector<Page*> lOpen;
        if (pType)
            Expand(lId, pType, lId, lOpen, pReports);
        return lId;
    }

    // --- states
    Entry* OverrideEntry(int pId) {
        const Entry* lSeen = Seen(pId);
        if (lSeen && !Own(pId))
            mEntries[pId].mParent = lSeen->mParent;
        return Own(pId);
    }
    template <typename T>
    T* Override(int pId) {
        T* lSeen = Item<T>(pId);
        if (!lSeen || ItemHolder<T>(pId) == this)
            return lSeen;
        const T lCopy = *lSeen;
        std::optional<T>& lOwn = ItemOf<T>(*OverrideEntry(pId));
        lOwn = lCopy;
        if constexpr (std::is_same_v<T, Info>) {
            lOwn->mLabel = "";
            lOwn->mTag = 0;
        }
        return &*lOwn;
    }
    template <typename T>
    void Inherit(int pId) {
        if (!mInstanceOf || !mInstanceOf->Item<T>(pId) || ItemHolder<T>(pId) != this)
            return;
        ItemOf<T>(*Own(pId)).reset();
        DropEmpty(pId);
    }
    void InheritFlags(int pId) {
        if (!mInstanceOf || !mInstanceOf->Seen(pId) || !Own(pId))
            return;
        Own(pId)->mFlags = Own(pId)->mMask = 0;
        DropEmpty(pId);
    }

    bool Set(int pId, double pNumber, bool pCheck) {
        Value* lSeen = Item<Value>(pId);
        if (pCheck && lSeen) {
            const bool lOwn = ItemHolder<Value>(pId) == this;
            const Value* lAbove = !lOwn ? lSeen : mInstanceOf ? mInstanceOf->Item<Value>(pId) : nullptr;
            if (lAbove && lAbove->mType != eUNIDENTIFIED && lAbove->mNumber == pNumber) {
                if (lOwn)
                    Inherit<Value>(pId);
                return lOwn;
            }
        }
        Value* lOwn = Override<Value>(pId);
        return lOwn && lOwn->Set(pNumber);
    }
    bool SetValueInherit(int pId, bool pInherit) {
        if (pInherit)
            Inherit<Value>(pId);
        else
            Override<Value>(pId);
        return (ItemHolder<Value>(pId) != this) == pInherit;
    }

    bool ValueOverridesAnother(int pId) {
        Page* lHolder = ItemHolder<Value>(pId);
        return lHolder == this || (lHolder && lHolder->mInstanceOf && lHolder->mInstanceOf->Item<Value>(pId));
    }
    // The value of the page farthest up the chain.
    const Value* DefaultValue(int pId) {
        const Value* lAbove = mInstanceOf ? mInstanceOf->DefaultValue(pId) : nullptr;
        return lAbove || !Own(pId) || !Own(pId)->mValue ? lAbove : &*Own(pId)->mValue;
    }

    unsigned Flags(int pId) {
        const unsigned lAbove = mInstanceOf ? mInstanceOf->Flags(pId) : 0;
        return Own(pId) ? (lAbove & ~Own(pId)->mMask) | Own(pId)->mFlags : lAbove;
    }
    // Walked page by page from the nearest entry; each page shows the nearest flags from it upward.
    bool FlagsOverrideOthers(int pId, unsigned pFlags) {
        bool lSeen = false;
        for (Page* lPage = Holder(pId); lPage && lPage->Seen(pId); lPage = lPage->mInstanceOf) {
            if ((lPage->Seen(pId)->mMask & pFlags) == 0)
                continue;
            if (lPage == this || lSeen)
                return true;
            lSeen = true;
        }
        return false;
    }
    bool ModifyFlags(int pId, unsigned pFlags, bool pOn) {
        if (!Seen(pId))
            return false;
        if (Own(pId)) {
            Turn(pId, pFlags, pOn);
            if (mInstanceOf && mInstanceOf->Seen(pId) && ((mInstanceOf->Flags(pId) ^ Own(pId)->mFlags) & pFlags) == 0)
                GiveBack(pId, pFlags);
            return true;
        }
        if ((Holder(pId)->Flags(pId) & pFlags) != pFlags) {
            OverrideEntry(pId);
            Turn(pId, pFlags, pOn);
        }
        return true;
    }
    bool SetFlagsInherit(int pId, unsigned pFlags, bool pInherit) {
        if (pInherit) {
            if (Own(pId))
                GiveBack(pId, pFlags);
            return Seen(pId) != nullptr;
        }
        if (!mInstanceOf || !mInstanceOf->Seen(pId))
            return false;
        Entry* lOwn = OverrideEntry(pId);
        lOwn->mFlags = (lOwn->mFlags & ~pFlags) | mInstanceOf->Flags(pId);
        lOwn->mMask |= pFlags;
        return true;
    }

    void Push() {
        if (!mInstanceOf)
            return;
        std::vector<int> lIds;
        for (const auto& lEntry : mEntries)
            lIds.push_back(lEntry.first);
        for (int lId : lIds) {
            const Entry lOwn = *Own(lId);
            if (!lOwn.mInfo && !lOwn.mValue && lOwn.mMask == 0 && lOwn.mFlags == 0)
                continue;
            if (!mInstanceOf->OverrideEntry(lId))
                mInstanceOf->mEntries[lId].mParent = lOwn.mParent;
            Entry* lParent = mInstanceOf->Own(lId);
            if (lOwn.mInfo)
                lParent->mInfo = lOwn.mInfo;
            if (lOwn.mValue)
                lParent->mValue = lOwn.mValue;
            lParent->mFlags = (lParent->mFlags & ~lOwn.mMask) | lOwn.mFlags;
            lParent->mMask |= lOwn.mMask;
            Inherit<Info>(lId);
            Inherit<Value>(lId);
            if (Own(lId))
                InheritFlags(lId);
        }
    }

    // --- connections
    bool ConnectSrc(int pDst, Page* pPage, int pSrc) {
        if ((pPage == this && pSrc == pDst) || !Seen(pDst) || !pPage->Seen(pSrc) || IsConnectedSrc(pDst, pPage, pSrc))
            return false;
        for (const End& lEnd : {End(this, pDst), End(pPage, pSrc)})
            if (!lEnd.first->OverrideEntry(lEnd.second)->mConnect)
                lEnd.first->Own(lEnd.second)->mConnect.emplace();
        Own(pDst)->mConnect->mSrcs.emplace_back(pPage, pSrc);
        pPage->Own(pSrc)->mConnect->mDsts.emplace_back(this, pDst);
        return true;
    }
    bool IsConnectedSrc(int pDst, Page* pPage, int pSrc) {
        const Entry* lDst = Own(pDst);
        const End lSrc(pPage, pSrc);
        return lDst && lDst->mConnect &&
               std::count(lDst->mConnect->mSrcs.begin(), lDst->mConnect->mSrcs.end(), lSrc) != 0;
    }
    bool DisconnectSrc(int pDst, Page* pPage, int pSrc) {
        if (!IsConnectedSrc(pDst, pPage, pSrc))
            return false;
        Erase(Own(pDst)->mConnect->mSrcs, End(pPage, pSrc));
        Erase(pPage->Own(pSrc)->mConnect->mDsts, End(this, pDst));
        return true;
    }
    void Wipe(int pId) {
        Page* lHolder = ItemHolder<Connect>(pId);
        if (!lHolder)
            return;
        Connect& lConnect = *lHolder->Own(pId)->mConnect;
        for (const End& lSrc : lConnect.mSrcs)
            Erase(lSrc.first->Own(lSrc.second)->mConnect->mDsts, End(lHolder, pId));
        for (const End& lDst : lConnect.mDsts)
            Erase(lDst.first->Own(lDst.second)->mConnect->mSrcs, End(lHolder, pId));
        lConnect = Connect();
    }

    // --- lookup by name
    void Begin() {
        if (mOpen)
            return;
        mOpen = true;
        for (int lId : Ids()) {
            // Of the root the nearest entry counts, of all others the farthest.
            Entry* lEntry = lId == 0 ? Seen(0) : Farthest(lId);
            if (lEntry->mInfo)
                mNames.insert({{lEntry->mParent, lEntry->mInfo->mName}, lId});
        }
    }
    void Close() {
        mOpen = false;
        mNames.clear();
    }
    int Find(int pId, const std::string& pName, Page* pType) {
        if (!mNames.empty()) {
            const auto lIt = mNames.find({pId, pName});
            if (lIt == mNames.end())
                return -1;
            if (Seen(lIt->second) && (!pType || TypeInfo(lIt->second) == pType))
                return lIt->second;
        }
        for (int lChild : Children(pId)) {
            const Info* lInfo = Item<Info>(lChild);
            if (lInfo && lInfo->mName == pName && (!pType || lInfo->mTypeInfo == pType))
                return lChild;
        }
        return -1;
    }
    Page* TypeInfo(int pId) {
        const Info* lInfo = Item<Info>(pId);
        return lInfo ? lInfo->mTypeInfo : nullptr;
    }

    // --- removing
    bool Remove(int pId) {
        Page* lHolder = Holder(pId);
        if (lHolder)
            lHolder->RemoveOwn(pId);
        return lHolder != nullptr;
    }
    void RemoveOwn(int pId) {
        if (Own(pId)->mConnect)
            Wipe(pId);
        mEntries.erase(pId);
    }
    // Gives an instance what it sees of this page, and lets it go.
    void HandDownTo(Page* pInstance) {
        for (int lId : Ids()) {
            const unsigned lFlags = pInstance->Flags(lId);
            Entry* lOwn = pInstance->OverrideEntry(lId);
            pInstance->Override<Info>(lId);
            pInstance->Override<Value>(lId);
            lOwn->mFlags = lFlags;
            lOwn->mMask |= kAllFlags;
        }
        pInstance->mInstanceOf = nullptr;
    }

    std::string Describe() {
        std::ostringstream lOut;
        for (int lId : Ids())
            if (lId == 0 || Farthest(lId)->mParent != -1)
                DescribeOne(lOut, lId);
        return lOut.str();
    }

    Page* mInstanceOf;
    std::map<int, Entry> mEntries;
    std::shared_ptr<int> mNextId;

private:
    int Put(int pParent, const std::optional<Info>& pInfo, const std::optional<Value>& pValue,
            const std::optional<Connect>& pConnect) {
        const int lId = (*mNextId)++;
        mEntries[lId] = Entry{pParent, pInfo, pValue, pConnect, 0, kAllFlags};
        if (!mNames.empty() && pInfo)
            mNames.insert({{pParent, pInfo->mName}, lId});
        return lId;
    }
    // The copies of what a type page held when the addition of pFirst began; pOpen are the pages being expanded.
    void Expand(int pId, Page* pType, int pFirst, std::vector<Page*>& pOpen, int& pReports) {
        if (pType == this || std::count(pOpen.begin(), pOpen.end(), pType)) {
            ++pReports;
            return;
        }
        pOpen.push_back(pType);
        CopyChildren(pId, pType, 0, pFirst, pOpen, pReports);
        pOpen.pop_back();
    }
    void CopyChildren(int pId, Page* pFrom, int pOf, int pFirst, std::vector<Page*>& pOpen, int& pReports) {
        for (int lChild : pFrom->Children(pOf)) {
            if (pFrom->mNextId == mNextId && lChild >= pFirst)
                continue;
            const Info* lInfo = pFrom->Item<Info>(lChild);
            const Value* lValue = pFrom->Item<Value>(lChild);
            std::optional<Info> lInfoCopy;
            if (lInfo)
                lInfoCopy = Info{lInfo->mName, lInfo->mType, lInfo->mTypeInfo, "", 0};
            const std::optional<Value> lValueCopy = lValue ? std::optional<Value>(*lValue) : std::nullopt;
            const bool lConnect = pFrom->Item<Connect>(lChild);
            Page* lType = pFrom->TypeInfo(lChild);
            const int lCopy =
                Put(pId, lInfoCopy, lValueCopy, lConnect ? std::optional<Connect>(Connect()) : std::nullopt);
            if (lType)
                Expand(lCopy, lType, pFirst, pOpen, pReports);
            else
                CopyChildren(lCopy, pFrom, lChild, pFirst, pOpen, pReports);
        }
    }

    void Turn(int pId, unsigned pFlags, bool pOn) {
        Entry* lOwn = Own(pId);
        lOwn->mMask |= pFlags;
        lOwn->mFlags = pOn ? lOwn->mFlags | pFlags : lOwn->mFlags & ~pFlags;
    }
    void GiveBack(int pId, unsigned pFlags) {
        Entry* lOwn = Own(pId);
        if (mInstanceOf && mInstanceOf->Seen(pId))
            lOwn->mFlags &= ~pFlags;
        lOwn->mMask &= ~pFlags;
        if (lOwn->mMask == 0)
            InheritFlags(pId);
    }
    void DropEmpty(int pId) {
        if (Own(pId)->IsEmpty())
            mEntries.erase(pId);
    }
    Entry* Farthest(int pId) {
        Entry* lAbove = mInstanceOf ? mInstanceOf->Farthest(pId) : nullptr;
        return lAbove ? lAbove : Own(pId);
    }
    static void Erase(std::vector<End>& pEnds, const End& pEnd) {
        pEnds.erase(std::remove(pEnds.begin(), pEnds.end(), pEnd), pEnds.end());
    }

    // In the words of DescribePage.
    void DescribeOne(std::ostream& pOut, int pId) {
        const Info lNone;
        const Info& lInfo = Item<Info>(pId) ? *Item<Info>(pId) : lNone;
        const Value* lValue = Item<Value>(pId);
        const Entry* lOwn = Own(pId);
        pOut << (Seen(pId) ? Seen(pId)->mParent : -1) << '/' << pId << " '" << lInfo.mName
             << "' type=" << static_cast<int>(Type(pId)) << " value='";
        if (lValue && lValue->mType != eUNIDENTIFIED)
            pOut << lValue->mNumber;
        else
            pOut << "(none)";
        pOut << "' label='" << lInfo.mLabel << "' tag=" << lInfo.mTag << " data=" << static_cast<void*>(nullptr);
        if (lInfo.mTypeInfo) {
            const Info* lRoot = lInfo.mTypeInfo->Item<Info>(0);
            pOut << " typed by '" << (lRoot ? lRoot->mName : "") << '\'';
        }
        const bool lConnect = lOwn && lOwn->mConnect;
        pOut << " flags=" << Flags(pId) << " src=" << (lConnect ? lOwn->mConnect->mSrcs.size() : 0)
             << " dst=" << (lConnect ? lOwn->mConnect->mDsts.size() : 0)
             << (ItemHolder<Value>(pId) == this ? " own value" : "") << " own flags";
        for (unsigned lFlag = 1; lFlag <= 0x8000u; lFlag *= 2)
            pOut << (lOwn && (lOwn->mMask & lFlag) ? '1' : '0');
        pOut << '\n';
    }

    bool mOpen = false;
    std::map<std::pair<int, std::string>, int> mNames;
};

}  // namespace lyrsdk::model
