#include "platform/data/detail/FieldRules.h"

#include <algorithm>
#include <cctype>

#include "platform/data/Field.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess::data {
namespace {

constexpr const char* kSource = "tess.data";

// dBASE widths (characters) and decimals of the shapefile rules above.
constexpr std::int32_t kMaxSmallIntegerWidth = 5;
constexpr std::int32_t kMaxIntegerWidth = 10;
constexpr std::int32_t kMaxSingleWidth = 6;
constexpr std::int32_t kDefaultSingleWidth = 13;
constexpr std::int32_t kDefaultDoubleWidth = 19;
constexpr std::int32_t kDefaultDecimals = 11;
constexpr std::int32_t kMaxNumberWidth = 254;
constexpr std::int32_t kSignAndPoint = 2; // characters a number with decimals needs besides its digits
constexpr std::int32_t kDefaultTextLength = 50;
constexpr std::int32_t kMaxDbaseTextLength = 254;
constexpr std::int32_t kDbaseDateWidth = 8;
constexpr std::int32_t kGuidTextLength = 38; // "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}"
constexpr std::size_t kDbaseNameLength = 10;

std::int32_t Clamp(std::int32_t v, std::int32_t lo, std::int32_t hi) { return std::max(lo, std::min(v, hi)); }

[[noreturn]] void Unsupported(const IField& field, const char* storage) {
    throw DataFault(fault::InvalidCall, kSource,
                "The field '" + field.Name() + "' is of a type " + storage + " cannot hold");
}

OgrFieldSpec ShapefileSpec(const IField& field) {
    OgrFieldSpec s;
    s.name = field.Name();
    const std::int32_t p = field.Precision();
    const std::int32_t sc = std::max(0, field.Scale());
    switch (field.Type()) {
    case esriFieldTypeSmallInteger:
        s.kind = OgrFieldKind::Int32;
        s.width = p > 0 ? Clamp(p, 1, kMaxSmallIntegerWidth) : kMaxSmallIntegerWidth;
        break;
    case esriFieldTypeInteger:
        s.kind = OgrFieldKind::Int32;
        s.width = p > 0 ? Clamp(p, 1, kMaxIntegerWidth) : kMaxIntegerWidth;
        break;
    case esriFieldTypeSingle:
    case esriFieldTypeDouble: {
        s.kind = OgrFieldKind::Float64;
        if (p <= 0) {
            s.width = field.Type() == esriFieldTypeSingle ? kDefaultSingleWidth : kDefaultDoubleWidth;
            s.precision = kDefaultDecimals;
        } else {
            s.precision = sc;
            s.width = Clamp(sc > 0 ? std::max(p, sc + kSignAndPoint) : p, 1, kMaxNumberWidth);
        }
        break;
    }
    case esriFieldTypeString:
        s.kind = OgrFieldKind::String;
        s.width = field.Length() > 0 ? Clamp(field.Length(), 1, kMaxDbaseTextLength) : kDefaultTextLength;
        break;
    case esriFieldTypeGUID:
    case esriFieldTypeGlobalID:
        s.kind = OgrFieldKind::String;
        s.width = kGuidTextLength;
        break;
    case esriFieldTypeDate:
        s.kind = OgrFieldKind::Date;
        s.width = kDbaseDateWidth;
        break;
    default:
        Unsupported(field, "shapefiles");
    }
    return s;
}

OgrFieldSpec DatabaseSpec(const IField& field, OgrDriver driver) {
    OgrFieldSpec s;
    s.name = field.Name();
    s.alias = field.AliasName();
    s.nullable = field.IsNullable();
    switch (field.Type()) {
    case esriFieldTypeSmallInteger:
        s.kind = OgrFieldKind::Int16;
        break;
    case esriFieldTypeInteger:
        s.kind = OgrFieldKind::Int32;
        break;
    case esriFieldTypeSingle:
        s.kind = OgrFieldKind::Float32;
        break;
    case esriFieldTypeDouble:
        s.kind = OgrFieldKind::Float64;
        break;
    case esriFieldTypeString:
        s.kind = OgrFieldKind::String;
        s.width = field.Length() > 0 ? field.Length() : kDefaultTextLength;
        break;
    case esriFieldTypeGUID:
    case esriFieldTypeGlobalID:
        s.kind = OgrFieldKind::String;
        s.width = kGuidTextLength;
        break;
    case esriFieldTypeDate:
        s.kind = OgrFieldKind::DateTime;
        break;
    default:
        Unsupported(field, driver == OgrDriver::GeoPackage ? "GeoPackages" : "geodatabases");
    }
    return s;
}

} // namespace

OgrFieldSpec StorageSpec(const IField& field, OgrDriver driver) {
    return driver == OgrDriver::Shapefile ? ShapefileSpec(field) : DatabaseSpec(field, driver);
}

std::int32_t HostLengthOf(esriFieldType type) {
    switch (type) {
    case esriFieldTypeSmallInteger:
        return 2;
    case esriFieldTypeInteger:
    case esriFieldTypeSingle:
    case esriFieldTypeOID:
        return 4;
    case esriFieldTypeDouble:
    case esriFieldTypeDate:
        return 8;
    default:
        return 0;
    }
}

HostField HostFieldOf(const OgrFieldSpec& spec, OgrDriver driver) {
    HostField h;
    const bool numeric = spec.kind == OgrFieldKind::Int16 || spec.kind == OgrFieldKind::Int32 ||
                         spec.kind == OgrFieldKind::Int64 || spec.kind == OgrFieldKind::Float32 ||
                         spec.kind == OgrFieldKind::Float64;
    if (driver == OgrDriver::Shapefile && numeric) {
        if (spec.precision == 0)
            h.type = spec.width <= kMaxSmallIntegerWidth ? esriFieldTypeSmallInteger
                     : spec.width <= kMaxIntegerWidth    ? esriFieldTypeInteger
                                                         : esriFieldTypeDouble;
        else
            h.type = spec.width <= kMaxSingleWidth ? esriFieldTypeSingle : esriFieldTypeDouble;
        h.precision = spec.width;
        h.scale = spec.precision;
        h.length = HostLengthOf(h.type);
        return h;
    }
    switch (spec.kind) {
    case OgrFieldKind::Int16:
        h.type = esriFieldTypeSmallInteger;
        break;
    case OgrFieldKind::Int32:
        h.type = esriFieldTypeInteger;
        break;
    case OgrFieldKind::Int64: // the host has no 64-bit integers; a double holds them exactly to 2^53
    case OgrFieldKind::Float64:
        h.type = esriFieldTypeDouble;
        break;
    case OgrFieldKind::Float32:
        h.type = esriFieldTypeSingle;
        break;
    case OgrFieldKind::Date:
    case OgrFieldKind::DateTime:
        h.type = esriFieldTypeDate;
        break;
    case OgrFieldKind::String:
    case OgrFieldKind::Other:
        h.type = esriFieldTypeString;
        h.length = spec.width;
        return h;
    }
    h.length = HostLengthOf(h.type);
    return h;
}

namespace {

//! At most bytes of the UTF-8 text, never half a character.
std::string CutUtf8(const std::string& text, std::size_t bytes) {
    std::size_t cut = std::min(text.size(), bytes);
    while (cut > 0 && cut < text.size() && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;
    return text.substr(0, cut);
}

} // namespace

std::string DbaseFieldName(const std::string& name, const std::vector<std::string>& taken) {
    // The table is UTF-8: letters of any script stay, a name is cut at 10 bytes on a character's
    // boundary, and only ASCII punctuation and blanks become underscores.
    std::string clean = CutUtf8(name, kDbaseNameLength);
    for (char& c : clean) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 && !std::isalnum(byte) && c != '_')
            c = '_';
    }
    if (clean.empty())
        clean = "Field";
    auto isTaken = [&](const std::string& candidate) {
        return std::any_of(taken.begin(), taken.end(), [&](const std::string& t) { return NamesEqual(t, candidate); });
    };
    std::string candidate = clean;
    for (int k = 1; isTaken(candidate); ++k) {
        const std::string suffix = "_" + std::to_string(k);
        candidate = CutUtf8(clean, kDbaseNameLength - suffix.size()) + suffix;
    }
    return candidate;
}

Variant ToFieldType(Variant value, esriFieldType type) {
    if (value.IsNull() || value.IsEmpty())
        return Variant::Null();
    switch (type) {
    case esriFieldTypeSmallInteger:
        return value.Type() == VarType::Integer ? value : Variant(value.ToInteger());
    case esriFieldTypeInteger:
    case esriFieldTypeOID:
        return value.Type() == VarType::Long ? value : Variant(value.ToLong());
    case esriFieldTypeSingle:
        return value.Type() == VarType::Single ? value : Variant(value.ToSingle());
    case esriFieldTypeDouble:
        return value.Type() == VarType::Double ? value : Variant(value.ToDouble());
    case esriFieldTypeString:
    case esriFieldTypeGUID:
    case esriFieldTypeGlobalID:
        return value.Type() == VarType::String ? value : Variant(value.ToString());
    case esriFieldTypeDate:
        return value.Type() == VarType::Date ? value : Variant(value.ToDate());
    default:
        return value;
    }
}

} // namespace tess::data
