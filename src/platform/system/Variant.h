#pragma once
// The host's variant: one value of a small set of kinds, converted between
// kinds the way the host's conversion functions do it.

#include <concepts>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility> // std::in_range
#include <type_traits>
#include <typeinfo>
#include <variant>
#include <vector>

namespace tess {

//! Kinds of value, numbered as the host's VarType numbers them.
enum class VarType : std::int32_t {
    Empty = 0,
    Null = 1,
    Integer = 2, //!< 16-bit signed
    Long = 3,    //!< 32-bit signed
    Single = 4,
    Double = 5,
    Date = 7,
    String = 8,
    Object = 9,
    Boolean = 11,
    Variant = 12,
    Array = 8192, //!< flag; an array of variants is Array | Variant
};

//! A date as the host keeps it: days since 1899-12-30 00:00, the fraction is the time of day.
struct DateValue {
    double days = 0.0;
    friend bool operator==(DateValue, DateValue) = default;
};

//! The marker of the Null value (as opposed to Empty).
struct NullValue {
    friend bool operator==(NullValue, NullValue) = default;
};

class Variant {
public:
    //! Empty.
    Variant() = default;
    Variant(NullValue) : value_(NullValue{}) {}
    Variant(std::int16_t v) : value_(v) {}
    Variant(std::int32_t v) : value_(v) {}
    //! Other integers: Long when they fit, Double beyond, as the host types a literal.
    template <std::integral I>
        requires(!std::same_as<I, bool> && !std::same_as<I, std::int16_t> && !std::same_as<I, std::int32_t>)
    Variant(I v) {
        if (std::in_range<std::int32_t>(v))
            value_ = static_cast<std::int32_t>(v);
        else
            value_ = static_cast<double>(v);
    }
    Variant(float v) : value_(v) {}
    Variant(double v) : value_(v) {}
    Variant(bool v) : value_(v) {}
    Variant(std::string v) : value_(std::move(v)) {}
    Variant(std::string_view v) : value_(std::string(v)) {}
    Variant(const char* v) : value_(std::string(v)) {}
    Variant(DateValue v) : value_(v) {}
    Variant(std::vector<Variant> items) : value_(std::move(items)) {}
    //! An object reference set to nothing.
    Variant(std::nullptr_t) : value_(ObjectRef{}) {}
    //! An object reference. T must be a polymorphic class; As<U>() casts like dynamic_pointer_cast.
    template <class T>
    Variant(std::shared_ptr<T> object) : value_(MakeRef(std::move(object))) {}

    static Variant Null() { return Variant(NullValue{}); }
    static Variant Nothing() { return Variant(nullptr); }

    // Kind queries.
    VarType Type() const;
    //! The host's TypeName: "Empty", "Null", "Integer", "Long", "Single", "Double", "Date", "String",
    //! "Boolean", "Nothing", the object's class name, or "Variant()" for an array.
    std::string TypeName() const;
    bool IsEmpty() const { return value_.index() == 0; }
    bool IsNull() const { return std::holds_alternative<NullValue>(value_); }
    bool IsObject() const { return std::holds_alternative<ObjectRef>(value_); }
    //! An object reference that is not set.
    bool IsNothing() const;
    bool IsArray() const { return std::holds_alternative<std::vector<Variant>>(value_); }
    //! Integer, Long, Single, Double (not Boolean, not Date).
    bool IsNumber() const;

    // Conversions as the host's CInt, CLng, CSng, CDbl, CStr, CBool and CDate do them.
    // Text converts when it is numeric (IsNumeric) or, for Boolean, "True"/"False"; otherwise a
    // TypeMismatch Fault. Out-of-range values are an Overflow Fault; Null is an InvalidUseOfNull Fault.
    // Rounding to integers is to nearest, ties to even.
    std::int16_t ToInteger() const;
    std::int32_t ToLong() const;
    float ToSingle() const;
    double ToDouble() const;
    //! Numbers with 15 (Single: 7) significant digits, "True"/"False", dates by the C locale's
    //! date (%x) and time (%X) formats; Empty gives "".
    std::string ToString() const;
    bool ToBool() const;
    DateValue ToDate() const;

    //! The items of an array; TypeMismatch Fault for anything else.
    const std::vector<Variant>& ArrayItems() const;
    std::vector<Variant>& ArrayItems();

    //! The object cast to T (nullptr when nothing or when it does not implement T); a TypeMismatch
    //! Fault when the variant holds no object reference.
    template <class T>
    std::shared_ptr<T> As() const {
        static_assert(std::is_polymorphic_v<T>, "As<T> needs a polymorphic class");
        const ObjectRef& ref = RefOrFault();
        if (!ref.owner)
            return nullptr;
        void* cast = CastObject(ref, typeid(T));
        return cast ? std::shared_ptr<T>(ref.owner, static_cast<T*>(cast)) : nullptr;
    }

    //! Same kind and same value; objects compare by identity, arrays item by item.
    friend bool operator==(const Variant& a, const Variant& b);

private:
    struct ObjectRef {
        std::shared_ptr<void> owner;             //!< keeps the object alive; get() is the T* below
        const std::type_info* staticType = nullptr; //!< T, the type the pointer was stored as
        const void* identity = nullptr;          //!< the most-derived object, for equality
        const std::type_info* dynamicType = nullptr;
        friend bool operator==(const ObjectRef& a, const ObjectRef& b) { return a.identity == b.identity; }
    };

    template <class T>
    static ObjectRef MakeRef(std::shared_ptr<T> object) {
        static_assert(std::is_polymorphic_v<T>, "a Variant holds objects of polymorphic classes only");
        using Plain = std::remove_cv_t<T>;
        ObjectRef ref;
        if (object) {
            ref.identity = dynamic_cast<const void*>(object.get());
            ref.dynamicType = &typeid(*object);
            ref.staticType = &typeid(Plain);
            ref.owner = std::const_pointer_cast<Plain>(std::move(object));
        }
        return ref;
    }
    const ObjectRef& RefOrFault() const;
    static void* CastObject(const ObjectRef& ref, const std::type_info& target);

    std::variant<std::monostate, NullValue, std::int16_t, std::int32_t, float, double, bool, std::string,
                 DateValue, ObjectRef, std::vector<Variant>>
        value_;
};

//! The host's numeric test of text: optional blanks, an optional sign, digits with optional
//! thousands commas, an optional "." and fraction, an optional exponent (E or D); at least one digit.
//! The C locale's separators apply. "." alone, "" and "abc" are not numeric.
bool IsNumeric(std::string_view text);
inline bool IsNumeric(const std::string& text) { return IsNumeric(std::string_view(text)); }
inline bool IsNumeric(const char* text) { return IsNumeric(std::string_view(text)); }
//! IsNumeric of a variant as the host answers it: Empty, numbers and Boolean are numeric, text by the
//! test above; Null, dates, objects and arrays are not.
bool IsNumeric(const Variant& value);

} // namespace tess
