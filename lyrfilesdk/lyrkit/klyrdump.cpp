#include "lyrfilesdk/lyrkit/klyrdump.h"

#include <ostream>
#include <string_view>

#include "lyrfilesdk/lyrkit/klyrdumptext.h"
#include "lyrfilesdk/lyrkit/klyrdumpwalk.h"
#include "lyrfilesdk/lyrkit/klyrexplain.h"
#include "lyrfilesdk/lyrkit/klyrtypename.h"

namespace lyrsdk {
namespace {

using detail::End;
using detail::PageNumbers;

void Put(std::ostream& pStream, std::string_view pText) {
    pStream.write(pText.data(), static_cast<std::streamsize>(pText.size()));
}

void PutNumber(std::ostream& pStream, int pNumber) {
    char lDigits[32];
    const int lLength = lyrFormat(lDigits, pNumber);
    Put(pStream, std::string_view(lDigits, static_cast<std::size_t>(lLength)));
}

void PutBlanks(std::ostream& pStream, int pCount) {
    for (int i = 0; i < pCount; ++i)
        pStream.put(' ');
}

// --- text ----------------------------------------------------------------------------------------------------------

class Dump {
public:
    Dump(std::ostream& pStream, const KLyrDumpStyle& pStyle) : mStream(pStream), mStyle(pStyle) {}

    PageNumbers& Numbers() { return mNumbers; }

    void DumpPage(KLyrPropertyPage* pPage) { DumpBelow(KLyrPropertyHandle(pPage, 0)); }

    void DumpBelow(const KLyrPropertyHandle& pFrom) {
        DumpPageName(pFrom.GetPage());
        if (KLyrPropertyPage* lAbove = pFrom.GetPage()->GetInstanceOf()) {
            Put(mStream, " instance of page ");
            DumpPageNumber(lAbove);
        }
        mStream.put('\n');
        detail::VisitBelow(pFrom, [&](int pId, int pDepth) {
            DumpProperty(lyrExplain(KLyrPropertyHandle(pFrom.GetPage(), pId)), pDepth);
        });
    }

private:
    static bool IsOwnFlag(const KLyrFlagOrigin& pFlag) { return pFlag.mOrigin == KLyrOrigin::eOwn; }

    static KLyrOrigin OriginOfFlags(const KLyrExplanation& pFound) {
        KLyrOrigin lOrigin = KLyrOrigin::eNowhere;
        for (const KLyrFlagOrigin& lFlag : pFound.mFlags) {
            if (IsOwnFlag(lFlag))
                return KLyrOrigin::eOwn;
            if (lFlag.mOrigin == KLyrOrigin::eInherited)
                lOrigin = KLyrOrigin::eInherited;
        }
        return lOrigin;
    }

    static bool HasOwn(const KLyrExplanation& pFound) {
        return pFound.mDescription.mOrigin == KLyrOrigin::eOwn || pFound.mValue.mOrigin == KLyrOrigin::eOwn ||
               pFound.mConnections.mOrigin == KLyrOrigin::eOwn || OriginOfFlags(pFound) == KLyrOrigin::eOwn;
    }

    void DumpPageNumber(const KLyrPropertyPage* pPage) {
        const int lNumber = mNumbers.Of(pPage);
        if (lNumber < 0)
            mStream.put('?');
        else
            PutNumber(mStream, lNumber);
    }

    void DumpPageName(const KLyrPropertyPage* pPage) {
        Put(mStream, "page ");
        DumpPageNumber(pPage);
        mStream.put(' ');
        lyrDumpQuoted(mStream, pPage->GetName(0));
    }

    void DumpProperty(const KLyrExplanation& pFound, int pDepth) {
        if (mStyle.mOnlyOwn && !HasOwn(pFound))
            return;
        const KLyrPropertyHandle& lProperty = pFound.mProperty;
        DumpMarks(pFound);
        PutBlanks(mStream, 2 * (pDepth < kMaxDepth ? pDepth : kMaxDepth));
        if (lProperty.GetId() == 0)
            Put(mStream, "(root)");
        lyrDumpPath(mStream, lProperty, mStyle.mSeparator);
        DumpType(lProperty);
        if (pFound.mValue.mOrigin != KLyrOrigin::eNowhere)
            DumpValue(lProperty);
        DumpFlags(pFound);
        DumpLimits(lProperty);
        if (mStyle.mDescriptions)
            DumpDescription(lProperty);
        mStream.put('\n');
        DumpConnections(lProperty, pDepth);
    }

    void DumpMarks(const KLyrExplanation& pFound) {
        const auto lMark = [this](KLyrOrigin pOrigin, char pOwn) {
            mStream.put(pOrigin == KLyrOrigin::eOwn ? pOwn : pOrigin == KLyrOrigin::eInherited ? '.' : '-');
        };
        PutBlanks(mStream, 2);
        lMark(pFound.mDescription.mOrigin, 'd');
        lMark(pFound.mValue.mOrigin, 'v');
        lMark(OriginOfFlags(pFound), 'f');
        lMark(pFound.mConnections.mOrigin, 'c');
        PutBlanks(mStream, 2);
    }

    void DumpType(const KLyrPropertyHandle& pProperty) {
        Put(mStream, ": ");
        Put(mStream, lyrTypeName(pProperty.GetType()));
        if (const KLyrPropertyPage* lTypeInfo = pProperty.GetTypeInfo().GetPage()) {
            Put(mStream, " typed by ");
            lyrDumpQuoted(mStream, lTypeInfo->GetName(0));
        }
    }

    void DumpValue(const KLyrPropertyHandle& pProperty) {
        const auto* lValue = pProperty.GetPage()->GetPropertyItem<KLyrPropertyValue>(nullptr, pProperty.GetId());
        if (!lyrHoldsValue(lValue->GetType()))
            return;
        Put(mStream, " = ");
        if (!lyrDumpValue(mStream, pProperty, mStyle.mMaxTextLength))
            mStream.put('?');
    }

    void DumpFlags(const KLyrExplanation& pFound) {
        const bool lIsOver = pFound.mAddedBy.GetPage() != pFound.mProperty.GetPage();
        const char* lLead = " [";
        for (int i = 0; i < KLyrExplanation::kFlagCount; ++i) {
            const KLyrFlagOrigin& lFlag = pFound.mFlags[i];
            const bool lIsOff = !lFlag.mIsOn && IsOwnFlag(lFlag) && lFlag.mIsOnIfInherited;
            if (!lFlag.mIsOn && !lIsOff)
                continue;
            Put(mStream, lLead);
            Put(mStream, lIsOff ? "no " : "");
            lyrDumpFlags(mStream, static_cast<LyrPropertyFlags::eLyrPropertyFlags>(1u << i));
            Put(mStream, lIsOver && lFlag.mIsOn && IsOwnFlag(lFlag) ? "*" : "");
            lLead = ", ";
        }
        Put(mStream, lLead[0] == ',' ? "]" : "");
    }

    void DumpLimits(const KLyrPropertyHandle& pProperty) {
        if (!lyrHoldsValue(pProperty.GetType()))
            return;
        if (pProperty.HasMin() || pProperty.HasMax()) {
            Put(mStream, " limits ");
            lyrDumpLimits(mStream, pProperty, false);
        }
        if (pProperty.HasSoftMin() || pProperty.HasSoftMax()) {
            Put(mStream, " soft ");
            lyrDumpLimits(mStream, pProperty, true);
        }
    }

    void DumpDescription(const KLyrPropertyHandle& pProperty) {
        const std::string_view lLabel = pProperty.GetLabel();
        if (!lLabel.empty()) {
            Put(mStream, " label ");
            lyrDumpQuoted(mStream, lLabel);
        }
        if (pProperty.GetUserTag() != 0) {
            Put(mStream, " tag ");
            PutNumber(mStream, pProperty.GetUserTag());
        }
        for (int i = 0; i < pProperty.GetEnumCount(); ++i) {
            Put(mStream, i == 0 ? " choices " : "|");
            lyrDumpQuoted(mStream, pProperty.GetEnumValue(i));
        }
    }

    void DumpConnections(const KLyrPropertyHandle& pProperty, int pDepth) {
        KLyrPropertyConnect* lItem = detail::OwnItemOf<KLyrPropertyConnect>(pProperty.GetPage(), pProperty.GetId());
        for (int i = 0; lItem && i < lItem->GetSrcCount(nullptr); ++i)
            DumpEnd(detail::SrcOf(*lItem, i), "<- ", pDepth);
        for (int i = 0; lItem && i < lItem->GetDstCount(nullptr); ++i)
            DumpEnd(detail::DstOf(*lItem, i), "-> ", pDepth);
    }

    void DumpEnd(const End& pEnd, const char* pArrow, int pDepth) {
        PutBlanks(mStream, 12 + 2 * (pDepth < kMaxDepth ? pDepth : kMaxDepth));
        Put(mStream, pArrow);
        if (pEnd.mProperty.GetPage())
            DumpPageName(pEnd.mProperty.GetPage());
        else
            Put(mStream, "nowhere");
        if (pEnd.mProperty.GetPage() && pEnd.mProperty.GetId() != 0) {
            mStream.put(' ');
            lyrDumpPath(mStream, pEnd.mProperty, mStyle.mSeparator);
        }
        Put(mStream, " (");
        lyrDumpConnectionType(mStream, pEnd.mType);
        Put(mStream, ")\n");
    }

    static constexpr int kMaxDepth = 40;

    std::ostream& mStream;
    const KLyrDumpStyle& mStyle;
    PageNumbers mNumbers;
};

}  // namespace

bool lyrDump(std::ostream& pStream, const KLyrPropertyHandle& pProperty, const KLyrDumpStyle& pStyle) {
    const bool lIsRoot = pProperty.GetPage() && pProperty.GetId() == 0;
    if (!lIsRoot && !detail::Exists(pProperty))
        return false;
    Dump lDump(pStream, pStyle);
    lDump.DumpBelow(pProperty);
    return lDump.Numbers().IsComplete();
}

bool lyrDumpFamilies(std::ostream& pStream, const KLyrPropertyHandle* pPages, int pCount, const KLyrDumpStyle& pStyle) {
    Dump lDump(pStream, pStyle);
    const detail::Families lFamilies(pPages, pCount, lDump.Numbers());
    lFamilies.Visit([&](KLyrPropertyPage* pPage) { lDump.DumpPage(pPage); });
    return lFamilies.GetPageCount() > 0 && lDump.Numbers().IsComplete();
}

bool lyrDumpFamily(std::ostream& pStream, const KLyrPropertyHandle& pPage, const KLyrDumpStyle& pStyle) {
    return lyrDumpFamilies(pStream, &pPage, 1, pStyle);
}

}  // namespace lyrsdk
