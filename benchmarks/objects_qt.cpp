#include <QObject>
#include <QVariant>
#include <QVariantList>
#include <memory>

#include "benchmarks/objects_find.h"
#include "benchmarks/objects_sides.h"

namespace lyrsdk::bench {

namespace {

QVariant QVariantOf(int pIndex, bool pValues) {
    switch (KindOf(pIndex)) {
        case Kind::eDouble:
            return pValues ? DoubleValue(pIndex) : 0.0;
        case Kind::eInt:
            return pValues ? pIndex : 0;
        case Kind::eBool:
            return pValues;
        case Kind::eVector:
            return pValues ? QVariantList{1.0, 2.0, 3.0} : QVariantList{0.0, 0.0, 0.0};
        case Kind::eText:
            return QString::fromLatin1(pValues ? kTextValue : "");
        case Kind::eFloat:
            return pValues ? 0.5F : 0.0F;
    }
    return {};
}

class DynamicProperties {
public:
    static constexpr char kName[] = "Qt dynamic";

    explicit DynamicProperties(bool pValues) {
        for (int i = 0; i < kPropertyCount; ++i)
            mObject.setProperty(PropertyName(i), QVariantOf(i, pValues));
    }
    double GetByName(const char* pName) const { return mObject.property(pName).toDouble(); }

private:
    QObject mObject;
};

// Children by name, and what stands for an id.
class Children {
public:
    static constexpr char kName[] = "Qt findChild";

    explicit Children(const std::vector<std::string>& pNames) {
        for (std::size_t i = 0; i < pNames.size(); ++i) {
            auto lChild = std::make_unique<QObject>();
            lChild->setObjectName(QString::fromStdString(pNames[i]));
            lChild->setProperty("index", static_cast<int>(i));
            lChild.release()->setParent(&mParent);
        }
    }
    bool Has(const std::string& pName) const {
        return mParent.findChild<QObject*>(QString::fromStdString(pName), Qt::FindDirectChildrenOnly) != nullptr;
    }

private:
    QObject mParent;
};

const Registration sgRegistration([] {
    AddCreateSides<DynamicProperties>();
    AddNameSides<DynamicProperties>();
    AddFindSides<Children>(Case::eKept);
});

}  // namespace

}  // namespace lyrsdk::bench
