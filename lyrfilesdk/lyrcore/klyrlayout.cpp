#include <cstddef>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"

// The order of the fields, on every target, and their places and sizes on the 32-bit one, where hosts and debuggers
// rely on them. Fields that are not named here are private to the library and come behind the named ones.

namespace lyrsdk {

struct KLyrLayout {
    static constexpr bool k32 = sizeof(void*) == 4;

    static_assert(sizeof(KLyrPropertyFlags) == 4 && offsetof(KLyrPropertyFlags, mFlagData) == 0, "flags");

    static_assert(offsetof(KLyrPropertyValue, mRef) < offsetof(KLyrPropertyValue, mType) &&
                      offsetof(KLyrPropertyValue, mType) < offsetof(KLyrPropertyValue, mValue),
                  "value");
    static_assert(!k32 || sizeof(KLyrPropertyValue) == 12, "value");

    static_assert(offsetof(KLyrPropertyInfo, mRef) < offsetof(KLyrPropertyInfo, mName) &&
                      offsetof(KLyrPropertyInfo, mName) < offsetof(KLyrPropertyInfo, mLabel) &&
                      offsetof(KLyrPropertyInfo, mLabel) < offsetof(KLyrPropertyInfo, mType) &&
                      offsetof(KLyrPropertyInfo, mType) < offsetof(KLyrPropertyInfo, mTypeInfo) &&
                      offsetof(KLyrPropertyInfo, mTypeInfo) < offsetof(KLyrPropertyInfo, mUserTag) &&
                      offsetof(KLyrPropertyInfo, mUserTag) < offsetof(KLyrPropertyInfo, mMinMaxValue) &&
                      offsetof(KLyrPropertyInfo, mMinMaxValue) < offsetof(KLyrPropertyInfo, mUserData) &&
                      offsetof(KLyrPropertyInfo, mUserData) < offsetof(KLyrPropertyInfo, mFilter) &&
                      offsetof(KLyrPropertyInfo, mFilter) < offsetof(KLyrPropertyInfo, mEnumList),
                  "info");
    static_assert(!k32 ||
                      (offsetof(KLyrPropertyInfo, mRef) == 0 && offsetof(KLyrPropertyInfo, mName) == 4 &&
                       offsetof(KLyrPropertyInfo, mLabel) == 8 && offsetof(KLyrPropertyInfo, mType) == 12 &&
                       offsetof(KLyrPropertyInfo, mTypeInfo) == 16 && offsetof(KLyrPropertyInfo, mUserTag) == 20 &&
                       offsetof(KLyrPropertyInfo, mMinMaxValue) == 24 && offsetof(KLyrPropertyInfo, mUserData) == 40 &&
                       offsetof(KLyrPropertyInfo, mFilter) == 44 && offsetof(KLyrPropertyInfo, mEnumList) == 48),
                  "info");

    using KConnectionList = KLyrConnectionPoint::KConnectionList;
    static_assert(offsetof(KConnectionList, mConnectionConnect) < offsetof(KConnectionList, mConnectionType) &&
                      offsetof(KConnectionList, mConnectionType) < offsetof(KConnectionList, mSrcCount) &&
                      offsetof(KConnectionList, mSrcCount) < offsetof(KConnectionList, mDstCount),
                  "connection list");
    static_assert(!k32 || (offsetof(KConnectionList, mConnectionConnect) == 0 &&
                           offsetof(KConnectionList, mConnectionType) == 8 &&
                           offsetof(KConnectionList, mSrcCount) == 16 && offsetof(KConnectionList, mDstCount) == 20),
                  "connection list");

    static_assert(offsetof(KLyrPropertyConnect, mRef) < offsetof(KLyrPropertyConnect, mConnectionPoint) &&
                      offsetof(KLyrPropertyConnect, mConnectionPoint) < offsetof(KLyrPropertyConnect, mPage) &&
                      offsetof(KLyrPropertyConnect, mPage) < offsetof(KLyrPropertyConnect, mId),
                  "connect");

    static_assert(offsetof(KLyrPropertyEntry, mInfo) < offsetof(KLyrPropertyEntry, mValue) &&
                      offsetof(KLyrPropertyEntry, mValue) < offsetof(KLyrPropertyEntry, mConnect) &&
                      offsetof(KLyrPropertyEntry, mConnect) < offsetof(KLyrPropertyEntry, mParentId) &&
                      offsetof(KLyrPropertyEntry, mParentId) < offsetof(KLyrPropertyEntry, mFlags),
                  "entry");
    static_assert(!k32 || offsetof(KLyrPropertyEntry, mFlags) == 16, "entry");

    static_assert(offsetof(KLyrPropertyIdGenerator, mRef) == 0 && offsetof(KLyrPropertyIdGenerator, mNextId) == 4,
                  "id generator");

    static_assert(offsetof(KLyrPropertyPage, mEntries) < offsetof(KLyrPropertyPage, mInstanceOf) &&
                      offsetof(KLyrPropertyPage, mInstanceOf) < offsetof(KLyrPropertyPage, mInstances) &&
                      offsetof(KLyrPropertyPage, mInstances) < offsetof(KLyrPropertyPage, mDataPtr) &&
                      offsetof(KLyrPropertyPage, mDataPtr) < offsetof(KLyrPropertyPage, mCreateOrFind) &&
                      offsetof(KLyrPropertyPage, mCreateOrFind) < offsetof(KLyrPropertyPage, mIdGenerator),
                  "page");
    static_assert(!k32 || (offsetof(KLyrPropertyPage, mEntries) == 0 && offsetof(KLyrPropertyPage, mInstanceOf) == 20 &&
                           offsetof(KLyrPropertyPage, mInstances) == 24 && offsetof(KLyrPropertyPage, mDataPtr) == 32 &&
                           offsetof(KLyrPropertyPage, mCreateOrFind) == 36 &&
                           offsetof(KLyrPropertyPage, mIdGenerator) == 52),
                  "page");
    static_assert(!k32 || sizeof(KLyrPropertyPage::KEntryMap::RecordType) == 24, "record of an entry");
    static_assert(!k32 || sizeof(KLyrPropertyPage::KNameMap::RecordType) == 28, "record of a name");

    static_assert(offsetof(KLyrPropertyHandle, mPage) == 0 && offsetof(KLyrPropertyHandle, mId) == sizeof(void*) &&
                      (!k32 || sizeof(KLyrPropertyHandle) == 8),
                  "handle");
};

}  // namespace lyrsdk
