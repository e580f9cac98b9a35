// The one file that knows the JSON library.

#include "Records/Json.h"
#include "ZkComn_String.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace Vrnt {

namespace {

constexpr std::size_t g_uDeepest = 64;    // levels; no record of ours has ten
constexpr std::size_t g_uMostKeys = 1000; // of an object; no record of ours has fifty

/** Builds a value of the parser's events. */
class Builder : public nlohmann::json_sax<nlohmann::json>
{
public:
    explicit Builder(std::string_view _svText) : m_svText(_svText) {}

    Json Take() { return std::move(m_jsWhole); }

    bool null() override { return Put(nullptr); }
    bool boolean(bool _bValue) override { return Put(_bValue); }
    bool number_integer(std::int64_t _llValue) override { return Put(_llValue); }
    bool number_unsigned(std::uint64_t _ullValue) override { return Put(_ullValue); }
    bool number_float(double _dValue, const std::string&) override { return Put(_dValue); }
    bool string(std::string& _rsValue) override { return Put(std::move(_rsValue)); }
    bool binary(nlohmann::json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return Open(Json::Object()); }
    bool start_array(std::size_t) override { return Open(Json::Array()); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(std::string& _rsKey) override
    {
        const Json& rjsObject = m_vecOpen.back().jsValue;
        if (rjsObject.As<Json::Members>()->size() == g_uMostKeys) {
            throw JsonError("an object with more than " + std::to_string(g_uMostKeys) + " keys");
        }
        if (rjsObject.Find(_rsKey) != nullptr) {
            throw JsonError("the key \"" + _rsKey + "\" occurs twice in one object");
        }
        m_vecOpen.back().sKey = std::move(_rsKey);
        return true;
    }
    bool parse_error(std::size_t _uPosition, const std::string&, const nlohmann::json::exception&) override
    {
        const std::string_view svBefore = m_svText.substr(0, _uPosition == 0 ? 0 : _uPosition - 1);
        const auto iLine = 1 + std::count(svBefore.begin(), svBefore.end(), '\n');
        const std::size_t uColumn = svBefore.size() - (svBefore.rfind('\n') + 1) + 1;
        throw JsonError("not JSON (line " + std::to_string(iLine) + ", column " + std::to_string(uColumn) + ")");
    }

private:
    /** An array or object whose end is not reached. */
    struct Level
    {
        Json jsValue;
        std::string sKey; // of its next member
    };

    bool Put(Json _jsValue)
    {
        if (m_vecOpen.empty()) {
            m_jsWhole = std::move(_jsValue);
        } else if (Level& rstLevel = m_vecOpen.back(); rstLevel.jsValue.Is<Json::Elements>()) {
            rstLevel.jsValue.Add(std::move(_jsValue));
        } else {
            rstLevel.jsValue.Set(std::move(rstLevel.sKey), std::move(_jsValue));
        }
        return true;
    }
    bool Open(Json _jsEmpty)
    {
        if (m_vecOpen.size() == g_uDeepest) {
            throw JsonError("nested deeper than " + std::to_string(g_uDeepest) + " levels");
        }
        m_vecOpen.push_back({std::move(_jsEmpty), {}});
        return true;
    }
    bool Close()
    {
        Json jsClosed = std::move(m_vecOpen.back().jsValue);
        m_vecOpen.pop_back();
        return Put(std::move(jsClosed));
    }

    std::string_view m_svText;
    Json m_jsWhole;
    std::vector<Level> m_vecOpen;
};

} // namespace

Json ParseJson(std::string_view _svText)
{
    const std::string sUtf8 = ZkCommon::String::FileTextToUtf8(_svText); // what Windows' shells write is UTF-16
    Builder cBuilder(sUtf8);
    nlohmann::json::sax_parse(sUtf8, &cBuilder);
    return cBuilder.Take();
}

} // namespace Vrnt
