#include <QByteArray>
#include <QString>
#include <QVariant>

#include "benchmarks/text_sides.h"

namespace lyrsdk::bench {

namespace {

constexpr char kName[] = "QVariant";

void TimeVariantDoubles(benchmark::State& pState) {
    std::vector<QVariant> lVariants;
    for (const std::string& lText : DoubleTexts())
        lVariants.emplace_back(QString::fromStdString(lText));
    TimeDoubles(pState, kName, [&](std::size_t pIndex) { return lVariants[pIndex].toDouble(); });
}

// As bytes, which is what the other sides write.
void TimeVariantInts(benchmark::State& pState) {
    std::vector<QVariant> lVariants;
    for (int lValue : Ints())
        lVariants.emplace_back(lValue);
    QByteArray lText;
    TimeInts(pState, kName, [&](std::size_t pIndex) {
        lText = lVariants[pIndex].toByteArray();
        return std::string_view(lText.constData(), static_cast<std::size_t>(lText.size()));
    });
}

const Registration sgRegistration([] {
    AddSide("string to double", kName, &TimeVariantDoubles);
    AddSide("int to string", kName, &TimeVariantInts);
});

}  // namespace

}  // namespace lyrsdk::bench
