#include "platform/carto/GraphicsContainer.h"

#include <algorithm>

#include "platform/carto/EnumElement.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/Map.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr const char* kSource = "GraphicsContainer";

std::vector<std::shared_ptr<IElement>> Drain(IEnumElement& elements) {
    std::vector<std::shared_ptr<IElement>> list;
    elements.Reset();
    while (auto element = elements.Next())
        list.push_back(std::move(element));
    return list;
}

bool BoxesMeet(const IEnvelope& a, const IEnvelope& b) {
    return !a.IsEmpty() && !b.IsEmpty() && a.XMin() <= b.XMax() && b.XMin() <= a.XMax() && a.YMin() <= b.YMax() &&
           b.YMin() <= a.YMax();
}

} // namespace

std::shared_ptr<IElement> GraphicsContainerBase::Next() {
    return walk_ < elements_.size() ? elements_[walk_++] : nullptr;
}

void GraphicsContainerBase::AddElement(const std::shared_ptr<IElement>& element, std::int32_t) {
    if (!element)
        throw Fault(fault::ObjectNotSet, kSource, "No element was given to add");
    if (Contains(element.get()))
        throw Fault(fault::InvalidCall, kSource, "The element is already in this graphics container");
    elements_.push_back(element);
    members_.insert(element.get());
}

void GraphicsContainerBase::DeleteElement(const std::shared_ptr<IElement>& element) {
    if (!element || !Contains(element.get()))
        return;
    UnselectElement(element);
    auto it = std::find(elements_.begin(), elements_.end(), element);
    if (static_cast<std::size_t>(it - elements_.begin()) < walk_)
        --walk_; // the walk goes on with the element that followed
    elements_.erase(it);
    members_.erase(element.get());
}

void GraphicsContainerBase::DeleteAllElements() {
    elements_.clear();
    members_.clear();
    UnselectAllElements();
    walk_ = 0;
}

void GraphicsContainerBase::BringToFront(IEnumElement& elements) {
    auto moving = Drain(elements);
    std::erase_if(moving, [&](const auto& e) { return !e || !Contains(e.get()); });
    std::stable_partition(elements_.begin(), elements_.end(), [&](const auto& e) {
        return std::find(moving.begin(), moving.end(), e) == moving.end();
    });
}

void GraphicsContainerBase::SendToBack(IEnumElement& elements) {
    auto moving = Drain(elements);
    std::erase_if(moving, [&](const auto& e) { return !e || !Contains(e.get()); });
    std::stable_partition(elements_.begin(), elements_.end(), [&](const auto& e) {
        return std::find(moving.begin(), moving.end(), e) != moving.end();
    });
}

std::shared_ptr<IEnumElement> GraphicsContainerBase::LocateElements(const IPoint& point, double tolerance) {
    std::vector<std::shared_ptr<IElement>> hits;
    for (auto it = elements_.rbegin(); it != elements_.rend(); ++it) {
        if ((*it)->HitTest(point.X(), point.Y(), tolerance))
            hits.push_back(*it);
    }
    if (hits.empty())
        return nullptr;
    return std::make_shared<EnumElement>(std::move(hits));
}

std::shared_ptr<IEnumElement> GraphicsContainerBase::LocateElementsByEnvelope(const IEnvelope& envelope) {
    std::vector<std::shared_ptr<IElement>> hits;
    Envelope bounds;
    for (const auto& element : elements_) {
        element->QueryBounds(nullptr, bounds);
        if (BoxesMeet(bounds, envelope))
            hits.push_back(element);
    }
    if (hits.empty())
        return nullptr;
    return std::make_shared<EnumElement>(std::move(hits));
}

std::shared_ptr<IFrameElement> GraphicsContainerBase::FindFrame(const Variant& frameObject) {
    if (!frameObject.IsObject() || frameObject.IsNothing())
        return nullptr;
    auto map = frameObject.As<IMap>();
    for (const auto& element : elements_) {
        auto frame = std::dynamic_pointer_cast<IMapFrame>(element);
        if (frame && map && frame->Map() == map)
            return frame;
    }
    return nullptr;
}

void GraphicsContainerBase::UpdateElement(const std::shared_ptr<IElement>&) { ++updates_; }

std::shared_ptr<IElement> GraphicsContainerBase::ElementAt(std::int32_t index) const {
    if (index < 0 || index >= ElementCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Element " + std::to_string(index) + " of a container of " + std::to_string(ElementCount()));
    return elements_[static_cast<std::size_t>(index)];
}

// Selection

bool GraphicsContainerBase::ElementSelected(const std::shared_ptr<IElement>& element) const {
    return element && selectedSet_.contains(element.get());
}

std::shared_ptr<IEnumElement> GraphicsContainerBase::SelectedElements() const {
    return std::make_shared<EnumElement>(selected_);
}

void GraphicsContainerBase::SelectElement(const std::shared_ptr<IElement>& element) {
    if (!element)
        throw Fault(fault::ObjectNotSet, kSource, "No element was given to select");
    if (!Contains(element.get()))
        throw Fault(fault::InvalidCall, kSource, "Only elements of this graphics container can be selected in it");
    if (selectedSet_.insert(element.get()).second)
        selected_.push_back(element);
}

void GraphicsContainerBase::SelectElements(IEnumElement& elements) {
    for (const auto& element : Drain(elements))
        SelectElement(element);
}

void GraphicsContainerBase::UnselectElement(const std::shared_ptr<IElement>& element) {
    if (!element || selectedSet_.erase(element.get()) == 0)
        return;
    std::erase(selected_, element);
    if (dominant_ == element)
        dominant_.reset();
}

void GraphicsContainerBase::UnselectElements(IEnumElement& elements) {
    for (const auto& element : Drain(elements))
        UnselectElement(element);
}

void GraphicsContainerBase::SelectAllElements() {
    for (const auto& element : elements_) {
        if (selectedSet_.insert(element.get()).second)
            selected_.push_back(element);
    }
}

void GraphicsContainerBase::UnselectAllElements() {
    selected_.clear();
    selectedSet_.clear();
    dominant_.reset();
}

std::shared_ptr<IElement> GraphicsContainerBase::SelectedElement(std::int32_t index) const {
    if (index < 0 || index >= ElementSelectionCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Selected element " + std::to_string(index) + " of " +
                        std::to_string(ElementSelectionCount()));
    return selected_[static_cast<std::size_t>(index)];
}

std::shared_ptr<IElement> GraphicsContainerBase::DominantElement() const {
    if (dominant_)
        return dominant_;
    return selected_.empty() ? nullptr : selected_.front();
}

void GraphicsContainerBase::DominantElement(const std::shared_ptr<IElement>& element) {
    if (!ElementSelected(element))
        throw Fault(fault::InvalidCall, kSource, "Only a selected element can be the dominant one");
    dominant_ = element;
}

} // namespace tess
