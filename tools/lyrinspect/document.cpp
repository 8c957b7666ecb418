#include "tools/lyrinspect/document.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "tools/lyrinspect/text.h"

namespace lyrsdk::inspect {

namespace {

// Measures the nesting, counts the keys and keeps the first error.
class NestingCheck : public nlohmann::json_sax<Json> {
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool key(string_t&) override {
        ++mKeys;
        return true;
    }
    bool start_object(std::size_t) override { return Enter(); }
    bool end_object() override { return Leave(); }
    bool start_array(std::size_t) override { return Enter(); }
    bool end_array() override { return Leave(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception& pException) override {
        std::string lText = pException.what();
        // The parser's own name and number of the error, in brackets, say nothing to the user.
        const std::size_t lEnd = lText.find("] ");
        if (!lText.empty() && lText[0] == '[' && lEnd != std::string::npos)
            lText.erase(0, lEnd + 2);
        // 406: well-formed, but a number is out of range.
        mError = (pException.id == 406 ? "" : "not JSON: ") + Shortened(Escaped(lText), 200);
        return false;
    }

    std::size_t Keys() const { return mKeys; }
    const std::string& Error() const { return mError; }

private:
    bool Enter() {
        if (++mDepth <= kMaxNesting)
            return true;
        mError = "nested deeper than " + std::to_string(kMaxNesting) + " levels";
        return false;
    }
    bool Leave() {
        --mDepth;
        return true;
    }

    int mDepth = 0;
    std::size_t mKeys = 0;
    std::string mError;
};

std::size_t CountKeys(const Json& pValue) {
    if (!pValue.is_structured())
        return 0;
    std::size_t lCount = pValue.is_object() ? pValue.size() : 0;
    for (const Json& lChild : pValue)
        lCount += CountKeys(lChild);
    return lCount;
}

// The number in front of the point of a version such as "2.0", or -1.
int MajorVersion(const std::string& pText) {
    const std::size_t lPoint = pText.find('.');
    if (lPoint == 0 || lPoint == std::string::npos || lPoint > 4 || lPoint + 1 == pText.size())
        return -1;
    int lMajor = 0;
    for (std::size_t i = 0; i < pText.size(); ++i) {
        if (i == lPoint)
            continue;
        if (pText[i] < '0' || pText[i] > '9')
            return -1;
        if (i < lPoint)
            lMajor = lMajor * 10 + (pText[i] - '0');
    }
    return lMajor;
}

bool CheckAsset(const Json& pDocument, std::string& pError) {
    if (!pDocument.is_object()) {
        pError = "not a glTF document: the JSON is " + Described(pDocument) + ", not an object";
        return false;
    }
    const Json* lAsset = MemberOf(pDocument, "asset");
    const Json* lVersion = lAsset ? MemberOf(*lAsset, "version") : nullptr;
    if (!lVersion || !lVersion->is_string()) {
        pError = "not a glTF document: it has no asset.version";
        return false;
    }
    const Json* lMinimum = MemberOf(*lAsset, "minVersion");
    const bool lStatesMinimum = lMinimum && lMinimum->is_string();
    const std::string& lStated = lVersion->get_ref<const std::string&>();
    // Where a lowest version is stated the other one may be later, but it has to be a version.
    const std::string& lText =
        lStatesMinimum && MajorVersion(lStated) >= 0 ? lMinimum->get_ref<const std::string&>() : lStated;
    if (MajorVersion(lText) != 2 || (lStatesMinimum && lText != "2.0")) {
        pError = "needs glTF version " + Shortened(Quoted(lText), 40) + ", only 2.0 is supported";
        return false;
    }
    return true;
}

}  // namespace

bool ParseDocument(std::string_view pText, Json& pDocument, Warnings& pWarnings, std::string& pError) {
    const std::size_t lInvalid = FindInvalidUtf8(pText);
    if (lInvalid != std::string_view::npos) {
        pError = "not UTF-8: byte " + Escaped(pText.substr(lInvalid, 1)) + " at offset " + std::to_string(lInvalid);
        return false;
    }
    // The parser takes a zero byte for the end. Some writers pad with them; anything else behind one would be lost.
    const std::size_t lZero = pText.find('\0');
    if (lZero != std::string_view::npos && pText.find_first_not_of('\0', lZero) != std::string_view::npos) {
        pError = "not JSON: zero byte at offset " + std::to_string(lZero);
        return false;
    }
    NestingCheck lCheck;
    if (!Json::sax_parse(pText.begin(), pText.end(), &lCheck)) {
        pError = lCheck.Error();
        return false;
    }
    pDocument = Json::parse(pText.begin(), pText.end(), nullptr, false);
    if (!CheckAsset(pDocument, pError))
        return false;
    const std::size_t lRepeated = lCheck.Keys() - CountKeys(pDocument);
    if (lRepeated > 0)
        pWarnings.Add(Counted(lRepeated, "key") + " repeated inside an object; the last one counts");
    return true;
}

const Json* MemberOf(const Json& pObject, std::string_view pName) {
    if (!pObject.is_object())
        return nullptr;
    const auto lFound = pObject.find(pName);
    return lFound == pObject.end() ? nullptr : &*lFound;
}

Json* MemberOf(Json& pObject, std::string_view pName) {
    if (!pObject.is_object())
        return nullptr;
    const auto lFound = pObject.find(pName);
    return lFound == pObject.end() ? nullptr : &*lFound;
}

const Json& ArrayOf(const Json& pObject, const char* pName) {
    static const Json sNone = Json::array();
    const Json* lMember = MemberOf(pObject, pName);
    return lMember && lMember->is_array() ? *lMember : sNone;
}

const Json& ArrayOf(const Json& pObject, const char* pName, const std::string& pWhere, Warnings& pWarnings) {
    const Json* lMember = MemberOf(pObject, pName);
    if (lMember && !lMember->is_array())
        pWarnings.Add((pWhere.empty() ? "" : pWhere + ' ') + pName + " is " + Described(*lMember) +
                      ", not an array; it is left out");
    return ArrayOf(pObject, pName);
}

bool ToInt(const Json& pValue, int& pResult) {
    constexpr int kMin = std::numeric_limits<int>::min();
    constexpr int kMax = std::numeric_limits<int>::max();
    if (pValue.is_number_unsigned()) {
        const std::uint64_t lValue = pValue.get<std::uint64_t>();
        pResult = lValue <= static_cast<std::uint64_t>(kMax) ? static_cast<int>(lValue) : 0;
        return lValue <= static_cast<std::uint64_t>(kMax);
    }
    if (pValue.is_number_integer()) {
        const std::int64_t lValue = pValue.get<std::int64_t>();
        pResult = lValue >= kMin && lValue <= kMax ? static_cast<int>(lValue) : 0;
        return lValue >= kMin && lValue <= kMax;
    }
    if (!pValue.is_number_float())
        return false;
    const double lValue = pValue.get<double>();
    if (!(lValue >= kMin && lValue <= kMax) || lValue != std::floor(lValue))
        return false;
    pResult = static_cast<int>(lValue);
    return true;
}

bool ToSize(const Json& pValue, std::size_t& pResult) {
    // Beyond 2^53 a double no longer tells neighbours apart, and no file is that large.
    constexpr double kLimit = 9007199254740992.0;
    if (!pValue.is_number())
        return false;
    const double lValue = pValue.get<double>();
    if (!(lValue >= 0 && lValue <= kLimit) || lValue != std::floor(lValue))
        return false;
    pResult = static_cast<std::size_t>(lValue);
    return true;
}

std::string Described(const Json& pValue) {
    switch (pValue.type()) {
        case Json::value_t::object:
            return "an object";
        case Json::value_t::array:
            return "an array of " + std::to_string(pValue.size());
        case Json::value_t::string:
            return "the text " + Shortened(Quoted(pValue.get_ref<const std::string&>()), 60);
        case Json::value_t::boolean:
            return pValue.get<bool>() ? "true" : "false";
        case Json::value_t::number_integer:
        case Json::value_t::number_unsigned:
        case Json::value_t::number_float:
            return pValue.dump();
        default:
            return "null";
    }
}

}  // namespace lyrsdk::inspect
