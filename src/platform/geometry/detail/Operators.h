#pragma once
// Internal: the topological and relational operators, shared by the shapes
// that have them. Each shape says what it is (OperatorSelf) and how to take a
// result's content (AssignResult); the work is done by the engine bridge.

#include <memory>

#include "platform/geometry/Geometry.h"

namespace tess::detail {

class RelationalOperatorImpl : public IRelationalOperator {
public:
    bool Disjoint(const IGeometry& other) const override;
    bool Intersects(const IGeometry& other) const override;
    bool Contains(const IGeometry& other) const override;
    bool Within(const IGeometry& other) const override;
    bool Touches(const IGeometry& other) const override;
    bool Overlaps(const IGeometry& other) const override;
    bool Crosses(const IGeometry& other) const override;
    bool Equals(const IGeometry& other) const override;
    bool Relation(const IGeometry& other, const std::string& pattern) const override;

protected:
    virtual const IGeometry& RelationalSelf() const = 0;
};

class TopologicalOperatorImpl : public ITopologicalOperator {
public:
    std::shared_ptr<IGeometry> Buffer(double distance) const override;
    std::shared_ptr<IGeometry> Union(const IGeometry& other) const override;
    void ConstructUnion(IEnumGeometry& geometries) override;
    void Cut(const IPolyline& cutter, std::shared_ptr<IGeometry>& leftGeometry,
             std::shared_ptr<IGeometry>& rightGeometry) const override;
    void Clip(const IEnvelope& clipper) override;
    void ClipDense(const IEnvelope& clipper, double denseDistance) override;
    std::shared_ptr<IGeometry> Intersect(const IGeometry& other,
                                         esriGeometryDimension resultDimension) const override;
    std::shared_ptr<IGeometry> Difference(const IGeometry& other) const override;
    std::shared_ptr<IGeometry> SymmetricDifference(const IGeometry& other) const override;
    std::shared_ptr<IGeometry> Boundary() const override;
    std::shared_ptr<IGeometry> ConvexHull() const override;

protected:
    virtual IGeometry& OperatorSelf() = 0;
    virtual const IGeometry& OperatorSelf() const = 0;
    //! Takes the content of a result of the same type (the spatial reference stays unless unset).
    virtual void AssignResult(const IGeometry& result) = 0;
};

} // namespace tess::detail
