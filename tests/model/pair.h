#pragma once

// The library and the model side by side: pages, filters, values and reports, and the comparison of what both show.

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/model/property_model.h"

namespace lyrmodel {

// A filter of the library that selects what the model's filter selects.
class LibraryFilter : public lyrsdk::KLyrConnectionPointFilter {
public:
    explicit LibraryFilter(const Filter& pFilter) : mFilter(pFilter) {}
    bool Selects(const lyrsdk::KLyrConnectionPoint* pPeer, lyrsdk::kLyrConnectionType pType) const override;

private:
    Filter mFilter;
};

// A value in the library's own memory.
class LibraryValue {
public:
    // For a code without a value a few zero bytes, which nobody may look at.
    explicit LibraryValue(const Value& pValue);
    ~LibraryValue();
    LibraryValue(const LibraryValue&) = delete;
    LibraryValue& operator=(const LibraryValue&) = delete;

    lyrsdk::ELyrType Type() const { return mType; }
    void* Data() { return mData; }
    Value Read() const;

private:
    lyrsdk::ELyrType mType;
    void* mData;
    std::array<double, 4> mNothing{};
};

struct Pair {
    static constexpr int kFilters = 4;

    explicit Pair(Fault pFault);
    ~Pair();
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    lyrsdk::KLyrPropertyPage* Library(int pSlot) const;
    lyrsdk::KLyrPropertyHandle Handle(int pSlot, int pId) const { return {Library(pSlot), pId}; }
    // The slot of a page of the library: -1 for null, -2 for one that nobody made.
    int SlotOf(const lyrsdk::KLyrPropertyPage* pPage) const;
    static int SlotOf(const Page* pPage) { return pPage ? pPage->mSlot : -1; }
    // 0 is no filter.
    lyrsdk::KLyrConnectionPointFilter* LibraryFilterAt(int pFilter) const;
    const Filter* ModelFilterAt(int pFilter) const;
    void RenewFilter(int pFilter, const Filter& pSelection);

    World mModel;
    std::array<lyrsdk::KLyrPropertyPage*, World::kSlots> mPages{};
    std::array<Filter, kFilters> mModelFilters;
    std::array<std::unique_ptr<LibraryFilter>, kFilters> mLibraryFilters;
    // The messages of the library's reports that were not compared yet.
    Reports mReports;

private:
    static void Receive(const char* pFile, const char* pFunction, unsigned long pLine, const char* pMessage,
                        bool* pHideForever);

    static Pair* sgActive;
    lyrsdk::KAssertFailedHandler mHandlerBefore;
};

// How often an operation said yes or no to what: true or false, more than 0 or not, something or null.
using Tally = std::map<std::pair<std::string, bool>, std::uint64_t>;

// What a page of the library and its model say; the first difference is kept.
class Comparison {
public:
    explicit Comparison(Pair& pPair) : mPair(pPair) {}

    bool IsSame() const { return mDifference.empty(); }
    const std::string& Difference() const { return mDifference; }
    // What the two differ in, without the particulars.
    const std::string& What() const { return mWhat; }

    // Where answers to single questions are counted; null: nowhere.
    void SetTally(Tally* pTally) { mTally = pTally; }
    void Count(const char* pWhat, bool pYes) {
        if (mTally)
            ++(*mTally)[{pWhat, pYes}];
    }

    template <typename T>
    void Same(const char* pWhat, const T& pLibrary, const T& pModel) {
        Count(pWhat, pLibrary > T(0));
        if (!(pLibrary == pModel))
            Differs(pWhat, TextOf(pLibrary), TextOf(pModel));
    }
    void Same(const char* pWhat, const char* pLibrary, const std::string& pModel);
    void Same(const char* pWhat, const char* pLibrary, const std::optional<std::string>& pModel);
    // A handle as slot and id.
    void Same(const char* pWhat, const lyrsdk::KLyrPropertyHandle& pLibrary, const Page* pPage, int pId);
    // Results of reading, and what was read.
    void SameValue(const char* pWhat, bool pLibrary, bool pModel, const LibraryValue& pRead, const Value& pExpected);
    // The reports made since the last time.
    void SameReports();

    void Differs(const char* pWhat, const std::string& pLibrary, const std::string& pModel);
    void Differs(const std::string& pDifference) { mWhat = mDifference = pDifference; }
    // Forgets the difference that was found.
    void Reset() { mDifference = mWhat = ""; }

    // Everything that can be asked for.
    void All();
    // Everything that can be asked of one property, which may be none.
    void Property(int pSlot, int pId);

private:
    static std::string TextOf(long long pNumber) { return std::to_string(pNumber); }
    void OfPage(int pSlot);
    void Names(int pId);
    void Tree(int pId);
    void Description(int pId);
    void Bounds(int pId);
    void Values(int pId);
    void States(int pId);
    void Flags(int pId);
    void Connections(int pId);
    void Links(int pId, int pFilter);

    Pair& mPair;
    std::string mDifference, mWhat;
    Tally* mTally = nullptr;
    // What is looked at.
    int mSlot = -1;
    lyrsdk::KLyrPropertyPage* mLibrary = nullptr;
    Page* mModel = nullptr;
    lyrsdk::KLyrPropertyHandle mHandle;
};

}  // namespace lyrmodel
