#pragma once

// Typed access to properties: the type code comes from the C++ type, and no void* is left to get wrong.
//
//     std::optional<double> lPower = lyrGet<double>(lHandle);
//     ELyrSetResult lResult = lyrSet(lHandle, 60.0);                   a value equal to the inherited one inherits
//     ELyrSetResult lResult = lyrSet(lHandle, 60.0, eLyrSetPin);       always an own value
//     lyrVisit(lHandle, [](const auto& pValue) { Show(pValue); });     the value in the property's own type
//
// Values are converted between types as the handle's Get and Set do; lyrConversionVerdict tells beforehand what that
// does to a value. What is read is a copy that the caller owns. A handle that is not valid, an id that does not exist
// and a refused conversion give nullopt and eLyrSetRefused; so does want of memory. A pair of types that is refused
// with a report makes its report here too.
//
// Cost: that of the handle's Get and Set, to a few instructions, and no allocation besides theirs, which are for texts
// and blobs: for those that are read, and for the inherited ones that the collapsing mode compares with. Texts
// given as std::string_view or const char* take no memory on their way up to 255 bytes.
//
// Pitfalls:
//   - std::int8_t and std::uint8_t are numbers, and so is char: a property of type eSTRING given 'x' shows "120".
//   - An enumeration type that names no underlying type is not stored: its type is the compiler's choice.
//   - A read into a 4-vector from a 3-vector leaves the last element 0.

#include <array>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/klyrplugins/klyrconversionmatrix.h"
#include "lyrfilesdk/klyrplugins/klyrtypes.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

namespace lyrsdk {

// What lyrSet does with a value that equals the inherited one.
enum ELyrSetMode : int {
    eLyrSetCollapse = 0,  // the property inherits: an own value is dropped, none is made
    eLyrSetPin = 1,       // it becomes an own value like any other
};

// What lyrSet did.
enum ELyrSetResult : int {
    eLyrSetRefused = 0,    // nothing: the property reads as before, and inherits when it did
    eLyrSetWritten = 1,    // the page holds the value
    eLyrSetCollapsed = 2,  // the page's own value gave way to the inherited one, which is equal
    eLyrSetAlreadySo = 3,  // nothing: the page inherits an equal value
};

// A result in words, such as "inherited again"; "unknown" for what is none. A literal. The other results of the kit
// have overloads.
LYRSDK_API const char* lyrResultText(ELyrSetResult pResult);

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

// Enumerations with int below them are the indices of an enumeration property. Those of this interface are no values:
// they stand where a value was forgotten.
template <typename T>
inline constexpr bool kIsIndex = !std::is_same_v<T, ELyrType> && !std::is_same_v<T, ELyrSetMode>;

template <typename T>
struct StoredType<T, std::enable_if_t<std::is_enum_v<T>>> {
    static constexpr bool kStored = std::is_same_v<std::underlying_type_t<T>, int> && kIsIndex<T>;
    using Type = std::conditional_t<kStored, int, void>;
    static constexpr ELyrType kCode = kStored ? eENUM : eUNIDENTIFIED;
};

}  // namespace detail

// Whether values of type T can be read and written: the stored types of the codes but that of eREFERENCE, the integers
// of <cstdint>, std::array of 2, 3, 4 and 16 (row by row) double, and enumerations with int below them.
template <typename T>
inline constexpr bool kLyrHasTypeCode = detail::StoredType<T>::kCode != eUNIDENTIFIED;

// What a type that no property holds does not get through.
#define LYRSDK_NEEDS_TYPE_CODE(pType) \
    static_assert(kLyrHasTypeCode<pType>, "lyrsdk: no type code stores values of this type")

// The type code that values of type T are read and written with. int is eINTEGER1, an enumeration eENUM. Any other
// type does not compile.
template <typename T>
constexpr ELyrType lyrTypeCodeOf() {
    LYRSDK_NEEDS_TYPE_CODE(T);
    return detail::StoredType<T>::kCode;
}

namespace detail {

// A text on the stack that reads as a KString: laid out like one, with its header and characters in the same object,
// and never destroyed. A text that is too long for it is made on the heap.
class TextArgument {
public:
    static constexpr std::size_t kRoom = 255;

    explicit TextArgument(std::string_view pText) {
        if (pText.size() <= kRoom)
            MakeHere(pText);
        else
            MakeOnHeap(pText);
    }
    ~TextArgument() {
        if (mIsOnHeap)
            mText.~KString();
    }
    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;

    // Null when there was no memory, or an int cannot hold the length.
    const KString* Get() const { return mHolds ? &mText : nullptr; }

private:
    void MakeHere(std::string_view pText) {
        ::new (&mText) KString();
        mHolds = true;
        if (pText.empty())
            return;
        mHere.mHeader = TextHeader{static_cast<int>(pText.size()), static_cast<int>(kRoom)};
        std::memcpy(mHere.mText, pText.data(), pText.size());
        mHere.mText[pText.size()] = '\0';
        const char* lText = mHere.mText;
        std::memcpy(static_cast<void*>(&mText), &lText, sizeof(lText));
    }
    LYRSDK_API void MakeOnHeap(std::string_view pText);

    struct Here {
        TextHeader mHeader;
        char mText[kRoom + 1];
    };
    static_assert(offsetof(Here, mText) == sizeof(TextHeader), "a text stands right behind its header");

    union {
        KString mText;
    };
    Here mHere;
    bool mHolds = false;
    bool mIsOnHeap = false;
};

// Whether T is given as a text: a C text or what turns into a std::string_view.
template <typename T>
inline constexpr bool kIsText =
    std::is_convertible_v<const T&, std::string_view>&& StoredType<T>::kCode == eUNIDENTIFIED;

// Null is the empty text wherever a C text is taken.
template <typename T>
std::string_view TextOf(const T& pText) {
    if constexpr (std::is_convertible_v<const T&, const char*>) {
        const char* lText = pText;
        return lText ? std::string_view(lText) : std::string_view();
    } else {
        return pText;
    }
}

// Whether the memory of a T is that of the value that stands for it.
template <typename T>
inline constexpr bool kReadsAsStored = std::is_same_v<T, typename StoredType<T>::Type> ||
                                       (!std::is_integral_v<T> && !std::is_enum_v<T>);

// Calls pUse(const void*, ELyrType) with pValue as it is stored, and gives its result; pRefused when a text finds no
// memory.
template <typename T, typename Use, typename Result>
Result WithStored(const T& pValue, Result pRefused, Use pUse) {
    if constexpr (kIsText<T>) {
        const TextArgument lText(TextOf(pValue));
        return lText.Get() ? pUse(static_cast<const void*>(lText.Get()), eSTRING) : pRefused;
    } else if constexpr (!kLyrHasTypeCode<T>) {
        LYRSDK_NEEDS_TYPE_CODE(T);
        return pRefused;
    } else if constexpr (kReadsAsStored<T>) {
        static_assert(sizeof(T) == sizeof(typename StoredType<T>::Type), "an array of the vector's elements");
        return pUse(static_cast<const void*>(&pValue), StoredType<T>::kCode);
    } else {
        const auto lStored = static_cast<typename StoredType<T>::Type>(pValue);
        return pUse(static_cast<const void*>(&lStored), StoredType<T>::kCode);
    }
}

}  // namespace detail

// The value seen, converted to T; nullopt when there is none, or the conversion is refused. Texts and blobs are copies.
template <typename T>
std::optional<T> lyrGet(const KLyrPropertyHandle& pHandle) {
    if constexpr (!kLyrHasTypeCode<T>) {
        LYRSDK_NEEDS_TYPE_CODE(T);
        return std::nullopt;
    } else if constexpr (detail::kReadsAsStored<T>) {
        std::optional<T> lValue(std::in_place);
        if (!pHandle.Get(&*lValue, lyrTypeCodeOf<T>()))
            lValue.reset();
        return lValue;
    } else {
        typename detail::StoredType<T>::Type lStored{};
        if (!pHandle.Get(&lStored, lyrTypeCodeOf<T>()))
            return std::nullopt;
        return static_cast<T>(lStored);
    }
}

// Gives the page of pHandle the value at pValue, which is of the given code, or leaves it to inheritance, as pMode
// says. Unlike the handle's Set, a refused conversion leaves no own copy behind, and the result tells an equal
// inherited value from a refusal. Refused: a handle that is not valid, an id that does not exist, a null pointer, a
// type code or a mode that is none, a refused conversion, no memory.
LYRSDK_API ELyrSetResult lyrSet(const KLyrPropertyHandle& pHandle, const void* pValue, ELyrType pValueType,
                                ELyrSetMode pMode = eLyrSetCollapse);

// The same for a value of a type that has a code, and for texts: std::string_view and what turns into one, const char*
// (null is the empty text), literals.
template <typename T>
ELyrSetResult lyrSet(const KLyrPropertyHandle& pHandle, const T& pValue, ELyrSetMode pMode = eLyrSetCollapse) {
    return detail::WithStored(pValue, eLyrSetRefused, [&pHandle, pMode](const void* pStored, ELyrType pType) {
        return lyrSet(pHandle, pStored, pType, pMode);
    });
}

namespace detail {

template <typename T, typename Visitor>
bool VisitAs(const KLyrPropertyHandle& pHandle, ELyrType pType, Visitor& pVisitor) {
    T lValue{};
    if (!pHandle.Get(&lValue, pType))
        return false;
    if constexpr (std::is_invocable_v<Visitor&, const T&, ELyrType>)
        pVisitor(static_cast<const T&>(lValue), pType);
    else
        pVisitor(static_cast<const T&>(lValue));
    return true;
}

}  // namespace detail

// Calls pVisitor(const T&) with the value seen, T being the stored type of the property's type; an enumeration's is the
// int that is its index. A visitor that takes an ELyrType behind it gets the property's type as well. False, and no
// call, when there is no value or it cannot be read. The value is gone behind the call.
template <typename Visitor>
bool lyrVisit(const KLyrPropertyHandle& pHandle, Visitor&& pVisitor) {
    const ELyrType lType = pHandle.GetType();
    switch (lType) {
#define LYRSDK_NO_ROW(pNumber, pName, pType, pSize)
#define LYRSDK_ROW(pNumber, pName, pType, pSize) \
    case pName:                                  \
        return detail::VisitAs<pType>(pHandle, lType, pVisitor);
        LYRSDK_TYPE_LIST(LYRSDK_NO_ROW, LYRSDK_NO_ROW, LYRSDK_ROW)
#undef LYRSDK_ROW
#undef LYRSDK_NO_ROW
        case eUNIDENTIFIED:
        case eREFERENCE:
        case eMAX_TYPES:
        default:
            return false;
    }
}

}  // namespace lyrsdk
