#include "platform/system/Collection.h"

#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h" // NamesEqual

namespace tess {
namespace {
const char* const kSource = "tess.Collection";
}

void Collection::Add(const Variant& item) { entries_.push_back(Entry{item, std::nullopt}); }

void Collection::Add(const Variant& item, const std::string& key) {
    if (IndexOfKey(key) < entries_.size())
        throw Fault(fault::DuplicateKey, kSource,
                    "This key is already associated with an element of this collection: \"" + key + "\"");
    entries_.push_back(Entry{item, key});
}

Variant Collection::Item(const std::string& key) const { return entries_[CheckedKey(key)].item; }

Variant Collection::Item(std::int32_t index) const { return entries_[CheckedIndex(index)].item; }

void Collection::Remove(const std::string& key) {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(CheckedKey(key)));
}

void Collection::Remove(std::int32_t index) {
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(CheckedIndex(index)));
}

bool Collection::Exists(const std::string& key) const { return IndexOfKey(key) < entries_.size(); }

std::size_t Collection::IndexOfKey(const std::string& key) const {
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].key && NamesEqual(*entries_[i].key, key))
            return i;
    return entries_.size();
}

std::size_t Collection::CheckedKey(const std::string& key) const {
    const std::size_t index = IndexOfKey(key);
    if (index >= entries_.size())
        throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument: no item \"" + key + "\"");
    return index;
}

std::size_t Collection::CheckedIndex(std::int32_t index) const {
    if (index < 1 || static_cast<std::size_t>(index) > entries_.size())
        throw Fault(fault::OutOfRange, kSource, "Subscript out of range: item " + std::to_string(index));
    return static_cast<std::size_t>(index - 1);
}

} // namespace tess
