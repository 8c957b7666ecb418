#pragma once

// Typed access to properties: the type code comes from the C++ type.

#include <array>
#include <type_traits>

#include "lyrfilesdk/klyrplugins/klyrconversionmatrix.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"

namespace lyrsdk {
namespace detail {

// The type that values of T are stored as: T itself where a code stores it, void where none does.
template <typename T, typename Enable = void>
struct StoredType {
    using Type = std::conditional_t<TypeCodeOf<T>() != eUNIDENTIFIED, T, void>;
    static constexpr ELyrType kCode = TypeCodeOf<T>();
};

template <typename T, ELyrType pCode = TypeCodeOf<T>()>
struct StoredInstead {
    using Type = T;
    static constexpr ELyrType kCode = pCode;
};

// Integers that no code stores under their own name go by their width, so that the types of <cstdint> work everywhere.
template <>
struct StoredType<signed char> : StoredInstead<char> {};
template <>
struct StoredType<long> : StoredInstead<std::conditional_t<sizeof(long) == sizeof(int), int, long long>> {};
template <>
struct StoredType<unsigned long>
    : StoredInstead<std::conditional_t<sizeof(long) == sizeof(int), unsigned int, unsigned long long>> {};

template <>
struct StoredType<std::array<double, 2>> : StoredInstead<lyrDouble2> {};
template <>
struct StoredType<std::array<double, 3>> : StoredInstead<lyrDouble3> {};
template <>
struct StoredType<std::array<double, 4>> : StoredInstead<lyrDouble4> {};
template <>
struct StoredType<std::array<double, 16>> : StoredInstead<lyrDouble44> {};

// Enumerations with int below them are the indices of an enumeration property.
template <typename T>
struct StoredType<T, std::enable_if_t<std::is_enum_v<T>>>
    : StoredInstead<std::conditional_t<std::is_same_v<std::underlying_type_t<T>, int>, int, void>,
                    std::is_same_v<std::underlying_type_t<T>, int> ? eENUM : eUNIDENTIFIED> {};

}  // namespace detail

// Whether values of type T can be read and written: the stored types of the codes but that of eREFERENCE, the integers
// of <cstdint>, std::array of 2, 3, 4 and 16 (row by row) double, and enumerations with int below them.
template <typename T>
inline constexpr bool kLyrHasTypeCode = detail::StoredType<T>::kCode != eUNIDENTIFIED;

// The type code that values of type T are read and written with. int is eINTEGER1, an enumeration eENUM. Any other
// type does not compile.
template <typename T>
constexpr ELyrType lyrTypeCodeOf() {
    static_assert(kLyrHasTypeCode<T>, "lyrsdk: no type code stores values of this type");
    return detail::StoredType<T>::kCode;
}

}  // namespace lyrsdk
