// Containers and values of every type.

#include <cmath>
#include <cstdio>
#include <limits>

#include "tests/gdb/scene.h"

namespace scene {

using namespace lyrsdk;

// --- containers ----------------------------------------------------------------------------------------------------

KString sgEmptyString;
KString sgString;
KString sgOddString;
KString sgLongString;
KStringList sgStrings;
KStringListItem sgStringItem;
KArrayTemplate<int> sgInts;
KArrayTemplate<double> sgDoubles;
KArrayTemplate<int> sgNoInts;
KBaseArrayFast<8> sgUntyped;
KPair<int, KString> sgPair;
KMap<int, int, KLyrLessCompare<int>, KHungryAllocator> sgSquares;
KMap<KString, double, KStringCompare, KBaseAllocator> sgPrices;
KMap<int, int, KLyrLessCompare<int>, KBaseAllocator> sgNoMap;
KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>::IteratorType sgFirstSquare;
KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>::ConstIteratorType sgEndOfSquares;
KMap<int, int, KLyrLessCompare<int>, KHungryAllocator>::RecordType* sgRecord;
KLyrSdkScopedPtr<KTime> sgOwner;
KLyrSdkScopedPtr<KTime> sgNoOwner;
KBaseAllocator sgBaseAllocator(24);
KHungryAllocator sgAllocator(24);
const KHungryAllocator::MemoryBlock* sgBlock;
KLyrStringSymbol sgSymbol;
KLyrStringSymbol sgNoSymbol;

void MakeContainers() {
    sgString = "75.5 W";
    sgOddString.Assign("a\"b\\c\n\0\x01\xFF\xC3\xA9", 11);
    for (int i = 0; i < 30; ++i)
        sgLongString.Append("0123456789");
    sgStrings.Add("off", 0);
    sgStrings.Add("on", 7);
    sgStringItem.mString = "item";
    sgStringItem.mReference = 3;
    sgPair.mFirst = 1;
    sgPair.mSecond = "one";
    for (int i = 0; i < 10; ++i) {
        sgInts.Add(10 * i);
        sgSquares.Insert(i, i * i);
    }
    sgDoubles.Add(0.1);
    sgDoubles.Add(-1e300);
    sgUntyped.InsertAt(0, &sgDoubles[0]);
    sgPrices.Insert("bulb", 2.5);
    sgPrices.Insert("lamp", 60);
    sgFirstSquare = sgSquares.Begin();
    sgRecord = sgSquares.Find(3);
    sgOwner.Reset(LyrSdkNew<KTime>(kTimeUnitsPerSecond * 3 / 2));
    sgAllocator.AllocateRecords(1);
    sgBlock = sgAllocator.GetNewestBlock();
    sgSymbol = "power";
}

// --- values --------------------------------------------------------------------------------------------------------

KTime sgTime(705600000LL * 3661 + 176400000);
KTime sgNoTime;
KTime sgLeastTime(std::numeric_limits<long long>::min());
lyrHalfFloat sgHalf;
lyrHalfFloat sgSmallHalf;
lyrHalfFloat sgInfiniteHalf;
lyrDouble2 sgDouble2{{0.1, -2}};
lyrDouble3 sgDouble3{{1, 1e100, std::numeric_limits<double>::infinity()}};
lyrDouble4 sgDouble4{{1, 2, 3, -0.0}};
lyrDouble44 sgMatrix{{{{1, 0, 0, 0}}, {{0, 1, 0, 0}}, {{0, 0, 1, 0}}, {{5, 6, 7, 1}}}};
lyrVectorTemplate3<float> sgFloat3{{0.1f, 16777216.0f, 1e-40f}};
lyrBlob sgBlob;
lyrBlob sgNoBlob;
lyrDateTime sgDateTime;
lyrDistance sgDistance(2.5f, KLyrSystemUnit::m);
KLyrSystemUnit sgFoot = KLyrSystemUnit::Foot;
KLyrSystemUnit sgTenInches(2.54, 10);
KLyrSystemUnit sgOddUnit(1.25, 2);
lyrVoidReference sgReference;

KLyrPropertyHandle sgTypes;
KLyrPropertyHandle sgOfType[eMAX_TYPES];

namespace {

void SetEachType() {
    const double lNumber = 0.1;
    const int lSixtyFive = 65;
    for (int i = 0; i < eMAX_TYPES; ++i) {
        char lName[16];
        std::snprintf(lName, sizeof(lName), "type %d", i);
        sgOfType[i] = sgTypes.Add(lName, static_cast<ELyrType>(i));
    }
    for (ELyrType lType : {eBYTE1, eUBYTE1, eSHORT1, eUSHORT1, eUINTEGER1, eBOOL1, eINTEGER1, eENUM})
        sgOfType[lType].Set(&lSixtyFive, eINTEGER1);
    for (ELyrType lType : {eHALFFLOAT, eFLOAT1, eDOUBLE1, eSTRING})
        sgOfType[lType].Set(&lNumber, eDOUBLE1);
    const long long lLeast = std::numeric_limits<long long>::min();
    const unsigned long long lMost = std::numeric_limits<unsigned long long>::max();
    sgOfType[eLONGLONG1].Set(&lLeast, eLONGLONG1);
    sgOfType[eULONGLONG1].Set(&lMost, eULONGLONG1);
    sgOfType[eDOUBLE2].Set(&sgDouble2, eDOUBLE2);
    sgOfType[eDOUBLE3].Set(&sgDouble3, eDOUBLE3);
    sgOfType[eDOUBLE4].Set(&sgDouble4, eDOUBLE4);
    sgOfType[eDOUBLE44].Set(&sgMatrix, eDOUBLE44);
    sgOfType[eTIME].Set(&sgTime, eTIME);
    sgOfType[eBLOB].Set(&sgBlob, eBLOB);
    sgOfType[eDISTANCE].Set(&sgDistance, eDISTANCE);
    sgOfType[eDATETIME].Set(&sgDateTime, eDATETIME);
}

}  // namespace

void MakeValues() {
    sgHalf = 0.1f;
    sgSmallHalf = lyrHalfFloat::FromBits(1);
    sgInfiniteHalf = lyrHalfFloat::FromBits(0xFC00);
    sgBlob.Assign("\x00\x7F\xFF", 3);
    sgDateTime.Set(2024, 2, 29, 23, 59, 58, 7);
    sgTypes = KLyrPropertyHandle::Create("types", eUNIDENTIFIED);
    SetEachType();
}

}  // namespace scene
