#pragma once

// Runs operations on the library and on the model, compares each result, and now and then all that both show. A run
// that diverges is shortened.

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tests/model/arguments.h"
#include "tests/model/operation.h"
#include "tests/model/pair.h"

namespace lyrmodel {

// Everything is compared after so many operations of a long run.
constexpr std::size_t kInterval = 50;

// A tally for each kind of operation.
using Tallies = std::array<Tally, static_cast<std::size_t>(Kind::eCount)>;

class Driver {
public:
    explicit Driver(Fault pFault = Fault::eNone) : mPair(pFault), mSame(mPair) {}

    // Applies the operation to both sides. False when they differ; the driver is then of no further use.
    bool Apply(const Operation& pOperation);
    // What became of an operation that had too little memory.
    enum class Scarce {
        eNotRefused,  // it asked for none, or not for so much
        eDone,        // the library did without
        eUndone,      // the library showed what it had shown before
        ePartly,      // it showed what is allowed for that kind of operation
        eDiffers,     // anything else
        eCount
    };
    // Applies the operation while the request behind pFirst others is refused, and with pForever all behind that one.
    // If the library does not do it, it is compared with the model as that was, and the operation is applied once more
    // with memory. ScarceMemory must be the library's.
    Scarce ApplyScarce(const Operation& pOperation, std::size_t pFirst, bool pForever);
    // With memory or without, as the operation says. False when both sides differ.
    bool ApplyAsStated(const Operation& pOperation);
    // Operations that must not ask for memory at all: for them every request is refused.
    static bool NeverAsks(Kind pKind);
    // Operations that are always given memory: those of several calls, and those that destroy pages, because a page
    // without memory for its instances' copies lives on out of reach.
    static bool NeedsMemory(Kind pKind);

    // Compares everything.
    bool Check();
    // The first difference, empty while there is none.
    const std::string& Difference() const { return mSame.Difference(); }
    const std::string& What() const { return mSame.What(); }
    // The operation applied last: for people, and with pages and ids by number.
    std::string Last() const { return Describe(mLast, mArguments); }
    Operation LastRenamed() const { return Rename(mLast, mArguments); }

    const World& Model() const { return mPair.mModel; }
    // Counts what operations say there from now on; null: not any more.
    void SetTallies(Tallies* pTallies) { mTallies = pTallies; }

private:
    using Step = void (Driver::*)(const Arguments&);

#define LYRMODEL_ROW(pName, pArguments, pWeight) void pName(const Arguments& pA);
    LYRMODEL_OPERATIONS(LYRMODEL_ROW)
#undef LYRMODEL_ROW

    bool HasRoom(const Page* pPage, int pCount) const;
    bool HasRoomForNew(Page* pTypeInfo);
    void Created(const lyrsdk::KLyrPropertyHandle& pLibrary, const Page* pModel);
    void Destroyed(int pSlot, bool pResult);
    void Added(const lyrsdk::KLyrPropertyHandle& pLibrary, const Page* pPage, int pId);
    void Connect(const Arguments& pA, bool pSrc);
    void Disconnect(const Arguments& pA, bool pSrc);
    void GetEnd(const Arguments& pA, bool pSrc);
    void FindAll(const Arguments& pA, const char* pSeparators, bool pTyped);
    template <typename T>
    void ChangeItem(const Arguments& pA, Item pItem);

    lyrsdk::KLyrPropertyHandle HandleAt(const Arguments& pA, int pWhich = 0) const {
        return mPair.Handle(pA.mSlots[pWhich], pA.mIds[pWhich]);
    }

    // What an operation may have done by the time that memory ended, tried on a model that has not done it.
    bool ApplyPartly(const Operation& pOperation);
    bool SetPartly(const Arguments& pA);
    bool PushPartly(const Arguments& pA);
    bool AddPartly(const Arguments& pA, Kind pKind);
    bool SetMinMaxPartly(const Arguments& pA);
    bool Try(const World& pBefore);

    // The items of an add, as the model holds them.
    static std::shared_ptr<Info> NewInfo(const Arguments& pA);
    static std::shared_ptr<Info> SharedInfo(const Arguments& pA);
    static std::shared_ptr<Value> SharedValue(const Arguments& pA);

    Pair mPair;
    Comparison mSame;
    Tallies* mTallies = nullptr;
    Operation mLast;
    Arguments mArguments;
};

// How a sequence of operations ended.
struct Outcome {
    bool mSame = true;
    // How many operations were applied, the one that showed the difference included.
    std::size_t mSteps = 0;
    std::string mDifference;
    // The difference without its particulars.
    std::string mWhat;
};

// Runs the sequence, comparing everything after each pInterval operations (0: not), after each of the last
// pClosely ones and at the end.
Outcome RunOperations(const std::vector<Operation>& pOperations, std::size_t pInterval, Fault pFault = Fault::eNone,
                      std::size_t pClosely = 0);

// A part of the sequence, in the same order, that diverges in the same point and of which no single operation can be
// left out.
// pMostSteps bounds the work.
std::vector<Operation> Shorten(const std::vector<Operation>& pOperations, Fault pFault, std::size_t pMostSteps);

// The sequence line by line, as it can be replayed and as it is meant.
std::string Print(const std::vector<Operation>& pOperations, Fault pFault);

// Runs pCount operations of that seed. The text is empty when both sides agreed; else it holds the seed, the shortened
// sequence and the difference.
std::string RunSeed(std::uint64_t pSeed, std::uint64_t pCount, Fault pFault = Fault::eNone,
                    std::size_t pInterval = kInterval);

// What RunSeed gives for operations that ended so.
std::string Shortened(std::uint64_t pSeed, std::vector<Operation> pOperations, const Outcome& pOutcome, Fault pFault);

// How often each kind of operation came to what.
using ScarceCounts = std::array<std::array<std::uint64_t, static_cast<std::size_t>(Driver::Scarce::eCount)>,
                                static_cast<std::size_t>(Kind::eCount)>;

// RunSeed while random requests for memory are refused, comparing everything whenever one was.
std::string RunSeedScarce(std::uint64_t pSeed, std::uint64_t pCount, ScarceCounts& pCounts,
                          Fault pFault = Fault::eNone);

}  // namespace lyrmodel
