#pragma once

// One operation of a random run: a kind and a few small numbers. What the numbers mean is decided when the operation is
// applied, from what exists by then, so that every sequence of operations can be run, and so can every part of one.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lyrmodel {

// clang-format off
// Expands one macro a row. The letters name the arguments, one number each:
//   p page (or none)   i id in the last page   n name   u path   t type code   v value   f flags   s inherit state
//   x integer          b bool                  k filter (or none)              c connection type
//   m name, often of a child of the id         y page, often the one that types what was named
// The weight says how often the kind is drawn.
#define LYRMODEL_OPERATIONS(pRow)                       \
    /*   name                      arguments  weight */ \
    pRow(CreateRoot,               "",        2)        \
    pRow(CreateNamed,              "nt",      2)        \
    pRow(CreateInstance,           "pb",     12)        \
    pRow(CreateTyped,              "np",      2)        \
    pRow(DestroyPage,              "p",       5)        \
    pRow(Add,                      "pint",   50)        \
    pRow(AddTyped,                 "pinp",   12)        \
    pRow(AddItems,                 "pintpx",  6)        \
    pRow(AddShared,                "pipix",  20)        \
    pRow(Destroy,                  "pi",     14)        \
    pRow(RemoveOwnEntry,           "pi",      4)        \
    pRow(Set,                      "pitvb", 100)        \
    pRow(Get,                      "pitv",   30)        \
    pRow(GetDefaultValue,          "pitv",   12)        \
    pRow(SetLabel,                 "pin",    10)        \
    pRow(SetLabelToOwnText,        "pib",     4)        \
    pRow(SetUserTag,               "pix",     6)        \
    pRow(SetUserData,              "pix",     6)        \
    pRow(SetMinMax,                "pixtv",  40)        \
    pRow(GetMinMax,                "pixtv",  40)        \
    pRow(AddEnumValue,             "pin",    40)        \
    pRow(InsertEnumValue,          "pixn",   16)        \
    pRow(SetEnumValue,             "pixn",   20)        \
    pRow(RemoveEnumValue,          "pix",    12)        \
    pRow(GetEnumValue,             "pix",    12)        \
    pRow(ModifyFlags,              "pifbb",  40)        \
    pRow(SetFlagsInheritType,      "pifs",   20)        \
    pRow(GetFlagsInheritType,      "pifb",   12)        \
    pRow(SetValueInheritType,      "pis",    16)        \
    pRow(Push,                     "pi",      3)        \
    pRow(PushRoot,                 "p",       6)        \
    pRow(ChangeEntryState,         "pis",     8)        \
    pRow(ChangeInfoState,          "pis",     6)        \
    pRow(ChangeValueState,         "pis",     6)        \
    pRow(ChangeFlagsState,         "pis",     8)        \
    pRow(ConnectSrc,               "pipic",  40)        \
    pRow(ConnectDst,               "pipic",  30)        \
    pRow(ConnectAll,               "pipc",    3)        \
    pRow(DisconnectSrc,            "pipi",   14)        \
    pRow(DisconnectDst,            "pipi",   12)        \
    pRow(DisconnectNth,            "pixb",   12)        \
    pRow(IsConnected,              "pipi",   12)        \
    pRow(GetSrc,                   "pikx",   10)        \
    pRow(GetDst,                   "pikx",   10)        \
    pRow(GetEndInPart,             "pikxb",   6)        \
    pRow(WipeAllConnections,       "pib",     4)        \
    pRow(ClearConnectCache,        "pi",      4)        \
    pRow(RenewFilter,              "kcx",     6)        \
    pRow(SetWipeMode,              "b",       2)        \
    pRow(BeginCreateOrFind,        "p",      10)        \
    pRow(EndCreateOrFind,          "p",       8)        \
    pRow(Find,                     "pimb",   20)        \
    pRow(FindTyped,                "pimby",  12)        \
    pRow(FindPath,                 "piubx",  14)        \
    pRow(FindTypedPath,            "piubyx", 40)        \
    pRow(FastFind,                 "pimby",  12)        \
    pRow(IsChildOf,                "pipi",   10)        \
    pRow(IsDescendentOf,           "pipi",    6)        \
    pRow(GetNextDescendent,        "pipi",    8)        \
    pRow(GetMinimum,               "pix",     6)        \
    pRow(LookAt,                   "pi",     20)        \
    pRow(SetPageData,              "px",      4)        \
    pRow(GetReferencedBy,          "px",      4)        \
    pRow(SkipIds,                  "px",      5)        \
    pRow(TakeId,                   "p",       5)        \
    pRow(CompareHandles,           "pipi",   20)        \
    pRow(SetParent,                "pipi",    1)
// clang-format on

enum class Kind : std::uint8_t {
#define LYRMODEL_ROW(pName, pArguments, pWeight) e##pName,
    LYRMODEL_OPERATIONS(LYRMODEL_ROW)
#undef LYRMODEL_ROW
        eCount
};

constexpr std::size_t kArguments = 6;

struct Operation {
    Kind mKind = Kind::eLookAt;
    std::array<std::uint8_t, kArguments> mArguments{};
    // Which of its requests for memory is refused: 1 for the first one, 0 for none. With mForever all behind it, too.
    std::uint8_t mRefused = 0;
    bool mForever = false;
};

const char* NameOf(Kind pKind);
const char* ArgumentsOf(Kind pKind);

// A generator of 64-bit numbers, the same on every machine.
class Random {
public:
    explicit Random(std::uint64_t pSeed) : mState(pSeed) {}
    std::uint64_t Next();

private:
    std::uint64_t mState;
};

Operation Generate(Random& pRandom);
std::vector<Operation> Generate(std::uint64_t pSeed, std::uint64_t pCount);

// Takes one operation from the front of a text of bytes, every one of which means something; false at its end.
bool DecodeOperation(const std::uint8_t*& pBytes, const std::uint8_t* pEnd, Operation& pOperation);

// One line, "Set 3 14 0 2 1", and back; "Set 3 14 0 2 1 !2" with the second request for memory refused, "!2+" with all
// behind it, too. False for a line that is none.
std::string ToText(const Operation& pOperation);
bool FromText(const std::string& pText, Operation& pOperation);

}  // namespace lyrmodel
