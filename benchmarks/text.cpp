// Values converted to and from text through a handle, and what the conversion alone takes.

#include "benchmarks/text_sides.h"

#include <charconv>

#include "lyrfilesdk/lyrsdk.h"

namespace lyrsdk::bench {

namespace {

// A page with one property a value.
class OurTexts {
public:
    template <typename Store>
    OurTexts(ELyrType pType, Store pStore) : mRoot(KLyrPropertyHandle::Create()) {
        for (std::size_t i = 0; i < kTextCount; ++i) {
            KLyrPropertyHandle lProperty = mRoot.Add(("value" + std::to_string(i)).c_str(), pType);
            pStore(lProperty, i);
            mProperties.push_back(lProperty);
        }
    }
    ~OurTexts() { mRoot.Destroy(); }
    OurTexts(const OurTexts&) = delete;
    OurTexts& operator=(const OurTexts&) = delete;

    const KLyrPropertyHandle& At(std::size_t pIndex) const { return mProperties[pIndex]; }

private:
    KLyrPropertyHandle mRoot;
    std::vector<KLyrPropertyHandle> mProperties;
};

void TimeOurDoubles(benchmark::State& pState) {
    const OurTexts lTexts(eSTRING, [](KLyrPropertyHandle& pProperty, std::size_t pIndex) {
        const KString lText(DoubleTexts()[pIndex].c_str());
        pProperty.Set(&lText, eSTRING, false);
    });
    TimeDoubles(pState, "ours", [&](std::size_t pIndex) {
        double lValue = 0;
        lTexts.At(pIndex).Get(&lValue, eDOUBLE1);
        return lValue;
    });
}

// The text that the calls before had is used again, as in a loop.
void TimeOurInts(benchmark::State& pState) {
    const OurTexts lTexts(eINTEGER1, [](KLyrPropertyHandle& pProperty, std::size_t pIndex) {
        pProperty.Set(&Ints()[pIndex], eINTEGER1, false);
    });
    KString lText;
    TimeInts(pState, "ours", [&](std::size_t pIndex) {
        lTexts.At(pIndex).Get(&lText, eSTRING);
        return std::string_view(lText.Buffer(), static_cast<std::size_t>(lText.GetLen()));
    });
}

void TimeOurVectors(benchmark::State& pState) {
    const OurTexts lTexts(eDOUBLE3, [](KLyrPropertyHandle& pProperty, std::size_t pIndex) {
        lyrDouble3 lVector;
        for (int i = 0; i < 3; ++i)
            lVector[i] = Vectors()[pIndex][static_cast<std::size_t>(i)];
        pProperty.Set(&lVector, eDOUBLE3, false);
    });
    KString lText;
    TimeVectors(pState, "ours", [&](std::size_t pIndex) {
        lTexts.At(pIndex).Get(&lText, eSTRING);
        return std::string_view(lText.Buffer(), static_cast<std::size_t>(lText.GetLen()));
    });
}

void TimeFloorDoubles(benchmark::State& pState) {
    TimeDoubles(pState, "from_chars", [](std::size_t pIndex) {
        const std::string& lText = DoubleTexts()[pIndex];
        double lValue = 0;
        std::from_chars(lText.data(), lText.data() + lText.size(), lValue);
        return lValue;
    });
}

void TimeFloorInts(benchmark::State& pState) {
    char lBuffer[16];
    TimeInts(pState, "to_chars", [&lBuffer](std::size_t pIndex) {
        const char* lEnd = std::to_chars(lBuffer, lBuffer + sizeof lBuffer, Ints()[pIndex]).ptr;
        return std::string_view(lBuffer, static_cast<std::size_t>(lEnd - lBuffer));
    });
}

void TimeFloorVectors(benchmark::State& pState) {
    char lBuffer[96];
    TimeVectors(pState, "to_chars", [&lBuffer](std::size_t pIndex) {
        char* lEnd = lBuffer;
        for (double lElement : Vectors()[pIndex]) {
            if (lEnd != lBuffer)
                *lEnd++ = ' ';
            lEnd = std::to_chars(lEnd, lBuffer + sizeof lBuffer, lElement).ptr;
        }
        return std::string_view(lBuffer, static_cast<std::size_t>(lEnd - lBuffer));
    });
}

// What reading a value of the same type takes, without a conversion.
void TimeOurGets(benchmark::State& pState) {
    const OurTexts lTexts(eDOUBLE1, [](KLyrPropertyHandle& pProperty, std::size_t pIndex) {
        const double lValue = std::strtod(DoubleTexts()[pIndex].c_str(), nullptr);
        pProperty.Set(&lValue, eDOUBLE1, false);
    });
    TimeDoubles(pState, "ours", [&](std::size_t pIndex) {
        double lValue = 0;
        lTexts.At(pIndex).Get(&lValue, eDOUBLE1);
        return lValue;
    });
}

const Registration sgRegistration([] {
    AddSide("string to double", "ours", &TimeOurDoubles);
    AddSide("string to double", "from_chars", &TimeFloorDoubles);
    AddSide("int to string", "ours", &TimeOurInts);
    AddSide("int to string", "to_chars", &TimeFloorInts);
    AddSide("3-vector to string", "ours", &TimeOurVectors);
    AddSide("3-vector to string", "to_chars", &TimeFloorVectors);
    AddSide("get without conversion", "ours", &TimeOurGets);
});

}  // namespace

}  // namespace lyrsdk::bench
