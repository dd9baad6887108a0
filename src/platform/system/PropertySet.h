#pragma once
// Named values of a dataset or workspace; names compare without regard to case.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

class IPropertySet {
public:
    virtual ~IPropertySet() = default;
    virtual std::int32_t Count() const = 0;
    //! Adds the property, or replaces the value of one of that name (the first spelling stays).
    virtual void SetProperty(const std::string& name, const Variant& value) = 0;
    //! A NotFound Fault naming the property when there is none of that name.
    virtual Variant GetProperty(const std::string& name) const = 0;
    //! Names and values in the order the properties were first set.
    virtual void GetAllProperties(std::vector<std::string>& names, std::vector<Variant>& values) const = 0;
    //! Does nothing when there is no property of that name.
    virtual void RemoveProperty(const std::string& name) = 0;
    virtual bool IsEqual(const IPropertySet& other) const = 0;
};

class PropertySet final : public IPropertySet {
public:
    std::int32_t Count() const override { return static_cast<std::int32_t>(entries_.size()); }
    void SetProperty(const std::string& name, const Variant& value) override;
    Variant GetProperty(const std::string& name) const override;
    void GetAllProperties(std::vector<std::string>& names, std::vector<Variant>& values) const override;
    void RemoveProperty(const std::string& name) override;
    //! Same names (any case) with equal values, in any order.
    bool IsEqual(const IPropertySet& other) const override;

private:
    struct Entry {
        std::string name;
        Variant value;
    };
    std::size_t IndexOf(const std::string& name) const; //!< entries_.size() when absent
    const Entry* Find(const std::string& name) const;
    std::vector<Entry> entries_;
};

//! Case-insensitive comparison of ASCII names, as the host compares keys and property names.
bool NamesEqual(const std::string& a, const std::string& b);

} // namespace tess
