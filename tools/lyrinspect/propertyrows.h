#pragma once

// The properties of every kind of object and of every compound type, as tables.
//
// What glTF 2.0 says about a property stands in its row: name, type, default, minimum, maximum, enumeration. Values are
// texts, so that a row reads like the table it was taken from; the tests parse every one.

#include "lyrfilesdk/lyrcore/klyrpropertydef.h"
#include "tools/lyrinspect/kinds.h"

namespace lyrsdk::inspect {

struct PropertyRow {
    // The names from the root down, separated by '/'. A parent's row stands in front of its children's.
    const char* path;
    // What a user interface shows.
    const char* label;
    // The name of a type page: a plain type ("double3") or a compound one ("Transform").
    const char* type;
    // The value where the file states none; "" is the zero or empty value. Numbers are separated by commas.
    const char* value;
    // "min..max", either side may be empty; the second pair is what a slider would offer. A bound that the value must
    // not reach is ">min" or "<max": the property has it as its limit, the reader warns when the value is on it.
    const char* limits;
    const char* softLimits;
    // enum: the values, separated by '|', each with the number that stands for it in the file where it is not a text.
    // reference: the kind that an index in the file points at, with a '*' behind it when the file has an array of them.
    // group: empty when rows name the members. When the file does it is "*{" for an object and "*[" for an array, and
    // behind that what the elements of an array are: "double", "string", or "{" for objects.
    const char* choices;
    LyrPropertyFlags::eLyrPropertyFlags flags;
    // Not read from the member of that name: computed by the inspector, or stated elsewhere in the file.
    bool derived;
};

struct PropertyTable {
    const PropertyRow* rows;
    std::size_t count;
};

// The rows of an object kind.
PropertyTable RowsOfKind(ObjectKind pKind);

struct CompoundType {
    const char* name;
    // The compound type that this one extends, or null. It stands in front of this one.
    const char* base;
    PropertyTable table;
};

// The compound types: pTypes[0] to pTypes[count - 1]. A type stands behind those that its rows use.
struct CompoundTypes {
    const CompoundType* types;
    std::size_t count;
};
CompoundTypes AllCompoundTypes();

}  // namespace lyrsdk::inspect
