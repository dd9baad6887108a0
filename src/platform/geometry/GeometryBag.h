#pragma once
// GeometryBag: a list of any geometries, held by reference. It is its own
// IEnumGeometry, so it can be handed to ConstructUnion directly.

#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/system/Clone.h"

namespace tess {

class GeometryBag final : public IGeometryBag,
                          public IGeometryCollection,
                          public IEnumGeometry,
                          public ITransform2D,
                          public IClone {
public:
    GeometryBag() = default;

    // IGeometry
    esriGeometryType GeometryType() const override { return esriGeometryBag; }
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    //! Also given to every member, as the members share the bag's reference.
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override;
    bool IsEmpty() const override;
    void SetEmpty() override;
    std::shared_ptr<IEnvelope> Envelope() const override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // IGeometryCollection: members are held, not copied.
    std::int32_t GeometryCount() const override { return static_cast<std::int32_t>(members_.size()); }
    std::shared_ptr<IGeometry> Geometry(std::int32_t index) const override;
    void AddGeometry(std::shared_ptr<IGeometry> geometry) override;
    void RemoveGeometries(std::int32_t index, std::int32_t count) override;

    // IEnumGeometry
    void Reset() override { cursor_ = 0; }
    std::shared_ptr<IGeometry> Next() override;

    // ITransform2D: moves every member that can be moved.
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone: members are cloned.
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

private:
    std::vector<std::shared_ptr<IGeometry>> members_;
    std::shared_ptr<ISpatialReference> sr_;
    std::size_t cursor_ = 0;
};

} // namespace tess
