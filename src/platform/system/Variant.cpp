#include "platform/system/Variant.h"

#include <cxxabi.h> // the general dynamic cast behind As<T>, and demangling for TypeName

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ctime>

#include "platform/system/DateTime.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

const char* const kSource = "tess.Variant";

// Significant digits the host shows when it turns a number into text.
constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;
// Largest decimal exponent worth carrying while parsing; beyond it every value over- or underflows.
constexpr long kExponentCap = 100000;
constexpr int kTrueValue = -1; // the host's True as a number

[[noreturn]] void TypeMismatch() { throw Fault(fault::TypeMismatch, kSource, "Type mismatch"); }
[[noreturn]] void Overflow() { throw Fault(fault::Overflow, kSource, "Overflow"); }
[[noreturn]] void NullUse() { throw Fault(fault::InvalidUseOfNull, kSource, "Invalid use of Null"); }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

enum class ParseResult { NotNumeric, Ok, Overflow };

// Reads numeric text by the host's grammar (see IsNumeric) without the
// process locale, which a desktop host may have set to a comma decimal.
ParseResult ParseNumber(std::string_view text, double& value) {
    text = Trim(text);
    std::size_t i = 0;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    std::string digits; // mantissa digits without separators
    long pointPosition = 0;
    bool sawDigit = false;
    while (i < text.size() && (IsDigit(text[i]) || (text[i] == ',' && sawDigit))) {
        if (text[i] != ',') {
            digits += text[i];
            sawDigit = true;
        }
        ++i;
    }
    pointPosition = static_cast<long>(digits.size());
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && IsDigit(text[i])) {
            digits += text[i];
            sawDigit = true;
            ++i;
        }
    }
    if (!sawDigit)
        return ParseResult::NotNumeric;
    long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E' || text[i] == 'd' || text[i] == 'D')) {
        ++i;
        bool negativeExponent = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            negativeExponent = text[i] == '-';
            ++i;
        }
        if (i >= text.size() || !IsDigit(text[i]))
            return ParseResult::NotNumeric;
        while (i < text.size() && IsDigit(text[i])) {
            exponent = std::min(exponent * 10 + (text[i] - '0'), kExponentCap);
            ++i;
        }
        if (negativeExponent)
            exponent = -exponent;
    }
    if (i != text.size())
        return ParseResult::NotNumeric;

    const auto firstNonZero = digits.find_first_not_of('0');
    if (firstNonZero == std::string::npos) {
        value = negative ? -0.0 : 0.0;
        return ParseResult::Ok;
    }
    // Decimal magnitude of the leading digit decides between under- and overflow.
    const long magnitude = pointPosition - static_cast<long>(firstNonZero) - 1 + exponent;
    std::string normal = digits.substr(firstNonZero);
    const long normalExponent = magnitude - static_cast<long>(normal.size()) + 1;
    normal += 'e';
    normal += std::to_string(normalExponent);
    double parsed = 0.0;
    const auto [end, error] = std::from_chars(normal.data(), normal.data() + normal.size(), parsed);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        if (magnitude > 0)
            return ParseResult::Overflow;
        parsed = 0.0;
    } else if (error != std::errc()) {
        return ParseResult::NotNumeric;
    }
    value = negative ? -parsed : parsed;
    return ParseResult::Ok;
}

double NumberFromText(const std::string& text) {
    double value = 0.0;
    switch (ParseNumber(text, value)) {
    case ParseResult::Ok:
        return value;
    case ParseResult::Overflow:
        Overflow();
    case ParseResult::NotNumeric:
        break;
    }
    TypeMismatch();
}

// Ties go to the even neighbour, as the host rounds.
double RoundHalfEven(double x) {
    const double nearest = std::round(x);
    if (std::fabs(x - std::trunc(x)) == 0.5)
        return 2.0 * std::round(x / 2.0);
    return nearest;
}

template <class Int>
Int ToWhole(double x) {
    if (std::isnan(x))
        Overflow();
    const double rounded = RoundHalfEven(x);
    if (rounded < static_cast<double>(std::numeric_limits<Int>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<Int>::max()))
        Overflow();
    return static_cast<Int>(rounded);
}

std::string FormatNumber(double value, int digits) {
    if (value == 0.0)
        return "0"; // also for -0, which the host never shows
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "Infinity" : "-Infinity";
    std::array<char, 64> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, digits);
    std::string text(buffer.data(), result.ptr);
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c == 'e' ? 'E' : c; });
    return text;
}

std::string FormatDate(DateValue date) {
    const std::tm tm = TmFromDate(date);
    const bool hasTime = tm.tm_hour != 0 || tm.tm_min != 0 || tm.tm_sec != 0;
    const bool isDayZero = std::fabs(date.days) < 1.0;
    const char* format = "%x %X";
    if (!hasTime)
        format = "%x";
    else if (isDayZero)
        format = "%X";
    std::array<char, 128> buffer{};
    const std::size_t length = std::strftime(buffer.data(), buffer.size(), format, &tm);
    return std::string(buffer.data(), length);
}

// Date text: "yyyy-mm-dd", "m/d/yyyy" (the C locale's order), either followed by
// a time "h:mm[:ss]" with an optional AM/PM, or a time alone.
bool ParseDate(std::string_view text, DateValue& out) {
    text = Trim(text);
    std::size_t i = 0;
    auto readNumber = [&](int& value) {
        const std::size_t start = i;
        value = 0;
        while (i < text.size() && IsDigit(text[i]) && i - start < 6)
            value = value * 10 + (text[i++] - '0');
        return i > start;
    };
    auto skipBlanks = [&] {
        while (i < text.size() && IsBlank(text[i]))
            ++i;
    };
    CalendarTime c;
    bool haveDate = false;
    int a = 0;
    int b = 0;
    int d = 0;
    const std::size_t save = i;
    if (readNumber(a) && i < text.size() && (text[i] == '-' || text[i] == '/')) {
        const char separator = text[i++];
        if (!readNumber(b) || i >= text.size() || text[i] != separator)
            return false;
        ++i;
        const std::size_t yearStart = i;
        if (!readNumber(d))
            return false;
        if (separator == '-') {
            c.year = a;
            c.month = b;
            c.day = d;
        } else {
            constexpr int kTwoDigitPivot = 30; // 00-29 are 2000s, 30-99 are 1900s
            constexpr int kYear2000 = 2000;
            constexpr int kYear1900 = 1900;
            c.month = a;
            c.day = b;
            c.year = d;
            if (i - yearStart <= 2)
                c.year += d < kTwoDigitPivot ? kYear2000 : kYear1900;
        }
        haveDate = true;
        skipBlanks();
    } else {
        i = save;
    }
    bool haveTime = false;
    if (i < text.size()) {
        int hour = 0;
        int minute = 0;
        int second = 0;
        if (!readNumber(hour) || i >= text.size() || text[i] != ':')
            return false;
        ++i;
        if (!readNumber(minute))
            return false;
        if (i < text.size() && text[i] == ':') {
            ++i;
            if (!readNumber(second))
                return false;
        }
        skipBlanks();
        constexpr int kHalfDayHours = 12;
        if (i < text.size()) {
            const std::string_view rest = text.substr(i);
            if (EqualsNoCase(rest, "AM")) {
                if (hour == kHalfDayHours)
                    hour = 0;
            } else if (EqualsNoCase(rest, "PM")) {
                if (hour < kHalfDayHours)
                    hour += kHalfDayHours;
            } else {
                return false;
            }
            i = text.size();
        }
        constexpr int kHoursPerDay = 24;
        constexpr int kSixty = 60;
        if (hour >= kHoursPerDay || minute >= kSixty || second >= kSixty)
            return false;
        c.hour = hour;
        c.minute = minute;
        c.second = second;
        haveTime = true;
    }
    if (!haveDate && !haveTime)
        return false;
    try {
        out = DateFromCalendar(c);
    } catch (const Fault& f) {
        if (f.Number() == fault::Overflow)
            throw;
        return false;
    }
    return true;
}

std::string Demangle(const char* name) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> plain(abi::__cxa_demangle(name, nullptr, nullptr, &status), std::free);
    std::string text = status == 0 && plain ? std::string(plain.get()) : std::string(name);
    const auto colon = text.rfind("::");
    return colon == std::string::npos ? text : text.substr(colon + 2);
}

} // namespace

VarType Variant::Type() const {
    struct Visitor {
        VarType operator()(std::monostate) const { return VarType::Empty; }
        VarType operator()(NullValue) const { return VarType::Null; }
        VarType operator()(std::int16_t) const { return VarType::Integer; }
        VarType operator()(std::int32_t) const { return VarType::Long; }
        VarType operator()(float) const { return VarType::Single; }
        VarType operator()(double) const { return VarType::Double; }
        VarType operator()(bool) const { return VarType::Boolean; }
        VarType operator()(const std::string&) const { return VarType::String; }
        VarType operator()(DateValue) const { return VarType::Date; }
        VarType operator()(const ObjectRef&) const { return VarType::Object; }
        VarType operator()(const std::vector<Variant>&) const {
            return static_cast<VarType>(static_cast<std::int32_t>(VarType::Array) |
                                        static_cast<std::int32_t>(VarType::Variant));
        }
    };
    return std::visit(Visitor{}, value_);
}

std::string Variant::TypeName() const {
    struct Visitor {
        std::string operator()(std::monostate) const { return "Empty"; }
        std::string operator()(NullValue) const { return "Null"; }
        std::string operator()(std::int16_t) const { return "Integer"; }
        std::string operator()(std::int32_t) const { return "Long"; }
        std::string operator()(float) const { return "Single"; }
        std::string operator()(double) const { return "Double"; }
        std::string operator()(bool) const { return "Boolean"; }
        std::string operator()(const std::string&) const { return "String"; }
        std::string operator()(DateValue) const { return "Date"; }
        std::string operator()(const ObjectRef& ref) const {
            return ref.owner ? Demangle(ref.dynamicType->name()) : std::string("Nothing");
        }
        std::string operator()(const std::vector<Variant>&) const { return "Variant()"; }
    };
    return std::visit(Visitor{}, value_);
}

bool Variant::IsNothing() const {
    const auto* ref = std::get_if<ObjectRef>(&value_);
    return ref && !ref->owner;
}

bool Variant::IsNumber() const {
    return std::holds_alternative<std::int16_t>(value_) || std::holds_alternative<std::int32_t>(value_) ||
           std::holds_alternative<float>(value_) || std::holds_alternative<double>(value_);
}

double Variant::ToDouble() const {
    struct Visitor {
        double operator()(std::monostate) const { return 0.0; }
        double operator()(NullValue) const { NullUse(); }
        double operator()(std::int16_t v) const { return v; }
        double operator()(std::int32_t v) const { return v; }
        double operator()(float v) const { return v; }
        double operator()(double v) const { return v; }
        double operator()(bool v) const { return v ? kTrueValue : 0; }
        double operator()(const std::string& v) const { return NumberFromText(v); }
        double operator()(DateValue v) const { return v.days; }
        double operator()(const ObjectRef&) const { TypeMismatch(); }
        double operator()(const std::vector<Variant>&) const { TypeMismatch(); }
    };
    return std::visit(Visitor{}, value_);
}

std::int16_t Variant::ToInteger() const {
    if (const auto* v = std::get_if<std::int16_t>(&value_))
        return *v;
    return ToWhole<std::int16_t>(ToDouble());
}

std::int32_t Variant::ToLong() const {
    if (const auto* v = std::get_if<std::int32_t>(&value_))
        return *v;
    return ToWhole<std::int32_t>(ToDouble());
}

float Variant::ToSingle() const {
    if (const auto* v = std::get_if<float>(&value_))
        return *v;
    const double wide = ToDouble();
    if (std::isnan(wide))
        return std::numeric_limits<float>::quiet_NaN();
    if (std::isfinite(wide) && std::fabs(wide) > static_cast<double>(std::numeric_limits<float>::max())) {
        // Values that round down to the largest single still fit.
        const float narrow = static_cast<float>(wide);
        if (std::isinf(narrow))
            Overflow();
        return narrow;
    }
    return static_cast<float>(wide);
}

std::string Variant::ToString() const {
    struct Visitor {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(NullValue) const { NullUse(); }
        std::string operator()(std::int16_t v) const { return std::to_string(v); }
        std::string operator()(std::int32_t v) const { return std::to_string(v); }
        std::string operator()(float v) const { return FormatNumber(v, kSingleDigits); }
        std::string operator()(double v) const { return FormatNumber(v, kDoubleDigits); }
        std::string operator()(bool v) const { return v ? "True" : "False"; }
        std::string operator()(const std::string& v) const { return v; }
        std::string operator()(DateValue v) const { return FormatDate(v); }
        std::string operator()(const ObjectRef&) const { TypeMismatch(); }
        std::string operator()(const std::vector<Variant>&) const { TypeMismatch(); }
    };
    return std::visit(Visitor{}, value_);
}

bool Variant::ToBool() const {
    if (const auto* v = std::get_if<bool>(&value_))
        return *v;
    if (const auto* text = std::get_if<std::string>(&value_)) {
        const std::string_view trimmed = Trim(*text);
        if (EqualsNoCase(trimmed, "True"))
            return true;
        if (EqualsNoCase(trimmed, "False"))
            return false;
    }
    return ToDouble() != 0.0;
}

DateValue Variant::ToDate() const {
    if (const auto* v = std::get_if<DateValue>(&value_))
        return *v;
    double days = 0.0;
    if (const auto* text = std::get_if<std::string>(&value_)) {
        DateValue parsed;
        if (ParseDate(*text, parsed))
            return parsed;
        days = NumberFromText(*text);
    } else {
        days = ToDouble();
    }
    if (!(days >= kMinDateDays && days <= kMaxDateDays))
        Overflow();
    return DateValue{days};
}

const std::vector<Variant>& Variant::ArrayItems() const {
    const auto* items = std::get_if<std::vector<Variant>>(&value_);
    if (!items)
        TypeMismatch();
    return *items;
}

std::vector<Variant>& Variant::ArrayItems() {
    auto* items = std::get_if<std::vector<Variant>>(&value_);
    if (!items)
        TypeMismatch();
    return *items;
}

const Variant::ObjectRef& Variant::RefOrFault() const {
    const auto* ref = std::get_if<ObjectRef>(&value_);
    if (!ref)
        TypeMismatch();
    return *ref;
}

// The stored pointer is a T*; the runtime's own dynamic cast finds the
// target type anywhere in the complete object (up, down or across).
void* Variant::CastObject(const ObjectRef& ref, const std::type_info& target) {
    if (*ref.staticType == target)
        return ref.owner.get();
    const auto* source = dynamic_cast<const abi::__class_type_info*>(ref.staticType);
    const auto* wanted = dynamic_cast<const abi::__class_type_info*>(&target);
    if (!source || !wanted)
        return nullptr;
    constexpr std::ptrdiff_t kNoHint = -1;
    return abi::__dynamic_cast(ref.owner.get(), source, wanted, kNoHint);
}

bool operator==(const Variant& a, const Variant& b) { return a.value_ == b.value_; }

bool IsNumeric(std::string_view text) {
    double value = 0.0;
    return ParseNumber(text, value) == ParseResult::Ok;
}

bool IsNumeric(const Variant& value) {
    switch (value.Type()) {
    case VarType::Empty:
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Boolean:
        return true;
    case VarType::String:
        return IsNumeric(std::string_view(value.ToString()));
    default:
        return false;
    }
}

} // namespace tess
