#include <glib-object.h>

#include "benchmarks/text_sides.h"

namespace lyrsdk::bench {

namespace {

// Its own transformations do not read texts.
void TimeValueInts(benchmark::State& pState) {
    std::vector<GValue> lValues(kTextCount);
    for (std::size_t i = 0; i < kTextCount; ++i) {
        g_value_init(&lValues[i], G_TYPE_INT);
        g_value_set_int(&lValues[i], Ints()[i]);
    }
    GValue lText = G_VALUE_INIT;
    g_value_init(&lText, G_TYPE_STRING);
    TimeInts(pState, "GValue", [&](std::size_t pIndex) {
        g_value_transform(&lValues[pIndex], &lText);
        return std::string_view(g_value_get_string(&lText));
    });
    g_value_unset(&lText);
}

const Registration sgRegistration([] { AddSide("int to string", "GValue", &TimeValueInts); });

}  // namespace

}  // namespace lyrsdk::bench
