#pragma once

// A plain model of page families: what a property handle must show, written for reading and not for speed, with nothing
// of the library in it. The operations carry the names of the library's own and take the same arguments, numbers in
// place of enumerations.

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/model/property_value.h"

namespace lyrmodel {

// Deliberate mistakes, so that the comparison can be seen to notice them.
enum class Fault {
    eNone,
    eEqualInheritedIsStored,     // setting what is inherited makes an own value
    eRefusedPairLeavesNoCopy,    // a refused conversion does not override
    ePushReplacesFlags,          // pushing forgets the flags that the parent had set
    eDestroyForgetsFlags,        // instances of a destroyed page lose the flags they saw
    eHandedBackFlagsStay,        // a flag that is handed back keeps its local bit
    eBracketLooksAtChildren,     // a name that the bracket's map does not hold is looked for among the children
    eBracketKeepsTheLast,        // of two siblings with one name the bracket answers the later
    eUntypedChildrenStayBehind,  // typed adds copy one level only
    eWipeTakesSourcesOnly,       // wiping leaves the destinations connected
    eCloneKeepsTheLabel,         // descriptions of the instances of a destroyed page keep their labels
    eDefaultIsNearest,           // the default value is the one that is seen
    eCount
};

enum class Item { eInfo, eValue, eConnect, eFlags };

constexpr int kOverride = 0, kInherit = 1, kDeleted = 2;
constexpr unsigned kAllFlags = 0x7FFF;
constexpr int kBoundCount = 4;

struct Page;
struct World;

struct Info {
    std::string mName;
    int mType = kNone;
    Page* mTypeInfo = nullptr;
    std::string mLabel;
    int mUserTag = 0;
    int mUserData = 0;
    std::array<std::optional<Value>, kBoundCount> mBounds;
    int mBoundType = kNone;
    std::vector<std::string> mEnums;

    int GetType() const;
    bool SetMinMax(int pIndex, const Value* pValue, Reports& pReports);
    bool GetMinMax(int pIndex, Value* pValue, Reports& pReports) const;
    bool HasMinMax(int pIndex) const;
    int AddEnumValue(const std::string& pName);
    void InsertEnumValue(int pIndex, const std::string& pName);
    void SetEnumValue(int pIndex, const std::string& pName);
    void RemoveEnumValue(int pIndex);
    std::optional<std::string> GetEnumValue(int pIndex) const;
};

struct Connect;

struct Link {
    Connect* mPeer;
    int mType;
};

// One end of connections. Gone, it takes them along.
struct Connect {
    Connect(Page* pPage, int pId) : mPage(pPage), mId(pId) {}
    ~Connect() { Wipe(); }
    Connect(const Connect&) = delete;
    Connect& operator=(const Connect&) = delete;

    bool IsConnectedSrc(const Connect* pSrc) const;
    bool ConnectSrc(Connect* pSrc, int pType);
    bool DisconnectSrc(Connect* pSrc);
    void Wipe(bool pSourcesOnly = false);

    Page* mPage;
    int mId;
    std::vector<Link> mSrcs, mDsts;
};

struct Entry {
    int mParent = -1;
    std::shared_ptr<Info> mInfo;
    std::shared_ptr<Value> mValue;
    std::shared_ptr<Connect> mConnect;
    unsigned mFlags = 0, mMask = 0;

    bool Has(Item pItem) const;
    bool IsEmpty() const { return !mInfo && !mValue && !mConnect && mMask == 0; }
    // Whether there is something to push into the page above.
    bool IsPushed() const { return mInfo || mValue || mMask != 0 || mFlags != 0; }
    void ModifyFlags(unsigned pFlags, bool pValue);
};

// Which connections a filter selects: those of a type in the mask (all with a mask of 0) to a peer whose id leaves the
// remainder when divided by two (any below 0).
struct Filter {
    int mTypes = 0;
    int mRemainder = -1;

    bool Selects(const Connect& pPeer, int pType) const {
        return (mTypes == 0 || (pType & mTypes) != 0) && (mRemainder < 0 || pPeer.mId % 2 == mRemainder);
    }
};

// What was found for an id, and the page that holds it.
struct Found {
    Entry* mEntry = nullptr;
    Page* mPage = nullptr;

    explicit operator bool() const { return mEntry != nullptr; }
};

struct Page {
    Page(World& pWorld, int pSlot) : mWorld(pWorld), mSlot(pSlot) {}

    // Lookups, through the chain.
    Entry* Own(int pId);
    Found GetEntry(int pId);
    Found GetItem(Item pItem, int pId);
    Page* GetFirstItem(Item pItem, int pId);
    Info* GetInfo(int pId);
    std::vector<int> VisibleIds();
    int Depth();

    // Adding.
    int Add(int pParent, const std::string& pName, int pType);
    int Add(int pParent, const std::string& pName, Page* pTypeInfo);
    int Add(int pParent, std::shared_ptr<Info> pInfo, std::shared_ptr<Value> pValue, bool pConnect, bool pRecursive);
    // Takes back what was added from an id on, in the bracket's names as well; the ids stay used.
    void UndoAdd(int pFirst);
    // How many properties a typed add would make.
    int CountOfTyped(Page* pTypeInfo);
    int TakeId();
    bool SkipTo(int pNextId);

    // Values.
    bool Get(int pId, Value* pValue);
    bool GetDefaultValue(int pId, Value* pValue);
    bool Set(int pId, const Value* pValue, int pType, bool pCheck);
    int GetType(int pId);

    // Inheritance.
    bool ChangeEntryState(int pId, int pState);
    bool ChangeItemState(Item pItem, int pId, int pState);
    int GetValueInherit(int pId, bool pCheck);
    bool SetValueInherit(int pId, int pState);
    unsigned GetFlags(int pId);
    int GetFlagsInheritType(unsigned pFlags, bool pCheck, int pId);
    bool SetFlagsInheritType(int pState, unsigned pFlags, int pId);
    bool ModifyFlags(int pId, unsigned pFlags, bool pValue, bool pCheck);
    // Leaves out the ids that are given.
    void Push(const std::set<int>& pKept = {});

    // The tree.
    int GetParent(int pId);
    bool IsDescendentOf(int pId, int pAncestor);
    int GetMinimum(int pId, Entry** pEntry = nullptr, Page** pHolder = nullptr);
    int GetChild(int pId);
    int GetSibling(int pId);
    int GetFirstDescendent(int pAncestor);
    int GetNextDescendent(int pAncestor, int pId);
    int GetCount();

    // Names.
    int Find(int pId, const std::string& pName, Page* pTypeInfo, bool pCase, const char* pSeparators);
    int FastFind(int pId, const std::string& pName, Page* pTypeInfo, bool pCase);
    void Begin();
    void End();

    // Connections.
    bool ConnectSrc(int pDst, Page* pSrcPage, int pSrc, int pType);
    bool DisconnectSrc(int pDst, Page* pSrcPage, int pSrc);
    bool IsConnectedSrc(int pDst, Page* pSrcPage, int pSrc);
    std::vector<Link> GetLinks(int pId, bool pSrcs, const Filter* pFilter);
    void Wipe(int pId);

    bool RemoveOwnEntry(int pId);
    // Handing down to the instances, and leaving the family.
    void Leave();

    World& mWorld;
    int mSlot;
    std::map<int, Entry> mEntries;
    Page* mInstanceOf = nullptr;
    std::vector<Page*> mInstances;
    int mData = 0;
    bool mOpen = false;
    std::map<std::pair<int, std::string>, int> mNames;
    // Of the family; -1 when all ids are used up.
    std::shared_ptr<int> mNextId;

private:
    // A property that a typed add is going to make.
    struct Plan {
        std::shared_ptr<Info> mInfo;
        std::shared_ptr<Value> mValue;
        bool mConnect = false;
        // Typed by a page that is being expanded: reported, and left without children.
        bool mRecursive = false;
        std::vector<Plan> mChildren;
    };

    Connect* OwnConnect(int pId);
    Connect* MakeConnect(int pId);
    Plan PlanOf(std::shared_ptr<Info> pInfo, std::shared_ptr<Value> pValue, bool pConnect);
    void PlanType(Plan& pPlan, std::vector<Page*>& pAbove);
    std::vector<Plan> PlanOfChildren(Page* pTypePage, int pId, std::vector<Page*>& pAbove);
    int AddEntry(int pParent, const Plan& pPlan);
    int AddPlanned(int pParent, const Plan& pPlan);
    void HandDown(Page& pInstance, int pId);
    bool EqualsInherited(int pId, const Value& pValue, bool& pDropped);
    void PushEntry(int pId, const Entry& pOwn);
    void HandFlagsBack(int pId, unsigned pFlags);
    void DropWhatIsEmpty(const Found& pBefore, int pId);
};

// All pages. A page stands in a slot, and is named by its number.
struct World {
    static constexpr int kSlots = 10;

    explicit World(Fault pFault = Fault::eNone) : mFault(pFault) {}
    ~World();

    Page* At(int pSlot) const;
    int FreeSlot() const;
    std::vector<int> LiveSlots() const;
    Page* CreateInstance(Page* pInstanceOf);
    Page* Create(const std::string& pName, int pType);
    Page* Create(const std::string& pName, Page* pTypeInfo);
    void Destroy(Page* pPage);
    Reports TakeReports();
    // Becomes a copy of the other world, page by page.
    void CopyFrom(const World& pOther);

    std::array<std::unique_ptr<Page>, kSlots> mPages;
    Fault mFault;
    Reports mReports;
    // How many properties can still be added; below 0: any number.
    int mAddsLeft = -1;

private:
    Page* CreateFamily();
};

}  // namespace lyrmodel
