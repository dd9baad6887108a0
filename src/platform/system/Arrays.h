#pragma once
// The host's ordered lists: variants, strings, 32-bit integers and doubles,
// indexed from 0. An index outside the list is an OutOfRange Fault.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

//! The universal list: numbers, text, flags and object references side by side.
class IVariantArray {
public:
    virtual ~IVariantArray() = default;
    virtual std::int32_t Count() const = 0;
    virtual Variant Element(std::int32_t index) const = 0;
    virtual void Element(std::int32_t index, const Variant& value) = 0;
    virtual void Add(const Variant& value) = 0;
    //! Inserts before index; index == Count appends.
    virtual void Insert(std::int32_t index, const Variant& value) = 0;
    virtual void Remove(std::int32_t index) = 0;
    virtual void RemoveAll() = 0;
};

class IStringArray {
public:
    virtual ~IStringArray() = default;
    virtual std::int32_t Count() const = 0;
    virtual std::string Element(std::int32_t index) const = 0;
    virtual void Element(std::int32_t index, const std::string& value) = 0;
    virtual void Add(const std::string& value) = 0;
    virtual void Insert(std::int32_t index, const std::string& value) = 0;
    virtual void Remove(std::int32_t index) = 0;
    virtual void RemoveAll() = 0;
};

class ILongArray {
public:
    virtual ~ILongArray() = default;
    virtual std::int32_t Count() const = 0;
    virtual std::int32_t Element(std::int32_t index) const = 0;
    virtual void Element(std::int32_t index, std::int32_t value) = 0;
    virtual void Add(std::int32_t value) = 0;
    virtual void Insert(std::int32_t index, std::int32_t value) = 0;
    virtual void Remove(std::int32_t index) = 0;
    virtual void RemoveAll() = 0;
};

class IDoubleArray {
public:
    virtual ~IDoubleArray() = default;
    virtual std::int32_t Count() const = 0;
    virtual double Element(std::int32_t index) const = 0;
    virtual void Element(std::int32_t index, double value) = 0;
    virtual void Add(double value) = 0;
    virtual void Insert(std::int32_t index, double value) = 0;
    virtual void Remove(std::int32_t index) = 0;
    virtual void RemoveAll() = 0;
};

namespace detail {

[[noreturn]] void ThrowArrayIndex(const char* source, std::int32_t index, std::size_t count);

//! One implementation for the four lists; Source names the class in faults.
template <class Interface, class T, class Param, const char* Source>
class BasicArray : public Interface {
public:
    std::int32_t Count() const override { return static_cast<std::int32_t>(items_.size()); }
    T Element(std::int32_t index) const override { return items_[Checked(index, items_.size())]; }
    void Element(std::int32_t index, Param value) override { items_[Checked(index, items_.size())] = value; }
    void Add(Param value) override { items_.push_back(value); }
    void Insert(std::int32_t index, Param value) override {
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(Checked(index, items_.size() + 1)), value);
    }
    void Remove(std::int32_t index) override {
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Checked(index, items_.size())));
    }
    void RemoveAll() override { items_.clear(); }

    //! The items, for code of the platform that wants them all at once.
    const std::vector<T>& Items() const { return items_; }

private:
    static std::size_t Checked(std::int32_t index, std::size_t limit) {
        if (index < 0 || static_cast<std::size_t>(index) >= limit)
            ThrowArrayIndex(Source, index, limit);
        return static_cast<std::size_t>(index);
    }
    std::vector<T> items_;
};

inline constexpr char kVarArraySource[] = "tess.VarArray";
inline constexpr char kStrArraySource[] = "tess.StrArray";
inline constexpr char kLongArraySource[] = "tess.LongArray";
inline constexpr char kDoubleArraySource[] = "tess.DoubleArray";

} // namespace detail

class VarArray final : public detail::BasicArray<IVariantArray, Variant, const Variant&, detail::kVarArraySource> {};
class StrArray final
    : public detail::BasicArray<IStringArray, std::string, const std::string&, detail::kStrArraySource> {};
class LongArray final
    : public detail::BasicArray<ILongArray, std::int32_t, std::int32_t, detail::kLongArraySource> {};
class DoubleArray final : public detail::BasicArray<IDoubleArray, double, double, detail::kDoubleArraySource> {};

} // namespace tess
