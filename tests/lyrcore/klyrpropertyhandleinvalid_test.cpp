#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <vector>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;

int sgData = 0;

// A page between the page it is an instance of and an instance of its own; all three have the same data pointer.
//
//   top:  0 "root"     page:  1 "child" (double), 2 "typed" with 3 "part"     below: nothing of its own
class PagesInAChain : public HandleTest {
protected:
    PagesInAChain() {
        const H lAdded = AddChild(*mPage, "child", eDOUBLE1);
        AddChild(*mType, "part", eINTEGER1);
        mPage->Add("typed", *mType);
        mPeer->ConnectSrc(lAdded, eLyrConnectionData);
        for (OwnedRoot* lPage : {&mTop, &mPage, &mBelow})
            (*lPage)->SetPageDataPtr(&sgData);
    }

    std::string State() const {
        return DescribePage(*mTop) + DescribePage(*mPage) + DescribePage(*mBelow) + DescribePage(*mPeer);
    }

    OwnedRoot mType{H::Create("type", eENUM)};
    OwnedRoot mPeer{H::Create("peer", eDOUBLE1)};
    OwnedRoot mTop{H::Create("root", eDOUBLE1)};
    OwnedRoot mPage{H::Create(*mTop)};
    OwnedRoot mBelow{H::Create(*mPage)};
};

// --- handles that name no property -----------------------------------------------------------------------------------

std::string Say(bool pValue) {
    return pValue ? "true" : "false";
}
std::string Say(int pValue) {
    return std::to_string(pValue);
}
std::string Say(ELyrType pValue) {
    return "type " + std::to_string(static_cast<int>(pValue));
}
std::string Say(KLyrInheritType pValue) {
    return pValue == eLyrOverride ? "override" : pValue == eLyrInherit ? "inherit" : "deleted";
}
std::string Say(F::eLyrPropertyFlags pValue) {
    return "flags " + std::to_string(static_cast<unsigned>(pValue));
}
std::string Say(const char* pValue) {
    return pValue ? '"' + std::string(pValue) + '"' : "no text";
}
std::string Say(void* pValue) {
    return pValue == &sgData ? "data" : pValue ? "other" : "null";
}

// What an operation gives on a handle without page, on (page, -1), on an unknown id and on an id below -1.
struct Row {
    const char* mName;
    std::function<std::string(H&)> mCall;
    const char* mNoPage;
    const char* mNoId;
    const char* mUnknownId;
    const char* mNegativeId;
};

class PropertyHandleInvalid : public PagesInAChain {
protected:
    std::string SayHandle(const H& pHandle) const {
        const KLyrPropertyPage* lPage = pHandle.GetPage();
        const char* lName = !lPage ? "null" : lPage == mPage->GetPage() ? "page" : "other";
        return std::string(lName) + "," + std::to_string(pHandle.GetId());
    }

    std::vector<Row> ValueRows();
    std::vector<Row> DescriptionRows();
    std::vector<Row> InheritanceRows();
    std::vector<Row> TreeRows();
    std::vector<Row> ConnectionRows();
    std::vector<Row> PageRows();

    void ExpectRow(const Row& pRow, H pHandle, const char* pExpected) {
        SCOPED_TRACE(std::string(pRow.mName) + " on " + SayHandle(pHandle));
        const std::string lState = State();
        const std::size_t lBlocks = MemoryProbe::LiveBlocks();
        H lHandle = pHandle;
        EXPECT_EQ(pRow.mCall(lHandle), pExpected);
        EXPECT_EQ(lHandle, pHandle) << "the handle stays";
        EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks) << "nothing is stored";
        EXPECT_EQ(State(), lState);
    }

    void ExpectRows(const std::vector<Row>& pRows) {
        KLyrPropertyPage* lPage = mPage->GetPage();
        for (const Row& lRow : pRows) {
            for (int lId : {-1, 0, 1, INT_MAX, INT_MIN})
                ExpectRow(lRow, H(nullptr, lId), lRow.mNoPage);
            ExpectRow(lRow, H(lPage, -1), lRow.mNoId);
            for (int lId : {77, INT_MAX})
                ExpectRow(lRow, H(lPage, lId), lRow.mUnknownId);
            for (int lId : {-2, INT_MIN})
                ExpectRow(lRow, H(lPage, lId), lRow.mNegativeId);
        }
    }

    void ExpectAllRows() {
        ExpectRows(ValueRows());
        ExpectRows(DescriptionRows());
        ExpectRows(InheritanceRows());
        ExpectRows(TreeRows());
        ExpectRows(ConnectionRows());
        ExpectRows(PageRows());
    }

    double mValue = 7;
};

// clang-format off
std::vector<Row> PropertyHandleInvalid::ValueRows() {
    return {
        {"Valid on a copy", [](H& h) { return Say(H(h) == h); },                       "true",     "true",     "true",     "true"},
        {"Destroy",         [](H& h) { return Say(h.Destroy()); },                     "false",    "false",    "false",    "false"},
        {"Set checked",     [&](H& h) { return Say(h.Set(&mValue, eDOUBLE1, true)); }, "false",    "false",    "false",    "false"},
        {"Set",             [&](H& h) { return Say(h.Set(&mValue, eDOUBLE1, false)); }, "false",   "false",    "false",    "false"},
        {"Get",             [&](H& h) { return Say(h.Get(&mValue, eDOUBLE1)); },       "false",    "false",    "false",    "false"},
        {"GetDefaultValue", [&](H& h) { return Say(h.GetDefaultValue(&mValue, eDOUBLE1)); }, "false", "false", "false",    "false"},
        {"GetType",         [](H& h) { return Say(h.GetType()); },                     "type 0",   "type 0",   "type 0",   "type 0"},
        {"GetName",         [](H& h) { return Say(h.GetName()); },                     "\"\"",     "\"\"",     "\"\"",     "\"\""},
        {"GetTypeInfo",     [&](H& h) { return SayHandle(h.GetTypeInfo()); },          "null,-1",  "null,0",   "null,0",   "null,0"},
        {"SetParent",       [&](H& h) { return Say(h.SetParent(*mPage)); },            "false",    "false",    "false",    "false"},
        {"Find",            [&](H& h) { return SayHandle(h.Find("child", true)); },    "null,-1",  "page,-1",  "page,-1",  "page,-1"},
        {"Find no case",    [&](H& h) { return SayHandle(h.Find("child", false)); },   "null,-1",  "page,-1",  "page,-1",  "page,-1"},
        {"Find typed",      [&](H& h) { return SayHandle(h.Find("typed", *mType, true)); }, "null,-1", "page,-1", "page,-1", "page,-1"},
        {"Find path",       [&](H& h) { return SayHandle(h.Find("typed|part", "|", true)); }, "null,-1", "page,-1", "page,-1", "page,-1"},
        {"Find typed path", [&](H& h) { return SayHandle(h.Find("typed|part", "|", *mType, true)); }, "null,-1", "page,-1", "page,-1", "page,-1"},
    };
}

std::vector<Row> PropertyHandleInvalid::DescriptionRows() {
    return {
        {"SetMin",          [&](H& h) { return Say(h.SetMin(&mValue, eDOUBLE1)); },     "false",    "false",    "false",    "false"},
        {"SetSoftMin",      [&](H& h) { return Say(h.SetSoftMin(&mValue, eDOUBLE1)); }, "false",    "false",    "false",    "false"},
        {"SetMax",          [&](H& h) { return Say(h.SetMax(&mValue, eDOUBLE1)); },     "false",    "false",    "false",    "false"},
        {"SetSoftMax",      [&](H& h) { return Say(h.SetSoftMax(&mValue, eDOUBLE1)); }, "false",    "false",    "false",    "false"},
        {"GetMin",          [&](H& h) { return Say(h.GetMin(&mValue, eDOUBLE1)); },     "false",    "false",    "false",    "false"},
        {"GetSoftMin",      [&](H& h) { return Say(h.GetSoftMin(&mValue, eDOUBLE1)); }, "false",    "false",    "false",    "false"},
        {"GetMax",          [&](H& h) { return Say(h.GetMax(&mValue, eDOUBLE1)); },     "false",    "false",    "false",    "false"},
        {"GetSoftMax",      [&](H& h) { return Say(h.GetSoftMax(&mValue, eDOUBLE1)); }, "false",    "false",    "false",    "false"},
        {"HasMin",          [](H& h) { return Say(h.HasMin()); },                       "false",    "false",    "false",    "false"},
        {"HasSoftMin",      [](H& h) { return Say(h.HasSoftMin()); },                   "false",    "false",    "false",    "false"},
        {"HasMax",          [](H& h) { return Say(h.HasMax()); },                       "false",    "false",    "false",    "false"},
        {"HasSoftMax",      [](H& h) { return Say(h.HasSoftMax()); },                   "false",    "false",    "false",    "false"},
        {"AddEnumValue",    [](H& h) { return Say(h.AddEnumValue("a")); },              "-1",       "-1",       "-1",       "-1"},
        {"InsertEnumValue", [](H& h) { h.InsertEnumValue(0, "a"); return Say(h.GetEnumCount()); }, "0", "0", "0", "0"},
        {"SetEnumValue",    [](H& h) { h.SetEnumValue(0, "a"); return Say(h.GetEnumCount()); }, "0",    "0",    "0",        "0"},
        {"RemoveEnumValue", [](H& h) { h.RemoveEnumValue(0); return Say(h.GetEnumCount()); }, "0",      "0",    "0",        "0"},
        {"GetEnumValue",    [](H& h) { return Say(h.GetEnumValue(0)); },                "\"\"",     "\"\"",     "\"\"",     "\"\""},
        {"SetLabel",        [](H& h) { return Say(h.SetLabel("a")); },                  "false",    "false",    "false",    "false"},
        {"GetLabel",        [](H& h) { return Say(h.GetLabel()); },                     "\"\"",     "\"\"",     "\"\"",     "\"\""},
        {"SetUserTag",      [](H& h) { return Say(h.SetUserTag(1)); },                  "false",    "false",    "false",    "false"},
        {"GetUserTag",      [](H& h) { return Say(h.GetUserTag()); },                   "0",        "0",        "0",        "0"},
        {"SetUserData",     [](H& h) { return Say(h.SetUserData(&sgData)); },           "false",    "false",    "false",    "false"},
        {"GetUserData",     [](H& h) { return Say(h.GetUserData()); },                  "null",     "null",     "null",     "null"},
    };
}

std::vector<Row> PropertyHandleInvalid::InheritanceRows() {
    return {
        {"GetFlags",                 [](H& h) { return Say(h.GetFlags()); },                      "flags 0",  "flags 0",  "flags 0",  "flags 0"},
        {"ModifyFlags on",           [](H& h) { return Say(h.ModifyFlags(F::eUSER, true)); },     "false",    "false",    "false",    "false"},
        {"ModifyFlags off",          [](H& h) { return Say(h.ModifyFlags(F::eUSER, false)); },    "false",    "false",    "false",    "false"},
        {"GetFlagsInheritType",      [](H& h) { return Say(h.GetFlagsInheritType(F::eUSER, false)); }, "inherit", "inherit", "inherit", "inherit"},
        {"GetFlagsInheritType deep", [](H& h) { return Say(h.GetFlagsInheritType(F::eUSER, true)); },  "inherit", "inherit", "inherit", "inherit"},
        {"SetFlagsInheritType 0",    [](H& h) { return Say(h.SetFlagsInheritType(F::eUSER, eLyrOverride)); }, "false", "false", "false", "false"},
        {"SetFlagsInheritType 1",    [](H& h) { return Say(h.SetFlagsInheritType(F::eUSER, eLyrInherit)); },  "false", "false", "false", "false"},
        {"SetFlagsInheritType 2",    [](H& h) { return Say(h.SetFlagsInheritType(F::eUSER, eLyrDeleted)); },  "false", "false", "false", "false"},
        {"GetValueInheritType",      [](H& h) { return Say(h.GetValueInheritType(false)); },      "override", "inherit",  "inherit",  "inherit"},
        {"GetValueInheritType deep", [](H& h) { return Say(h.GetValueInheritType(true)); },       "override", "inherit",  "inherit",  "inherit"},
        {"SetValueInheritType 0",    [](H& h) { return Say(h.SetValueInheritType(eLyrOverride)); }, "false",  "false",    "false",    "false"},
        // The value is inherited afterwards, as it was before.
        {"SetValueInheritType 1",    [](H& h) { return Say(h.SetValueInheritType(eLyrInherit)); },  "false",  "true",     "true",     "true"},
        {"SetValueInheritType 2",    [](H& h) { return Say(h.SetValueInheritType(eLyrDeleted)); },  "false",  "false",    "false",    "false"},
        {"Push",                     [](H& h) { return Say(h.GetId() != 0 && h.PushPropertiesToParentInstance()); }, "false", "false", "false", "false"},
    };
}

std::vector<Row> PropertyHandleInvalid::TreeRows() {
    return {
        {"GetParent",          [&](H& h) { return SayHandle(h.GetParent()); },          "null,-1",  "page,-1",  "page,-1",  "page,-1"},
        {"GetChild",           [&](H& h) { return SayHandle(h.GetChild()); },           "null,-1",  "page,-1",  "page,-1",  "page,-1"},
        {"GetSibling",         [&](H& h) { return SayHandle(h.GetSibling()); },         "null,-1",  "page,-1",  "page,-1",  "page,-1"},
        // Ids of 0 and below are everyone's ancestor.
        {"GetFirstDescendent", [&](H& h) { return SayHandle(h.GetFirstDescendent()); }, "null,-1",  "page,-1",  "page,-1",  "page,1"},
        {"GetNextDescendent",  [&](H& h) { return SayHandle(h.GetNextDescendent(H(nullptr, 1))); }, "null,-1", "page,2", "page,-1", "page,2"},
        {"GetNextDescendent of none", [&](H& h) { return SayHandle(h.GetNextDescendent(H())); }, "null,-1", "page,-1", "page,-1", "page,-1"},
        {"IsChildOf itself",   [](H& h) { return Say(h.IsChildOf(h)); },                "false",    "true",     "false",    "false"},
        {"IsChildOf none",     [&](H& h) { return Say(h.IsChildOf(H(mPage->GetPage(), -1))); }, "false", "true", "true",    "true"},
        {"IsChildOf root",     [&](H& h) { return Say(h.IsChildOf(*mPage)); },          "false",    "false",    "false",    "false"},
        {"IsChildOf elsewhere", [&](H& h) { return Say(h.IsChildOf(H(mTop->GetPage(), -1))); }, "false", "false", "false",  "false"},
        {"IsDescendentOf itself", [](H& h) { return Say(h.IsDescendentOf(h)); },        "false",    "true",     "false",    "true"},
        {"IsDescendentOf root", [&](H& h) { return Say(h.IsDescendentOf(*mPage)); },    "false",    "true",     "true",     "true"},
        {"IsDescendentOf child", [&](H& h) { return Say(h.IsDescendentOf(H(mPage->GetPage(), 1))); }, "false", "false", "false", "false"},
        {"IsDescendentOf elsewhere", [&](H& h) { return Say(h.IsDescendentOf(*mTop)); }, "false",   "false",    "false",    "false"},
    };
}

std::vector<Row> PropertyHandleInvalid::ConnectionRows() {
    return {
        {"ConnectSrc",     [&](H& h) { return Say(h.ConnectSrc(*mPeer, eLyrConnectionData)); }, "false", "false", "false", "false"},
        {"ConnectDst",     [&](H& h) { return Say(h.ConnectDst(*mPeer, eLyrConnectionData)); }, "false", "false", "false", "false"},
        {"ConnectSrc of it", [&](H& h) { return Say(mPeer->ConnectSrc(h, eLyrConnectionData)); }, "false", "false", "false", "false"},
        {"ConnectDst of it", [&](H& h) { return Say(mPeer->ConnectDst(h, eLyrConnectionData)); }, "false", "false", "false", "false"},
        {"ConnectSrc itself", [](H& h) { return Say(h.ConnectSrc(h, eLyrConnectionData)); },      "false", "false", "false", "false"},
        {"DisconnectSrc",  [&](H& h) { return Say(h.DisconnectSrc(*mPeer)); },          "false",    "false",    "false",    "false"},
        {"DisconnectDst",  [&](H& h) { return Say(h.DisconnectDst(*mPeer)); },          "false",    "false",    "false",    "false"},
        {"DisconnectSrc of it", [&](H& h) { return Say(mPeer->DisconnectSrc(h)); },     "false",    "false",    "false",    "false"},
        {"DisconnectDst of it", [&](H& h) { return Say(mPeer->DisconnectDst(h)); },     "false",    "false",    "false",    "false"},
        {"IsConnectedSrc", [&](H& h) { return Say(h.IsConnectedSrc(*mPeer)); },         "false",    "false",    "false",    "false"},
        {"IsConnectedDst", [&](H& h) { return Say(h.IsConnectedDst(*mPeer)); },         "false",    "false",    "false",    "false"},
        {"IsConnectedSrc of it", [&](H& h) { return Say(mPeer->IsConnectedSrc(h)); },   "false",    "false",    "false",    "false"},
        {"IsConnectedDst of it", [&](H& h) { return Say(mPeer->IsConnectedDst(h)); },   "false",    "false",    "false",    "false"},
        {"GetSrcCount",    [](H& h) { return Say(h.GetSrcCount(nullptr)); },            "0",        "0",        "0",        "0"},
        {"GetDstCount",    [](H& h) { return Say(h.GetDstCount(nullptr)); },            "0",        "0",        "0",        "0"},
        {"GetSrc",         [&](H& h) { return SayHandle(h.GetSrc(nullptr, 0)); },       "null,-1",  "null,-1",  "null,-1",  "null,-1"},
        {"GetDst",         [&](H& h) { return SayHandle(h.GetDst(nullptr, 0)); },       "null,-1",  "null,-1",  "null,-1",  "null,-1"},
        {"WipeAllConnections", [](H& h) { h.WipeAllConnections(); return Say(0); },     "0",        "0",        "0",        "0"},
        {"ClearConnectCache", [](H& h) { h.ClearConnectCache(); return Say(0); },       "0",        "0",        "0",        "0"},
    };
}

// These answer for the page, whatever the id.
std::vector<Row> PropertyHandleInvalid::PageRows() {
    return {
        {"SetPageDataPtr",  [](H& h) { h.SetPageDataPtr(&sgData); return Say(h.GetPageDataPtr()); }, "null", "data", "data", "data"},
        {"GetPageDataPtr",  [](H& h) { return Say(h.GetPageDataPtr()); },               "null",     "data",     "data",     "data"},
        {"IsAReferenceTo",  [](H& h) { return Say(h.IsAReferenceTo()); },               "false",    "true",     "true",     "true"},
        {"GetReferenceTo",  [](H& h) { return Say(h.GetReferenceTo()); },               "null",     "data",     "data",     "data"},
        {"GetReferencedByCount", [](H& h) { return Say(h.GetReferencedByCount()); },    "0",        "1",        "1",        "1"},
        {"GetReferencedBy", [](H& h) { return Say(h.GetReferencedBy(0)); },             "null",     "data",     "data",     "data"},
        {"IsReferencedBy",  [](H& h) { return Say(h.IsReferencedBy()); },               "false",    "true",     "true",     "true"},
    };
}
// clang-format on

TEST_F(PropertyHandleInvalid, GivesItsFixedResultForEveryOperation) {
    ExpectAllRows();
    EXPECT_EQ(mValue, 7) << "no getter wrote anything";
}

TEST_F(PropertyHandleInvalid, GivesTheSameResultsInsideABracket) {
    mPage->BeginCreateOrFindProperty();
    ExpectAllRows();
    mPage->EndCreateOrFindProperty();
}

TEST_F(PropertyHandleInvalid, OpensAndClosesBracketsWithAnyIdAndNoneWithoutPage) {
    for (H lHandle : {H(), H(nullptr, 0)}) {
        const std::size_t lAllocations = MemoryProbe::Allocations();
        lHandle.BeginCreateOrFindProperty();
        lHandle.EndCreateOrFindProperty();
        EXPECT_EQ(MemoryProbe::Allocations(), lAllocations);
    }
    for (int lId : {-1, 77, INT_MIN}) {
        H lHandle(mPage->GetPage(), lId);
        lHandle.BeginCreateOrFindProperty();
        EXPECT_FALSE(mPage->Find("CHILD", false).Valid()) << "open";
        lHandle.EndCreateOrFindProperty();
        EXPECT_TRUE(mPage->Find("CHILD", false).Valid()) << "closed";
    }
}

TEST_F(PropertyHandleInvalid, AddsNothingWithoutPageAndTakesAnyParentWithOne) {
    const std::string lState = State();
    for (int lId : {-1, 0, INT_MAX, INT_MIN}) {
        EXPECT_EQ(H(nullptr, lId).Add("new", *mType), H());
        EXPECT_EQ(H(nullptr, lId).Add("new", eDOUBLE1), H());
    }
    EXPECT_EQ(State(), lState);
    for (int lId : {-1, 77, INT_MAX, -2, INT_MIN}) {
        const H lAdded = H(mPage->GetPage(), lId).Add("new", *mType);
        ASSERT_TRUE(lAdded.Valid());
        EXPECT_EQ(lAdded.GetParent(), H(mPage->GetPage(), lId));
        EXPECT_STREQ(lAdded.GetChild().GetName(), "part");
    }
}

}  // namespace
}  // namespace lyrsdk
