#pragma once

// Enumeration properties by their texts.
//
//     lyrSetEnumText(lState, "on");
//     const char* lText = lyrGetEnumText(lState);
//     lyrInsertEnumText(lState, 0, "unknown");      every stored index moves along
//
// A value of an enumeration is the index of a text. The texts belong to the description, which all pages share that see
// it; the indices are stored by every page that overrides the value. Changing the list by the handle's functions leaves
// them as they are, so that they come to mean other texts. The functions here change both.
//
// Texts are compared byte by byte. An index that names no text stays as it is whatever happens to the list. Nothing
// here takes memory but for a new text.

#include <string_view>
#include <type_traits>

#include "lyrfilesdk/components/kbaselib/klib/kapi.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "lyrfilesdk/lyrkit/klyrtypedaccess.h"

namespace lyrsdk {

// The index of a text, the first one if it is there twice; -1 when it is not, or the property is no enumeration.
// Linear in the texts.
LYRSDK_API int lyrFindEnumIndex(const KLyrPropertyHandle& pHandle, std::string_view pText);

// The text of the value seen; null when it names none, or the property is no enumeration. It is the description's and
// stays until that text is changed or removed.
LYRSDK_API const char* lyrGetEnumText(const KLyrPropertyHandle& pHandle);

// Sets the value to the index of a text, as lyrSet does. Refused also when there is no such text.
LYRSDK_API ELyrSetResult lyrSetEnumText(const KLyrPropertyHandle& pHandle, std::string_view pText,
                                        ELyrSetMode pMode = eLyrSetCollapse);

// Inserts a text in front of the one at pIndex, or behind the last one, and moves the indices that this page and all
// others of its family store for it. Gives the number of pages whose value was changed; -1, and nothing changes, for a
// property that is no enumeration, an index that is neither, a text that is there already, and for want of memory.
LYRSDK_API int lyrInsertEnumText(const KLyrPropertyHandle& pHandle, int pIndex, const char* pText);

// Removes the text at pIndex and moves the stored indices; those that named it become pReplacement, an index into the
// list as it is then, or any other int. Gives the number of pages as above; -1, and nothing changes, for a property
// that is no enumeration and for an index without a text.
LYRSDK_API int lyrRemoveEnumText(const KLyrPropertyHandle& pHandle, int pIndex, int pReplacement);

namespace detail {

using IndexMap = int (*)(int pIndex, void* pContext);
LYRSDK_API int RemapEnum(const KLyrPropertyHandle& pHandle, IndexMap pMap, void* pContext);

}  // namespace detail

// For a list that was changed otherwise: every index that is stored for this enumeration becomes pMap(index), on each
// page of the family that holds an own value and sees the same description. Gives the number of pages whose value was
// changed; -1, and nothing changes, for a property that is no enumeration. Linear in the pages of the family below the
// one that the property comes from, with two searches on the chain of each.
template <typename Map>
int lyrRemapEnum(const KLyrPropertyHandle& pHandle, Map&& pMap) {
    const auto lCall = [](int pIndex, void* pContext) -> int {
        return (*static_cast<std::remove_reference_t<Map>*>(pContext))(pIndex);
    };
    return detail::RemapEnum(pHandle, lCall, const_cast<void*>(static_cast<const void*>(&pMap)));
}

}  // namespace lyrsdk
