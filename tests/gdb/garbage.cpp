// Memory that holds no objects, which the debugger is made to take for objects of every type, and objects that are
// broken in one place.

#include <cstdint>
#include <cstring>

#include "tests/gdb/scene.h"

namespace scene {

constexpr int kWords = 64;
constexpr int kBlocks = 48;
constexpr int kMutants = 64;

using Word = std::uintptr_t;

// The first blocks are uniform: zeros, ones, what freed memory is filled with, and pointers that all lead to the block
// itself.
Word sgGarbage[kBlocks][kWords];
// Copies of a page, each with another word changed.
Word sgMutants[kMutants][kWords];
int sgMutantCount = 0;

using IntMap = lyrsdk::KMap<int, int, lyrsdk::KLyrLessCompare<int>, lyrsdk::KBaseAllocator>;

// Five records each: 1 is the root, 0 and 3 are below it, 2 and 4 below 3.
IntMap sgCircle;
IntMap sgTwice;
IntMap sgTooMany;
IntMap sgTooFew;
IntMap sgRootBelow;
// An array of ten with another count, and a value that is not where its item is.
Word sgBrokenArray[4];
Word sgMovedValue[4];

namespace {

std::uint32_t sgState = 1;

std::uint32_t Next() {
    sgState = sgState * 1664525u + 1013904223u;
    return sgState >> 8;
}

Word AddressOf(const void* pObject) {
    return reinterpret_cast<Word>(pObject);
}

// Mostly what could be meant seriously.
Word Noise() {
    const std::uint32_t lChoice = Next() % 8;
    if (lChoice < 2)
        return 0;
    if (lChoice == 2)
        return Next() % 64;
    if (lChoice == 3)
        return ~Word(0) - Next() % 4;
    if (lChoice == 4)
        return AddressOf(sgDeskLamp.GetPage()) + Next() % 64 * sizeof(Word);
    if (lChoice == 5)
        return static_cast<Word>(Next()) * 1021;
    return AddressOf(&sgGarbage[Next() % kBlocks][Next() % (kWords / 2)]);
}

void MakeMutant(std::size_t pIndex, Word pWord) {
    Word* lMutant = sgMutants[sgMutantCount++];
    std::memcpy(lMutant, static_cast<void*>(sgDeskLamp.GetPage()), sizeof(lyrsdk::KLyrPropertyPage));
    lMutant[pIndex] = pWord;
}

void Fill(IntMap& pMap) {
    for (int i = 0; i < 5; ++i)
        pMap.Insert(i, i);
}

void MakeBrokenMaps() {
    for (IntMap* lMap : {&sgCircle, &sgTwice, &sgTooMany, &sgTooFew, &sgRootBelow})
        Fill(*lMap);
    sgCircle.Find(2)->mLeftChild = sgCircle.Find(1);
    sgTwice.Find(3)->mRightChild = sgTwice.Find(2);
    IntMap::RecordType* lParent = sgTooMany.Find(4);
    lParent->mRightChild = sgTooFew.Find(4);
    lParent->mRightChild->mParent = lParent;
    sgTooFew.Find(3)->mRightChild = nullptr;
    sgRootBelow.Find(1)->mParent = sgRootBelow.Find(3);
}

}  // namespace

void MakeGarbage() {
    std::memset(sgGarbage[0], 0, sizeof(sgGarbage[0]));
    std::memset(sgGarbage[1], 0xFF, sizeof(sgGarbage[1]));
    std::memset(sgGarbage[2], 0xDD, sizeof(sgGarbage[2]));
    for (Word& lWord : sgGarbage[3])
        lWord = AddressOf(sgGarbage[3]);
    for (int i = 4; i < kBlocks; ++i)
        for (Word& lWord : sgGarbage[i])
            lWord = Noise();

    MakeBrokenMaps();
    const int lTooMany = 1000;
    std::memcpy(sgBrokenArray, static_cast<void*>(&sgInts), sizeof(sgInts));
    std::memcpy(sgBrokenArray, &lTooMany, sizeof(lTooMany));
    std::memcpy(sgMovedValue, static_cast<void*>(sgDeskPowerValue), sizeof(*sgDeskPowerValue));

    constexpr std::size_t kPageWords = sizeof(lyrsdk::KLyrPropertyPage) / sizeof(Word);
    static_assert(2 * kPageWords <= kMutants && kPageWords <= kWords, "room for all mutants");
    for (std::size_t i = 0; i < kPageWords; ++i) {
        MakeMutant(i, 0x41);
        MakeMutant(i, AddressOf(sgMutants[sgMutantCount]));
    }
}

}  // namespace scene
