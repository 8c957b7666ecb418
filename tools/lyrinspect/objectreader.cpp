#include "tools/lyrinspect/objectreader.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "tools/lyrinspect/text.h"
#include "tools/lyrinspect/values.h"

namespace lyrsdk::inspect {

namespace {

constexpr std::size_t kManyMembers = 16;
// So few are looked through sooner than put into a set.
constexpr std::size_t kFewIndices = 16;
constexpr char kLights[] = "KHR_lights_punctual";
constexpr char kTextureTransform[] = "KHR_texture_transform";

const char* PlainTypeOf(const Json& pValue, bool pNumbersAreDouble) {
    int lInt = 0;
    switch (pValue.type()) {
        case Json::value_t::object:
        case Json::value_t::array:
            return "group";
        case Json::value_t::string:
            return "string";
        case Json::value_t::boolean:
            return "bool";
        case Json::value_t::number_integer:
        case Json::value_t::number_unsigned:
            return !pNumbersAreDouble && ToInt(pValue, lInt) ? "int" : "double";
        case Json::value_t::number_float:
            return "double";
        default:
            return "null";
    }
}

}  // namespace

bool IsKnownExtension(const std::string& pName) {
    return pName == kLights || pName == kTextureTransform;
}

void ObjectReader::Read(SceneObject& pObject, const Json& pJson, const std::vector<const char*>& pSkipped) {
    mObject = &pObject;
    if (!pJson.is_object()) {
        mWarnings.Add(AddressOf(pObject) + " is " + Described(pJson) + ", not an object");
        return;
    }
    ReadBelow(pObject.root, pJson, pSkipped);
}

void ObjectReader::ReadInto(SceneObject& pObject, const KLyrPropertyHandle& pProperty, const Json& pJson) {
    mObject = &pObject;
    if (!pJson.is_object()) {
        Warn(pProperty, "is " + Described(pJson) + ", not an object");
        return;
    }
    ReadBelow(pProperty, pJson, {});
}

// A bracket looks at the whole page first, which a few members are not worth.
void ObjectReader::ReadBelow(KLyrPropertyHandle pParent, const Json& pJson, const std::vector<const char*>& pSkipped) {
    const bool lIsWorthABracket = pJson.size() >= kManyMembers;
    if (lIsWorthABracket)
        pParent.BeginCreateOrFindProperty();
    ReadMembers(pParent, pJson, pSkipped);
    if (lIsWorthABracket)
        pParent.EndCreateOrFindProperty();
}

void ObjectReader::ReportNames() {
    if (mSeparatorNames > 0)
        mWarnings.Add(Counted(mSeparatorNames, "property name") + " with '" + mSeparator + "' inside, the first one " +
                      mFirstSeparatorName + "; --find needs another --separator for them");
    if (mEmptyNames > 0)
        mWarnings.Add(Counted(mEmptyNames, "empty property name"));
    if (mZeroTexts > 0)
        mWarnings.Add(Counted(mZeroTexts, "text") + " with a zero character, which is shown as U+FFFD");
}

void ObjectReader::ReadMembers(const KLyrPropertyHandle& pParent, const Json& pJson,
                               const std::vector<const char*>& pSkipped) {
    for (const auto& [lName, lValue] : pJson.get_ref<const Json::object_t&>()) {
        if (std::find(pSkipped.begin(), pSkipped.end(), lName) == pSkipped.end())
            ReadMember(pParent, lName, lValue);
    }
}

void ObjectReader::ReadMember(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue) {
    const KnownProperty lStated = FindStated(pParent, pName);
    if (lStated.facts) {
        ReadKnown(KLyrPropertyHandle(pParent.GetPage(), lStated.id), *lStated.facts, pValue);
        return;
    }
    if (pName == "extensions" && pValue.is_object()) {
        ReadExtensions(pParent, pValue);
        return;
    }
    if (pName == "extensions")
        WarnBelow(pParent, pName, "is " + Described(pValue) + ", not an object");
    AddValue(pParent, pName, pValue, LyrPropertyFlags::eUSER, false);
}

KnownProperty ObjectReader::FindStated(const KLyrPropertyHandle& pParent, const std::string& pName) const {
    if (pParent.Is(mObject->root))
        return mScene.StatedBy(mObject->kind, pName);
    // A zero character would end the name early and find another property.
    const KLyrPropertyHandle lFound =
        pName.find('\0') == std::string::npos ? pParent.Find(pName.c_str(), true) : KLyrPropertyHandle();
    if (!lFound.Valid())
        return KnownProperty();
    const PropertyFacts& lFacts = mScene.FactsOf(*mObject, lFound);
    return lFacts.row && !lFacts.row->derived ? KnownProperty{lFound.GetId(), &lFacts} : KnownProperty();
}

void ObjectReader::ReadKnown(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue) {
    if (pFacts.type == eREFERENCE) {
        ReadReference(pProperty, pFacts, pValue);
        return;
    }
    if (pFacts.type == eUNIDENTIFIED) {
        ReadGroup(pProperty, pFacts, pValue);
        return;
    }
    std::string lExpected;
    if (!SetFromJson(pProperty, pFacts, pValue, lExpected)) {
        Warn(pProperty, "is " + Described(pValue) + ", not " + lExpected + "; the default stays");
        return;
    }
    if (pValue.is_string())
        TakeText(pProperty, pValue.get_ref<const std::string&>());
    if (pFacts.row->limits[0] != '\0')
        CheckLimits(pProperty, pFacts);
}

// What else there is to do with a text that was set. Everything that reads the name again reads it from the property;
// the record's copy is for messages and headings.
void ObjectReader::TakeText(const KLyrPropertyHandle& pProperty, const std::string& pText) {
    if (pText.find('\0') != std::string::npos)
        SetString(pProperty, Text(pText));
    if (pProperty.GetId() != mScene.KnownId(mObject->kind, "name"))
        return;
    mObject->name = pText;
    mObject->isNamed = true;
}

void ObjectReader::CheckLimits(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts) {
    const std::string lBreach = LimitBreach(pProperty);
    if (!lBreach.empty())
        Warn(pProperty, lBreach);
    else if (IsOnOpenBound(pProperty, pFacts.row->limits))
        Warn(pProperty, "is " + ValueText(pProperty) + ", which it must not reach");
}

void ObjectReader::ReadGroup(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue) {
    const std::string lChoices = pFacts.row->choices;
    const bool lArray = lChoices.compare(0, 2, "*[") == 0;
    if (lArray ? !pValue.is_array() : !pValue.is_object()) {
        Warn(pProperty,
             "is " + Described(pValue) + (lArray ? ", not an array" : ", not an object") + "; it is left out");
        return;
    }
    if (lChoices.empty()) {
        ReadMembers(pProperty, pValue, {});
        return;
    }
    const std::string lElement = lArray ? lChoices.substr(2) : std::string();
    AddMembers(pProperty, pValue, pFacts.row->flags & LyrPropertyFlags::eANIMATABLE, lElement == "double");
    if (lArray)
        CheckElements(pProperty, lElement, pValue);
}

// An element of another type is shown like the others: where it stands counts for those behind it.
void ObjectReader::CheckElements(const KLyrPropertyHandle& pProperty, const std::string& pType, const Json& pValue) {
    for (std::size_t i = 0; i < pValue.size(); ++i) {
        const Json& lElement = pValue[i];
        const bool lFits = pType == "double"   ? lElement.is_number()
                           : pType == "string" ? lElement.is_string()
                                               : lElement.is_object();
        if (!lFits)
            WarnBelow(pProperty, std::to_string(i),
                      "is " + Described(lElement) + ", not " +
                          (pType == "double"   ? "a number"
                           : pType == "string" ? "a text"
                                               : "an object"));
    }
}

void ObjectReader::ReadReference(const KLyrPropertyHandle& pProperty, const PropertyFacts& pFacts, const Json& pValue) {
    int lIndex = -1;
    if (!pFacts.many && ToInt(pValue, lIndex)) {
        mReferences.push_back({mObject, pProperty, pFacts.target, lIndex});
        return;
    }
    if (!pFacts.many || !pValue.is_array()) {
        Warn(pProperty, "is " + Described(pValue) + (pFacts.many ? ", not an array of indices" : ", not an index"));
        return;
    }
    const std::ptrdiff_t lFirst = static_cast<std::ptrdiff_t>(mReferences.size());
    std::unordered_set<int> lListed;
    const auto lIsNew = [&](int pIndex) {
        if (pValue.size() > kFewIndices)
            return lListed.insert(pIndex).second;
        return std::none_of(mReferences.begin() + lFirst, mReferences.end(),
                            [pIndex](const Reference& pReference) { return pReference.index == pIndex; });
    };
    for (const Json& lElement : pValue) {
        if (!ToInt(lElement, lIndex))
            Warn(pProperty, "lists " + Described(lElement) + ", which is not an index");
        else if (!lIsNew(lIndex))
            Warn(pProperty, "lists " + std::to_string(lIndex) + " twice");
        else
            mReferences.push_back({mObject, pProperty, pFacts.target, lIndex});
    }
}

void ObjectReader::ReadExtensions(const KLyrPropertyHandle& pParent, const Json& pValue) {
    KLyrPropertyHandle lGroup;
    for (const auto& lExtension : pValue.items()) {
        if (ReadKnownExtension(pParent, lExtension.key(), lExtension.value()))
            continue;
        if (!lGroup.Valid())
            lGroup = mScene.AddProperty(*mObject, pParent, "extensions", "group",
                                        LyrPropertyFlags::eUSER | LyrPropertyFlags::eUI_GROUP);
        AddValue(lGroup, lExtension.key(), lExtension.value(), LyrPropertyFlags::eUSER, false);
    }
}

// False when the extension, or a part of it, is unknown and has to be shown as it stands.
bool ObjectReader::ReadKnownExtension(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue) {
    if (!pValue.is_object()) {
        if (IsKnownExtension(pName))
            WarnBelow(pParent, std::string("extensions") + mSeparator + pName,
                      "is " + Described(pValue) + ", not an object");
        return false;
    }
    if (pName == kLights && pParent.Is(mObject->root) && mObject->kind == ObjectKind::eDocument)
        return pValue.size() == 1 && pValue.contains("lights");
    if (pName == kLights && pParent.Is(mObject->root) && mObject->kind == ObjectKind::eNode) {
        const Json* lLight = MemberOf(pValue, "light");
        const KLyrPropertyHandle lProperty = pParent.Find("light", true);
        if (lLight)
            ReadKnown(lProperty, mScene.FactsOf(*mObject, lProperty), *lLight);
        return lLight && pValue.size() == 1;
    }
    const KLyrPropertyHandle lTransform = pParent.Find("transform", true);
    const PropertyRow* lRow = lTransform.Valid() ? mScene.FactsOf(*mObject, lTransform).row : nullptr;
    if (pName != kTextureTransform || !lRow || std::strcmp(lRow->type, "TextureTransform") != 0)
        return false;
    ReadMembers(lTransform, pValue, {});
    return true;
}

void ObjectReader::AddValue(const KLyrPropertyHandle& pParent, const std::string& pName, const Json& pValue,
                            LyrPropertyFlags::eLyrPropertyFlags pFlags, bool pNumbersAreDouble) {
    const std::string lName = Text(pName);
    if (lName.empty())
        ++mEmptyNames;
    if (lName.find(mSeparator) != std::string::npos && mSeparatorNames++ == 0)
        mFirstSeparatorName = Shortened(Quoted(lName), 60) + " in " + AddressOf(*mObject);
    LyrPropertyFlags::eLyrPropertyFlags lFlags = pFlags;
    if (pValue.is_structured())
        lFlags = lFlags | LyrPropertyFlags::eUI_GROUP;
    const char* lType = PlainTypeOf(pValue, pNumbersAreDouble);
    const KLyrPropertyHandle lProperty = mScene.AddProperty(*mObject, pParent, lName, lType, lFlags);
    if (!lProperty.Valid())
        return;
    int lInt = 0;
    if (pValue.is_structured())
        AddMembers(lProperty, pValue, pFlags, pNumbersAreDouble);
    else if (pValue.is_string())
        SetString(lProperty, Text(pValue.get_ref<const std::string&>()));
    else if (pValue.is_boolean())
        SetBool(lProperty, pValue.get<bool>());
    else if (lProperty.GetType() == eINTEGER1 && ToInt(pValue, lInt))
        SetInt(lProperty, lInt);
    else if (pValue.is_number())
        SetDouble(lProperty, pValue.get<double>());
}

void ObjectReader::AddMembers(const KLyrPropertyHandle& pParent, const Json& pValue,
                              LyrPropertyFlags::eLyrPropertyFlags pFlags, bool pNumbersAreDouble) {
    if (pValue.is_array()) {
        for (std::size_t i = 0; i < pValue.size(); ++i)
            AddValue(pParent, std::to_string(i), pValue[i], pFlags, pNumbersAreDouble);
        return;
    }
    for (const auto& lMember : pValue.items())
        AddValue(pParent, lMember.key(), lMember.value(), pFlags, pNumbersAreDouble);
}

// Texts of the library end at the first zero byte.
std::string ObjectReader::Text(const std::string& pText) {
    if (pText.find('\0') == std::string::npos)
        return pText;
    ++mZeroTexts;
    std::string lText;
    for (const char lByte : pText) {
        if (lByte == '\0')
            lText += "\xEF\xBF\xBD";
        else
            lText += lByte;
    }
    return lText;
}

void ObjectReader::Warn(const KLyrPropertyHandle& pProperty, const std::string& pText) {
    const std::string lPath = Escaped(PathOf(pProperty, mSeparator));
    mWarnings.Add(AddressOf(*mObject) + (lPath.empty() ? "" : ' ' + lPath) + ' ' + pText);
}

void ObjectReader::WarnBelow(const KLyrPropertyHandle& pProperty, const std::string& pName, const std::string& pText) {
    const std::string lPath = Escaped(PathOf(pProperty, mSeparator));
    mWarnings.Add(AddressOf(*mObject) + ' ' + (lPath.empty() ? "" : lPath + mSeparator) + pName + ' ' + pText);
}

}  // namespace lyrsdk::inspect
