#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/support/handle_pages.h"

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

}  // namespace
}  // namespace lyrsdk
