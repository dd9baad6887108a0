#pragma once
// IClone: deep copy and equality of platform objects (geometry, fields).

#include <memory>

namespace tess {

class IClone {
public:
    virtual ~IClone() = default;
    //! A deep copy that shares nothing mutable with the original.
    virtual std::shared_ptr<IClone> Clone() const = 0;
    //! Same kind and same content.
    virtual bool IsEqual(const IClone& other) const = 0;
};

//! Clone with the result already cast to the interface the caller works with.
template <class T, class U>
std::shared_ptr<T> CloneAs(const U& object) {
    return std::dynamic_pointer_cast<T>(dynamic_cast<const IClone&>(object).Clone());
}

} // namespace tess
