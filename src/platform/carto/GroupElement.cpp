#include "platform/carto/GroupElement.h"

#include <algorithm>

#include "platform/carto/EnumElement.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {
constexpr const char* kSource = "GroupElement";
}

GroupElement::GroupElement() : ElementBase(nullptr) {}

GroupElement::GroupElement(const GroupElement& other) : ElementBase(other), IGroupElement(other) {
    for (const auto& member : other.members_) {
        auto* clone = dynamic_cast<const IClone*>(member.get());
        if (!clone)
            throw Fault(fault::InvalidCall, kSource, "A member of the group cannot be copied");
        members_.push_back(std::dynamic_pointer_cast<IElement>(clone->Clone()));
    }
}

std::shared_ptr<IGeometry> GroupElement::Geometry() const {
    auto bounds = std::make_shared<Envelope>();
    QueryBounds(nullptr, *bounds);
    return bounds;
}

void GroupElement::Geometry(const std::shared_ptr<IGeometry>&) {
    throw Fault(fault::InvalidCall, kSource, "The shape of a group comes from its members; move the group instead");
}

std::shared_ptr<IGeometry> GroupElement::Accept(const IGeometry&) const {
    throw Fault(fault::InvalidCall, kSource, "The shape of a group comes from its members");
}

void GroupElement::QueryBounds(const std::shared_ptr<IDisplay>& display, IEnvelope& bounds) const {
    bounds.SetEmpty();
    Envelope one;
    for (const auto& member : members_) {
        member->QueryBounds(display, one);
        if (one.IsEmpty())
            continue;
        if (bounds.IsEmpty())
            bounds.PutCoords(one.XMin(), one.YMin(), one.XMax(), one.YMax());
        else
            bounds.Union(one);
    }
}

bool GroupElement::HitTest(double x, double y, double tolerance) const {
    return std::any_of(members_.begin(), members_.end(),
                       [&](const auto& member) { return member->HitTest(x, y, tolerance); });
}

void GroupElement::Move(double dx, double dy) {
    for (const auto& member : members_) {
        if (auto* t = dynamic_cast<ITransform2D*>(member.get()))
            t->Move(dx, dy);
    }
}

void GroupElement::Scale(const IPoint& origin, double sx, double sy) {
    for (const auto& member : members_) {
        if (auto* t = dynamic_cast<ITransform2D*>(member.get()))
            t->Scale(origin, sx, sy);
    }
}

void GroupElement::Rotate(const IPoint& origin, double angle) {
    for (const auto& member : members_) {
        if (auto* t = dynamic_cast<ITransform2D*>(member.get()))
            t->Rotate(origin, angle);
    }
}

std::shared_ptr<IElement> GroupElement::Element(std::int32_t index) const {
    if (index < 0 || index >= ElementCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Member " + std::to_string(index) + " of a group of " + std::to_string(ElementCount()));
    return members_[static_cast<std::size_t>(index)];
}

bool GroupElement::Holds(const IElement& element) const {
    for (const auto& member : members_) {
        if (member.get() == &element)
            return true;
        if (auto* group = dynamic_cast<const GroupElement*>(member.get()); group && group->Holds(element))
            return true;
    }
    return false;
}

void GroupElement::AddElement(const std::shared_ptr<IElement>& element) {
    if (!element)
        throw Fault(fault::ObjectNotSet, kSource, "No element was given to add to the group");
    if (element.get() == static_cast<const IElement*>(this))
        throw Fault(fault::InvalidCall, kSource, "A group cannot hold itself");
    if (auto* group = dynamic_cast<const GroupElement*>(element.get());
        group && group->Holds(*static_cast<const IElement*>(this)))
        throw Fault(fault::InvalidCall, kSource, "A group cannot hold a group that holds it");
    members_.push_back(element);
}

void GroupElement::DeleteElement(const std::shared_ptr<IElement>& element) {
    std::erase(members_, element);
}

std::shared_ptr<IEnumElement> GroupElement::Elements() const { return std::make_shared<EnumElement>(members_); }

std::shared_ptr<IClone> GroupElement::Clone() const { return std::make_shared<GroupElement>(*this); }

bool GroupElement::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const GroupElement*>(&other);
    if (!o || !SameBase(*o) || o->members_.size() != members_.size())
        return false;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        auto* a = dynamic_cast<const IClone*>(members_[i].get());
        auto* b = dynamic_cast<const IClone*>(o->members_[i].get());
        if (!a || !b || !a->IsEqual(*b))
            return false;
    }
    return true;
}

} // namespace tess
