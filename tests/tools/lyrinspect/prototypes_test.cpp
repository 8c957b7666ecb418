#include "tools/lyrinspect/prototypes.h"

#include <gtest/gtest.h>

#include <set>

#include "tools/lyrinspect/scene.h"
#include "tools/lyrinspect/values.h"

namespace lyrsdk::inspect {
namespace {

std::vector<ObjectKind> AllKinds() {
    std::vector<ObjectKind> lKinds;
    for (std::size_t i = 0; i < kKindCount; ++i)
        lKinds.push_back(static_cast<ObjectKind>(i));
    return lKinds;
}

KLyrPropertyHandle At(const Prototypes& pPrototypes, ObjectKind pKind, const char* pPath) {
    return pPrototypes.Of(pKind).page.Find(pPath, "/", true);
}

TEST(Prototypes, GiveEveryRowAPropertyOfItsTypeWithItsValueAndLimits) {
    const Prototypes lPrototypes;
    for (const ObjectKind lKind : AllKinds()) {
        const PropertyTable lTable = RowsOfKind(lKind);
        EXPECT_STREQ(lPrototypes.Of(lKind).page.GetName(), KindName(lKind));
        EXPECT_EQ(KindOfName(KindName(lKind)), lKind);
        for (std::size_t i = 0; i < lTable.count; ++i) {
            const PropertyRow& lRow = lTable.rows[i];
            SCOPED_TRACE(std::string(KindName(lKind)) + ' ' + lRow.path);
            KLyrPropertyHandle lProperty = At(lPrototypes, lKind, lRow.path);
            ASSERT_TRUE(lProperty.Valid());
            EXPECT_EQ(TypeNameOf(lProperty), lRow.type);
            EXPECT_STREQ(lProperty.GetLabel(), lRow.label);
            EXPECT_EQ(lProperty.GetFlags(), lRow.flags);
            // A row that does not parse would be silently without its value or limit.
            if (lRow.value[0] != '\0') {
                EXPECT_TRUE(SetFromText(lProperty, lRow.value));
            }
            EXPECT_TRUE(SetLimitsFromText(lProperty, lRow.limits, lRow.softLimits));
            EXPECT_EQ(LimitsText(lProperty).empty(), lRow.limits[0] == '\0');
            EXPECT_EQ(SoftLimitsText(lProperty).empty(), lRow.softLimits[0] == '\0');
            EXPECT_EQ(LimitBreach(lProperty), "");
        }
    }
}

TEST(Prototypes, NameTheTargetOfEveryReference) {
    for (const ObjectKind lKind : AllKinds()) {
        const PropertyTable lTable = RowsOfKind(lKind);
        for (std::size_t i = 0; i < lTable.count; ++i) {
            std::string lTarget = lTable.rows[i].choices;
            if (lTable.rows[i].type != std::string("reference") || lTarget.empty())
                continue;
            if (lTarget.back() == '*')
                lTarget.pop_back();
            EXPECT_NE(KindOfName(lTarget.c_str()), ObjectKind::eCount) << lTarget;
        }
    }
}

TEST(Prototypes, NumberTheirPropertiesWithoutAGap) {
    const Prototypes lPrototypes;
    for (const ObjectKind lKind : AllKinds()) {
        const Prototype& lPrototype = lPrototypes.Of(lKind);
        std::set<int> lTags;
        for (KLyrPropertyHandle lProperty = lPrototype.page.GetFirstDescendent(); lProperty.Valid();
             lProperty = lPrototype.page.GetNextDescendent(lProperty))
            EXPECT_TRUE(lTags.insert(lProperty.GetUserTag()).second) << lProperty.GetName();
        ASSERT_EQ(lTags.size() + 1, lPrototype.facts.size());
        EXPECT_EQ(*lTags.begin(), 1);
        EXPECT_EQ(*lTags.rbegin(), static_cast<int>(lTags.size()));
    }
}

TEST(Prototypes, DescribeTheMembersOfCompoundTypes) {
    const Prototypes lPrototypes;
    const KLyrPropertyHandle lRotation = At(lPrototypes, ObjectKind::eNode, "transform/rotation");
    EXPECT_STREQ(lRotation.GetLabel(), "Rotation");
    EXPECT_EQ(ValueText(lRotation), "0,0,0,1");
    EXPECT_EQ(LimitsText(lRotation), "-1,-1,-1,-1..1,1,1,1");
    EXPECT_EQ(lRotation.GetFlags(), LyrPropertyFlags::eANIMATABLE);
    EXPECT_EQ(ValueText(At(lPrototypes, ObjectKind::eMaterial, "normalTexture/transform/scale")), "1,1");
}

TEST(Prototypes, LetACompoundTypeExtendAnother) {
    const Prototypes lPrototypes;
    const KLyrPropertyHandle lBase = lPrototypes.TypePage("TextureInfo");
    const KLyrPropertyHandle lNormal = lPrototypes.TypePage("NormalTextureInfo");
    EXPECT_EQ(lNormal.GetReferenceTo(), lBase.GetPageDataPtr());
    EXPECT_TRUE(At(lPrototypes, ObjectKind::eMaterial, "normalTexture/index").Valid());
    EXPECT_TRUE(At(lPrototypes, ObjectKind::eMaterial, "normalTexture/scale").Valid());
    EXPECT_FALSE(At(lPrototypes, ObjectKind::eMaterial, "emissiveTexture/scale").Valid());
    EXPECT_EQ(TypeNameOf(At(lPrototypes, ObjectKind::eMaterial, "normalTexture")), "NormalTextureInfo");
}

TEST(Prototypes, CanBeSearchedByType) {
    const Prototypes lPrototypes;
    const KLyrPropertyHandle lMaterial = lPrototypes.Of(ObjectKind::eMaterial).page;
    EXPECT_TRUE(lMaterial.Find("emissiveTexture", lPrototypes.TypePage("TextureInfo"), true).Valid());
    EXPECT_FALSE(lMaterial.Find("emissiveTexture", lPrototypes.TypePage("Transform"), true).Valid());
}

TEST(Prototypes, OfferTheEnumerationsOfTheFormat) {
    const Prototypes lPrototypes;
    const KLyrPropertyHandle lAlpha = At(lPrototypes, ObjectKind::eMaterial, "alphaMode");
    ASSERT_EQ(lAlpha.GetEnumCount(), 3);
    EXPECT_STREQ(lAlpha.GetEnumValue(0), "OPAQUE");
    EXPECT_STREQ(lAlpha.GetEnumValue(2), "BLEND");
    const KLyrPropertyHandle lFilter = At(lPrototypes, ObjectKind::eSampler, "minFilter");
    ASSERT_EQ(lFilter.GetEnumCount(), 7);
    const std::vector<int> lCodes =
        lPrototypes.Of(ObjectKind::eSampler).facts[static_cast<std::size_t>(lFilter.GetUserTag())].codes;
    EXPECT_EQ(lCodes, (std::vector<int>{-1, 9728, 9729, 9984, 9985, 9986, 9987}));
}

TEST(Prototypes, HoldAllTheTypesThatAFileCanFill) {
    const Prototypes lPrototypes;
    std::set<ELyrType> lTypes;
    for (const ObjectKind lKind : AllKinds()) {
        const KLyrPropertyHandle lPage = lPrototypes.Of(lKind).page;
        for (KLyrPropertyHandle lProperty = lPage.GetFirstDescendent(); lProperty.Valid();
             lProperty = lPage.GetNextDescendent(lProperty))
            lTypes.insert(lProperty.GetType());
    }
    for (const ELyrType lType : {eBOOL1, eINTEGER1, eDOUBLE1, eDOUBLE2, eDOUBLE3, eDOUBLE4, eDOUBLE44, eENUM, eSTRING,
                                 eTIME, eBLOB, eDISTANCE, eREFERENCE})
        EXPECT_EQ(lTypes.count(lType), 1u) << lType;
}

TEST(Scene, GivesEveryInstanceTheDefaultsOfItsPrototype) {
    Scene lScene;
    const SceneObject* lNode = lScene.AddObject(ObjectKind::eNode, 0);
    ASSERT_TRUE(lNode);
    EXPECT_EQ(ValueText(lNode->root.Find("transform/scale", "/", true)), "1,1,1");
    EXPECT_EQ(lNode->root.GetReferenceTo(), &lScene.PrototypeObject(ObjectKind::eNode));
    EXPECT_EQ(ObjectOf(lNode->root), lNode);
    EXPECT_EQ(lScene.ObjectAt(ObjectKind::eNode, 0), lNode);
    EXPECT_EQ(lScene.ObjectAt(ObjectKind::eNode, 1), nullptr);
    EXPECT_EQ(lScene.ObjectAt(ObjectKind::eNode, -1), nullptr);
}

TEST(Scene, KnowsWhichPropertyAMemberOfTheFileStates) {
    Scene lScene;
    const SceneObject* lNode = lScene.AddObject(ObjectKind::eNode, 0);
    ASSERT_TRUE(lNode);
    const auto lPath = [&](const char* pMember) {
        const KnownProperty lStated = lScene.StatedBy(ObjectKind::eNode, pMember);
        EXPECT_EQ(lStated.facts != nullptr, lStated.id != -1) << pMember;
        return lStated.facts ? PathOf(KLyrPropertyHandle(lNode->root.GetPage(), lStated.id), '/') : std::string("-");
    };
    EXPECT_EQ(lPath("name"), "name");
    EXPECT_EQ(lPath("scale"), "transform/scale");
    EXPECT_EQ(lPath("transform"), "-");
    EXPECT_EQ(lPath("transform/scale"), "-");
    EXPECT_EQ(lPath("parent"), "-");
    EXPECT_EQ(lPath("colour"), "-");
    EXPECT_EQ(lScene.StatedBy(ObjectKind::eNode, "children").facts->target, ObjectKind::eNode);
    EXPECT_TRUE(lScene.StatedBy(ObjectKind::eNode, "children").facts->many);
    EXPECT_FALSE(lScene.StatedBy(ObjectKind::eNode, "mesh").facts->many);
    EXPECT_EQ(lScene.KnownId(ObjectKind::eNode, "transform/scale"), lScene.StatedBy(ObjectKind::eNode, "scale").id);
    EXPECT_EQ(lScene.KnownId(ObjectKind::eNode, "colour"), -1);
}

TEST(Scene, NamesObjectsAndPaths) {
    Scene lScene;
    SceneObject* lMesh = lScene.AddObject(ObjectKind::eMesh, 4);
    const SceneObject* lPrimitive = lScene.AddObject(ObjectKind::ePrimitive, 1, lMesh);
    lMesh->name = "a \"b\"\n";
    EXPECT_EQ(AddressOf(*lPrimitive), "mesh:4/primitive:1");
    EXPECT_EQ(TitleOf(*lMesh), "mesh:4 \"a \\\"b\\\"\\n\"");
    EXPECT_EQ(AddressOf(lScene.PrototypeObject(ObjectKind::eMesh)), "mesh");
    const SceneObject* lMaterial = lScene.AddObject(ObjectKind::eMaterial, 0);
    const KLyrPropertyHandle lProperty = lMaterial->root.Find("pbrMetallicRoughness/metallicFactor", "/", true);
    EXPECT_EQ(PathOf(lProperty, '.'), "pbrMetallicRoughness.metallicFactor");
    EXPECT_EQ(PathOf(lMaterial->root, '/'), "");
}

}  // namespace
}  // namespace lyrsdk::inspect
