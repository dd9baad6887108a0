#include "platform/geometry/GeometryBag.h"

#include "platform/geometry/Envelope.h"
#include "platform/geometry/detail/Helpers.h"
#include "platform/system/Fault.h"

namespace tess {

void GeometryBag::SpatialReference(std::shared_ptr<ISpatialReference> reference) {
    sr_ = std::move(reference);
    for (auto& m : members_) m->SpatialReference(sr_);
}

bool GeometryBag::IsEmpty() const {
    for (const auto& m : members_)
        if (!m->IsEmpty()) return false;
    return true;
}

void GeometryBag::SetEmpty() {
    members_.clear();
    cursor_ = 0;
}

std::shared_ptr<IEnvelope> GeometryBag::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

void GeometryBag::QueryEnvelope(IEnvelope& envelope) const {
    envelope.SetEmpty();
    tess::Envelope part;
    for (const auto& m : members_) {
        m->QueryEnvelope(part);
        envelope.Union(part);
    }
    envelope.SpatialReference(sr_);
}

void GeometryBag::Project(std::shared_ptr<ISpatialReference> reference) {
    for (auto& m : members_) m->Project(reference);
    if (reference) sr_ = std::move(reference);
}

void GeometryBag::SnapToSpatialReference() {
    for (auto& m : members_) m->SnapToSpatialReference();
}

std::shared_ptr<IGeometry> GeometryBag::Geometry(std::int32_t index) const {
    detail::CheckIndex(index, GeometryCount(), "Geometry");
    return members_[index];
}

void GeometryBag::AddGeometry(std::shared_ptr<IGeometry> geometry) {
    if (!geometry) throw GeometryFault(fault::ObjectNotSet, "AddGeometry", "Object variable not set");
    if (!sr_ && members_.empty()) sr_ = geometry->SpatialReference();
    members_.push_back(std::move(geometry));
}

void GeometryBag::RemoveGeometries(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    detail::CheckIndex(index, GeometryCount(), "RemoveGeometries");
    detail::CheckIndex(index + count - 1, GeometryCount(), "RemoveGeometries");
    members_.erase(members_.begin() + index, members_.begin() + index + count);
    if (cursor_ > members_.size()) cursor_ = members_.size();
}

std::shared_ptr<IGeometry> GeometryBag::Next() {
    if (cursor_ >= members_.size()) return nullptr;
    return members_[cursor_++];
}

void GeometryBag::Move(double dx, double dy) {
    for (auto& m : members_)
        if (auto t = std::dynamic_pointer_cast<ITransform2D>(m)) t->Move(dx, dy);
}

void GeometryBag::Scale(const IPoint& origin, double sx, double sy) {
    for (auto& m : members_)
        if (auto t = std::dynamic_pointer_cast<ITransform2D>(m)) t->Scale(origin, sx, sy);
}

void GeometryBag::Rotate(const IPoint& origin, double angle) {
    for (auto& m : members_)
        if (auto t = std::dynamic_pointer_cast<ITransform2D>(m)) t->Rotate(origin, angle);
}

std::shared_ptr<IClone> GeometryBag::Clone() const {
    auto bag = std::make_shared<GeometryBag>();
    bag->sr_ = sr_;
    for (const auto& m : members_) {
        const auto* c = dynamic_cast<const IClone*>(m.get());
        if (!c) throw GeometryFault(fault::TypeMismatch, "Clone", "A member cannot be cloned");
        bag->members_.push_back(std::dynamic_pointer_cast<IGeometry>(c->Clone()));
    }
    return bag;
}

bool GeometryBag::IsEqual(const IClone& other) const {
    const auto* b = dynamic_cast<const GeometryBag*>(&other);
    if (!b || b->members_.size() != members_.size()) return false;
    for (std::size_t i = 0; i < members_.size(); ++i) {
        const auto* c = dynamic_cast<const IClone*>(members_[i].get());
        const auto* d = dynamic_cast<const IClone*>(b->members_[i].get());
        if (!c || !d || !c->IsEqual(*d)) return false;
    }
    return true;
}

} // namespace tess
