// The main operations, each a fixed number of times, for callgrind to count their instructions. Nothing here depends on
// the machine, the clock or chance. Under callgrind every operation becomes a dump of its own, with its name.

#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "benchmarks/support/random.h"
#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

constexpr int kTimes = 1000;

void Require(bool pDone, const char* pName) {
    if (pDone)
        return;
    std::fprintf(stderr, "An operation did not do its work: %s\n", pName);
    std::exit(1);
}

// Counts the work, which gives true when it was done.
template <typename Work>
void Count(const char* pName, Work pWork) {
    CALLGRIND_TOGGLE_COLLECT;
    const bool lDone = pWork();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(pName);
    Require(lDone, pName);
}

// Counts a step that is done kTimes, with its number.
template <typename Step>
void CountSteps(const char* pName, Step pStep) {
    Count(pName, [&] {
        bool lDone = true;
        for (int i = 0; i < kTimes; ++i)
            lDone = pStep(i) && lDone;
        return lDone;
    });
}

std::vector<std::string> Names(const char* pWord, int pCount) {
    std::vector<std::string> lNames;
    for (int i = 0; i < pCount; ++i)
        lNames.push_back(pWord + std::to_string(i));
    return lNames;
}

void CountMaps() {
    using Map = KMap<int, void*, KLyrLessCompare<int>, KHungryAllocator>;
    const std::vector<int> lKeys = ShuffledIds(kTimes, 1);
    const std::vector<int> lOthers = ShuffledIds(kTimes, 2);
    const auto lKey = [](const std::vector<int>& pKeys, int pIndex) { return pKeys[static_cast<std::size_t>(pIndex)]; };
    {
        Map lMap;
        CountSteps("map insert ascending", [&](int i) { return lMap.Insert(i, nullptr).mSecond; });
        Count("map clear", [&] {
            lMap.Clear();
            return lMap.GetSize() == 0;
        });
    }
    Map lMap;
    CountSteps("map insert random", [&](int i) { return lMap.Insert(lKey(lKeys, i), nullptr).mSecond; });
    CountSteps("map find random", [&](int i) { return lMap.Find(lKey(lOthers, i)) != nullptr; });
    Count("map walk", [&] {
        int lCount = 0;
        for (Map::IteratorType lPlace = lMap.Begin(); lPlace != lMap.End(); ++lPlace)
            ++lCount;
        return lCount == kTimes;
    });
    CountSteps("map remove random", [&](int i) { return lMap.Remove(lKey(lOthers, i)) == 1; });
}

void CountValues() {
    KLyrPropertyHandle lRoot = KLyrPropertyHandle::Create("object", eUNIDENTIFIED);
    const std::vector<std::string> lNames = Names("value", 64);
    std::vector<KLyrPropertyHandle> lDoubles;
    for (const std::string& lName : lNames)
        lDoubles.push_back(lRoot.Add(lName.c_str(), eDOUBLE1));
    const auto lAt = [&](int pStep) -> KLyrPropertyHandle& { return lDoubles[static_cast<std::size_t>(pStep) % 64]; };
    CountSteps("set double", [&](int i) {
        const double lValue = i + 0.25;
        return lAt(i).Set(&lValue, eDOUBLE1, false);
    });
    CountSteps("set double, checked", [&](int i) {
        const double lValue = i + 0.75;
        return lAt(i).Set(&lValue, eDOUBLE1, true);
    });
    CountSteps("get double", [&](int i) {
        double lValue = 0;
        return lAt(i).Get(&lValue, eDOUBLE1) && lValue > 0;
    });
    CountSteps("get double as int", [&](int i) {
        int lValue = -1;
        return lAt(i).Get(&lValue, eINTEGER1) && lValue >= 0;
    });
    CountSteps("set double, typed", [&](int i) { return lyrSet(lAt(i), i + 0.25, eLyrSetPin) == eLyrSetWritten; });
    CountSteps("set double, checked, typed", [&](int i) { return lyrSet(lAt(i), i + 0.75) == eLyrSetWritten; });
    CountSteps("get double, typed", [&](int i) { return lyrGet<double>(lAt(i)).value_or(0) > 0; });
    KString lText;
    CountSteps("get double as string", [&](int i) { return lAt(i).Get(&lText, eSTRING) && !lText.IsEmpty(); });
    const KString lNumber("123.456");
    CountSteps("set double from string", [&](int i) { return lAt(i).Set(&lNumber, eSTRING, false); });
    CountSteps("get flags", [&](int i) { return lAt(i).GetFlags() == LyrPropertyFlags::eNO_FLAG; });
    CountSteps("get name", [&](int i) { return lAt(i).GetName()[0] == 'v'; });
    const auto lName = [&](int pStep) { return lNames[static_cast<std::size_t>(pStep) % 64].c_str(); };
    CountSteps("find among 64", [&](int i) { return lRoot.Find(lName(i), true) == lAt(i); });
    CountSteps("find among 64, any case", [&](int i) { return lRoot.Find(lName(i), false) == lAt(i); });
    // Many names: how far one of them is looked for depends on the seed of the hashes.
    std::vector<std::string> lMisses;
    for (int i = 0; i < 1000; ++i)
        lMisses.push_back("nothing " + std::to_string(i));
    const auto lMiss = [&](int pStep) { return lMisses[static_cast<std::size_t>(pStep) % lMisses.size()].c_str(); };
    CountSteps("find a miss among 64", [&](int i) { return !lRoot.Find(lMiss(i), true).Valid(); });
    Count("destroy an object of 64", [&] { return lRoot.Destroy(); });
}

void CountConversions() {
    int lInt = 0;
    double lDouble = 0;
    KString lText;
    lyrDouble3 lVector;
    const KString lNumber("3.14159265");
    CountSteps("string to double", [&](int) { return lyrCopy(&lDouble, eDOUBLE1, &lNumber, eSTRING); });
    CountSteps("int to string", [&](int i) { return lyrCopy(&lText, eSTRING, &(lInt = i * 977), eINTEGER1); });
    CountSteps("double to string", [&](int i) { return lyrCopy(&lText, eSTRING, &(lDouble = i / 8.0), eDOUBLE1); });
    CountSteps("3-vector to string", [&](int i) {
        lVector[1] = i / 7.0;
        return lyrCopy(&lText, eSTRING, &lVector, eDOUBLE3);
    });
    CountSteps("int to double", [&](int i) { return lyrCopy(&lDouble, eDOUBLE1, &i, eINTEGER1); });
    lyrHalfFloat lHalf;
    CountSteps("half from float", [&](int i) {
        lHalf = lyrHalfFloat(static_cast<float>(i) + 0.5F);
        return lHalf.bits() != 0;
    });
    CountSteps("half to float",
               [](int i) { return lyrHalfFloat::FromBits(static_cast<unsigned short>(i + 1)).value() > 0; });
}

void CountObjects() {
    const std::vector<std::string> lNames = Names("part", kTimes);
    KLyrPropertyHandle lRoot = KLyrPropertyHandle::Create("object", eUNIDENTIFIED);
    std::vector<KLyrPropertyHandle> lParts(kTimes);
    CountSteps("add", [&](int i) {
        const auto lIndex = static_cast<std::size_t>(i);
        // Eight below each, so that there is a tree to walk.
        const KLyrPropertyHandle lParent = i == 0 ? lRoot : lParts[(lIndex - 1) / 8];
        lParts[lIndex] = KLyrPropertyHandle(lParent).Add(lNames[lIndex].c_str(), eINTEGER1);
        return lParts[lIndex].Valid();
    });
    CountSteps("get child", [&](int i) { return lParts[static_cast<std::size_t>(i) / 16].GetChild().Valid(); });
    CountSteps("get sibling",
               [&](int i) { return lParts[static_cast<std::size_t>(i / 8 * 8 % 992 + 1)].GetSibling().Valid(); });
    CountSteps("get parent", [&](int i) { return lParts[static_cast<std::size_t>(i)].GetParent().Valid(); });
    Count("walk through descendants", [&] {
        int lCount = 0;
        for (KLyrPropertyHandle lAt = lRoot.GetFirstDescendent(); lAt.Valid(); lAt = lRoot.GetNextDescendent(lAt))
            ++lCount;
        return lCount == kTimes;
    });
    lRoot.Destroy();
    Count("create and destroy 64 objects of 16", [&] {
        bool lDone = true;
        for (int i = 0; i < 64; ++i) {
            KLyrPropertyHandle lObject = KLyrPropertyHandle::Create("object", eUNIDENTIFIED);
            for (std::size_t j = 0; j < 16; ++j)
                lDone = lObject.Add(lNames[j].c_str(), eDOUBLE1).Valid() && lDone;
            lDone = lObject.Destroy() && lDone;
        }
        return lDone;
    });
    KLyrPropertyHandle lBracketed = KLyrPropertyHandle::Create();
    lBracketed.BeginCreateOrFindProperty();
    CountSteps("find and add in a bracket", [&](int i) {
        const char* lName = lNames[static_cast<std::size_t>(i)].c_str();
        return !lBracketed.Find(lName, true).Valid() && lBracketed.Add(lName, eDOUBLE1).Valid();
    });
    lBracketed.EndCreateOrFindProperty();
    lBracketed.Destroy();
}

void CountInstances() {
    KLyrPropertyHandle lRoot = KLyrPropertyHandle::Create("prototype", eUNIDENTIFIED);
    std::vector<int> lIds;
    for (const std::string& lName : Names("field", 64))
        lIds.push_back(lRoot.Add(lName.c_str(), eDOUBLE1).GetId());
    std::vector<KLyrPropertyHandle> lInstances(kTimes);
    const auto lAt = [&](int pStep, int pField) {
        return KLyrPropertyHandle(lInstances[static_cast<std::size_t>(pStep)].GetPage(),
                                  lIds[static_cast<std::size_t>(pField)]);
    };
    CountSteps("create an instance", [&](int i) {
        lInstances[static_cast<std::size_t>(i)] = KLyrPropertyHandle::Create(lRoot);
        return lInstances[static_cast<std::size_t>(i)].Valid();
    });
    CountSteps("set through an instance", [&](int i) {
        const double lValue = i + 1;
        return lAt(i, 7).Set(&lValue, eDOUBLE1);
    });
    CountSteps("get through an instance", [&](int i) {
        double lValue = -1;
        return lAt(i, 9).Get(&lValue, eDOUBLE1) && lValue == 0;
    });
    CountSteps("get a default value", [&](int i) {
        double lValue = -1;
        return lAt(i, 7).GetDefaultValue(&lValue, eDOUBLE1) && lValue == 0;
    });
    CountSteps("inherit again", [&](int i) { return i % 2 || lAt(i, 7).SetValueInheritType(eLyrInherit); });
    CountSteps("destroy an instance", [&](int i) { return lInstances[static_cast<std::size_t>(i)].Destroy(); });
    lRoot.Destroy();
}

void CountConnections() {
    KLyrPropertyHandle lHub = KLyrPropertyHandle::Create("hub", eDOUBLE1);
    std::vector<KLyrPropertyHandle> lPeers(2 * kTimes);
    for (KLyrPropertyHandle& lPeer : lPeers)
        lPeer = KLyrPropertyHandle::Create("peer", eDOUBLE1);
    const std::vector<int> lOrder = ShuffledIds(kTimes, 3);
    const auto lAt = [&](int pIndex) -> KLyrPropertyHandle& { return lPeers[static_cast<std::size_t>(pIndex)]; };
    const auto lOther = [&](int pStep) -> KLyrPropertyHandle& { return lAt(lOrder[static_cast<std::size_t>(pStep)]); };
    CountSteps("connect a hub", [&](int i) { return lHub.ConnectDst(lAt(i)); });
    CountSteps("is connected to a hub", [&](int i) { return lOther(i).IsConnectedSrc(lHub); });
    CountSteps("get a connection of a hub", [&](int i) { return lHub.GetDst(nullptr, i) == lAt(i); });
    CountSteps("disconnect a hub", [&](int i) { return lHub.DisconnectDst(lOther(i)); });
    CountSteps("connect a pair", [&](int i) { return lAt(i).ConnectSrc(lAt(i + kTimes)); });
    CountSteps("count connections", [&](int i) { return lAt(i).GetSrcCount(nullptr) == 1; });
    CountSteps("disconnect a pair", [&](int i) { return lAt(i).DisconnectSrc(lAt(i + kTimes)); });
    for (int i = 0; i < kTimes; ++i)
        lHub.ConnectDst(lAt(i));
    Count("destroy a hub", [&] { return lHub.Destroy(); });
    for (KLyrPropertyHandle& lPeer : lPeers)
        lPeer.Destroy();
}

}  // namespace

}  // namespace lyrsdk::bench

int main() {
    lyrsdk::bench::CountMaps();
    lyrsdk::bench::CountConversions();
    lyrsdk::bench::CountValues();
    lyrsdk::bench::CountObjects();
    lyrsdk::bench::CountInstances();
    lyrsdk::bench::CountConnections();
}
