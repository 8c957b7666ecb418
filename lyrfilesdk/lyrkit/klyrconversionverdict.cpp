#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"

#include <cstddef>
#include <string_view>

#include "lyrfilesdk/lyrcore/klyrpropertyitems.h"
#include "lyrfilesdk/lyrcore/klyrpropertypage.h"
#include "lyrfilesdk/lyrkit/klyrsentence.h"

namespace lyrsdk {

const char* lyrVerdictText(ELyrConversionVerdict pVerdict) {
    switch (pVerdict) {
        case eLyrConvertsSame:
            return "same";
        case eLyrConvertsExactly:
            return "exact";
        case eLyrMayLosePrecision:
            return "may lose precision";
        case eLyrTruncates:
            return "truncates";
        case eLyrWraps:
            return "wraps";
        case eLyrParses:
            return "parses";
        case eLyrPrints:
            return "prints";
        case eLyrTakesFirstElement:
            return "first element";
        case eLyrRefusedSilently:
            return "refused silently";
        case eLyrRefusedWithReport:
            return "refused with a report";
    }
    return "unknown";
}

namespace {

using detail::Sentence;

// Whether the text of pItem reads as pType. The rules that read a text take no memory.
bool Reads(const KLyrPropertyValue* pItem, ELyrType pType) {
    alignas(std::max_align_t) unsigned char lScratch[kLyrMaxValueSize];
    lyrConstruct(pType, lScratch);
    return pItem->Get(lScratch, pType);
}

bool Reads(const KString& pText, ELyrType pType) {
    alignas(std::max_align_t) unsigned char lScratch[kLyrMaxValueSize];
    lyrConstruct(pType, lScratch);
    return lyrCopy(lScratch, pType, &pText, eSTRING);
}

void ExplainPair(Sentence& pOut, ELyrType pFrom, ELyrType pTo) {
    pOut << "A value of " << pFrom << " is never converted to " << pTo;
    pOut << (lyrConversionVerdict(pFrom, pTo) == eLyrRefusedWithReport ? ", and trying is reported." : ".");
}

// The value is there and both types hold values.
void ExplainConversion(Sentence& pOut, const KLyrPropertyValue* pItem, ELyrType pValueType, ELyrAccess pAccess,
                       const void* pValue) {
    const ELyrType lFrom = pAccess == eLyrRead ? pItem->GetType() : pValueType;
    const ELyrType lTo = pAccess == eLyrRead ? pValueType : pItem->GetType();
    if (lyrConversionIsRefused(lFrom, lTo))
        return ExplainPair(pOut, lFrom, lTo);
    if (lyrConversionVerdict(lFrom, lTo) != eLyrParses)
        return;
    if (pAccess == eLyrRead && !Reads(pItem, lTo))
        pOut << "The text in the property does not read as " << lTo << ".";
    if (pAccess == eLyrWrite && pValue && !Reads(*static_cast<const KString*>(pValue), lTo)) {
        const KString& lText = *static_cast<const KString*>(pValue);
        pOut << "The text ";
        pOut.Quote(std::string_view(lText.Buffer(), static_cast<std::size_t>(lText.GetLen())));
        pOut << " does not read as " << lTo << ".";
    }
}

}  // namespace

KLyrReason lyrWhyRefused(const KLyrPropertyHandle& pHandle, ELyrType pValueType, ELyrAccess pAccess,
                         const void* pValue) {
    KLyrReason lReason;
    Sentence lOut(lReason);
    const KLyrPropertyPage* lPage = pHandle.GetPage();
    const int lId = pHandle.GetId();
    if (!lPage)
        lOut << "The handle has no page.";
    else if (lId == -1)
        lOut << "The handle has no id: what it was looked up by was not found.";
    else if (!lPage->GetPropertyEntry(lId))
        lOut << "The page has no property of id " << lId << ".";
    else if (pAccess != eLyrRead && pAccess != eLyrWrite)
        lOut << "The access is neither a read nor a write.";
    if (!lReason.IsEmpty() || !lPage)
        return lReason;

    const KLyrPropertyValue* lItem = lPage->GetPropertyItem<KLyrPropertyValue>(nullptr, lId);
    if (!lItem) {
        lOut << "The property ";
        lOut.Quote(pHandle.GetName()) << " has no value.";
    } else if (!lyrHoldsValue(lItem->GetType())) {
        lOut << "The property ";
        lOut.Quote(pHandle.GetName()) << " is of type " << lItem->GetType() << ", which holds no value.";
    } else if (!lyrHoldsValue(pValueType)) {
        lOut << "The type code " << pValueType << " stands for no value.";
    } else {
        ExplainConversion(lOut, lItem, pValueType, pAccess, pValue);
    }
    return lReason;
}

}  // namespace lyrsdk
