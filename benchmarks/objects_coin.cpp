#include <Inventor/SoDB.h>
#include <Inventor/fields/SoSFBool.h>
#include <Inventor/fields/SoSFDouble.h>
#include <Inventor/fields/SoSFFloat.h>
#include <Inventor/fields/SoSFInt32.h>
#include <Inventor/fields/SoSFString.h>
#include <Inventor/fields/SoSFVec3d.h>
#include <Inventor/nodes/SoSubNode.h>

#include "benchmarks/objects_sides.h"

namespace lyrsdk::bench {

constexpr int kGroupCount = kPropertyCount / 8;

// Not in an unnamed namespace, where the functions that the macros make count as unused.
class BenchNode : public SoNode {
    SO_NODE_HEADER(BenchNode);

public:
    static void initClass() { SO_NODE_INIT_CLASS(BenchNode, SoNode, "Node"); }

    BenchNode() {
        SO_NODE_CONSTRUCTOR(BenchNode);
        for (int i = 0; i < kGroupCount; ++i) {
            Group& lGroup = mGroups[i];
            AddField(lGroup.opacity, i * 8, 0.0);
            AddField(lGroup.layer, i * 8 + 1, 0);
            AddField(lGroup.intensity, i * 8 + 2, 0.0);
            AddField(lGroup.visible, i * 8 + 3, FALSE);
            AddField(lGroup.translation, i * 8 + 4, SbVec3d(0, 0, 0));
            AddField(lGroup.label, i * 8 + 5, "");
            AddField(lGroup.scale, i * 8 + 6, 0.0F);
            AddField(lGroup.id, i * 8 + 7, 0);
        }
    }
    void SetValues() {
        for (int i = 0; i < kGroupCount; ++i) {
            Group& lGroup = mGroups[i];
            lGroup.opacity.setValue(DoubleValue(i * 8));
            lGroup.layer.setValue(i * 8 + 1);
            lGroup.intensity.setValue(DoubleValue(i * 8 + 2));
            lGroup.visible.setValue(TRUE);
            lGroup.translation.setValue(SbVec3d(1, 2, 3));
            lGroup.label.setValue(kTextValue);
            lGroup.scale.setValue(0.5F);
            lGroup.id.setValue(i * 8 + 7);
        }
    }

protected:
    ~BenchNode() override = default;

private:
    struct Group {
        SoSFDouble opacity;
        SoSFInt32 layer;
        SoSFDouble intensity;
        SoSFBool visible;
        SoSFVec3d translation;
        SoSFString label;
        SoSFFloat scale;
        SoSFInt32 id;
    };

    // What the macro for a field does, for one that is not a direct member.
    template <typename Field, typename Value>
    void AddField(Field& pField, int pIndex, const Value& pDefault) {
        pField.setValue(pDefault);
        pField.setContainer(this);
        fieldData->addField(this, PropertyName(pIndex), &pField);
    }

    Group mGroups[kGroupCount];
};

SO_NODE_SOURCE(BenchNode);

namespace {

void InitOnce() {
    static const bool sDone = [] {
        SoDB::init();
        BenchNode::initClass();
        return true;
    }();
    (void)sDone;
}

class Fields {
public:
    static constexpr char kName[] = "Coin";

    explicit Fields(bool pValues) {
        InitOnce();
        mNode = new BenchNode;
        mNode->ref();
        if (pValues)
            mNode->SetValues();
    }
    ~Fields() { mNode->unref(); }
    Fields(const Fields&) = delete;
    Fields& operator=(const Fields&) = delete;

    double GetByName(const char* pName) const {
        return static_cast<SoSFDouble*>(mNode->getField(SbName(pName)))->getValue();
    }
    void Resolve() {
        for (int i = 0; i < kDoubleCount; ++i)
            mDoubles[i] = static_cast<SoSFDouble*>(mNode->getField(SbName(PropertyName(DoubleIndex(i)))));
    }
    double Get(int pNumber) const { return mDoubles[pNumber]->getValue(); }
    void Set(int pNumber, double pValue) { mDoubles[pNumber]->setValue(pValue); }
    void SetChecked(int pNumber, double pValue) {
        if (Get(pNumber) != pValue)
            Set(pNumber, pValue);
    }

private:
    BenchNode* mNode = nullptr;
    SoSFDouble* mDoubles[kDoubleCount] = {};
};

const Registration sgRegistration([] {
    AddCreateSides<Fields>();
    AddNameSides<Fields>();
    AddHandleSides<Fields>();
});

}  // namespace

}  // namespace lyrsdk::bench
