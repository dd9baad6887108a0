#pragma once
// Graphics containers: the elements of a map or of the page layout, in drawing
// order (first drawn first, last on top), and the selection among them. The
// map and the page layout are containers themselves, so a container is reached
// by casting either to IGraphicsContainer.

#include <cstdint>
#include <memory>
#include <unordered_set>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

class IElement;
class IEnumElement;
class IEnvelope;
class IPoint;
class IFrameElement;

class IGraphicsContainer {
public:
    virtual ~IGraphicsContainer() = default;
    //! Starts the walk of Next at the bottom of the drawing order.
    virtual void Reset() = 0;
    //! The next element in drawing order, or null at the end.
    virtual std::shared_ptr<IElement> Next() = 0;
    //! Puts the element on top. zOrder is accepted and ignored, as the host ignores it.
    //! Null, or an element that is already in the container, is an InvalidCall Fault.
    virtual void AddElement(const std::shared_ptr<IElement>& element, std::int32_t zOrder) = 0;
    //! Takes the element out (and out of the selection); nothing happens when it is not there.
    virtual void DeleteElement(const std::shared_ptr<IElement>& element) = 0;
    virtual void DeleteAllElements() = 0;
    //! Moves the elements to the top (keeping their order among themselves).
    virtual void BringToFront(IEnumElement& elements) = 0;
    //! Moves the elements to the bottom (keeping their order among themselves).
    virtual void SendToBack(IEnumElement& elements) = 0;
    //! The elements hit at the point within tolerance, top first; null when none is hit.
    virtual std::shared_ptr<IEnumElement> LocateElements(const IPoint& point, double tolerance) = 0;
    //! The elements whose bounds meet the envelope, in drawing order; null when none does.
    virtual std::shared_ptr<IEnumElement> LocateElementsByEnvelope(const IEnvelope& envelope) = 0;
    //! The frame element that shows the given object (a map), or null.
    virtual std::shared_ptr<IFrameElement> FindFrame(const Variant& frameObject) = 0;
    //! Tells the container that an element changed; counted, for hosts that redraw.
    virtual void UpdateElement(const std::shared_ptr<IElement>& element) = 0;

    // Additions of this platform.
    virtual std::int32_t ElementCount() const = 0;
    //! The element at a place of the drawing order, from 0 at the bottom; OutOfRange Fault.
    virtual std::shared_ptr<IElement> ElementAt(std::int32_t index) const = 0;
};

class IGraphicsContainerSelect {
public:
    virtual ~IGraphicsContainerSelect() = default;
    virtual std::int32_t ElementSelectionCount() const = 0;
    virtual bool ElementSelected(const std::shared_ptr<IElement>& element) const = 0;
    //! The selected elements in the order they were selected (an empty walk when none is).
    virtual std::shared_ptr<IEnumElement> SelectedElements() const = 0;
    //! Selecting a selected element changes nothing. An element that is not in the container
    //! is an InvalidCall Fault; null is an ObjectNotSet Fault.
    virtual void SelectElement(const std::shared_ptr<IElement>& element) = 0;
    virtual void SelectElements(IEnumElement& elements) = 0;
    //! Unselecting an element that is not selected (or not in the container) changes nothing.
    virtual void UnselectElement(const std::shared_ptr<IElement>& element) = 0;
    virtual void UnselectElements(IEnumElement& elements) = 0;
    //! Selects every element; those selected before keep their places in the selection order,
    //! the others follow in drawing order.
    virtual void SelectAllElements() = 0;
    virtual void UnselectAllElements() = 0;
    //! The i-th selected element in selection order; OutOfRange Fault.
    virtual std::shared_ptr<IElement> SelectedElement(std::int32_t index) const = 0;
    //! The element others align to: the earliest selected still selected, unless set; null
    //! when nothing is selected.
    virtual std::shared_ptr<IElement> DominantElement() const = 0;
    //! Makes a selected element the dominant one; InvalidCall Fault when it is not selected.
    virtual void DominantElement(const std::shared_ptr<IElement>& element) = 0;
};

//! The container of the map and of the page layout. Elements are held by shared reference
//! and compared by identity.
class GraphicsContainerBase : public IGraphicsContainer, public IGraphicsContainerSelect {
public:
    void Reset() override { walk_ = 0; }
    std::shared_ptr<IElement> Next() override;
    void AddElement(const std::shared_ptr<IElement>& element, std::int32_t zOrder = 0) override;
    void DeleteElement(const std::shared_ptr<IElement>& element) override;
    void DeleteAllElements() override;
    void BringToFront(IEnumElement& elements) override;
    void SendToBack(IEnumElement& elements) override;
    std::shared_ptr<IEnumElement> LocateElements(const IPoint& point, double tolerance) override;
    std::shared_ptr<IEnumElement> LocateElementsByEnvelope(const IEnvelope& envelope) override;
    std::shared_ptr<IFrameElement> FindFrame(const Variant& frameObject) override;
    void UpdateElement(const std::shared_ptr<IElement>& element) override;
    std::int32_t ElementCount() const override { return static_cast<std::int32_t>(elements_.size()); }
    std::shared_ptr<IElement> ElementAt(std::int32_t index) const override;

    std::int32_t ElementSelectionCount() const override { return static_cast<std::int32_t>(selected_.size()); }
    bool ElementSelected(const std::shared_ptr<IElement>& element) const override;
    std::shared_ptr<IEnumElement> SelectedElements() const override;
    void SelectElement(const std::shared_ptr<IElement>& element) override;
    void SelectElements(IEnumElement& elements) override;
    void UnselectElement(const std::shared_ptr<IElement>& element) override;
    void UnselectElements(IEnumElement& elements) override;
    void SelectAllElements() override;
    void UnselectAllElements() override;
    std::shared_ptr<IElement> SelectedElement(std::int32_t index) const override;
    std::shared_ptr<IElement> DominantElement() const override;
    void DominantElement(const std::shared_ptr<IElement>& element) override;

    //! How often UpdateElement was called since the last ClearUpdateCount.
    std::int32_t UpdateCount() const { return updates_; }
    void ClearUpdateCount() { updates_ = 0; }

protected:
    GraphicsContainerBase() = default;
    bool Contains(const IElement* element) const { return members_.contains(element); }

private:
    std::vector<std::shared_ptr<IElement>> elements_; // drawing order
    std::unordered_set<const IElement*> members_;
    std::vector<std::shared_ptr<IElement>> selected_; // selection order
    std::unordered_set<const IElement*> selectedSet_;
    std::shared_ptr<IElement> dominant_; // set explicitly; ignored once unselected
    std::size_t walk_ = 0;
    std::int32_t updates_ = 0;
};

} // namespace tess
