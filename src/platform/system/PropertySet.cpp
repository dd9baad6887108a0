#include "platform/system/PropertySet.h"

#include <algorithm>
#include <cctype>

#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {

bool NamesEqual(const std::string& a, const std::string& b) { return EqualsNoCase(a, b); }

std::size_t PropertySet::IndexOf(const std::string& name) const {
    const auto it =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return NamesEqual(e.name, name); });
    return static_cast<std::size_t>(it - entries_.begin());
}

const PropertySet::Entry* PropertySet::Find(const std::string& name) const {
    const std::size_t index = IndexOf(name);
    return index < entries_.size() ? &entries_[index] : nullptr;
}

void PropertySet::SetProperty(const std::string& name, const Variant& value) {
    const std::size_t index = IndexOf(name);
    if (index < entries_.size())
        entries_[index].value = value;
    else
        entries_.push_back(Entry{name, value});
}

Variant PropertySet::GetProperty(const std::string& name) const {
    if (const Entry* entry = Find(name))
        return entry->value;
    throw Fault(fault::NotFound, "tess.PropertySet", "The property \"" + name + "\" was not found.");
}

void PropertySet::GetAllProperties(std::vector<std::string>& names, std::vector<Variant>& values) const {
    names.clear();
    values.clear();
    for (const Entry& entry : entries_) {
        names.push_back(entry.name);
        values.push_back(entry.value);
    }
}

void PropertySet::RemoveProperty(const std::string& name) {
    std::erase_if(entries_, [&](const Entry& e) { return NamesEqual(e.name, name); });
}

bool PropertySet::IsEqual(const IPropertySet& other) const {
    if (other.Count() != Count())
        return false;
    std::vector<std::string> names;
    std::vector<Variant> values;
    other.GetAllProperties(names, values);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Entry* entry = Find(names[i]);
        if (!entry || !(entry->value == values[i]))
            return false;
    }
    return true;
}

} // namespace tess
