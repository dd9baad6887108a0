#pragma once
// The host's keyed collection: items in the order added, each with an
// optional text key; keys compare without regard to case.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

class Collection {
public:
    virtual ~Collection() = default; // polymorphic, so a Variant can carry a collection

    std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }
    void Add(const Variant& item);
    //! A DuplicateKey Fault when the key (in any case) is already there.
    void Add(const Variant& item, const std::string& key);
    //! An InvalidCall Fault when no item has the key.
    Variant Item(const std::string& key) const;
    //! By position from 1 to Count; an OutOfRange Fault outside.
    Variant Item(std::int32_t index) const;
    //! Faults as Item does.
    void Remove(const std::string& key);
    void Remove(std::int32_t index);
    bool Exists(const std::string& key) const;

private:
    struct Entry {
        Variant item;
        std::optional<std::string> key;
    };
    std::size_t IndexOfKey(const std::string& key) const; //!< entries_.size() when absent
    std::size_t CheckedKey(const std::string& key) const;
    std::size_t CheckedIndex(std::int32_t index) const;
    std::vector<Entry> entries_;
};

} // namespace tess
