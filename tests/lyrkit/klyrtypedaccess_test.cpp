#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrkit/klyrtypename.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"
#include "tests/support/report_recorder.h"

namespace lyrsdk {
namespace {

class TypedAccess : public HandleTest {};

enum Plain : int { ePlain };
enum class Scoped { eScoped };
enum class Narrow : short { eNarrow };
enum class Unsigned : unsigned { eUnsigned };

TEST_F(TypedAccess, KnowsTheCodeOfEachStoredType) {
    EXPECT_EQ(lyrTypeCodeOf<char>(), eBYTE1);
    EXPECT_EQ(lyrTypeCodeOf<unsigned char>(), eUBYTE1);
    EXPECT_EQ(lyrTypeCodeOf<short>(), eSHORT1);
    EXPECT_EQ(lyrTypeCodeOf<unsigned short>(), eUSHORT1);
    EXPECT_EQ(lyrTypeCodeOf<unsigned int>(), eUINTEGER1);
    EXPECT_EQ(lyrTypeCodeOf<long long>(), eLONGLONG1);
    EXPECT_EQ(lyrTypeCodeOf<unsigned long long>(), eULONGLONG1);
    EXPECT_EQ(lyrTypeCodeOf<lyrHalfFloat>(), eHALFFLOAT);
    EXPECT_EQ(lyrTypeCodeOf<bool>(), eBOOL1);
    EXPECT_EQ(lyrTypeCodeOf<int>(), eINTEGER1);
    EXPECT_EQ(lyrTypeCodeOf<float>(), eFLOAT1);
    EXPECT_EQ(lyrTypeCodeOf<double>(), eDOUBLE1);
    EXPECT_EQ(lyrTypeCodeOf<lyrDouble2>(), eDOUBLE2);
    EXPECT_EQ(lyrTypeCodeOf<lyrDouble3>(), eDOUBLE3);
    EXPECT_EQ(lyrTypeCodeOf<lyrDouble4>(), eDOUBLE4);
    EXPECT_EQ(lyrTypeCodeOf<lyrDouble44>(), eDOUBLE44);
    EXPECT_EQ(lyrTypeCodeOf<KString>(), eSTRING);
    EXPECT_EQ(lyrTypeCodeOf<KTime>(), eTIME);
    EXPECT_EQ(lyrTypeCodeOf<lyrBlob>(), eBLOB);
    EXPECT_EQ(lyrTypeCodeOf<lyrDistance>(), eDISTANCE);
    EXPECT_EQ(lyrTypeCodeOf<lyrDateTime>(), eDATETIME);
}

TEST_F(TypedAccess, KnowsTheCodeOfWhatStandsForAStoredType) {
    EXPECT_EQ(lyrTypeCodeOf<std::int8_t>(), eBYTE1);
    EXPECT_EQ(lyrTypeCodeOf<std::uint8_t>(), eUBYTE1);
    EXPECT_EQ(lyrTypeCodeOf<std::int16_t>(), eSHORT1);
    EXPECT_EQ(lyrTypeCodeOf<std::uint16_t>(), eUSHORT1);
    EXPECT_EQ(lyrTypeCodeOf<std::int32_t>(), eINTEGER1);
    EXPECT_EQ(lyrTypeCodeOf<std::uint32_t>(), eUINTEGER1);
    EXPECT_EQ(lyrTypeCodeOf<std::int64_t>(), eLONGLONG1);
    EXPECT_EQ(lyrTypeCodeOf<std::uint64_t>(), eULONGLONG1);
    EXPECT_EQ(lyrTypeCodeOf<long>(), sizeof(long) == 8 ? eLONGLONG1 : eINTEGER1);
    EXPECT_EQ(lyrTypeCodeOf<unsigned long>(), sizeof(long) == 8 ? eULONGLONG1 : eUINTEGER1);
    EXPECT_EQ((lyrTypeCodeOf<std::array<double, 2>>()), eDOUBLE2);
    EXPECT_EQ((lyrTypeCodeOf<std::array<double, 3>>()), eDOUBLE3);
    EXPECT_EQ((lyrTypeCodeOf<std::array<double, 4>>()), eDOUBLE4);
    EXPECT_EQ((lyrTypeCodeOf<std::array<double, 16>>()), eDOUBLE44);
    EXPECT_EQ(lyrTypeCodeOf<Plain>(), eENUM);
    EXPECT_EQ(lyrTypeCodeOf<Scoped>(), eENUM);
}

TEST_F(TypedAccess, TellsTheTypesWithoutACode) {
    EXPECT_TRUE(kLyrHasTypeCode<double>);
    EXPECT_FALSE(kLyrHasTypeCode<void>);
    EXPECT_FALSE(kLyrHasTypeCode<void*>);
    EXPECT_FALSE(kLyrHasTypeCode<long double>);
    EXPECT_FALSE(kLyrHasTypeCode<wchar_t>);
    EXPECT_FALSE(kLyrHasTypeCode<lyrVoidReference>);
    EXPECT_FALSE((kLyrHasTypeCode<std::array<double, 5>>));
    EXPECT_FALSE((kLyrHasTypeCode<std::array<float, 3>>));
    EXPECT_FALSE(kLyrHasTypeCode<Narrow>);
    EXPECT_FALSE(kLyrHasTypeCode<Unsigned>);
}

TEST_F(TypedAccess, TakesNoEnumerationOfTheInterfaceForAValue) {
    EXPECT_FALSE(kLyrHasTypeCode<ELyrType>);
    EXPECT_FALSE(kLyrHasTypeCode<ELyrSetMode>);
}

// --- reading and writing ---------------------------------------------------------------------------------------------

using Messages = std::vector<std::string>;

// A page with one property of each type, and an instance of it.
class TypedPages : public TypedAccess {
protected:
    TypedPages() {
        for (int lCode = 0; lCode < eMAX_TYPES; ++lCode)
            AddChild(*mPage, lyrTypeName(static_cast<ELyrType>(lCode)), static_cast<ELyrType>(lCode));
    }

    KLyrPropertyHandle Of(ELyrType pType) const { return mPage->Find(lyrTypeName(pType), true); }
    KLyrPropertyHandle Below(ELyrType pType) const { return On(*mInstance, Of(pType)); }
    bool IsOwn(ELyrType pType) const { return Below(pType).GetValueInheritType(false) == eLyrOverride; }

    template <typename T>
    void ExpectReadsBack(const T& pValue) {
        SCOPED_TRACE(lyrTypeName(lyrTypeCodeOf<T>()));
        const KLyrPropertyHandle lProperty = Of(lyrTypeCodeOf<T>());
        EXPECT_EQ(lyrSet(lProperty, pValue), eLyrSetWritten);
        const std::optional<T> lRead = lyrGet<T>(lProperty);
        ASSERT_TRUE(lRead);
        EXPECT_TRUE(*lRead == pValue);
        EXPECT_TRUE(lyrGet<T>(On(*mInstance, lProperty)) == lRead);
    }

    OwnedRoot mPage{KLyrPropertyHandle::Create("page", eUNIDENTIFIED)};
    OwnedRoot mInstance{KLyrPropertyHandle::Create(*mPage)};
};

lyrBlob BlobOf(const char* pText) {
    lyrBlob lBlob;
    lBlob.Assign(pText, static_cast<int>(std::strlen(pText)));
    return lBlob;
}

lyrDouble44 MatrixOf(double pFirst) {
    lyrDouble44 lMatrix;
    for (int i = 0; i < 16; ++i)
        lMatrix[i / 4][i % 4] = pFirst + i;
    return lMatrix;
}

TEST_F(TypedPages, ReadBackEachStoredType) {
    ExpectReadsBack(static_cast<char>(-7));
    ExpectReadsBack(static_cast<unsigned char>(200));
    ExpectReadsBack(static_cast<short>(-30000));
    ExpectReadsBack(static_cast<unsigned short>(60000));
    ExpectReadsBack(4000000000u);
    ExpectReadsBack(-9000000000000000001ll);
    ExpectReadsBack(18000000000000000001ull);
    ExpectReadsBack(lyrHalfFloat(1.5f));
    ExpectReadsBack(true);
    ExpectReadsBack(-2000000000);
    ExpectReadsBack(0.1f);
    ExpectReadsBack(0.1);
    ExpectReadsBack(lyrDouble2{{1, 2}});
    ExpectReadsBack(lyrDouble3{{1, 2, 3}});
    ExpectReadsBack(lyrDouble4{{1, 2, 3, 4}});
    ExpectReadsBack(MatrixOf(1));
    ExpectReadsBack(KString("text"));
    ExpectReadsBack(KTime(5));
    ExpectReadsBack(BlobOf("bytes"));
    ExpectReadsBack(lyrDistance(2.5f, KLyrSystemUnit::cm));
    lyrDateTime lDate;
    lDate.Set(2024, 2, 29);
    ExpectReadsBack(lDate);
}

TEST_F(TypedPages, ReadBackWhatStandsForAStoredType) {
    ExpectReadsBack(static_cast<std::int8_t>(-128));
    ExpectReadsBack(static_cast<std::uint8_t>(255));
    ExpectReadsBack(std::int64_t(INT64_MIN));
    ExpectReadsBack(std::uint64_t(UINT64_MAX));
    ExpectReadsBack(-1L);
    ExpectReadsBack(4000000000ul);
    ExpectReadsBack(static_cast<Plain>(7));
    ExpectReadsBack(static_cast<Scoped>(-7));
    ExpectReadsBack(std::array<double, 2>{1, 2});
    ExpectReadsBack(std::array<double, 3>{1, 2, 3});
    ExpectReadsBack(std::array<double, 4>{1, 2, 3, 4});
    std::array<double, 16> lMatrix{};
    for (std::size_t i = 0; i < lMatrix.size(); ++i)
        lMatrix[i] = static_cast<double>(i) + 1;
    ExpectReadsBack(lMatrix);
    EXPECT_TRUE(lyrGet<lyrDouble44>(Of(eDOUBLE44)) == MatrixOf(1)) << "row by row";
}

TEST_F(TypedPages, TakeLiterals) {
    EXPECT_EQ(lyrSet(Of(eDOUBLE1), 1), eLyrSetWritten);
    EXPECT_EQ(lyrGet<double>(Of(eDOUBLE1)), 1.0);
    EXPECT_EQ(lyrSet(Of(eINTEGER1), 2.9), eLyrSetWritten);
    EXPECT_EQ(lyrGet<int>(Of(eINTEGER1)), 2);
    EXPECT_EQ(lyrSet(Of(eBOOL1), true), eLyrSetWritten);
    EXPECT_EQ(lyrGet<bool>(Of(eBOOL1)), true);
    EXPECT_EQ(lyrSet(Of(eSTRING), "a literal"), eLyrSetWritten);
    EXPECT_STREQ(lyrGet<KString>(Of(eSTRING)).value(), "a literal");
    EXPECT_EQ(lyrSet(Of(eBYTE1), 'x'), eLyrSetWritten);
    EXPECT_EQ(lyrGet<int>(Of(eBYTE1)), 'x');
}

TEST_F(TypedPages, TakeTextsOfEveryKindAndLength) {
    const std::string lHuge(70000, 'h');
    for (std::size_t lLength : {std::size_t(0), std::size_t(1), std::size_t(254), std::size_t(255), std::size_t(256),
                                std::size_t(257), lHuge.size()}) {
        const std::string_view lPart(lHuge.data(), lLength);
        EXPECT_EQ(lyrSet(Of(eSTRING), lPart), eLyrSetWritten);
        const KString lRead = lyrGet<KString>(Of(eSTRING)).value();
        EXPECT_EQ(std::string_view(lRead.Buffer(), static_cast<std::size_t>(lRead.GetLen())), lPart);
        EXPECT_EQ(lyrSet(Of(eBLOB), lPart), eLyrSetWritten);
        EXPECT_EQ(lyrGet<lyrBlob>(Of(eBLOB))->GetSize(), static_cast<int>(lLength));
    }
    EXPECT_EQ(lyrSet(Of(eSTRING), std::string("a std::string")), eLyrSetWritten);
    EXPECT_STREQ(lyrGet<KString>(Of(eSTRING)).value(), "a std::string");
    EXPECT_EQ(lyrSet(Of(eSTRING), std::string_view("a\0b", 3)), eLyrSetWritten);
    EXPECT_EQ(lyrGet<KString>(Of(eSTRING))->GetLen(), 3);
    char lArray[] = "an array";
    EXPECT_EQ(lyrSet(Of(eSTRING), lArray), eLyrSetWritten);
    EXPECT_STREQ(lyrGet<KString>(Of(eSTRING)).value(), "an array");
    EXPECT_EQ(lyrSet(Of(eSTRING), static_cast<const char*>(nullptr)), eLyrSetWritten);
    EXPECT_TRUE(lyrGet<KString>(Of(eSTRING))->IsEmpty());
    EXPECT_EQ(lyrSet(Of(eDOUBLE1), std::string_view("2.5xx", 3)), eLyrSetWritten)
        << "is read without what stands behind";
    EXPECT_EQ(lyrGet<double>(Of(eDOUBLE1)), 2.5);
}

TEST_F(TypedPages, ConvertAsTheHandleDoes) {
    lyrSet(Of(eDOUBLE1), 2.9);
    EXPECT_EQ(lyrGet<int>(Of(eDOUBLE1)), 2);
    EXPECT_STREQ(lyrGet<KString>(Of(eDOUBLE1)).value(), "2.9");
    EXPECT_EQ((lyrGet<std::array<double, 2>>(Of(eDOUBLE1))), (std::array<double, 2>{2.9, 2.9}));
    EXPECT_EQ(lyrGet<lyrDouble4>(Of(eDOUBLE1)), std::nullopt) << "4-vectors take no number";
    lyrSet(Of(eDOUBLE3), lyrDouble3{{1, 2, 3}});
    EXPECT_TRUE(lyrGet<lyrDouble4>(Of(eDOUBLE3)) == (lyrDouble4{{1, 2, 3, 0}}));
    EXPECT_EQ(lyrGet<Scoped>(Of(eENUM)), Scoped::eScoped);
}

TEST_F(TypedPages, KeepTheBytesOfEveryNumber) {
    const double lNan = std::nan("0x12345");
    EXPECT_EQ(lyrSet(Of(eDOUBLE1), lNan), eLyrSetWritten);
    const double lRead = lyrGet<double>(Of(eDOUBLE1)).value();
    EXPECT_EQ(std::memcmp(&lRead, &lNan, sizeof(lNan)), 0);
}

// --- the two modes ---------------------------------------------------------------------------------------------------

TEST_F(TypedPages, CollapseAValueThatIsInheritedAlready) {
    lyrSet(Of(eDOUBLE1), 5.0);
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 5.0), eLyrSetAlreadySo);
    EXPECT_FALSE(IsOwn(eDOUBLE1));
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 6.0), eLyrSetWritten);
    EXPECT_TRUE(IsOwn(eDOUBLE1));
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 6.0), eLyrSetWritten) << "its own value again";
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 5.0), eLyrSetCollapsed);
    EXPECT_FALSE(IsOwn(eDOUBLE1));
    EXPECT_EQ(lyrSet(Of(eDOUBLE1), 5.0), eLyrSetWritten) << "there is nothing to inherit at the top";
}

TEST_F(TypedPages, PinAValueThatEqualsTheInheritedOne) {
    lyrSet(Of(eDOUBLE1), 5.0);
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 5.0, eLyrSetPin), eLyrSetWritten);
    EXPECT_TRUE(IsOwn(eDOUBLE1));
    lyrSet(Of(eDOUBLE1), 7.0);
    EXPECT_EQ(lyrGet<double>(Below(eDOUBLE1)), 5.0);
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 7.0), eLyrSetCollapsed);
}

TEST_F(TypedPages, CollapseTextsBlobsAndWhatReadsAlike) {
    lyrSet(Of(eSTRING), "text");
    EXPECT_EQ(lyrSet(Below(eSTRING), std::string_view("text")), eLyrSetAlreadySo);
    EXPECT_EQ(lyrSet(Below(eSTRING), "other"), eLyrSetWritten);
    EXPECT_EQ(lyrSet(Below(eSTRING), KString("text")), eLyrSetCollapsed);
    lyrSet(Of(eBLOB), BlobOf("bytes"));
    EXPECT_EQ(lyrSet(Below(eBLOB), BlobOf("bytes")), eLyrSetAlreadySo);
    lyrSet(Of(eINTEGER1), 2);
    EXPECT_EQ(lyrSet(Below(eINTEGER1), "2"), eLyrSetAlreadySo) << "in the type that was given";
    EXPECT_EQ(lyrSet(Below(eINTEGER1), 2.5), eLyrSetWritten) << "though it is stored as 2";
}

TEST_F(TypedPages, SetWhatTheHandleWouldSet) {
    OwnedRoot lOther(KLyrPropertyHandle::Create(*mPage));
    for (const bool lCollapses : {true, false}) {
        for (const double lValue : {1.0, 1.0, 0.0, 2.0, 0.0}) {
            KLyrPropertyHandle lUntyped = On(*lOther, Of(eFLOAT1));
            lUntyped.Set(&lValue, eDOUBLE1, lCollapses);
            lyrSet(Below(eFLOAT1), lValue, lCollapses ? eLyrSetCollapse : eLyrSetPin);
            EXPECT_EQ(Describe(Below(eFLOAT1)), Describe(lUntyped));
        }
    }
}

// --- refusals --------------------------------------------------------------------------------------------------------

TEST_F(TypedPages, LeaveInheritanceAloneWhenAConversionIsRefused) {
    for (ELyrSetMode lMode : {eLyrSetCollapse, eLyrSetPin}) {
        EXPECT_EQ(lyrSet(Below(eFLOAT1), "1", lMode), eLyrSetRefused);
        EXPECT_FALSE(IsOwn(eFLOAT1));
        EXPECT_EQ(lyrSet(Below(eINTEGER1), "no number", lMode), eLyrSetRefused);
        EXPECT_FALSE(IsOwn(eINTEGER1));
        lyrSet(Below(eINTEGER1), 3, eLyrSetPin);
        EXPECT_EQ(lyrSet(Below(eINTEGER1), "no number", lMode), eLyrSetRefused);
        EXPECT_EQ(lyrGet<int>(Below(eINTEGER1)), 3);
        Below(eINTEGER1).SetValueInheritType(eLyrInherit);
    }
}

TEST_F(TypedPages, RefuseWhatIsNotThere) {
    const KLyrPropertyHandle lNowhere[] = {KLyrPropertyHandle(), KLyrPropertyHandle(mPage->GetPage(), -1),
                                           KLyrPropertyHandle(mPage->GetPage(), 1000), KLyrPropertyHandle(nullptr, 0),
                                           Of(eUNIDENTIFIED)};
    for (const KLyrPropertyHandle& lHandle : lNowhere) {
        EXPECT_EQ(lyrGet<double>(lHandle), std::nullopt);
        EXPECT_EQ(lyrSet(lHandle, 1.0), eLyrSetRefused);
        EXPECT_EQ(lyrSet(lHandle, "text", eLyrSetPin), eLyrSetRefused);
        EXPECT_FALSE(lyrVisit(lHandle, [](const auto&) { ADD_FAILURE() << "called"; }));
    }
    EXPECT_EQ(lyrSet(Of(eDOUBLE1), nullptr, eDOUBLE1), eLyrSetRefused);
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), 1.0, static_cast<ELyrSetMode>(2)), eLyrSetRefused);
    EXPECT_FALSE(IsOwn(eDOUBLE1));
}

TEST_F(TypedPages, ReadNoIndexWhereThereIsNone) {
    enum class Choice : int { eFirst, eSecond };
    EXPECT_EQ(lyrGet<Choice>(KLyrPropertyHandle()), std::nullopt);
    EXPECT_EQ(lyrGet<signed char>(KLyrPropertyHandle()), std::nullopt);
}

TEST_F(TypedPages, MakeTheReportsOfTheHandle) {
    ReportRecorder lReports;
    EXPECT_EQ(lyrGet<KTime>(Of(eDOUBLE1)), std::nullopt);
    EXPECT_EQ(lReports.Take(), Messages{"Incompatible type assigment"});
    EXPECT_EQ(lyrSet(Below(eDOUBLE2), KTime(1)), eLyrSetRefused);
    EXPECT_EQ(lReports.Take(), (Messages{"Incompatible type assigment", "Incompatible type assigment"}))
        << "reading it for the comparison, and writing it";
    EXPECT_EQ(lyrSet(Of(eREFERENCE), 1.0, eLyrSetPin), eLyrSetRefused);
    EXPECT_EQ(lReports.Take(), Messages{"Trying to set value on a void Reference type"});
    const char lByte = 0;
    EXPECT_EQ(lyrSet(Below(eDOUBLE1), &lByte, static_cast<ELyrType>(99)), eLyrSetRefused);
    EXPECT_EQ(lReports.Take(), Messages{"Trying to assign an unknown type"});
    EXPECT_FALSE(IsOwn(eDOUBLE1));
}

// --- memory ----------------------------------------------------------------------------------------------------------

TEST_F(TypedPages, AskForNoMemoryForNumbersAndShortTexts) {
    const std::string lText(detail::TextArgument::kRoom, 't');
    lyrSet(Of(eSTRING), lText);
    lyrSet(Below(eDOUBLE1), 0.5, eLyrSetPin);
    const std::size_t lBefore = MemoryProbe::Allocations();
    for (int i = 0; i < 10; ++i) {
        lyrSet(Of(eDOUBLE1), i + 1.0);
        lyrSet(Of(eDOUBLE1), i + 2.0, eLyrSetPin);
        lyrSet(Below(eDOUBLE1), i + 2.5);
        lyrSet(Below(eFLOAT1), 0);
        lyrSet(Of(eDOUBLE44), std::array<double, 16>{});
        lyrSet(Of(eDOUBLE1), std::string_view("1.5"));
        lyrSet(Of(eSTRING), std::string_view(lText.data(), lText.size() - static_cast<std::size_t>(i)), eLyrSetPin);
        EXPECT_TRUE(lyrGet<double>(Below(eDOUBLE1)));
        EXPECT_TRUE(lyrGet<lyrDouble44>(Of(eDOUBLE44)));
        EXPECT_TRUE(lyrVisit(Below(eDOUBLE1), [](const auto&) {}));
    }
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore);
}

TEST_F(TypedPages, ReadATextWithOneRequestForMemory) {
    lyrSet(Of(eSTRING), "text");
    const std::size_t lBefore = MemoryProbe::Allocations();
    EXPECT_TRUE(lyrGet<KString>(Below(eSTRING)));
    EXPECT_EQ(MemoryProbe::Allocations(), lBefore + 1);
}

TEST_F(TypedPages, SayWhenThereIsNoMemory) {
    lyrSet(Of(eSTRING), "text");
    lyrSet(Of(eBLOB), BlobOf("bytes"));
    const std::string lLong(1000, 'l');
    const FailAllocations lFail(0, true);
    EXPECT_EQ(lyrGet<KString>(Of(eSTRING)), std::nullopt);
    EXPECT_EQ(lyrGet<lyrBlob>(Of(eBLOB)), std::nullopt);
    EXPECT_FALSE(lyrVisit(Of(eSTRING), [](const auto&) { ADD_FAILURE() << "called"; }));
    EXPECT_EQ(lyrSet(Below(eSTRING), "other", eLyrSetPin), eLyrSetRefused);
    EXPECT_EQ(lyrSet(Of(eSTRING), lLong), eLyrSetRefused);
    EXPECT_FALSE(IsOwn(eSTRING));
}

// --- the visitor -----------------------------------------------------------------------------------------------------

TEST_F(TypedPages, AreVisitedWithTheirStoredType) {
    for (int lCode = 1; lCode < eMAX_TYPES; ++lCode) {
        const ELyrType lType = static_cast<ELyrType>(lCode);
        int lCalls = 0;
        const bool lVisited = lyrVisit(Of(lType), [&](const auto& pValue, ELyrType pType) {
            using T = std::decay_t<decltype(pValue)>;
            EXPECT_EQ(lyrTypeCodeOf<T>(), lType == eENUM ? eINTEGER1 : lType);
            EXPECT_EQ(pType, lType);
            ++lCalls;
        });
        EXPECT_EQ(lVisited, lType != eREFERENCE) << lCode;
        EXPECT_EQ(lCalls, lVisited ? 1 : 0);
    }
}

TEST_F(TypedPages, GiveAVisitorTheValueSeen) {
    lyrSet(Of(eSTRING), "text");
    std::string lSeen;
    EXPECT_TRUE(lyrVisit(Below(eSTRING), [&lSeen](const auto& pValue) {
        if constexpr (std::is_same_v<std::decay_t<decltype(pValue)>, KString>)
            lSeen = pValue.Buffer();
    }));
    EXPECT_EQ(lSeen, "text");
}

TEST_F(TypedPages, RefuseTextsAndBlobsAsTheHandleDoes) {
    ReportRecorder lReports;
    OwnedRoot lTop(KLyrPropertyHandle::Create("top", eUNIDENTIFIED));
    OwnedRoot lInstance(KLyrPropertyHandle::Create(*lTop));
    for (int lType = eUNIDENTIFIED; lType < eMAX_TYPES; ++lType) {
        const KLyrPropertyHandle lProperty = lTop->Add("any", static_cast<ELyrType>(lType));
        KLyrPropertyHandle lSeen = On(*lInstance, lProperty);
        KLyrPropertyHandle lPlain = lTop->Add("plain", static_cast<ELyrType>(lType));
        const lyrBlob lBlob;
        const KString lText("no value of most types");
        EXPECT_EQ(lyrSet(lSeen, lBlob, eLyrSetPin) == eLyrSetRefused, !lPlain.Set(&lBlob, eBLOB, false)) << lType;
        EXPECT_EQ(lyrSet(lSeen, lText, eLyrSetPin) == eLyrSetRefused, !lPlain.Set(&lText, eSTRING, false)) << lType;
        lSeen.SetValueInheritType(eLyrInherit);
        const bool lBlobRefused = lyrSet(lSeen, lBlob) == eLyrSetRefused;
        EXPECT_EQ(lBlobRefused, lyrSet(lSeen, lBlob, eLyrSetPin) == eLyrSetRefused) << lType;
        lSeen.SetValueInheritType(eLyrInherit);
        const bool lTextRefused = lyrSet(lSeen, lText) == eLyrSetRefused;
        EXPECT_EQ(lTextRefused, lyrSet(lSeen, lText, eLyrSetPin) == eLyrSetRefused) << lType;
    }
    lReports.TakeReports();
}

}  // namespace
}  // namespace lyrsdk
