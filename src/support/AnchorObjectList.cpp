#include "support/AnchorObjectList.h"

#include "platform/ui/Form.h"

namespace tess {

AnchorObject& AnchorObjectList::Item(tess::Control& control) {
    const std::int32_t index = IndexOf(control);
    if (index >= 0)
        return *items_[static_cast<std::size_t>(index)];
    items_.push_back(std::make_unique<AnchorObject>(control, *form_));
    return *items_.back();
}

AnchorObject& AnchorObjectList::Item(tess::Control& control, const tess::Control& container) {
    const std::int32_t index = IndexOf(control);
    if (index >= 0)
        return *items_[static_cast<std::size_t>(index)];
    items_.push_back(std::make_unique<AnchorObject>(control, container));
    return *items_.back();
}

std::int32_t AnchorObjectList::IndexOf(const tess::Control& control) const {
    for (std::size_t k = 0; k < items_.size(); ++k)
        if (&items_[k]->Control() == &control)
            return static_cast<std::int32_t>(k);
    return -1;
}

void AnchorObjectList::Remove(const tess::Control& control) {
    const std::int32_t index = IndexOf(control);
    if (index >= 0)
        items_.erase(items_.begin() + index);
}

void AnchorObjectList::SetAnchors() {
    for (auto& item : items_)
        item->SetAnchors(item->X().AnchorType(), item->Y().AnchorType());
}

void AnchorObjectList::DoAnchors() {
    for (auto& item : items_)
        item->DoAnchors();
}

} // namespace tess
