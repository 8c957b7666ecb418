#pragma once

// All that can be seen of pages through their public functions, as text: two pages or families that give the same text
// cannot be told apart by an application.

#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "tests/klyrplugins/value_samples.h"

namespace lyrsdk {

struct PageDumpOptions {
    // Also which page holds what: items, own flags and masks, states of values and flags.
    bool mStates = true;
    // Ids as their rank among the ids that the family uses, so that ids that were never used do not show.
    bool mRanks = false;
};

// Pages that others refer to are named by their place in the list that was given, all others by their root property.
class PageDump {
public:
    using Pages = std::vector<const KLyrPropertyPage*>;

    explicit PageDump(Pages pPages, PageDumpOptions pOptions = {}) : mPages(std::move(pPages)), mOptions(pOptions) {
        for (const KLyrPropertyPage* lPage : mPages) {
            std::set<int>& lIds = mIds[lPage->GetIdGenerator()];
            for (int lId : IdsOf(*lPage))
                lIds.insert(lId);
        }
    }

    std::string Text() {
        for (const KLyrPropertyPage* lPage : mPages)
            DumpPage(*lPage);
        return mOut.str();
    }

private:
    static std::vector<int> IdsOf(const KLyrPropertyPage& pPage) {
        std::vector<int> lIds;
        if (pPage.GetPropertyEntry(0))
            lIds.push_back(0);
        for (int lId = 0; (lId = pPage.GetMinimumPropertyIdAndEntry(lId)) != -1;)
            lIds.push_back(lId);
        return lIds;
    }

    std::string NameOf(const KLyrPropertyPage* pPage) const {
        if (!pPage)
            return "none";
        for (std::size_t i = 0; i < mPages.size(); ++i)
            if (mPages[i] == pPage)
                return "page " + std::to_string(i);
        return std::string("'") + pPage->GetName(0) + "'";
    }

    std::string IdText(const KLyrPropertyPage& pPage, int pId) const {
        if (!mOptions.mRanks)
            return std::to_string(pId);
        const auto lIds = mIds.find(pPage.GetIdGenerator());
        int lRank = 0;
        if (lIds != mIds.end()) {
            for (int lId : lIds->second) {
                if (lId == pId)
                    return "#" + std::to_string(lRank);
                ++lRank;
            }
        }
        return pId < 0 ? std::to_string(pId) : "gone";
    }

    void DumpPage(const KLyrPropertyPage& pPage) {
        mOut << NameOf(&pPage) << " instance of " << NameOf(pPage.GetInstanceOf()) << " data " << pPage.GetDataPtr()
             << " instances";
        for (int i = 0; i < pPage.GetInstances().GetCount(); ++i)
            mOut << ' ' << NameOf(pPage.GetInstances().GetAt(i));
        if (!mOptions.mRanks)
            mOut << " entries " << pPage.GetPropertyEntryCount();
        mOut << '\n';
        for (int lId : IdsOf(pPage))
            DumpProperty(pPage, lId);
    }

    void DumpProperty(const KLyrPropertyPage& pPage, int pId) {
        mOut << "  " << IdText(pPage, pId) << " in " << IdText(pPage, pPage.GetParent(pId)) << " '"
             << pPage.GetName(pId) << "' type " << pPage.GetType(pId) << " of " << NameOf(pPage.GetTypeInfo(pId));
        DumpTree(pPage, pId);
        DumpDescription(pPage, pId);
        const auto* lValue = pPage.GetPropertyItem<KLyrPropertyValue>(nullptr, pId);
        if (lValue)
            mOut << "\n    value " << lValue->GetType() << ' '
                 << Read(lValue->GetType(), [&](void* pValue, ELyrType pType) { return pPage.Get(pId, pValue, pType); })
                 << " default " << Read(lValue->GetType(), [&](void* pTo, ELyrType pType) {
                        return pPage.GetDefaultValue(pId, pTo, pType);
                    });
        mOut << "\n    flags " << std::hex << static_cast<unsigned>(pPage.GetFlags(pId)) << std::dec;
        if (mOptions.mStates)
            DumpStates(pPage, pId);
        DumpConnections(pPage, pId);
        mOut << '\n';
    }

    void DumpTree(const KLyrPropertyPage& pPage, int pId) {
        mOut << " children";
        for (int lChild = pPage.GetChild(pId); lChild != -1; lChild = pPage.GetSibling(lChild))
            mOut << ' ' << IdText(pPage, lChild);
    }

    void DumpDescription(const KLyrPropertyPage& pPage, int pId) {
        mOut << "\n    label '" << pPage.GetLabel(pId) << "' tag " << pPage.GetUserTag(pId) << " data "
             << pPage.GetUserData(pId);
        const ELyrType lType = pPage.GetType(pId);
        for (int i = 0; i < KLyrPropertyInfo::eValueCount; ++i) {
            const auto lBound = static_cast<KLyrPropertyInfo::eValueIndex>(i);
            if (pPage.HasMinMax(pId, lBound))
                mOut << " bound " << i << ' ' << Read(lType, [&](void* pValue, ELyrType pAs) {
                    return pPage.GetMinMax(pId, lBound, pValue, pAs);
                });
        }
        for (int i = 0; i < pPage.GetEnumCount(pId); ++i) {
            const char* lText = pPage.GetEnumValue(pId, i);
            mOut << " enum '" << (lText ? lText : "(null)") << "'";
        }
    }

    void DumpStates(const KLyrPropertyPage& pPage, int pId) {
        KLyrPropertyPage* lHolder = nullptr;
        KLyrPropertyEntry* lEntry = pPage.GetPropertyEntry(pId, &lHolder);
        mOut << " entry " << NameOf(lHolder) << " parent " << IdText(pPage, lEntry->GetParentId());
        DumpHolder<KLyrPropertyInfo>(pPage, pId, "info");
        DumpHolder<KLyrPropertyValue>(pPage, pId, "value");
        DumpHolder<KLyrPropertyConnect>(pPage, pId, "connect");
        const auto* lFlags = lEntry->Get(static_cast<const KLyrPropertyFlags*>(nullptr));
        mOut << " item flags " << std::hex << lFlags->GetFlags() << '/' << lFlags->GetMask() << std::dec << " states "
             << pPage.GetValueInherit(pId, false) << pPage.GetValueInherit(pId, true) << ' ';
        for (unsigned lBit = 1; lBit <= 0x8000u; lBit *= 2) {
            const auto lFlag = static_cast<LyrPropertyFlags::eLyrPropertyFlags>(lBit);
            mOut << pPage.GetFlagsInheritType(lFlag, false, pId) << pPage.GetFlagsInheritType(lFlag, true, pId);
        }
    }

    template <typename T>
    void DumpHolder(const KLyrPropertyPage& pPage, int pId, const char* pKind) {
        KLyrPropertyPage* lHolder = nullptr;
        if (pPage.GetPropertyItem<T>(nullptr, pId, &lHolder))
            mOut << ' ' << pKind << ' ' << NameOf(lHolder);
    }

    void DumpConnections(const KLyrPropertyPage& pPage, int pId) {
        KLyrPropertyPage* lHolder = nullptr;
        const auto* lItem = pPage.GetPropertyItem<KLyrPropertyConnect>(nullptr, pId, &lHolder);
        const KLyrConnectionPoint* lPoint = lItem && lHolder == &pPage ? &lItem->GetConnectionPoint() : nullptr;
        for (const bool lSrc : {true, false}) {
            const int lCount = lSrc ? pPage.GetSrcCount(pId, nullptr) : pPage.GetDstCount(pId, nullptr);
            for (int i = 0; i < lCount; ++i) {
                KLyrPropertyPage* lPeer = nullptr;
                int lPeerId = -1;
                const bool lGiven = lSrc ? pPage.GetSrc(pId, i, nullptr, &lPeer, &lPeerId)
                                         : pPage.GetDst(pId, i, nullptr, &lPeer, &lPeerId);
                mOut << "\n    " << (lSrc ? "from " : "to ") << NameOf(lPeer) << ' '
                     << (lGiven && lPeer ? IdText(*lPeer, lPeerId) : "nothing") << " type "
                     << (lPoint ? (lSrc ? lPoint->GetSrcType(i) : lPoint->GetDstType(i)) : -1);
            }
        }
    }

    // A value as its bytes, and as its text.
    template <typename Reader>
    static std::string Read(ELyrType pType, Reader pReader) {
        if (!lyrHoldsValue(pType))
            return "without value";
        std::string lText = "unread";
        void* lValue = lyrCreate(pType);
        if (pReader(lValue, pType)) {
            KString lShown;
            lyrCopy(&lShown, eSTRING, lValue, pType);
            lText = Hex(ImageOf(pType, lValue)) + " '" + ImageOf(lShown) + "'";
        }
        lyrDestroy(pType, lValue);
        return lText;
    }

    static std::string Hex(const std::string& pBytes) {
        static const char sDigits[] = "0123456789abcdef";
        std::string lText;
        for (const char lByte : pBytes) {
            const unsigned lBits = static_cast<unsigned char>(lByte);
            lText += sDigits[lBits / 16];
            lText += sDigits[lBits % 16];
        }
        return lText;
    }

    Pages mPages;
    PageDumpOptions mOptions;
    std::map<const KLyrPropertyIdGenerator*, std::set<int>> mIds;
    std::ostringstream mOut;
};

}  // namespace lyrsdk
