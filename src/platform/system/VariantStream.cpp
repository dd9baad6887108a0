#include "platform/system/VariantStream.h"

#include <cmath>
#include <limits>
#include <utility>
#include <nlohmann/json.hpp>

#include "platform/system/Fault.h"

namespace tess {
namespace {

using Json = nlohmann::json;

const char* const kSource = "tess.VariantStream";
const char* const kFormatName = "tess.VariantStream";
constexpr int kFormatVersion = 1;
// Nesting of arrays inside arrays that a stored stream may have; deeper text is treated as corrupt.
constexpr int kMaxNesting = 64;

const char* const kNaN = "NaN";
const char* const kInfinity = "Infinity";
const char* const kMinusInfinity = "-Infinity";

[[noreturn]] void Corrupt(const std::string& why) {
    throw Fault(fault::InvalidFileFormat, kSource, "Bad file format: " + why);
}

Json NumberToJson(double value) {
    if (std::isnan(value))
        return kNaN;
    if (std::isinf(value))
        return value > 0 ? kInfinity : kMinusInfinity;
    return value;
}

double NumberFromJson(const Json& j) {
    if (j.is_number())
        return j.get<double>();
    if (j.is_string()) {
        const auto& text = j.get_ref<const std::string&>();
        if (text == kNaN)
            return std::numeric_limits<double>::quiet_NaN();
        if (text == kInfinity)
            return std::numeric_limits<double>::infinity();
        if (text == kMinusInfinity)
            return -std::numeric_limits<double>::infinity();
    }
    Corrupt("a number was expected, found " + j.dump());
}

Json ToJson(const Variant& value) {
    switch (value.Type()) {
    case VarType::Empty:
        return Json{{"Empty", nullptr}};
    case VarType::Null:
        return Json{{"Null", nullptr}};
    case VarType::Integer:
        return Json{{"Integer", value.ToInteger()}};
    case VarType::Long:
        return Json{{"Long", value.ToLong()}};
    case VarType::Single:
        return Json{{"Single", NumberToJson(value.ToSingle())}};
    case VarType::Double:
        return Json{{"Double", NumberToJson(value.ToDouble())}};
    case VarType::Date:
        return Json{{"Date", NumberToJson(value.ToDate().days)}};
    case VarType::String:
        return Json{{"String", value.ToString()}};
    case VarType::Boolean:
        return Json{{"Boolean", value.ToBool()}};
    case VarType::Object:
        if (value.IsNothing())
            return Json{{"Nothing", nullptr}};
        throw Fault(fault::TypeMismatch, kSource,
                    "Type mismatch: an object (" + value.TypeName() + ") cannot be stored as text");
    default:
        break;
    }
    Json items = Json::array();
    for (const Variant& item : value.ArrayItems())
        items.push_back(ToJson(item));
    return Json{{"Array", std::move(items)}};
}

template <class Int>
Int IntegerFromJson(const Json& j) {
    if (!j.is_number_integer())
        Corrupt("an integer was expected, found " + j.dump());
    const auto wide = j.get<std::int64_t>();
    if (!std::in_range<Int>(wide))
        Corrupt("the integer " + j.dump() + " is out of range");
    return static_cast<Int>(wide);
}

Variant FromJson(const Json& j, int depth) {
    if (!j.is_object() || j.size() != 1)
        Corrupt("a value must be an object with one member, found " + j.dump());
    const auto& [kind, v] = *j.items().begin();
    if (kind == "Empty")
        return Variant();
    if (kind == "Null")
        return Variant::Null();
    if (kind == "Nothing")
        return Variant::Nothing();
    if (kind == "Integer")
        return Variant(IntegerFromJson<std::int16_t>(v));
    if (kind == "Long")
        return Variant(IntegerFromJson<std::int32_t>(v));
    if (kind == "Single")
        return Variant(static_cast<float>(NumberFromJson(v)));
    if (kind == "Double")
        return Variant(NumberFromJson(v));
    if (kind == "Date")
        return Variant(DateValue{NumberFromJson(v)});
    if (kind == "String") {
        if (!v.is_string())
            Corrupt("a string was expected, found " + v.dump());
        return Variant(v.get<std::string>());
    }
    if (kind == "Boolean") {
        if (!v.is_boolean())
            Corrupt("true or false was expected, found " + v.dump());
        return Variant(v.get<bool>());
    }
    if (kind == "Array") {
        if (!v.is_array())
            Corrupt("an array was expected, found " + v.dump());
        if (depth >= kMaxNesting)
            Corrupt("arrays nested too deeply");
        std::vector<Variant> items;
        items.reserve(v.size());
        for (const Json& item : v)
            items.push_back(FromJson(item, depth + 1));
        return Variant(std::move(items));
    }
    Corrupt("unknown kind of value \"" + kind + "\"");
}

} // namespace

Variant MemoryVariantStream::Read() {
    if (position_ >= values_.size())
        throw Fault(fault::ReadPastEnd, kSource, "Input past end of file");
    return values_[position_++];
}

void MemoryVariantStream::Write(const Variant& value) { values_.push_back(value); }

std::string MemoryVariantStream::ToText() const {
    Json values = Json::array();
    for (const Variant& value : values_)
        values.push_back(ToJson(value));
    const Json document{{"format", kFormatName}, {"version", kFormatVersion}, {"values", std::move(values)}};
    try {
        return document.dump();
    } catch (const Json::type_error&) {
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument: text that is not UTF-8");
    }
}

MemoryVariantStream MemoryVariantStream::FromText(const std::string& text) {
    Json document;
    try {
        document = Json::parse(text);
    } catch (const Json::parse_error& e) {
        Corrupt(e.what());
    }
    if (!document.is_object() || document.value("format", Json()) != kFormatName)
        Corrupt("not a variant stream");
    const Json version = document.value("version", Json());
    if (!version.is_number_integer() || version.get<std::int64_t>() != kFormatVersion)
        Corrupt("unsupported version " + version.dump());
    const auto values = document.find("values");
    if (values == document.end() || !values->is_array())
        Corrupt("no list of values");
    MemoryVariantStream stream;
    stream.values_.reserve(values->size());
    for (const Json& value : *values)
        stream.values_.push_back(FromJson(value, 0));
    return stream;
}

} // namespace tess
