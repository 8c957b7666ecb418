#include "tools/lyrinspect/values.h"

#include <gtest/gtest.h>

#include "tests/support/memory_probe.h"

namespace lyrsdk::inspect {
namespace {

// A property on a page of its own.
class Property {
public:
    explicit Property(ELyrType pType) : handle(KLyrPropertyHandle::Create("value", pType)) {}
    ~Property() { handle.Destroy(); }
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    KLyrPropertyHandle handle;
};

bool SetJson(const KLyrPropertyHandle& pProperty, const char* pJson, std::string* pExpected = nullptr) {
    std::string lExpected;
    const bool lGood = SetFromJson(pProperty, PropertyFacts(), Json::parse(pJson), lExpected);
    if (pExpected)
        *pExpected = lExpected;
    return lGood;
}

TEST(Values, TakeNumbersFromJson) {
    const Property lDouble(eDOUBLE1);
    EXPECT_TRUE(SetJson(lDouble.handle, "2.5"));
    EXPECT_EQ(ValueText(lDouble.handle), "2.5");
    EXPECT_FALSE(SetJson(lDouble.handle, "\"3\""));
    EXPECT_FALSE(SetJson(lDouble.handle, "[3]"));
    EXPECT_EQ(ValueText(lDouble.handle), "2.5");
    const Property lInt(eINTEGER1);
    EXPECT_TRUE(SetJson(lInt.handle, "7.0"));
    EXPECT_EQ(ValueText(lInt.handle), "7");
    EXPECT_FALSE(SetJson(lInt.handle, "7.5"));
    EXPECT_FALSE(SetJson(lInt.handle, "3000000000"));
    EXPECT_EQ(ValueText(lInt.handle), "7");
    const Property lDistance(eDISTANCE);
    EXPECT_TRUE(SetJson(lDistance.handle, "0.1"));
    EXPECT_EQ(ValueText(lDistance.handle), "0.1 m");
    std::string lExpected;
    EXPECT_FALSE(SetJson(lDistance.handle, "-1e300", &lExpected));
    EXPECT_EQ(lExpected, "a length that a float can hold");
    EXPECT_EQ(ValueText(lDistance.handle), "0.1 m");
}

TEST(Values, TakeVectorsOfExactlyTheirLength) {
    const Property lVector(eDOUBLE3);
    std::string lExpected;
    EXPECT_TRUE(SetJson(lVector.handle, "[1,2.5,-3]"));
    EXPECT_FALSE(SetJson(lVector.handle, "[1,2]", &lExpected));
    EXPECT_EQ(lExpected, "an array of 3 numbers");
    EXPECT_FALSE(SetJson(lVector.handle, "[1,2,3,4]"));
    EXPECT_FALSE(SetJson(lVector.handle, "[1,2,null]"));
    EXPECT_FALSE(SetJson(lVector.handle, "1"));
    EXPECT_EQ(ValueText(lVector.handle), "1,2.5,-3");
}

TEST(Values, TakeAMatrixColumnByColumnAndPrintItRowByRow) {
    const Property lMatrix(eDOUBLE44);
    EXPECT_TRUE(SetJson(lMatrix.handle, "[1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16]"));
    lyrDouble44 lValue;
    ASSERT_TRUE(lMatrix.handle.Get(&lValue, eDOUBLE44));
    EXPECT_EQ(lValue[0][3], 13);
    EXPECT_EQ(lValue[3][0], 4);
    EXPECT_EQ(ValueText(lMatrix.handle), "1,5,9,13; 2,6,10,14; 3,7,11,15; 4,8,12,16");
    EXPECT_FALSE(SetJson(lMatrix.handle, "[1,0,0,1]"));
}

TEST(Values, TakeEnumerationsByTextOrByNumber) {
    const Property lEnum(eENUM);
    KLyrPropertyHandle lHandle = lEnum.handle;
    lHandle.AddEnumValue("NEAREST");
    lHandle.AddEnumValue("LINEAR");
    EXPECT_TRUE(SetJson(lHandle, "\"LINEAR\""));
    EXPECT_EQ(ValueText(lHandle), "1 (LINEAR)");
    EXPECT_FALSE(SetJson(lHandle, "\"linear\""));
    EXPECT_FALSE(SetJson(lHandle, "1"));
    PropertyFacts lFacts;
    lFacts.codes = {9728, -1};
    std::string lExpected;
    EXPECT_TRUE(SetFromJson(lHandle, lFacts, Json(9728), lExpected));
    EXPECT_EQ(ValueText(lHandle), "0 (NEAREST)");
    EXPECT_FALSE(SetFromJson(lHandle, lFacts, Json("NEAREST"), lExpected));
    // The number of a value that the file cannot state is found by no number.
    EXPECT_FALSE(SetFromJson(lHandle, lFacts, Json(-1), lExpected));
    EXPECT_EQ(ValueText(lHandle), "0 (NEAREST)");
}

TEST(Values, PrintTextsQuotedAndBlobsWithTheirSize) {
    const Property lString(eSTRING);
    EXPECT_EQ(ValueText(lString.handle), "\"\"");
    EXPECT_TRUE(SetJson(lString.handle, "\"a\\n\\\"b\\\"\""));
    EXPECT_EQ(ValueText(lString.handle), "\"a\\n\\\"b\\\"\"");
    const Property lBlob(eBLOB);
    EXPECT_TRUE(SetBytes(lBlob.handle, "abc", 3));
    EXPECT_EQ(ValueText(lBlob.handle), "<blob> 3 bytes");
    EXPECT_FALSE(SetBytes(lBlob.handle, "abc", std::size_t{1} << 31));
    const Property lTime(eTIME);
    EXPECT_TRUE(SetSeconds(lTime.handle, 61.5));
    EXPECT_EQ(ValueText(lTime.handle), "00:01:01.5");
    const Property lBool(eBOOL1);
    EXPECT_TRUE(SetJson(lBool.handle, "true"));
    EXPECT_FALSE(SetJson(lBool.handle, "0"));
    EXPECT_EQ(ValueText(lBool.handle), "true");
}

TEST(Values, HaveNoTextForGroupsAndReferences) {
    const Property lGroup(eUNIDENTIFIED);
    const Property lReference(eREFERENCE);
    EXPECT_EQ(ValueText(lGroup.handle), "");
    EXPECT_EQ(ValueText(lReference.handle), "");
}

TEST(Values, ReadLimitsAndSayHowTheyAreBroken) {
    const Property lDouble(eDOUBLE1);
    EXPECT_TRUE(SetLimitsFromText(lDouble.handle, "0..1", "0.25.."));
    EXPECT_EQ(LimitsText(lDouble.handle), "0..1");
    EXPECT_EQ(SoftLimitsText(lDouble.handle), "0.25..");
    SetDouble(lDouble.handle, 1);
    EXPECT_EQ(LimitBreach(lDouble.handle), "");
    SetDouble(lDouble.handle, 1.5);
    EXPECT_EQ(LimitBreach(lDouble.handle), "1.5 is above 1");
    SetDouble(lDouble.handle, -0.5);
    EXPECT_EQ(LimitBreach(lDouble.handle), "-0.5 is below 0");
    const Property lVector(eDOUBLE4);
    EXPECT_TRUE(SetLimitsFromText(lVector.handle, "..1", ""));
    EXPECT_TRUE(SetJson(lVector.handle, "[0,0,2,0]"));
    EXPECT_EQ(LimitBreach(lVector.handle), "0,0,2,0 is above 1,1,1,1");
    const Property lDistance(eDISTANCE);
    EXPECT_TRUE(SetLimitsFromText(lDistance.handle, "0..", ""));
    EXPECT_TRUE(SetJson(lDistance.handle, "-2"));
    EXPECT_EQ(LimitBreach(lDistance.handle), "-2 m is below 0 m");
}

TEST(Values, RefuseMalformedTextsOfATable) {
    const Property lDouble(eDOUBLE1);
    const Property lVector(eDOUBLE2);
    const Property lGroup(eUNIDENTIFIED);
    for (const char* lText : {"", "x", "1,", ",1", "1,2"})
        EXPECT_FALSE(SetFromText(lDouble.handle, lText)) << lText;
    for (const char* lText : {"1", "1,2,3", "1,,2"})
        EXPECT_FALSE(SetFromText(lVector.handle, lText)) << lText;
    EXPECT_FALSE(SetFromText(lGroup.handle, "1"));
    EXPECT_FALSE(SetLimitsFromText(lDouble.handle, "0-1", ""));
    EXPECT_FALSE(SetLimitsFromText(lDouble.handle, "a..1", ""));
    EXPECT_FALSE(SetLimitsFromText(lDouble.handle, "0..1", "..b"));
    EXPECT_FALSE(SetLimitsFromText(lGroup.handle, "0..1", ""));
}

TEST(Values, SurviveAFullMemory) {
    const Property lBlob(eBLOB);
    const FailAllocations lFail(0, true);
    EXPECT_FALSE(SetBytes(lBlob.handle, "abc", 3));
}

}  // namespace
}  // namespace lyrsdk::inspect
