#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "lyrfilesdk/components/kbaselib/klib/ktime.h"
#include "lyrfilesdk/klyrplugins/klyrplug.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "tests/reliability/hostile.h"

namespace lyrsdk {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kHostileDoubles[] = {0.0,       -0.0,       DBL_MAX, -DBL_MAX, DBL_MIN, DBL_TRUE_MIN, -DBL_TRUE_MIN,
                                      kInfinity, -kInfinity, kNan,    1e300,    -1e300,  9.3e18,       -9.3e18};
constexpr long long kHostileCounts[] = {LLONG_MIN, LLONG_MIN + 1, -1, 0, 1, LLONG_MAX - 1, LLONG_MAX};

// --- times, dates, halves, units, distances --------------------------------------------------------------------------

TEST(HostileValues, Times) {
    MakeHostileCalls<NoSubject>({
        {"KTime::KTime", kNothing,
         [](NoSubject&) {
             for (long long lCount : kHostileCounts)
                 EXPECT_EQ(KTime(lCount).Get(), lCount);
         }},
        {"KTime::Set", kNothing,
         [](NoSubject&) {
             KTime lTime;
             for (long long lCount : kHostileCounts) {
                 lTime.Set(lCount);
                 EXPECT_EQ(lTime.Get(), lCount);
             }
         }},
        {"KTime::Get", kNothing, [](NoSubject&) { EXPECT_EQ(KTime(LLONG_MIN).Get(), LLONG_MIN); }},
        {"KTime::SetSecondDouble", kNothing,
         [](NoSubject&) {
             KTime lTime(5);
             lTime.SetSecondDouble(kNan);
             EXPECT_EQ(lTime.Get(), 0);
             for (double lSeconds : {kInfinity, DBL_MAX, 1e300}) {
                 lTime.SetSecondDouble(lSeconds);
                 EXPECT_EQ(lTime.Get(), LLONG_MAX);
                 lTime.SetSecondDouble(-lSeconds);
                 EXPECT_EQ(lTime.Get(), LLONG_MIN);
             }
             lTime.SetSecondDouble(-DBL_TRUE_MIN);
             EXPECT_EQ(lTime.Get(), 0);
         }},
        {"KTime::GetSecondDouble", kNothing,
         [](NoSubject&) {
             EXPECT_LT(KTime(LLONG_MIN).GetSecondDouble(), -1.3e10);
             EXPECT_GT(KTime(LLONG_MAX).GetSecondDouble(), 1.3e10);
         }},
        {"KTime::GetTimeString", kNothing,
         [](NoSubject&) {
             for (int lArgument : kHostileInts)
                 EXPECT_EQ(KTime(1).GetTimeString(nullptr, lArgument, lArgument, lArgument, kNan), 0);
             for (long long lCount : kHostileCounts)
                 for (double lRate : kHostileDoubles) {
                     char lBuffer[KTime::kTimeStringSize];
                     const int lLength = KTime(lCount).GetTimeString(lBuffer, INT_MIN, -1, INT_MAX, lRate);
                     EXPECT_EQ(static_cast<int>(std::strlen(lBuffer)), lLength);
                     EXPECT_LT(lLength, KTime::kTimeStringSize);
                 }
         }},
        {"KTime::operator==", kNothing, [](NoSubject&) { EXPECT_FALSE(KTime(LLONG_MIN) == KTime(LLONG_MAX)); }},
        {"KTime::operator!=", kNothing, [](NoSubject&) { EXPECT_FALSE(KTime(LLONG_MIN) != KTime(LLONG_MIN)); }},
    });
}

struct Dates {
    lyrDateTime mDate;

    Dates() { mDate.Set(2024, 2, 29, 23, 59, 59, 999); }
    std::string State() const { return mDate.toString().Buffer(); }
};

TEST(HostileValues, Dates) {
    MakeHostileCalls<Dates>({
        {"lyrDateTime::lyrDateTime", kNothing,
         [](Dates&) { EXPECT_STREQ(lyrDateTime().toString(), "0000-01-01T00:00:00.000"); }},
        {"lyrDateTime::Set", kNothing,
         [](Dates& p) {
             for (int lBad : {INT_MIN, INT_MIN + 1, -1, 10000, 65536 + 2024, INT_MAX})
                 EXPECT_FALSE(p.mDate.Set(lBad, 1, 1));
             for (int lBad : {INT_MIN, -1, 1000, 256 + 1, 65536 + 1, INT_MAX}) {
                 EXPECT_FALSE(p.mDate.Set(2000, lBad, 1));
                 EXPECT_FALSE(p.mDate.Set(2000, 1, lBad));
                 EXPECT_FALSE(p.mDate.Set(2000, 1, 1, lBad));
                 EXPECT_FALSE(p.mDate.Set(2000, 1, 1, 0, lBad));
                 EXPECT_FALSE(p.mDate.Set(2000, 1, 1, 0, 0, lBad));
                 EXPECT_FALSE(p.mDate.Set(2000, 1, 1, 0, 0, 0, lBad == 256 + 1 ? -1 : lBad));
             }
             EXPECT_FALSE(p.mDate.Set(2000, 0, 1));
             EXPECT_FALSE(p.mDate.Set(2000, 1, 0));
             EXPECT_FALSE(p.mDate.Set(2023, 2, 29));
             EXPECT_FALSE(p.mDate.Set(1900, 2, 29));
         }},
        {"lyrDateTime::fromString", kNothing,
         [](Dates& p) {
             WithHostileTexts([&p](const char* pText) { EXPECT_FALSE(p.mDate.fromString(pText)); });
             const std::string lGood = "2000-01-02T03:04:05.678";
             for (std::size_t i = 0; i < lGood.size(); ++i)
                 for (int lByte = 0; lByte < 256; ++lByte) {
                     std::string lText = lGood;
                     lText[i] = static_cast<char>(lByte);
                     lyrDateTime lDate;
                     if (lDate.fromString(lText.c_str())) {
                         EXPECT_TRUE(lDate.fromString(lDate.toString())) << lText;
                     } else {
                         EXPECT_FALSE(p.mDate.fromString(lText.c_str()));
                     }
                 }
         }},
        {"lyrDateTime::toString", kNothing,
         [](Dates& p) {
             EXPECT_TRUE(p.mDate.fromString(p.mDate.toString()));
             const FailAllocations lFail(0, true);
             EXPECT_TRUE(p.mDate.toString().IsEmpty());
         }},
        {"lyrDateTime::format", kNothing,
         [](Dates& p) {
             char lBuffer[32];
             EXPECT_EQ(p.mDate.format(lBuffer), 23);
         }},
        {"lyrDateTime::GetYear", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetYear(), 2024); }},
        {"lyrDateTime::GetMonth", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetMonth(), 2); }},
        {"lyrDateTime::GetDay", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetDay(), 29); }},
        {"lyrDateTime::GetHour", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetHour(), 23); }},
        {"lyrDateTime::GetMinute", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetMinute(), 59); }},
        {"lyrDateTime::GetSecond", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetSecond(), 59); }},
        {"lyrDateTime::GetMillisecond", kNothing, [](Dates& p) { EXPECT_EQ(p.mDate.GetMillisecond(), 999); }},
        {"lyrDateTime::operator==", kNothing, [](Dates& p) { EXPECT_TRUE(p.mDate == p.mDate); }},
        {"lyrDateTime::operator!=", kNothing, [](Dates& p) { EXPECT_FALSE(p.mDate != p.mDate); }},
    });
}

TEST(HostileValues, HalvesUnitsAndDistances) {
    MakeHostileCalls<NoSubject>({
        {"lyrHalfFloat::lyrHalfFloat", kNothing,
         [](NoSubject&) {
             for (double lValue : kHostileDoubles)
                 EXPECT_EQ(std::isnan(lyrHalfFloat(static_cast<float>(lValue)).value()), std::isnan(lValue));
         }},
        {"lyrHalfFloat::operator=", kNothing,
         [](NoSubject&) {
             lyrHalfFloat lHalf(1.5f);
             lyrHalfFloat& lSelf = lHalf;
             lHalf = lSelf;
             EXPECT_EQ(lHalf.value(), 1.5f);
         }},
        {"lyrHalfFloat::FromBits", kNothing,
         [](NoSubject&) {
             for (int lBits = 0; lBits < 65536; ++lBits)
                 EXPECT_EQ(lyrHalfFloat::FromBits(static_cast<unsigned short>(lBits)).bits(), lBits);
         }},
        {"lyrHalfFloat::bits", kNothing, [](NoSubject&) { EXPECT_EQ(lyrHalfFloat(-0.0f).bits(), 0x8000); }},
        {"lyrHalfFloat::value", kNothing,
         [](NoSubject&) { EXPECT_TRUE(std::isinf(lyrHalfFloat::FromBits(0xfc00).value())); }},
        {"lyrHalfFloat::FtoHF", kNothing, [](NoSubject&) { EXPECT_EQ(lyrHalfFloat(1.0f).FtoHF(nullptr), 0); }},
        {"lyrHalfFloat::HFtoF", kNothing, [](NoSubject&) { EXPECT_TRUE(std::isnan(lyrHalfFloat().HFtoF(0xffff))); }},
        {"lyrHalfFloat::operator==", kNothing,
         [](NoSubject&) { EXPECT_TRUE(lyrHalfFloat::FromBits(0x7fff) == lyrHalfFloat::FromBits(0x7fff)); }},
        {"lyrHalfFloat::operator!=", kNothing,
         [](NoSubject&) { EXPECT_TRUE(lyrHalfFloat(0.0f) != lyrHalfFloat(-0.0f)); }},
        {"KLyrSystemUnit::KLyrSystemUnit", kNothing,
         [](NoSubject&) { EXPECT_EQ(KLyrSystemUnit(-kInfinity).GetMultiplier(), 1.0); }},
        {"KLyrSystemUnit::GetScaleFactor", kNothing,
         [](NoSubject&) { EXPECT_TRUE(std::isnan(KLyrSystemUnit(kNan, 0).GetScaleFactor())); }},
        {"KLyrSystemUnit::GetMultiplier", kNothing,
         [](NoSubject&) { EXPECT_TRUE(std::isnan(KLyrSystemUnit(0, kNan).GetMultiplier())); }},
        {"KLyrSystemUnit::GetConversionFactorTo", kNothing,
         [](NoSubject&) {
             const KLyrSystemUnit lNothing(0);
             EXPECT_TRUE(std::isnan(lNothing.GetConversionFactorTo(lNothing)));
             EXPECT_TRUE(std::isinf(KLyrSystemUnit::m.GetConversionFactorTo(lNothing)));
             for (double lValue : kHostileDoubles)
                 KLyrSystemUnit(lValue, lValue).GetConversionFactorTo(KLyrSystemUnit(DBL_TRUE_MIN, lValue));
         }},
        {"KLyrSystemUnit::GetScaleFactorAsString", kNothing,
         [](NoSubject&) {
             for (double lValue : kHostileDoubles)
                 EXPECT_FALSE(KLyrSystemUnit(lValue, lValue).GetScaleFactorAsString(false).IsEmpty());
             const FailAllocations lFail(0, true);
             EXPECT_TRUE(KLyrSystemUnit::m.GetScaleFactorAsString(true).IsEmpty());
         }},
        {"KLyrSystemUnit::FormatScaleFactor", kNothing,
         [](NoSubject&) {
             for (double lFactor : kHostileDoubles)
                 for (double lMultiplier : kHostileDoubles) {
                     char lBuffer[64];
                     const KLyrSystemUnit lUnit(lFactor, lMultiplier);
                     const int lLength = lUnit.FormatScaleFactor(lBuffer, false);
                     EXPECT_EQ(static_cast<int>(std::strlen(lBuffer)), lLength);
                     EXPECT_LT(lLength, 64);
                 }
         }},
        {"KLyrSystemUnit::operator==", kNothing,
         [](NoSubject&) { EXPECT_FALSE(KLyrSystemUnit(kNan) == KLyrSystemUnit(kNan)); }},
        {"KLyrSystemUnit::operator!=", kNothing,
         [](NoSubject&) { EXPECT_TRUE(KLyrSystemUnit(kNan) != KLyrSystemUnit(kNan)); }},
        {"lyrDistance::lyrDistance", kNothing,
         [](NoSubject&) { EXPECT_EQ(lyrDistance(-FLT_MAX, KLyrSystemUnit(kNan)).value(), -FLT_MAX); }},
        {"lyrDistance::value", kNothing,
         [](NoSubject&) { EXPECT_TRUE(std::isnan(lyrDistance(NAN, KLyrSystemUnit::m).value())); }},
        {"lyrDistance::unit", kNothing,
         [](NoSubject&) { EXPECT_EQ(lyrDistance(0, KLyrSystemUnit(0)).unit().GetScaleFactor(), 0); }},
        {"lyrDistance::unitName", kNothing,
         [](NoSubject&) { EXPECT_STREQ(lyrDistance(0, KLyrSystemUnit(kNan)).unitName(), "x nan cm"); }},
        {"lyrDistance::internalValue", kNothing,
         [](NoSubject&) {
             EXPECT_TRUE(std::isinf(lyrDistance(1, KLyrSystemUnit(kInfinity)).internalValue()));
             EXPECT_TRUE(std::isnan(lyrDistance(0, KLyrSystemUnit(kInfinity)).internalValue()));
             EXPECT_TRUE(std::isnan(lyrDistance(NAN, KLyrSystemUnit::m).internalValue()));
         }},
        {"lyrDistance::operator==", kNothing,
         [](NoSubject&) {
             const lyrDistance lNan(NAN, KLyrSystemUnit::m);
             EXPECT_FALSE(lNan == lNan);
         }},
        {"lyrDistance::operator!=", kNothing, [](NoSubject&) { EXPECT_FALSE(lyrDistance() != lyrDistance()); }},
        {"KLyrPlug::GetWipeMode", kNothing, [](NoSubject&) { EXPECT_FALSE(KLyrPlug::GetWipeMode()); }},
        {"KLyrPlug::SetWipeMode", kNothing,
         [](NoSubject&) {
             KLyrPlug::SetWipeMode(true);
             KLyrPlug::SetWipeMode(true);
             EXPECT_TRUE(KLyrPlug::GetWipeMode());
             KLyrPlug::SetWipeMode(false);
         }},
    });
}

// --- vectors and blobs -----------------------------------------------------------------------------------------------

TEST(HostileValues, VectorsTakeTheirOwnElements) {
    MakeHostileCalls<NoSubject>({
        {"lyrVectorTemplate2::operator[]", kNothing,
         [](NoSubject&) {
             lyrDouble2 lVector{{1, kNan}};
             lVector[0] = lVector[1];
             EXPECT_TRUE(std::isnan(lVector[0]));
         }},
        {"lyrVectorTemplate2::operator=", kNothing,
         [](NoSubject&) {
             lyrDouble2 lVector{{1, 2}};
             lyrDouble2& lSelf = lVector;
             lVector = lSelf;
             lVector = lVector[1];
             EXPECT_EQ(lVector, (lyrDouble2{{2, 2}}));
         }},
        {"lyrVectorTemplate2::operator==", kNothing,
         [](NoSubject&) {
             const lyrDouble2 lVector{{1, kNan}};
             EXPECT_FALSE(lVector == lVector);
         }},
        {"lyrVectorTemplate2::operator!=", kNothing,
         [](NoSubject&) {
             EXPECT_FALSE((lyrDouble2{{0, 0}}) != (lyrDouble2{{-0.0, 0}}));
         }},
        {"lyrVectorTemplate3::operator[]", kNothing,
         [](NoSubject&) {
             lyrDouble3 lVector{{1, 2, kInfinity}};
             lVector[0] = lVector[2];
             EXPECT_TRUE(std::isinf(lVector[0]));
         }},
        {"lyrVectorTemplate3::operator=", kNothing,
         [](NoSubject&) {
             lyrDouble3 lVector{{1, 2, 3}};
             lyrDouble3& lSelf = lVector;
             lVector = lSelf;
             lVector = lVector[2];
             EXPECT_EQ(lVector, (lyrDouble3{{3, 3, 3}}));
         }},
        {"lyrVectorTemplate3::operator==", kNothing,
         [](NoSubject&) {
             const lyrDouble3 lVector{{1, 2, kNan}};
             EXPECT_FALSE(lVector == lVector);
         }},
        {"lyrVectorTemplate3::operator!=", kNothing,
         [](NoSubject&) {
             EXPECT_FALSE((lyrDouble3{{0, 0, 0}}) != (lyrDouble3{{-0.0, 0, 0}}));
         }},
        {"lyrVectorTemplate4::operator[]", kNothing,
         [](NoSubject&) {
             lyrDouble44 lMatrix;
             lMatrix[3][3] = DBL_MAX;
             lMatrix[0] = lMatrix[3];
             EXPECT_EQ(lMatrix[0][3], DBL_MAX);
         }},
        {"lyrVectorTemplate4::operator=", kNothing,
         [](NoSubject&) {
             lyrDouble4 lVector{{1, 2, 3, 4}};
             lyrDouble3& lWithin = lVector;
             lVector = lWithin;
             lyrDouble4& lSelf = lVector;
             lVector = lSelf;
             EXPECT_EQ(lVector, (lyrDouble4{{1, 2, 3, 4}}));
         }},
        {"lyrVectorTemplate4::operator lyrVectorTemplate3<T>&", kNothing,
         [](NoSubject&) {
             lyrDouble4 lVector{{1, 2, 3, 4}};
             lyrDouble3& lWithin = lVector;
             lWithin = lVector[3];
             EXPECT_EQ(lVector, (lyrDouble4{{4, 4, 4, 4}}));
         }},
        {"lyrVectorTemplate4::operator==", kNothing,
         [](NoSubject&) {
             const lyrDouble4 lVector{{1, 2, 3, kNan}};
             EXPECT_FALSE(lVector == lVector);
         }},
        {"lyrVectorTemplate4::operator!=", kNothing, [](NoSubject&) { EXPECT_FALSE(lyrDouble44() != lyrDouble44()); }},
    });
}

struct Blobs {
    lyrBlob mBlob;
    lyrBlob mEmpty;

    Blobs() { mBlob.Assign("0123456789", 10); }
    const char* Bytes() const { return static_cast<const char*>(mBlob.GetData()); }
    std::string State() const {
        return std::string(mBlob.GetData() ? Bytes() : "", static_cast<std::size_t>(mBlob.GetSize())) +
               (mEmpty.GetData() ? " some" : " none");
    }
};

TEST(HostileValues, Blobs) {
    MakeHostileCalls<Blobs>({
        {"lyrBlob::lyrBlob", kNothing,
         [](Blobs& p) {
             EXPECT_EQ(lyrBlob(p.mEmpty).GetData(), nullptr);
             const FailAllocations lFail(0, true);
             EXPECT_EQ(lyrBlob(p.mBlob).GetSize(), 0);
         }},
        {"lyrBlob::operator=", kNothing,
         [](Blobs& p) {
             lyrBlob& lSelf = p.mBlob;
             p.mBlob = lSelf;
             p.mBlob = static_cast<lyrBlob&&>(lSelf);
             lyrBlob& lEmptySelf = p.mEmpty;
             p.mEmpty = lEmptySelf;
             const FailAllocations lFail(0, true);
             p.mEmpty = p.mBlob;
         }},
        {"lyrBlob::Assign", kNothing,
         [](Blobs& p) {
             EXPECT_TRUE(p.mBlob.Assign(p.mBlob));
             EXPECT_TRUE(p.mBlob.Assign(p.mBlob.GetData(), 10));
             for (int lSize : kHostileInts)
                 EXPECT_TRUE(p.mEmpty.Assign(nullptr, lSize));
             const FailAllocations lFail(0, true);
             EXPECT_FALSE(p.mBlob.Assign(HostileTexts().back().data(), 1 << 20));
         }},
        {"lyrBlob::Assign", kSome,
         [](Blobs& p) {
             EXPECT_TRUE(p.mBlob.Assign(p.Bytes() + 3, 4));
             EXPECT_EQ(p.State(), "3456 none");
             for (int lSize : {INT_MIN, -1, 0}) {
                 EXPECT_TRUE(p.mBlob.Assign("abc", lSize));
                 EXPECT_EQ(p.mBlob.GetData(), nullptr);
             }
         }},
        {"lyrBlob::Clear", kSome,
         [](Blobs& p) {
             p.mBlob.Clear();
             p.mBlob.Clear();
         }},
        {"lyrBlob::GetData", kNothing, [](Blobs& p) { EXPECT_EQ(p.mEmpty.GetData(), nullptr); }},
        {"lyrBlob::GetSize", kNothing, [](Blobs& p) { EXPECT_EQ(p.mEmpty.GetSize(), 0); }},
        {"operator==", kNothing,
         [](Blobs& p) { EXPECT_TRUE(p.mBlob == p.mBlob && p.mEmpty == lyrBlob() && !(p.mBlob == p.mEmpty)); }},
        {"operator!=", kNothing, [](Blobs& p) { EXPECT_FALSE(p.mBlob != p.mBlob || p.mEmpty != lyrBlob()); }},
    });
}

// --- values by code --------------------------------------------------------------------------------------------------

const char kIncompatible[] = "Incompatible type assigment";
const char kCompareReference[] = "Trying to compare value on a void Reference type";
const char kCompareUnknown[] = "Trying to compare an unknown type";

TEST(HostileValues, ValuesOfAnyCode) {
    using Reports = std::vector<std::string>;
    MakeHostileCalls<NoSubject>({
        {"lyrStorageSize", kNothing,
         [](NoSubject&) {
             for (int lCode : kNoCodes)
                 EXPECT_EQ(lyrStorageSize(static_cast<ELyrType>(lCode)), 0u);
         }},
        {"lyrHoldsValue", kNothing,
         [](NoSubject&) {
             for (int lCode : kNoCodes)
                 EXPECT_FALSE(lyrHoldsValue(static_cast<ELyrType>(lCode)));
             EXPECT_FALSE(lyrHoldsValue(eREFERENCE));
         }},
        {"lyrConstruct", kNothing,
         [](NoSubject&) {
             unsigned char lByte = 9;
             for (int lCode : kNoCodes)
                 EXPECT_FALSE(lyrConstruct(static_cast<ELyrType>(lCode), &lByte));
             EXPECT_EQ(lByte, 9);
             WithHostileValues([](ELyrType pType, void*) { EXPECT_FALSE(lyrConstruct(pType, nullptr)); });
         }},
        {"lyrDestruct", kNothing,
         [](NoSubject&) {
             WithHostileValues([](ELyrType pType, void*) { lyrDestruct(pType, nullptr); });
             unsigned char lByte = 9;
             for (int lCode : kNoCodes)
                 lyrDestruct(static_cast<ELyrType>(lCode), &lByte);
             EXPECT_EQ(lByte, 9);
         }},
        {"lyrCreate", kNothing,
         [](NoSubject&) {
             for (int lCode : kNoCodes)
                 EXPECT_EQ(lyrCreate(static_cast<ELyrType>(lCode)), nullptr);
             const FailAllocations lFail(0, true);
             for (int lCode = 0; lCode <= eMAX_TYPES; ++lCode)
                 EXPECT_EQ(lyrCreate(static_cast<ELyrType>(lCode)), nullptr);
         }},
        {"lyrDestroy", kNothing,
         [](NoSubject&) { WithHostileValues([](ELyrType pType, void*) { lyrDestroy(pType, nullptr); }); }},
        {"lyrCopy", kNothing,
         [](NoSubject&) {
             WithHostileValues([](ELyrType pDstType, void* pDst) {
                 WithHostileValues([&](ELyrType pSrcType, void* pSrc) {
                     EXPECT_FALSE(lyrCopy(nullptr, pDstType, pSrc, pSrcType));
                     EXPECT_FALSE(lyrCopy(pDst, pDstType, nullptr, pSrcType));
                     const bool lDone = lyrCopy(pDst, pDstType, pSrc, pSrcType);
                     EXPECT_FALSE(lDone && !(lyrHoldsValue(pDstType) && lyrHoldsValue(pSrcType)));
                 });
                 if (lyrHoldsValue(pDstType)) {
                     EXPECT_TRUE(lyrCopy(pDst, pDstType, pDst, pDstType)) << "its own memory, code " << pDstType;
                 }
                 EXPECT_FALSE(lyrCopy(nullptr, pDstType, 7));
             });
         },
         Reports{kUnknownType, kVoidReference, kIncompatible}},
        {"lyrCompare", kNothing,
         [](NoSubject&) {
             WithHostileValues([](ELyrType pType, void* pValue) {
                 EXPECT_FALSE(lyrCompare(nullptr, pValue, pType));
                 EXPECT_FALSE(lyrCompare(pValue, nullptr, pType));
                 EXPECT_FALSE(lyrCompare(nullptr, nullptr, pType));
                 EXPECT_EQ(lyrCompare(pValue, pValue, pType), lyrHoldsValue(pType)) << pType;
             });
         },
         Reports{kCompareUnknown, kCompareReference}},
    });
}

}  // namespace
}  // namespace lyrsdk
