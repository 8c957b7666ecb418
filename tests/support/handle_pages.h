#pragma once

// Pages behind handles, for tests of the public interface.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "lyrfilesdk/lyrcore/klyrpropertyhandle.h"
#include "tests/support/failing_memory.h"
#include "tests/support/memory_probe.h"

namespace lyrsdk {

// A test at whose end the library holds as much memory as at its start.
class HandleTest : public testing::Test {
private:
    LeakCheck mLeakCheck;
};

// The root of a page, which is destroyed at the end.
class OwnedRoot {
public:
    explicit OwnedRoot(const KLyrPropertyHandle& pRoot) : mRoot(pRoot) {}
    ~OwnedRoot() {
        if (mRoot.Valid())
            mRoot.Destroy();
    }
    OwnedRoot(const OwnedRoot&) = delete;
    OwnedRoot& operator=(const OwnedRoot&) = delete;

    operator const KLyrPropertyHandle&() const { return mRoot; }
    KLyrPropertyHandle& operator*() { return mRoot; }
    const KLyrPropertyHandle& operator*() const { return mRoot; }
    KLyrPropertyHandle* operator->() { return &mRoot; }
    const KLyrPropertyHandle* operator->() const { return &mRoot; }

private:
    KLyrPropertyHandle mRoot;
};

// A new child without a type page.
inline KLyrPropertyHandle AddChild(const KLyrPropertyHandle& pParent, const char* pName, ELyrType pType) {
    KLyrPropertyPage* lPage = pParent.GetPage();
    return KLyrPropertyHandle(lPage, lPage->Add(pParent.GetId(), pName, pType));
}

// The same property on another page of the family.
inline KLyrPropertyHandle On(const KLyrPropertyHandle& pPage, const KLyrPropertyHandle& pProperty) {
    return KLyrPropertyHandle(pPage.GetPage(), pProperty.GetId());
}

inline bool SetDouble(KLyrPropertyHandle pProperty, double pValue, bool pCheckValueEquality = false) {
    return pProperty.Set(&pValue, eDOUBLE1, pCheckValueEquality);
}

inline bool SetInt(KLyrPropertyHandle pProperty, int pValue, bool pCheckValueEquality = false) {
    return pProperty.Set(&pValue, eINTEGER1, pCheckValueEquality);
}

inline bool SetText(KLyrPropertyHandle pProperty, const char* pValue, bool pCheckValueEquality = false) {
    const KString lValue(pValue);
    return pProperty.Set(&lValue, eSTRING, pCheckValueEquality);
}

// The value, converted; a test failure when there is none.
inline double DoubleOf(const KLyrPropertyHandle& pProperty) {
    double lValue = -12345.678;
    EXPECT_TRUE(pProperty.Get(&lValue, eDOUBLE1)) << pProperty.GetName() << " has no number";
    return lValue;
}

inline int IntOf(const KLyrPropertyHandle& pProperty) {
    int lValue = -12345;
    EXPECT_TRUE(pProperty.Get(&lValue, eINTEGER1)) << pProperty.GetName() << " has no number";
    return lValue;
}

// "(none)" when there is none.
inline std::string TextOf(const KLyrPropertyHandle& pProperty) {
    KString lValue;
    const ELyrType lType = pProperty.GetType();
    if (lType == eREFERENCE || !pProperty.Get(&lValue, eSTRING))
        return "(none)";
    return std::string(lValue.Buffer(), static_cast<std::size_t>(lValue.GetLen()));
}

namespace detail {

using Getter = bool (KLyrPropertyHandle::*)(void*, ELyrType) const;
using Tester = bool (KLyrPropertyHandle::*)() const;

inline void DescribeBound(std::ostream& pOut, const KLyrPropertyHandle& pProperty, const char* pName, Tester pHas,
                          Getter pGet) {
    if (!(pProperty.*pHas)())
        return;
    KString lValue;
    const bool lGiven = pProperty.GetType() != eREFERENCE && (pProperty.*pGet)(&lValue, eSTRING);
    pOut << ' ' << pName << '=' << (lGiven ? lValue.Buffer() : "(none)");
}

inline void DescribeTypeAndTexts(std::ostream& pOut, const KLyrPropertyHandle& pProperty) {
    pOut << " label='" << pProperty.GetLabel() << "' tag=" << pProperty.GetUserTag()
         << " data=" << pProperty.GetUserData();
    if (pProperty.GetTypeInfo().Valid())
        pOut << " typed by '" << pProperty.GetTypeInfo().GetName() << '\'';
    for (int i = 0; i < pProperty.GetEnumCount(); ++i)
        pOut << " '" << pProperty.GetEnumValue(i) << '\'';
}

}  // namespace detail

// All that is seen of a property or of a whole page through handles, as lines of text: names, types, values, bounds,
// labels, tags, enumerations, flags, and connections by count. With pStates also where values and flags come from.
inline std::string Describe(const KLyrPropertyHandle& pProperty, bool pStates = true) {
    std::ostringstream lOut;
    lOut << pProperty.GetParent().GetId() << '/' << pProperty.GetId() << " '" << pProperty.GetName()
         << "' type=" << static_cast<int>(pProperty.GetType()) << " value='" << TextOf(pProperty) << '\'';
    detail::DescribeBound(lOut, pProperty, "min", &KLyrPropertyHandle::HasMin, &KLyrPropertyHandle::GetMin);
    detail::DescribeBound(lOut, pProperty, "softmin", &KLyrPropertyHandle::HasSoftMin, &KLyrPropertyHandle::GetSoftMin);
    detail::DescribeBound(lOut, pProperty, "max", &KLyrPropertyHandle::HasMax, &KLyrPropertyHandle::GetMax);
    detail::DescribeBound(lOut, pProperty, "softmax", &KLyrPropertyHandle::HasSoftMax, &KLyrPropertyHandle::GetSoftMax);
    detail::DescribeTypeAndTexts(lOut, pProperty);
    lOut << " flags=" << static_cast<unsigned>(pProperty.GetFlags()) << " src=" << pProperty.GetSrcCount(nullptr)
         << " dst=" << pProperty.GetDstCount(nullptr);
    if (pStates) {
        lOut << (pProperty.GetValueInheritType(false) == eLyrOverride ? " own value" : "") << " own flags";
        for (unsigned lFlag = 1; lFlag <= 0x8000u; lFlag *= 2)
            lOut << (pProperty.GetFlagsInheritType(static_cast<LyrPropertyFlags::eLyrPropertyFlags>(lFlag), false) ==
                             eLyrOverride
                         ? '1'
                         : '0');
    }
    lOut << '\n';
    return lOut.str();
}

inline std::string DescribePage(const KLyrPropertyHandle& pRoot, bool pStates = true) {
    std::string lText = Describe(pRoot, pStates);
    for (KLyrPropertyHandle lIt = pRoot.GetFirstDescendent(); lIt.Valid(); lIt = pRoot.GetNextDescendent(lIt))
        lText += Describe(lIt, pStates);
    return lText;
}

// Runs a scenario with each of its requests for memory refused in turn. A scenario is a class with
//     bool Operate()            the operation under test; its success
//     std::string Stored()      what must be unchanged when it failed
//     void ExpectDone()         checks that it succeeded
// Whatever was refused, the operation succeeds when it is tried again with memory.
template <typename Scenario>
void ExpectEveryRefusalSurvived() {
    WithEveryAllocationFailing([](const FailurePoint& pPoint) -> std::size_t {
        Scenario lScenario;
        const std::string lBefore = lScenario.Stored();
        bool lDone;
        std::size_t lFailed;
        {
            const FailAllocations lFail(pPoint.mFirst, pPoint.mForever);
            lDone = lScenario.Operate();
            lFailed = lFail.Failed();
        }
        EXPECT_TRUE(lDone || lFailed != 0) << "failed although every request was answered";
        if (!lDone) {
            EXPECT_EQ(lScenario.Stored(), lBefore);
            EXPECT_TRUE(lScenario.Operate()) << "with memory again";
        }
        lScenario.ExpectDone();
        return testing::Test::HasFailure() ? 0 : lFailed;
    });
}

}  // namespace lyrsdk
