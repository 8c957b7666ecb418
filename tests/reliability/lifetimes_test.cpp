#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lyrfilesdk/klyrplugins/klyrblob.h"
#include "lyrfilesdk/klyrplugins/klyrsymbol.h"
#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/connection_filters.h"
#include "tests/support/handle_pages.h"
#include "tests/support/memory_probe.h"

// Operations that are done and undone without end: the memory in use stays below a bound at all times, and every test
// ends with as much as it began with. With LYRSDK_FULL=1 in the environment each runs ten million times.

namespace lyrsdk {
namespace {

using H = KLyrPropertyHandle;
using F = LyrPropertyFlags;
using Record = KLyrPropertyPage::KEntryMap::RecordType;

class Lifetimes : public HandleTest {
protected:
    static int Rounds() {
        const char* lFull = std::getenv("LYRSDK_FULL");
        return lFull && std::strcmp(lFull, "1") == 0 ? 10000000 : 100000;
    }
};

// A record of the map in a page's index: a key of eight bytes, what it holds, and its links.
constexpr std::size_t kIndexRecordBytes = 9 * sizeof(void*) + 8;

// The most that a page keeps for its map of entries when it never has more than pLive at a time: room for twice as many
// and 32 more, an eighth of that again since the pool grows by eighths, two records for blocks that serve one less than
// they hold, and all of it twice while the living ones move; behind that what describes the blocks. The same for its
// index, with two tables of up to four slots an entry, and two walks of two ids while the larger ones are made.
constexpr std::size_t MapBytes(std::size_t pLive) {
    return 2 * ((2 * pLive + 32) * 9 / 8 + 2) * (sizeof(Record) + kIndexRecordBytes) +
           200 * sizeof(KHungryAllocator::MemoryBlock) + (8 * pLive + 128) * sizeof(void*) + 4 * pLive * sizeof(int) +
           1000;
}

// An entry with what it holds, as long as the values are small.
constexpr std::size_t kEntryBytes = 500;

// Runs pRound(0), pRound(1), ... and expects that it never needs more than pBound bytes beyond what was in use before.
template <typename Round>
void ExpectBounded(std::size_t pBound, int pRounds, Round pRound) {
    const std::size_t lBefore = MemoryProbe::LiveBytes();
    MemoryProbe::ResetPeak();
    for (int i = 0; i < pRounds; ++i)
        pRound(i);
    EXPECT_LE(MemoryProbe::PeakBytes() - lBefore, pBound);
}

// The same for a round that keeps nothing at all: once warm, the memory in use is the same after it.
template <typename Round>
void ExpectNothingKept(std::size_t pBound, int pRounds, Round pRound) {
    pRound(0);
    pRound(1);
    const std::size_t lBytes = MemoryProbe::LiveBytes();
    const std::size_t lBlocks = MemoryProbe::LiveBlocks();
    ExpectBounded(pBound, pRounds, pRound);
    pRound(0);
    pRound(1);
    EXPECT_EQ(MemoryProbe::LiveBytes(), lBytes);
    EXPECT_EQ(MemoryProbe::LiveBlocks(), lBlocks);
}

// A text that differs from round to round, of 12 to 75 characters.
class TextOfRound {
public:
    explicit TextOfRound(int pRound) {
        std::snprintf(mText, sizeof(mText), "text%08d%.*s", pRound, pRound % 64,
                      "----------------------------------------------------------------");
    }
    const char* Get() const { return mText; }

private:
    char mText[80];
};

constexpr std::size_t kTextBytes = 300;

// --- entries that come and go ----------------------------------------------------------------------------------------

// A page, and an instance of it that holds nothing at first.
class EntriesThatComeAndGo : public Lifetimes {
protected:
    KLyrPropertyPage* Instance() const { return mInstance->GetPage(); }

    OwnedRoot mPage{H::Create("root", eDOUBLE1)};
    OwnedRoot mInstance{H::Create(*mPage)};
};

TEST_F(EntriesThatComeAndGo, ByTheStateOfTheirValue) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        mInstance->SetValueInheritType(eLyrOverride);
        mInstance->SetValueInheritType(eLyrInherit);
    });
    EXPECT_EQ(mInstance->GetValueInheritType(false), eLyrInherit);
}

TEST_F(EntriesThatComeAndGo, ByValuesThatEqualWhatIsInherited) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        SetDouble(*mInstance, 1, true);
        SetDouble(*mInstance, 0, true);
    });
    EXPECT_EQ(mInstance->GetValueInheritType(false), eLyrInherit);
}

TEST_F(EntriesThatComeAndGo, ByTheStateOfTheirFlags) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        mInstance->SetFlagsInheritType(F::eHIDDEN, eLyrOverride);
        mInstance->SetFlagsInheritType(F::eHIDDEN, eLyrInherit);
    });
    EXPECT_EQ(mInstance->GetFlagsInheritType(F::eHIDDEN, false), eLyrInherit);
}

TEST_F(EntriesThatComeAndGo, ByFlagsThatEqualWhatIsInherited) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        mInstance->ModifyFlags(F::eHIDDEN, true);
        mInstance->ModifyFlags(F::eHIDDEN, false);
    });
    EXPECT_EQ(mInstance->GetFlagsInheritType(F::eHIDDEN, false), eLyrInherit);
}

TEST_F(EntriesThatComeAndGo, ByTheStateOfTheirDescription) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        Instance()->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, 0, eLyrOverride);
        Instance()->ChangePropertyItemState<KLyrPropertyInfo>(nullptr, 0, eLyrInherit);
    });
    EXPECT_EQ(Instance()->GetPropertyEntry(0), mPage->GetPage()->GetPropertyEntry(0));
}

TEST_F(EntriesThatComeAndGo, ByTheirOwnState) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int) {
        Instance()->ChangePropertyEntryState(0, eLyrOverride);
        Instance()->ChangePropertyEntryState(0, eLyrInherit);
    });
    EXPECT_EQ(Instance()->GetPropertyEntry(0), mPage->GetPage()->GetPropertyEntry(0));
}

TEST_F(EntriesThatComeAndGo, ByBeingTakenOut) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int pRound) {
        SetDouble(*mInstance, pRound);
        Instance()->RemoveOwnEntry(0);
    });
    EXPECT_EQ(DoubleOf(*mInstance), 0);
}

TEST_F(EntriesThatComeAndGo, ByBeingPushedToTheParent) {
    ExpectBounded(MapBytes(1) + kEntryBytes, Rounds(), [&](int pRound) {
        SetDouble(*mInstance, pRound);
        mInstance->PushPropertiesToParentInstance();
    });
    EXPECT_EQ(DoubleOf(*mPage), Rounds() - 1);
}

TEST_F(EntriesThatComeAndGo, WithTheirProperties) {
    ExpectBounded(MapBytes(2) + kEntryBytes + kTextBytes, Rounds(), [&](int pRound) {
        H lAdded = AddChild(*mPage, TextOfRound(pRound).Get(), eDOUBLE1);
        lAdded.Destroy();
    });
    EXPECT_FALSE(mPage->GetChild().Valid());
}

// Among many that stay, which must all be found again wherever they have moved.
TEST_F(EntriesThatComeAndGo, AmongManyThatStay) {
    std::vector<H> lStay;
    for (int i = 0; i < 1000; ++i) {
        lStay.push_back(On(*mInstance, AddChild(*mPage, "stays", eDOUBLE1)));
        SetDouble(lStay.back(), i);
    }
    ExpectBounded(MapBytes(1001) + kEntryBytes, Rounds(), [&](int) {
        mInstance->SetValueInheritType(eLyrOverride);
        mInstance->SetValueInheritType(eLyrInherit);
    });
    H lChild = mInstance->GetChild();
    for (int i = 0; i < 1000; ++i) {
        const H& lThis = lStay[static_cast<std::size_t>(i)];
        EXPECT_EQ(DoubleOf(lThis), i);
        EXPECT_EQ(lThis.GetValueInheritType(false), eLyrOverride);
        EXPECT_EQ(lChild, lThis);
        lChild = lChild.GetSibling();
    }
}

// Among fewer than there were once, but enough to be told apart by the index.
TEST_F(EntriesThatComeAndGo, AmongAFewThatStay) {
    std::vector<H> lProperties;
    for (int i = 0; i < 40; ++i) {
        lProperties.push_back(On(*mInstance, AddChild(*mPage, "stays", eDOUBLE1)));
        SetDouble(lProperties.back(), i);
    }
    for (std::size_t i = 20; i < 40; ++i)
        lProperties[i].SetValueInheritType(eLyrInherit);
    ExpectBounded(MapBytes(21) + kEntryBytes, Rounds(), [&](int pRound) {
        H& lProperty = lProperties[static_cast<std::size_t>(20 + pRound % 20)];
        lProperty.SetValueInheritType(eLyrOverride);
        lProperty.SetValueInheritType(eLyrInherit);
    });
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(DoubleOf(lProperties[static_cast<std::size_t>(i)]), i < 20 ? i : 0);
}

// A window of a hundred that moves over a thousand properties: the order of the living ones changes all the time.
TEST_F(EntriesThatComeAndGo, InAWindowThatMoves) {
    std::vector<H> lProperties;
    for (int i = 0; i < 1000; ++i)
        lProperties.push_back(On(*mInstance, AddChild(*mPage, "", eDOUBLE1)));
    const auto lAt = [&](int pRound) -> H& { return lProperties[static_cast<std::size_t>(pRound * 7LL % 1000)]; };
    ExpectBounded(MapBytes(101) + 101 * kEntryBytes, Rounds(), [&](int pRound) {
        SetDouble(lAt(pRound), pRound);
        if (pRound >= 100)
            lAt(pRound - 100).SetValueInheritType(eLyrInherit);
    });
    for (int lRound = Rounds() - 100; lRound < Rounds(); ++lRound)
        EXPECT_EQ(DoubleOf(lAt(lRound)), lRound);
    for (int lRound = Rounds() - 1000; lRound < Rounds() - 100; ++lRound)
        EXPECT_EQ(DoubleOf(lAt(lRound)), 0);
}

// Tides of a thousand entries: what a high tide took is used again by the next.
TEST_F(EntriesThatComeAndGo, InTides) {
    std::vector<H> lProperties;
    for (int i = 0; i < 1000; ++i)
        lProperties.push_back(On(*mInstance, AddChild(*mPage, "", eDOUBLE1)));
    ExpectBounded(MapBytes(1000) + 1000 * kEntryBytes, Rounds() / 1000, [&](int) {
        for (H& lProperty : lProperties)
            lProperty.SetValueInheritType(eLyrOverride);
        for (H& lProperty : lProperties)
            lProperty.SetValueInheritType(eLyrInherit);
    });
}

// One request in eight is refused, so that every request of a toggle is at some time, those of the move among them. A
// map that cannot move grows instead, and moves later.
TEST_F(EntriesThatComeAndGo, WhileMemoryIsRefusedNowAndThen) {
    H lStays = On(*mInstance, AddChild(*mPage, "stays", eDOUBLE1));
    SetDouble(lStays, 5);
    SetDouble(*mPage, 7);
    int lRefused = 0;
    ExpectBounded(4 * MapBytes(2) + kEntryBytes, Rounds() / 10, [&](int pRound) {
        bool lDone;
        {
            const FailAllocations lFail(static_cast<std::size_t>(pRound % 8), pRound % 16 < 8);
            lDone = mInstance->SetValueInheritType(eLyrOverride);
            lRefused += lDone ? 0 : 1;
            EXPECT_TRUE(lDone || lFail.Failed() > 0);
        }
        EXPECT_EQ(DoubleOf(*mInstance), 7);
        EXPECT_EQ(DoubleOf(lStays), 5);
        EXPECT_TRUE(mInstance->SetValueInheritType(eLyrInherit)) << "nothing is asked for";
        EXPECT_EQ(mInstance->GetSibling(), H(Instance(), -1));
        EXPECT_EQ(mInstance->GetChild(), lStays);
    });
    EXPECT_GT(lRefused, 0);
}

// The move is refused whenever it is due: of what a new entry asks for, it comes second and third. The map grows then.
// Where it has to grow anyway, that is what is refused, and granted at the second attempt.
TEST_F(EntriesThatComeAndGo, WhenTheMoveFindsNoMemory) {
    std::vector<H> lStay;
    for (int i = 0; i < 200; ++i) {
        lStay.push_back(On(*mInstance, AddChild(*mPage, "stays", eDOUBLE1)));
        SetDouble(lStay.back(), i);
    }
    const auto lAllStay = [&] {
        for (std::size_t i = 0; i < lStay.size(); ++i)
            ASSERT_EQ(DoubleOf(lStay[i]), static_cast<double>(i));
    };
    int lMovesRefused = 0;
    for (int i = 0; i < 1000; ++i) {
        bool lDone;
        {
            const FailAllocations lFail(1 + static_cast<std::size_t>(i % 2), false);
            lDone = Instance()->ChangePropertyEntryState(0, eLyrOverride) != nullptr;
            lMovesRefused += lDone && lFail.Failed() > 0 ? 1 : 0;
        }
        EXPECT_TRUE(lDone || Instance()->ChangePropertyEntryState(0, eLyrOverride));
        EXPECT_TRUE(Instance()->RemoveOwnEntry(0));
        lAllStay();
    }
    EXPECT_GT(lMovesRefused, 2) << "entries that were made all the same";
    const std::size_t lGrown = MemoryProbe::LiveBytes();
    for (int i = 0; i < 1000; ++i) {
        EXPECT_NE(Instance()->ChangePropertyEntryState(0, eLyrOverride), nullptr);
        EXPECT_TRUE(Instance()->RemoveOwnEntry(0));
    }
    EXPECT_LT(MemoryProbe::LiveBytes() + 500 * sizeof(Record), lGrown) << "with memory it moves";
    lAllStay();
}

// --- descriptions and values that are rewritten ----------------------------------------------------------------------

class ThingsThatAreRewritten : public Lifetimes {
protected:
    OwnedRoot mPage{H::Create("root", eENUM)};
    H mText = AddChild(*mPage, "text", eSTRING);
};

TEST_F(ThingsThatAreRewritten, Labels) {
    ExpectNothingKept(kTextBytes, Rounds(), [&](int pRound) { mText.SetLabel(TextOfRound(pRound % 9999).Get()); });
    mText.SetLabel("");
}

TEST_F(ThingsThatAreRewritten, LabelsThatAreNeverTheSame) {
    ExpectBounded(kTextBytes, Rounds(), [&](int pRound) { mText.SetLabel(TextOfRound(pRound).Get()); });
    EXPECT_STREQ(mText.GetLabel(), TextOfRound(Rounds() - 1).Get());
}

TEST_F(ThingsThatAreRewritten, EnumerationTextsAtBothEnds) {
    for (int i = 0; i < 5; ++i)
        mPage->AddEnumValue(TextOfRound(i).Get());
    ExpectBounded(20 * kTextBytes, Rounds(), [&](int pRound) {
        const TextOfRound lText(1000 + pRound);
        mPage->InsertEnumValue(pRound % 2 ? 0 : 5, lText.Get());
        mPage->SetEnumValue(2, lText.Get());
        mPage->RemoveEnumValue(pRound % 2 ? 5 : 0);
    });
    EXPECT_EQ(mPage->GetEnumCount(), 5);
}

TEST_F(ThingsThatAreRewritten, EnumerationsFromEmptyToFull) {
    ExpectNothingKept(40 * kTextBytes, Rounds() / 20, [&](int pRound) {
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(mPage->AddEnumValue(TextOfRound(pRound + i).Get()), i);
        while (mPage->GetEnumCount() > 0)
            mPage->RemoveEnumValue(mPage->GetEnumCount() / 2);
    });
}

TEST_F(ThingsThatAreRewritten, BoundsAndValuesOfTexts) {
    ExpectBounded(6 * kTextBytes, Rounds(), [&](int pRound) {
        const KString lText(TextOfRound(pRound).Get());
        mText.SetMin(&lText, eSTRING);
        mText.SetSoftMin(&pRound, eINTEGER1);
        mText.SetMax(&lText, eSTRING);
        mText.SetSoftMax(&lText, eSTRING);
        mText.Set(&lText, eSTRING, pRound % 2 == 0);
    });
    EXPECT_STREQ(TextOf(mText).c_str(), TextOfRound(Rounds() - 1).Get());
}

TEST_F(ThingsThatAreRewritten, Blobs) {
    H lBlob = AddChild(*mPage, "blob", eBLOB);
    const std::string lBytes(5000, 'b');
    ExpectBounded(4 * lBytes.size(), Rounds(), [&](int pRound) {
        lyrBlob lValue;
        lValue.Assign(lBytes.data(), pRound % 64 == 0 ? 5000 : pRound % 64);
        lBlob.Set(&lValue, eBLOB, false);
    });
}

TEST_F(ThingsThatAreRewritten, NamesThatAreInternedAndForgotten) {
    const KLyrStringSymbol lStays("stays");
    ExpectBounded(200 * kTextBytes, Rounds(), [&](int pRound) {
        // A hundred at a time, so that texts go in another order than they came.
        static KLyrStringSymbol sNames[100];
        sNames[static_cast<std::size_t>(pRound * 37LL % 100)] = TextOfRound(pRound).Get();
        if (pRound == Rounds() - 1)
            for (KLyrStringSymbol& lName : sNames)
                lName = "";
    });
    EXPECT_EQ(KLyrStringSymbol::FindText("stays"), static_cast<const char*>(lStays));
    EXPECT_EQ(KLyrStringSymbol::FindText(TextOfRound(Rounds() - 1).Get()), nullptr);
}

// --- pages, connections and brackets ---------------------------------------------------------------------------------

class ThingsThatAreMadeAndUnmade : public Lifetimes {
protected:
    OwnedRoot mPage{H::Create("root", eDOUBLE1)};
    OwnedRoot mPeer{H::Create("peer", eDOUBLE1)};
};

TEST_F(ThingsThatAreMadeAndUnmade, Connections) {
    TypeFilter lFilter(eLyrConnectionData);
    ExpectNothingKept(4000, Rounds(), [&](int pRound) {
        mPage->ConnectSrc(*mPeer, pRound % 2 ? eLyrConnectionData : eLyrConnectionSystem);
        mPeer->ConnectSrc(*mPage, eLyrConnectionData);
        mPage->GetSrcCount(&lFilter);
        if (pRound % 3 == 0) {
            mPage->WipeAllConnections();
        } else {
            mPeer->DisconnectSrc(*mPage);
            mPeer->DisconnectDst(*mPage);
        }
    });
    EXPECT_EQ(mPage->GetSrcCount(nullptr), 0);
    EXPECT_EQ(mPeer->GetSrcCount(nullptr), 0);
}

TEST_F(ThingsThatAreMadeAndUnmade, ConnectionsOfInstancesWithTheirEntries) {
    OwnedRoot lInstance(H::Create(*mPage));
    ExpectBounded(MapBytes(1) + 8 * kEntryBytes, Rounds(), [&](int) {
        lInstance->ConnectSrc(*mPeer, eLyrConnectionDefault);
        lInstance->GetPage()->RemoveOwnEntry(0);
    });
    EXPECT_EQ(mPeer->GetDstCount(nullptr), 0);
}

TEST_F(ThingsThatAreMadeAndUnmade, Brackets) {
    for (int i = 0; i < 10; ++i)
        AddChild(*mPage, TextOfRound(i).Get(), eDOUBLE1);
    ExpectNothingKept(5000, Rounds() / 10, [&](int pRound) {
        mPage->BeginCreateOrFindProperty();
        EXPECT_TRUE(mPage->Find(TextOfRound(pRound % 10).Get(), true).Valid());
        mPage->EndCreateOrFindProperty();
    });
}

TEST_F(ThingsThatAreMadeAndUnmade, PropertiesWithinABracket) {
    ExpectBounded(20 * (kEntryBytes + kTextBytes) + MapBytes(12), Rounds() / 10, [&](int pRound) {
        mPage->BeginCreateOrFindProperty();
        H lAdded[10];
        for (int i = 0; i < 10; ++i)
            lAdded[i] = AddChild(*mPage, TextOfRound(10 * pRound + i).Get(), eDOUBLE1);
        for (H& lOne : lAdded)
            lOne.Destroy();
        mPage->EndCreateOrFindProperty();
    });
    EXPECT_FALSE(mPage->GetChild().Valid());
}

TEST_F(ThingsThatAreMadeAndUnmade, Instances) {
    ExpectNothingKept(10 * kEntryBytes, Rounds(), [&](int pRound) {
        H lInstance = H::Create(*mPage);
        SetDouble(lInstance, pRound);
        lInstance.Destroy();
    });
    EXPECT_FALSE(mPage->IsReferencedBy());
}

TEST_F(ThingsThatAreMadeAndUnmade, FamiliesWhoseRootGoesFirst) {
    ExpectNothingKept(20 * kEntryBytes, Rounds() / 4, [&](int pRound) {
        H lRoot = H::Create(TextOfRound(pRound).Get(), *mPage);
        H lInstances[] = {H::Create(lRoot), H::Create(lRoot)};
        lRoot.ConnectSrc(lInstances[0]);
        lInstances[1].ConnectSrc(*mPeer);
        lRoot.Destroy();
        lInstances[0].Destroy();
        lInstances[1].Destroy();
    });
    EXPECT_EQ(mPeer->GetDstCount(nullptr), 0);
}

}  // namespace
}  // namespace lyrsdk
