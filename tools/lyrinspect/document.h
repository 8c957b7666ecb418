#pragma once

// The JSON of a scene, parsed and known to be a glTF 2.0 document.
//
// Parsing is safe on any bytes: the nesting is measured without recursion before the document is built, so that later
// walks may recurse.

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "tools/lyrinspect/warnings.h"

namespace lyrsdk::inspect {

using Json = nlohmann::json;

// The deepest nesting of arrays and objects that is accepted.
constexpr int kMaxNesting = 512;

// Parses pText. False, with one line in pError, when it is not UTF-8, not JSON, nested too deep, holds a number that no
// double can hold, or is not a document of glTF 2.
bool ParseDocument(std::string_view pText, Json& pDocument, Warnings& pWarnings, std::string& pError);

// The array pName of pObject, or an empty array when there is none.
const Json& ArrayOf(const Json& pObject, const char* pName);

// The same; a warning when the member is there and is no array. pWhere names the object.
const Json& ArrayOf(const Json& pObject, const char* pName, const std::string& pWhere, Warnings& pWarnings);

// The member pName of pObject, or null when pObject is no object or has no such member.
const Json* MemberOf(const Json& pObject, std::string_view pName);
Json* MemberOf(Json& pObject, std::string_view pName);

// Whether pValue is a whole number that fits an int, which it then gives. 3.0 is a whole number.
bool ToInt(const Json& pValue, int& pResult);

// A whole number of bytes, 0 or more.
bool ToSize(const Json& pValue, std::size_t& pResult);

// "a string", "an object", "3": what pValue is, for a message.
std::string Described(const Json& pValue);

}  // namespace lyrsdk::inspect
