#pragma once
// Walks of elements: the enumerator interface and a list-backed enumerator.

#include <cstdint>
#include <memory>
#include <vector>

namespace tess {

class IElement;

class IEnumElement {
public:
    virtual ~IEnumElement() = default;
    //! The next walk starts at the first element again.
    virtual void Reset() = 0;
    //! The next element, or null at the end.
    virtual std::shared_ptr<IElement> Next() = 0;
};

//! A walk over a fixed list, taken when the enumerator was made; later changes of the
//! container do not show in it.
class EnumElement final : public IEnumElement {
public:
    EnumElement() = default;
    explicit EnumElement(std::vector<std::shared_ptr<IElement>> elements) : elements_(std::move(elements)) {}

    void Reset() override { next_ = 0; }
    std::shared_ptr<IElement> Next() override {
        return next_ < elements_.size() ? elements_[next_++] : nullptr;
    }
    std::int32_t Count() const { return static_cast<std::int32_t>(elements_.size()); }
    void Add(std::shared_ptr<IElement> element) { elements_.push_back(std::move(element)); }

private:
    std::vector<std::shared_ptr<IElement>> elements_;
    std::size_t next_ = 0;
};

} // namespace tess
