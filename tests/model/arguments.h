#pragma once

// What the numbers of an operation stand for, given what the model holds at that moment.

#include <optional>
#include <string>

#include "tests/model/operation.h"
#include "tests/model/property_model.h"

namespace lyrmodel {

// Pages and ids may be missing or unknown, texts and values null: the library takes everything.
struct Arguments {
    int mSlots[2] = {-1, -1};
    Page* mPages[2] = {};
    int mIds[2] = {-1, -1};
    std::optional<std::string> mName;
    // The property that the name was taken from; null for a name from the list.
    const Info* mNamed = nullptr;
    int mType = kNone;
    std::optional<Value> mValue;
    unsigned mFlags = 0;
    int mState = 0;
    int mNumber = 0;
    // The number as it was drawn, for what is chosen by bits.
    unsigned mBits = 0;
    bool mBools[2] = {};
    // 0 is none.
    int mFilter = 0;
    int mConnection = 0;

    const char* Name() const { return mName ? mName->c_str() : nullptr; }
    std::string NameOrEmpty() const { return mName.value_or(""); }
};

Arguments Resolve(const Operation& pOperation, const World& pWorld);

// The operation that means the same and names pages, low ids and types by number, so that it goes on meaning it when
// operations in front of it are left out.
Operation Rename(const Operation& pOperation, const Arguments& pArguments);

// The value of that number among the values of the type that runs use.
Value ValueOf(int pType, unsigned pNumber);
// The names that properties get, without the null one.
const std::vector<std::string>& Names();

// "Set page 2 id 5 type 12 value 12:1.5 check 1", for people.
std::string Describe(const Operation& pOperation, const Arguments& pArguments);

}  // namespace lyrmodel
