#include "lyrfilesdk/lyrkit/klyrconversionverdict.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrtypename.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

// clang-format off
//
//   =  same   x  exact   l  may lose precision   t  truncates   w  wraps   p  parses   s  prints   1  first element
//   .  refused silently   R  refused with a report
const char* const kVerdicts[] = {
// from:  -  c uc  s us ui ll ul hf  b  i  f  d V2 V3 V4 MM en st tm rf bl di dt
/* -  */ "R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R",
/* c  */ "R  =  w  .  .  .  .  .  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* uc */ "R  w  =  .  .  .  .  .  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* s  */ "R  x  x  =  .  .  .  .  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* us */ "R  w  x  w  =  .  .  .  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* ui */ "R  w  x  w  x  =  w  w  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* ll */ "R  x  x  x  x  x  =  w  .  x  x  t  t  .  .  .  .  x  p  .  R  .  .  .",
/* ul */ "R  w  x  w  x  x  w  =  .  x  w  t  t  .  .  .  .  w  p  .  R  .  .  .",
/* hf */ "R  x  x  l  l  l  l  l  =  x  l  l  l  .  .  .  .  l  .  .  R  .  l  .",
/* b  */ "R  t  t  t  t  t  t  t  .  =  t  t  t  .  .  .  .  t  p  .  R  .  .  .",
/* i  */ "R  x  x  x  x  w  w  w  .  x  =  t  t  .  .  .  .  x  p  .  R  .  .  .",
/* f  */ "R  x  x  x  x  l  .  .  x  x  l  =  l  .  .  .  .  l  .  .  R  .  l  .",
/* d  */ "R  x  x  x  x  x  l  l  x  x  x  x  =  1  1  1  1  x  p  l  R  R  l  R",
/* V2 */ "R  x  x  x  x  x  l  l  x  x  x  x  x  =  R  R  R  x  R  R  R  R  R  R",
/* V3 */ "R  x  x  x  x  x  l  l  x  x  x  x  x  .  =  t  .  x  .  .  R  .  .  .",
/* V4 */ "R  .  .  .  .  .  .  .  .  .  .  .  .  .  x  =  .  .  .  .  R  .  .  .",
/* MM */ "R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  =  R  R  R  R  R  R  R",
/* en */ "R  x  x  x  x  w  w  w  .  x  x  t  t  .  .  .  .  =  p  .  R  .  .  .",
/* st */ "R  s  s  s  s  s  s  s  s  s  s  s  s  s  s  s  s  s  =  s  R  s  s  s",
/* tm */ "R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  =  R  R  R  R",
/* rf */ "R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R  R",
/* bl */ "R  x  x  x  x  x  x  x  x  x  x  x  x  x  x  x  x  x  x  x  R  =  .  .",
/* di */ "R  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  R  .  =  .",
/* dt */ "R  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  .  p  .  R  .  .  =",
};

char LetterOf(ELyrType pFrom, ELyrType pTo) {
    return kVerdicts[pTo][3 * static_cast<std::size_t>(pFrom)];
}
// clang-format on

ELyrConversionVerdict VerdictOfLetter(char pLetter) {
    switch (pLetter) {
        case '=':
            return eLyrConvertsSame;
        case 'x':
            return eLyrConvertsExactly;
        case 'l':
            return eLyrMayLosePrecision;
        case 't':
            return eLyrTruncates;
        case 'w':
            return eLyrWraps;
        case 'p':
            return eLyrParses;
        case 's':
            return eLyrPrints;
        case '1':
            return eLyrTakesFirstElement;
        case '.':
            return eLyrRefusedSilently;
        default:
            return eLyrRefusedWithReport;
    }
}

ELyrType Code(int pNumber) {
    return static_cast<ELyrType>(pNumber);
}

template <typename Call>
void WithEveryPair(Call pCall) {
    for (int lTo = 0; lTo < eMAX_TYPES; ++lTo)
        for (int lFrom = 0; lFrom < eMAX_TYPES; ++lFrom) {
            SCOPED_TRACE(std::string(lyrTypeName(Code(lFrom))) + " to " + lyrTypeName(Code(lTo)));
            pCall(Code(lFrom), Code(lTo));
        }
}

TEST(ConversionVerdict, IsWhatTheTableSaysForEveryPair) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        const char lLetter = LetterOf(pFrom, pTo);
        EXPECT_STREQ(lyrVerdictText(lyrConversionVerdict(pFrom, pTo)), lyrVerdictText(VerdictOfLetter(lLetter)));
    });
}

TEST(ConversionVerdict, RestsOnTheRangesOfNumbers) {
    const auto lExpect = [](ELyrType pType, int pDigits, bool pIsSigned, bool pIsInteger) {
        const detail::NumberRange lRange = detail::RangeOfCode(pType);
        EXPECT_EQ(lRange.mDigits, pDigits) << pType;
        EXPECT_EQ(lRange.mIsSigned, pIsSigned) << pType;
        EXPECT_EQ(lRange.mIsInteger, pIsInteger) << pType;
    };
    lExpect(eBYTE1, 7, true, true);
    lExpect(eUBYTE1, 8, false, true);
    lExpect(eSHORT1, 15, true, true);
    lExpect(eUSHORT1, 16, false, true);
    lExpect(eUINTEGER1, 32, false, true);
    lExpect(eLONGLONG1, 63, true, true);
    lExpect(eULONGLONG1, 64, false, true);
    lExpect(eHALFFLOAT, 11, true, false);
    lExpect(eBOOL1, 1, false, true);
    lExpect(eINTEGER1, 31, true, true);
    lExpect(eENUM, 31, true, true);
    lExpect(eFLOAT1, 24, true, false);
    lExpect(eDOUBLE1, 53, true, false);
    for (const ELyrType lType : {eUNIDENTIFIED, eDOUBLE2, eDOUBLE3, eDOUBLE4, eDOUBLE44, eSTRING, eTIME, eREFERENCE,
                                 eBLOB, eDISTANCE, eDATETIME, eMAX_TYPES})
        lExpect(lType, 0, false, false);
}

TEST(ConversionVerdict, OfWhatIsNoCodeIsARefusalWithAReport) {
    for (int lCode : {-1, static_cast<int>(eMAX_TYPES), INT_MIN, INT_MAX}) {
        EXPECT_EQ(lyrConversionVerdict(Code(lCode), eDOUBLE1), eLyrRefusedWithReport);
        EXPECT_EQ(lyrConversionVerdict(eDOUBLE1, Code(lCode)), eLyrRefusedWithReport);
        EXPECT_EQ(lyrConversionVerdict(Code(lCode), Code(lCode)), eLyrRefusedWithReport);
    }
    EXPECT_STREQ(lyrVerdictText(static_cast<ELyrConversionVerdict>(99)), "unknown");
}

TEST(ConversionVerdict, SaysWhetherAPairIsRefused) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        const char lLetter = LetterOf(pFrom, pTo);
        EXPECT_EQ(lyrConversionIsRefused(pFrom, pTo), lLetter == '.' || lLetter == 'R');
    });
}

// --- against what lyrCopy does ---------------------------------------------------------------------------------------

// A value of any code, default or made from a number.
class AnyValue {
public:
    explicit AnyValue(ELyrType pType) : mType(pType) { lyrConstruct(pType, mBytes); }
    ~AnyValue() { lyrDestruct(mType, mBytes); }
    AnyValue(const AnyValue&) = delete;
    AnyValue& operator=(const AnyValue&) = delete;

    template <typename T>
    T& As() {
        return *reinterpret_cast<T*>(mBytes);
    }
    void* Memory() { return mBytes; }
    ELyrType Type() const { return mType; }

private:
    alignas(std::max_align_t) unsigned char mBytes[kLyrMaxValueSize] = {};
    ELyrType mType;
};

bool IsNumber(ELyrType pType) {
    return (pType >= eBYTE1 && pType <= eDOUBLE1) || pType == eENUM;
}

// The number in a value, which a long double holds exactly. Halves are taken apart by their bits.
long double NumberIn(AnyValue& pValue) {
    switch (pValue.Type()) {
#define LYRSDK_NUMBER(pName, pType) \
    case pName:                     \
        return static_cast<long double>(pValue.As<pType>());
        LYRSDK_NUMBER(eBYTE1, signed char)
        LYRSDK_NUMBER(eUBYTE1, unsigned char)
        LYRSDK_NUMBER(eSHORT1, short)
        LYRSDK_NUMBER(eUSHORT1, unsigned short)
        LYRSDK_NUMBER(eUINTEGER1, unsigned int)
        LYRSDK_NUMBER(eLONGLONG1, long long)
        LYRSDK_NUMBER(eULONGLONG1, unsigned long long)
        LYRSDK_NUMBER(eBOOL1, bool)
        case eENUM:
            LYRSDK_NUMBER(eINTEGER1, int)
            LYRSDK_NUMBER(eFLOAT1, float)
            LYRSDK_NUMBER(eDOUBLE1, double)
#undef LYRSDK_NUMBER
        default: {
            const int lBits = pValue.As<lyrHalfFloat>().bits();
            const int lExponent = (lBits >> 10) & 31;
            const int lFraction = lBits & 1023;
            const long double lSign = lBits >> 15 ? -1 : 1;
            if (lExponent == 31)
                return lFraction ? std::numeric_limits<long double>::quiet_NaN()
                                 : lSign * std::numeric_limits<long double>::infinity();
            return lSign * std::ldexp(static_cast<long double>(lExponent ? lFraction + 1024 : lFraction),
                                      (lExponent ? lExponent : 1) - 25);
        }
    }
}

// Sets the edges of the type: least, largest, around the powers of two that other types end at, fractions, no number.
template <typename T, typename Call>
void WithEdgesOf(ELyrType pType, Call pCall) {
    const auto lUse = [&](T pEdge) {
        AnyValue lValue(pType);
        lValue.As<T>() = pEdge;
        pCall(lValue);
    };
    using Limits = std::numeric_limits<T>;
    for (T lEdge : {Limits::lowest(), Limits::max(), Limits::min(), T(0), T(1)})
        lUse(lEdge);
    for (int lPower = 1; lPower < Limits::digits; ++lPower) {
        const T lTwo = static_cast<T>(std::ldexp(1.0L, lPower));
        for (T lEdge : {static_cast<T>(lTwo - 1), lTwo, static_cast<T>(lTwo + 1)}) {
            lUse(lEdge);
            if constexpr (Limits::is_signed)
                lUse(static_cast<T>(-lEdge));
        }
    }
    if constexpr (!Limits::is_integer)
        for (T lEdge : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(), Limits::denorm_min(), T(0.1),
                        T(-2.5), T(1e10)})
            lUse(lEdge);
}

template <typename Call>
void WithEdges(ELyrType pType, Call pCall) {
    switch (pType) {
#define LYRSDK_EDGES(pName, pType) \
    case pName:                    \
        return WithEdgesOf<pType>(pName, pCall);
        LYRSDK_EDGES(eBYTE1, signed char)
        LYRSDK_EDGES(eUBYTE1, unsigned char)
        LYRSDK_EDGES(eSHORT1, short)
        LYRSDK_EDGES(eUSHORT1, unsigned short)
        LYRSDK_EDGES(eUINTEGER1, unsigned int)
        LYRSDK_EDGES(eLONGLONG1, long long)
        LYRSDK_EDGES(eULONGLONG1, unsigned long long)
        LYRSDK_EDGES(eINTEGER1, int)
        LYRSDK_EDGES(eENUM, int)
        LYRSDK_EDGES(eFLOAT1, float)
        LYRSDK_EDGES(eDOUBLE1, double)
#undef LYRSDK_EDGES
        case eBOOL1:
            for (bool lBool : {false, true}) {
                AnyValue lValue(eBOOL1);
                lValue.As<bool>() = lBool;
                pCall(lValue);
            }
            return;
        case eHALFFLOAT:
            for (int lBits = 0; lBits < 0x10000; ++lBits) {
                AnyValue lValue(eHALFFLOAT);
                lValue.As<lyrHalfFloat>() = lyrHalfFloat::FromBits(static_cast<unsigned short>(lBits));
                pCall(lValue);
            }
            return;
        default:
            return;
    }
}

bool SameNumber(long double pLeft, long double pRight) {
    return pLeft == pRight ? std::signbit(pLeft) == std::signbit(pRight) : std::isnan(pLeft) && std::isnan(pRight);
}

TEST(ConversionVerdict, OfNumbersHoldsForTheEdgesOfTheirTypes) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        if (!IsNumber(pFrom) || !IsNumber(pTo) || lyrConversionIsRefused(pFrom, pTo))
            return;
        const ELyrConversionVerdict lVerdict = lyrConversionVerdict(pFrom, pTo);
        int lChanged = 0;
        WithEdges(pFrom, [&](AnyValue& pValue) {
            AnyValue lResult(pTo);
            ASSERT_TRUE(lyrCopy(lResult.Memory(), pTo, pValue.Memory(), pFrom));
            const long double lBefore = NumberIn(pValue);
            const long double lBehind = NumberIn(lResult);
            if (SameNumber(lBefore, lBehind))
                return;
            ++lChanged;
            if (lVerdict == eLyrWraps) {
                EXPECT_EQ(std::fmod(lBefore - lBehind, std::ldexp(1.0L, 8)), 0)
                    << "the low bits are those of the value";
            }
        });
        const bool lKeeps = lVerdict == eLyrConvertsSame || lVerdict == eLyrConvertsExactly;
        EXPECT_EQ(lChanged == 0, lKeeps) << lChanged << " edges changed";
    });
}

TEST(ConversionVerdict, OfRoundedNumbersIsNeverFarOff) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        if (!IsNumber(pFrom) || !IsNumber(pTo) || lyrConversionVerdict(pFrom, pTo) != eLyrMayLosePrecision)
            return;
        const long double lLargest = pTo == eHALFFLOAT ? 65504.0L : pTo == eFLOAT1 ? 3.4e38L : 1e308L;
        const long double lLeast = pTo == eHALFFLOAT ? std::ldexp(1.0L, -14) : pTo == eFLOAT1 ? 1.2e-38L : 3e-308L;
        WithEdges(pFrom, [&](AnyValue& pValue) {
            AnyValue lResult(pTo);
            ASSERT_TRUE(lyrCopy(lResult.Memory(), pTo, pValue.Memory(), pFrom));
            const long double lBefore = NumberIn(pValue);
            if (std::fabs(lBefore) <= lLargest && std::fabs(lBefore) >= lLeast) {
                EXPECT_LE(std::fabs(NumberIn(lResult) - lBefore), std::fabs(lBefore) / 1024);
            }
        });
    });
}

TEST(ConversionVerdict, OfARefusedPairIsWhatLyrCopyDoes) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        const ELyrConversionVerdict lVerdict = lyrConversionVerdict(pFrom, pTo);
        AnyValue lFrom(pFrom);
        AnyValue lTo(pTo);
        ReportRecorder lReports;
        const bool lDone = lyrCopy(lTo.Memory(), pTo, lFrom.Memory(), pFrom);
        EXPECT_EQ(lReports.Take().size(), lVerdict == eLyrRefusedWithReport ? 1u : 0u);
        // An empty text reads as nothing.
        EXPECT_EQ(lDone, lVerdict != eLyrParses && !lyrConversionIsRefused(pFrom, pTo));
    });
}

TEST(ConversionVerdict, OfTextsIsWhatLyrCopyDoes) {
    WithEveryPair([](ELyrType pFrom, ELyrType pTo) {
        if (lyrConversionVerdict(pFrom, pTo) == eLyrParses) {
            const KString lText(pTo == eDATETIME ? "2024-02-29T12:00" : "1");
            AnyValue lTo(pTo);
            EXPECT_TRUE(lyrCopy(lTo.Memory(), pTo, &lText, pFrom));
        } else if (lyrConversionVerdict(pFrom, pTo) == eLyrPrints) {
            AnyValue lFrom(pFrom);
            KString lText;
            EXPECT_TRUE(lyrCopy(&lText, pTo, lFrom.Memory(), pFrom));
            EXPECT_FALSE(lText.IsEmpty());
        }
    });
}

TEST(ConversionVerdict, OfVectorsIsWhatLyrCopyDoes) {
    const lyrDouble3 lThree{{1, 2, 3}};
    const lyrDouble4 lFour{{1, 2, 3, 4}};
    lyrDouble4 lToFour{{9, 9, 9, 9}};
    EXPECT_TRUE(lyrCopy(&lToFour, eDOUBLE4, &lThree, eDOUBLE3));
    EXPECT_TRUE(lToFour == (lyrDouble4{{1, 2, 3, 9}})) << "exact: every element of the 3-vector arrives";
    lyrDouble3 lToThree;
    EXPECT_TRUE(lyrCopy(&lToThree, eDOUBLE3, &lFour, eDOUBLE4));
    EXPECT_TRUE(lToThree == lThree) << "truncates: the last element is cut off";
    double lFirst = 0;
    EXPECT_TRUE(lyrCopy(&lFirst, eDOUBLE1, &lFour, eDOUBLE4));
    EXPECT_EQ(lFirst, 1);
    for (const ELyrType lTo : {eDOUBLE2, eDOUBLE3})
        for (int lFrom = 1; lFrom < eMAX_TYPES; ++lFrom) {
            if (!IsNumber(Code(lFrom)))
                continue;
            SCOPED_TRACE(lyrTypeName(Code(lFrom)));
            bool lAllArrive = true;
            WithEdges(Code(lFrom), [&](AnyValue& pValue) {
                AnyValue lVector(lTo);
                ASSERT_TRUE(lyrCopy(lVector.Memory(), lTo, pValue.Memory(), pValue.Type()));
                for (int i = 0; i < (lTo == eDOUBLE2 ? 2 : 3); ++i)
                    lAllArrive &= SameNumber(lVector.As<lyrDouble3>()[i], NumberIn(pValue));
            });
            EXPECT_EQ(lAllArrive, lyrConversionVerdict(Code(lFrom), lTo) == eLyrConvertsExactly);
        }
}

TEST(ConversionVerdict, OfBytesInABlobIsExact) {
    for (int lFrom = 1; lFrom < eMAX_TYPES; ++lFrom) {
        if (lyrConversionVerdict(Code(lFrom), eBLOB) != eLyrConvertsExactly || lFrom == eSTRING)
            continue;
        AnyValue lValue(Code(lFrom));
        if (IsNumber(Code(lFrom)))
            lValue.As<unsigned char>() = 1;
        lyrBlob lBlob;
        ASSERT_TRUE(lyrCopy(&lBlob, eBLOB, lValue.Memory(), Code(lFrom)));
        ASSERT_EQ(static_cast<std::size_t>(lBlob.GetSize()), lyrStorageSize(Code(lFrom)));
        EXPECT_EQ(std::memcmp(lBlob.GetData(), lValue.Memory(), lyrStorageSize(Code(lFrom))), 0);
    }
}

// --- why -------------------------------------------------------------------------------------------------------------

class WhyRefused : public HandleTest {
protected:
    std::string Why(const KLyrPropertyHandle& pHandle, ELyrType pType, ELyrAccess pAccess = eLyrRead,
                    const void* pValue = nullptr) {
        const std::size_t lBefore = MemoryProbe::Allocations();
        const KLyrReason lReason = lyrWhyRefused(pHandle, pType, pAccess, pValue);
        EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
        EXPECT_EQ(lReason.IsEmpty(), lReason.mText[0] == 0);
        return lReason.mText;
    }

    OwnedRoot mPage{KLyrPropertyHandle::Create("page", eUNIDENTIFIED)};
    KLyrPropertyHandle mNumber = AddChild(*mPage, "number", eINTEGER1);
    KLyrPropertyHandle mText = AddChild(*mPage, "text", eSTRING);
    KLyrPropertyHandle mReference = AddChild(*mPage, "reference", eREFERENCE);
};

TEST_F(WhyRefused, IsEmptyForWhatIsNotRefused) {
    EXPECT_EQ(Why(mNumber, eDOUBLE1), "");
    EXPECT_EQ(Why(mNumber, eDOUBLE1, eLyrWrite), "");
    EXPECT_EQ(Why(mNumber, eSTRING), "");
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite), "") << "some text may read";
}

TEST_F(WhyRefused, NamesWhatIsWrongWithTheHandle) {
    EXPECT_EQ(Why(KLyrPropertyHandle(), eDOUBLE1), "The handle has no page.");
    EXPECT_EQ(Why(KLyrPropertyHandle(nullptr, 0), eDOUBLE1), "The handle has no page.");
    EXPECT_EQ(Why(mPage->Find("missing", true), eDOUBLE1),
              "The handle has no id: what it was looked up by was not found.");
    EXPECT_EQ(Why(KLyrPropertyHandle(mPage->GetPage(), 1000), eDOUBLE1), "The page has no property of id 1000.");
    EXPECT_EQ(Why(mNumber, eDOUBLE1, static_cast<ELyrAccess>(2)), "The access is neither a read nor a write.");
}

TEST_F(WhyRefused, NamesWhatHoldsNoValue) {
    EXPECT_EQ(Why(*mPage, eDOUBLE1), "The property 'page' is of type eUNIDENTIFIED, which holds no value.");
    EXPECT_EQ(Why(mReference, eREFERENCE, eLyrWrite),
              "The property 'reference' is of type eREFERENCE, which holds no value.");
    EXPECT_EQ(Why(mNumber, eREFERENCE), "The type code eREFERENCE stands for no value.");
    EXPECT_EQ(Why(mNumber, static_cast<ELyrType>(99), eLyrWrite), "The type code 99 stands for no value.");
    KLyrPropertyPage* lPage = mPage->GetPage();
    const int lBare = lPage->Add(0, KLyrPropertyInfo::Create("bare", eDOUBLE1), nullptr, nullptr, false);
    EXPECT_EQ(Why(KLyrPropertyHandle(lPage, lBare), eDOUBLE1), "The property 'bare' has no value.");
}

TEST_F(WhyRefused, NamesTheRefusedPair) {
    EXPECT_EQ(Why(mNumber, eDATETIME), "A value of eINTEGER1 is never converted to eDATETIME.");
    EXPECT_EQ(Why(mNumber, eTIME), "A value of eINTEGER1 is never converted to eTIME, and trying is reported.");
    EXPECT_EQ(Why(mNumber, eHALFFLOAT, eLyrWrite), "A value of eHALFFLOAT is never converted to eINTEGER1.");
}

TEST_F(WhyRefused, NamesTheTextThatDoesNotRead) {
    const KString lGood(" 12 ");
    const KString lBad("12a");
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite, &lGood), "");
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite, &lBad), "The text '12a' does not read as eINTEGER1.");
    mText.Set(&lBad, eSTRING);
    EXPECT_EQ(Why(mText, eDATETIME), "The text in the property does not read as eDATETIME.");
    EXPECT_EQ(Why(mText, eINTEGER1), "The text in the property does not read as eINTEGER1.");
    mText.Set(&lGood, eSTRING);
    EXPECT_EQ(Why(mText, eINTEGER1), "");
}

TEST_F(WhyRefused, CutsWhatIsLong) {
    const std::string lLong(5000, 'n');
    const KLyrPropertyHandle lNamed = AddChild(*mPage, lLong.c_str(), eUNIDENTIFIED);
    EXPECT_EQ(Why(lNamed, eDOUBLE1),
              "The property '" + lLong.substr(0, 80) + "...' is of type eUNIDENTIFIED, which holds no value.");
    const KString lText(lLong.c_str());
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite, &lText),
              "The text '" + lLong.substr(0, 80) + "...' does not read as eINTEGER1.");
}

TEST_F(WhyRefused, QuotesAnyBytesInOneWholeLine) {
    KString lText;
    ASSERT_TRUE(lText.Assign("1\0x", 3));
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite, &lText), "The text '1\\x00x' does not read as eINTEGER1.");
    const KLyrPropertyHandle lNamed = AddChild(*mPage, "a\n\x1B[2J\xFF", eUNIDENTIFIED);
    EXPECT_EQ(Why(lNamed, eDOUBLE1),
              "The property 'a\\n\\x1B[2J\\xFF' is of type eUNIDENTIFIED, which holds no value.");
    const std::string lLong(79, 'n');
    const KString lCut((lLong + "\xC3\xA4").c_str());
    EXPECT_EQ(Why(mNumber, eSTRING, eLyrWrite, &lCut), "The text '" + lLong + "...' does not read as eINTEGER1.");
}

TEST_F(WhyRefused, AgreesWithWhatIsRefused) {
    for (int lType = 0; lType < eMAX_TYPES; ++lType) {
        const KLyrPropertyHandle lProperty = AddChild(*mPage, "any", Code(lType));
        for (int lOther = 0; lOther < eMAX_TYPES; ++lOther) {
            SCOPED_TRACE(std::string(lyrTypeName(Code(lType))) + " as " + lyrTypeName(Code(lOther)));
            AnyValue lValue(Code(lOther));
            const std::string lWhyNoRead = Why(lProperty, Code(lOther));
            const std::string lWhyNoWrite = Why(lProperty, Code(lOther), eLyrWrite, lValue.Memory());
            ReportRecorder lReports;
            KLyrPropertyHandle lHandle = lProperty;
            EXPECT_EQ(lHandle.Get(lValue.Memory(), Code(lOther)), lWhyNoRead.empty()) << lWhyNoRead;
            AnyValue lDefault(Code(lOther));
            EXPECT_EQ(lHandle.Set(lDefault.Memory(), Code(lOther), false), lWhyNoWrite.empty()) << lWhyNoWrite;
            lReports.Clear();
        }
    }
}

}  // namespace
}  // namespace lyrsdk
