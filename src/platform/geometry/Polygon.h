#pragma once
// Polygon: a multi-ring area. Parts are live Ring objects; Part(i) reaches
// them without a cast. Clockwise rings are exterior, counter-clockwise rings
// are holes, and a hole belongs to the smallest exterior ring that contains it.

#include "platform/geometry/detail/Operators.h"
#include "platform/geometry/detail/PolycurveBase.h"

namespace tess {

class Polygon final : public detail::PolycurveBase<IPolygon4, Ring>,
                      public IArea,
                      public detail::TopologicalOperatorImpl,
                      public detail::RelationalOperatorImpl {
public:
    Polygon() = default;
    Polygon(const Polygon& other) : PolycurveBase(other) {}

    esriGeometryType GeometryType() const override { return esriGeometryPolygon; }
    std::shared_ptr<IClone> Clone() const override;

    // IPolygon, IPolygon2, IPolygon4
    std::int32_t ExteriorRingCount() const override;
    std::int32_t InteriorRingCount(const IRing& exteriorRing) const override;
    std::vector<std::shared_ptr<IRing>> QueryExteriorRings() const override;
    void Close() override;
    void QueryExteriorRingsEx(std::int32_t count, std::vector<std::shared_ptr<IRing>>& rings) const override;
    void QueryInteriorRingsEx(const IRing& exteriorRing, std::int32_t count,
                              std::vector<std::shared_ptr<IRing>>& rings) const override;
    std::shared_ptr<IGeometryBag> ExteriorRingBag() const override;
    std::shared_ptr<IGeometryBag> InteriorRingBag(const IRing& exteriorRing) const override;
    std::shared_ptr<IGeometryBag> ConnectedComponentBag() const override;

    // IArea: one pass over the vertices, no allocation (LabelPoint excepted).
    double Area() const override;
    std::shared_ptr<IPoint> Centroid() const override;
    void QueryCentroid(IPoint& centroid) const override;
    std::shared_ptr<IPoint> LabelPoint() const override;
    void QueryLabelPoint(IPoint& labelPoint) const override;

    // ITopologicalOperator
    bool IsKnownSimple() const override { return KnownSimpleState(); }
    bool IsSimple() const override;
    void Simplify() override;

    //! For each ring, the index of the exterior ring it belongs to: itself for an exterior ring,
    //! its smallest containing exterior ring for a hole, -1 for a hole outside every exterior ring.
    std::vector<std::int32_t> RingOwners() const;

protected:
    IGeometry& OperatorSelf() override { return *this; }
    const IGeometry& OperatorSelf() const override { return *this; }
    void AssignResult(const IGeometry& result) override;
    const IGeometry& RelationalSelf() const override { return *this; }

private:
    std::int32_t IndexOfRing(const IRing& ring) const;
    void SimplifyInPlace();

    // IsSimple simplifies a copy; Simplify right after it (the usual sequence) takes that copy's
    // rings instead of doing the work twice.
    mutable std::shared_ptr<Polygon> simplified_;
    mutable std::uint64_t simplifiedAt_ = 0;
    mutable const ISpatialReference* simplifiedWith_ = nullptr;
};

} // namespace tess
