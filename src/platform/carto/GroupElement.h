#pragma once
// A group of elements drawn and selected as one.

#include <memory>
#include <vector>

#include "platform/carto/Elements.h"

namespace tess {

//! The shape of a group is the envelope around its members' bounds (empty with no member);
//! setting a shape is refused (InvalidCall Fault): move the group instead, which moves every
//! member. A copy of a group holds copies of the members.
class GroupElement final : public detail::ElementBase, public IGroupElement {
public:
    GroupElement();
    GroupElement(const GroupElement& other);

    std::shared_ptr<IGeometry> Geometry() const override;
    void Geometry(const std::shared_ptr<IGeometry>& geometry) override;
    void QueryBounds(const std::shared_ptr<IDisplay>& display, IEnvelope& bounds) const override;
    //! True when any member is hit.
    bool HitTest(double x, double y, double tolerance) const override;
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    std::int32_t ElementCount() const override { return static_cast<std::int32_t>(members_.size()); }
    std::shared_ptr<IElement> Element(std::int32_t index) const override;
    //! A null element, the group itself, or a group that holds this one is an InvalidCall Fault.
    void AddElement(const std::shared_ptr<IElement>& element) override;
    void DeleteElement(const std::shared_ptr<IElement>& element) override;
    void ClearElements() override { members_.clear(); }
    std::shared_ptr<IEnumElement> Elements() const override;

    ElementKind Kind() const override { return ElementKind::Group; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    bool Holds(const IElement& element) const;
    std::vector<std::shared_ptr<IElement>> members_;
};

} // namespace tess
