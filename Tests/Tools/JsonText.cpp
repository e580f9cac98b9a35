#include "JsonText.h"

#include <nlohmann/json.hpp>

namespace {

using Value = nlohmann::json;

template <class TUse>
std::string Use(std::string_view _svText, TUse&& _fnUse)
{
    Value value = Value::parse(_svText, nullptr, false);
    return value.is_discarded() ? "not JSON: " + std::string(_svText) : _fnUse(value);
}

} // namespace

std::string Json(std::string_view _svText)
{
    return Use(_svText, [](const Value& _rValue) { return _rValue.dump(); });
}

std::string At(std::string_view _svText, const std::string& _rsPlace)
{
    return Use(_svText, [&](const Value& _rValue) {
        const Value::json_pointer cPlace(_rsPlace);
        return _rValue.contains(cPlace) ? _rValue[cPlace].dump() : std::string();
    });
}

std::size_t SizeOf(std::string_view _svText)
{
    const Value value = Value::parse(_svText, nullptr, false);
    return value.is_array() ? value.size() : std::string::npos;
}

std::string With(std::string_view _svText, const std::string& _rsPlace, const char* _szValue)
{
    return Use(_svText, [&](Value& _rValue) {
        const Value::json_pointer cPlace(_rsPlace);
        if (_szValue != nullptr) {
            _rValue[cPlace] = Value::parse(_szValue);
        } else {
            _rValue[cPlace.parent_pointer()].erase(cPlace.back());
        }
        return _rValue.dump();
    });
}

std::string Quoted(std::string_view _svText)
{
    return Value(_svText).dump(-1, ' ', true);
}
