#include "tools/lyrinspect/prototypes.h"

#include <cstdlib>
#include <cstring>

#include "tools/lyrinspect/values.h"

namespace lyrsdk::inspect {

namespace {

struct PlainType {
    const char* name;
    ELyrType type;
};

// A null in a file has no type; a group has only children.
constexpr PlainType kPlainTypes[] = {
    {"group", eUNIDENTIFIED}, {"null", eUNIDENTIFIED}, {"bool", eBOOL1},          {"int", eINTEGER1},
    {"double", eDOUBLE1},     {"double2", eDOUBLE2},   {"double3", eDOUBLE3},     {"double4", eDOUBLE4},
    {"double44", eDOUBLE44},  {"enum", eENUM},         {"string", eSTRING},       {"time", eTIME},
    {"distance", eDISTANCE},  {"blob", eBLOB},         {"reference", eREFERENCE},
};

// "NAME=code|NAME=code" or "NAME|NAME".
void AddChoices(KLyrPropertyHandle& pProperty, const std::string& pChoices, std::vector<int>& pCodes) {
    std::size_t lStart = 0;
    while (lStart < pChoices.size()) {
        const std::size_t lEnd = std::min(pChoices.find('|', lStart), pChoices.size());
        std::string lName = pChoices.substr(lStart, lEnd - lStart);
        const std::size_t lEquals = lName.find('=');
        int lCode = -1;
        if (lEquals != std::string::npos) {
            lCode = std::atoi(lName.c_str() + lEquals + 1);
            lName.resize(lEquals);
        }
        pProperty.AddEnumValue(lName.c_str());
        pCodes.push_back(lCode);
        lStart = lEnd + 1;
    }
    if (pChoices.find('=') == std::string::npos)
        pCodes.clear();
}

// "node" or "node*".
void ReadTarget(std::string pChoices, PropertyFacts& pFacts) {
    pFacts.many = !pChoices.empty() && pChoices.back() == '*';
    if (pFacts.many)
        pChoices.pop_back();
    pFacts.target = KindOfName(pChoices.c_str());
}

// The property that pPath's last name goes below.
KLyrPropertyHandle ParentOf(const KLyrPropertyHandle& pRoot, const std::string& pPath, std::string& pName) {
    const std::size_t lSlash = pPath.rfind('/');
    pName = lSlash == std::string::npos ? pPath : pPath.substr(lSlash + 1);
    return lSlash == std::string::npos ? pRoot : pRoot.Find(pPath.substr(0, lSlash).c_str(), "/", true);
}

}  // namespace

Prototypes::Prototypes() {
    MakePlainTypes();
    MakeCompoundTypes();
    for (std::size_t i = 0; i < kKindCount; ++i)
        MakePrototype(static_cast<ObjectKind>(i));
}

Prototypes::~Prototypes() {
    for (Prototype& lPrototype : mPrototypes)
        lPrototype.page.Destroy();
    // The youngest first: a compound type stands behind the types it uses and the one it extends.
    for (auto lType = mTypes.rbegin(); lType != mTypes.rend(); ++lType)
        lType->page.Destroy();
}

KLyrPropertyHandle Prototypes::TypePage(const std::string& pName) const {
    const auto lFound = mTypesByName.find(pName);
    return lFound == mTypesByName.end() ? KLyrPropertyHandle() : lFound->second->page;
}

TypeRecord& Prototypes::AddType(const std::string& pName, const KLyrPropertyHandle& pPage) {
    mComplete = mComplete && pPage.Valid();
    TypeRecord& lRecord = mTypes.emplace_back();
    lRecord.name = pName;
    lRecord.page = pPage;
    lRecord.page.SetPageDataPtr(&lRecord);
    mTypesByName[pName] = &lRecord;
    return lRecord;
}

void Prototypes::MakePlainTypes() {
    for (const PlainType& lType : kPlainTypes)
        AddType(lType.name, KLyrPropertyHandle::Create(lType.name, lType.type));
}

void Prototypes::MakeCompoundTypes() {
    const CompoundTypes lTypes = AllCompoundTypes();
    for (std::size_t i = 0; i < lTypes.count; ++i) {
        const CompoundType& lType = lTypes.types[i];
        // A type that extends another is an instance of it: it inherits the members and adds its own.
        const KLyrPropertyHandle lPage = lType.base ? KLyrPropertyHandle::Create(TypePage(lType.base))
                                                    : KLyrPropertyHandle::Create(lType.name, eUNIDENTIFIED);
        AddType(lType.name, lPage).compound = &lType;
        for (std::size_t j = 0; j < lType.table.count; ++j)
            Describe(AddRow(lPage, lType.table.rows[j]), lType.table.rows[j], nullptr);
    }
}

void Prototypes::MakePrototype(ObjectKind pKind) {
    Prototype& lPrototype = mPrototypes[static_cast<std::size_t>(pKind)];
    lPrototype.page = KLyrPropertyHandle::Create(KindName(pKind), eUNIDENTIFIED);
    lPrototype.facts.emplace_back();
    const PropertyTable lTable = RowsOfKind(pKind);
    for (std::size_t i = 0; i < lTable.count; ++i) {
        const KLyrPropertyHandle lProperty = AddRow(lPrototype.page, lTable.rows[i]);
        Describe(lProperty, lTable.rows[i], &lPrototype.facts);
        const auto lType = mTypesByName.find(lTable.rows[i].type);
        if (lType != mTypesByName.end())
            DescribeMembers(lProperty, *lType->second, &lPrototype.facts);
    }
}

KLyrPropertyHandle Prototypes::AddRow(const KLyrPropertyHandle& pRoot, const PropertyRow& pRow) {
    std::string lName;
    KLyrPropertyHandle lParent = ParentOf(pRoot, pRow.path, lName);
    KLyrPropertyHandle lProperty = lParent.Add(lName.c_str(), TypePage(pRow.type));
    if (lProperty.GetType() == eENUM) {
        std::vector<int> lCodes;
        AddChoices(lProperty, pRow.choices, lCodes);
    }
    if (pRow.value[0] != '\0')
        mComplete = SetFromText(lProperty, pRow.value) && mComplete;
    return lProperty;
}

// Values come along when a compound type is copied into a property; descriptions do not, and are given to the copy.
void Prototypes::Describe(KLyrPropertyHandle pProperty, const PropertyRow& pRow, std::vector<PropertyFacts>* pFacts) {
    mComplete = mComplete && pProperty.Valid() && TypeNameOf(pProperty) == pRow.type;
    pProperty.SetLabel(pRow.label);
    mComplete = mComplete && std::strcmp(pProperty.GetLabel(), pRow.label) == 0;
    if (pRow.flags != LyrPropertyFlags::eNO_FLAG)
        pProperty.ModifyFlags(pRow.flags, true);
    mComplete = SetLimitsFromText(pProperty, pRow.limits, pRow.softLimits) && mComplete;
    PropertyFacts lFacts;
    lFacts.row = &pRow;
    lFacts.type = pProperty.GetType();
    if (lFacts.type == eREFERENCE)
        ReadTarget(pRow.choices, lFacts);
    // Names that are already there are refused, so this only collects the codes of an enumeration that AddRow filled.
    if (lFacts.type == eENUM)
        AddChoices(pProperty, pRow.choices, lFacts.codes);
    if (pFacts) {
        pProperty.SetUserTag(static_cast<int>(pFacts->size()));
        pFacts->push_back(lFacts);
    }
}

void Prototypes::DescribeMembers(const KLyrPropertyHandle& pProperty, const TypeRecord& pType,
                                 std::vector<PropertyFacts>* pFacts) {
    if (!pType.compound)
        return;
    if (pType.compound->base)
        DescribeMembers(pProperty, *mTypesByName.at(pType.compound->base), pFacts);
    for (std::size_t i = 0; i < pType.compound->table.count; ++i) {
        const PropertyRow& lRow = pType.compound->table.rows[i];
        const KLyrPropertyHandle lMember = pProperty.Find(lRow.path, "/", true);
        Describe(lMember, lRow, pFacts);
        const auto lType = mTypesByName.find(lRow.type);
        if (lType != mTypesByName.end())
            DescribeMembers(lMember, *lType->second, pFacts);
    }
}

std::string TypeNameOf(const KLyrPropertyHandle& pProperty) {
    const auto* lRecord = static_cast<const TypeRecord*>(pProperty.GetTypeInfo().GetPageDataPtr());
    return lRecord ? lRecord->name : std::string();
}

}  // namespace lyrsdk::inspect
