// Lookup by name among siblings, outside a bracket.

#include "benchmarks/objects_find.h"

#include <strings.h>

#include <map>
#include <unordered_map>

#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

template <bool CaseSensitive>
class OurSiblings {
public:
    static constexpr char kName[] = "ours";

    explicit OurSiblings(const std::vector<std::string>& pNames) : mRoot(KLyrPropertyHandle::Create()) {
        for (const std::string& lName : pNames)
            mRoot.Add(lName.c_str(), eDOUBLE1);
    }
    ~OurSiblings() { mRoot.Destroy(); }
    OurSiblings(const OurSiblings&) = delete;
    OurSiblings& operator=(const OurSiblings&) = delete;

    bool Has(const std::string& pName) const { return mRoot.Find(pName.c_str(), CaseSensitive).Valid(); }

private:
    KLyrPropertyHandle mRoot;
};

template <typename MapType>
class MappedSiblings {
public:
    explicit MappedSiblings(const std::vector<std::string>& pNames) {
        for (const std::string& lName : pNames)
            mIds.emplace(lName, static_cast<int>(mIds.size()));
    }
    bool Has(const std::string& pName) const { return mIds.find(pName) != mIds.end(); }

private:
    MapType mIds;
};

struct IgnoringCase {
    bool operator()(const std::string& pLeft, const std::string& pRight) const {
        return strcasecmp(pLeft.c_str(), pRight.c_str()) < 0;
    }
};

class Ordered : public MappedSiblings<std::map<std::string, int>> {
public:
    static constexpr char kName[] = "std::map";
    using MappedSiblings::MappedSiblings;
};

class OrderedIgnoringCase : public MappedSiblings<std::map<std::string, int, IgnoringCase>> {
public:
    static constexpr char kName[] = "std::map";
    using MappedSiblings::MappedSiblings;
};

class Hashed : public MappedSiblings<std::unordered_map<std::string, int>> {
public:
    static constexpr char kName[] = "std::unordered_map";
    using MappedSiblings::MappedSiblings;
};

const Registration sgRegistration([] {
    AddFindSides<OurSiblings<true>>(Case::eKept);
    AddFindSides<OurSiblings<false>>(Case::eIgnored);
    AddFindSides<Ordered>(Case::eKept);
    AddFindSides<OrderedIgnoringCase>(Case::eIgnored);
    AddFindSides<Hashed>(Case::eKept);
});

}  // namespace

}  // namespace lyrsdk::bench
