#pragma once
// Multipoint: an unordered set of points. The points are live Point objects
// (Geometry(i) returns the point itself); EnumVertices treats each point as a
// part of one vertex.

#include <vector>

#include "platform/geometry/Point.h"
#include "platform/geometry/detail/Stores.h"

namespace tess {

class Multipoint final : public IMultipoint,
                         public IPointCollection,
                         public IGeometryCollection,
                         public ITransform2D,
                         public IClone,
                         public detail::TopologicalOperatorImpl,
                         public detail::RelationalOperatorImpl,
                         public detail::VertexStore,
                         public std::enable_shared_from_this<Multipoint> {
public:
    Multipoint() = default;
    Multipoint(const Multipoint& other);

    // IGeometry
    esriGeometryType GeometryType() const override { return esriGeometryMultipoint; }
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override;
    bool IsEmpty() const override { return points_.empty(); }
    void SetEmpty() override;
    std::shared_ptr<IEnvelope> Envelope() const override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // IPointCollection
    std::int32_t PointCount() const override { return static_cast<std::int32_t>(points_.size()); }
    std::shared_ptr<IPoint> Point(std::int32_t index) const override;
    void QueryPoint(std::int32_t index, IPoint& point) const override;
    void AddPoint(const IPoint& point) override;
    void AddWKSPoints(std::int32_t count, const WKSPoint* points) override;
    void UpdatePoint(std::int32_t index, const IPoint& point) override;
    void InsertWKSPoints(std::int32_t index, std::int32_t count, const WKSPoint* points) override;
    void RemovePoints(std::int32_t index, std::int32_t count) override;
    void SetPointCollection(const IPointCollection& other) override;
    void QueryWKSPoints(std::int32_t index, std::int32_t count, WKSPoint* points) const override;
    std::shared_ptr<IEnumVertex> EnumVertices() const override;

    // IGeometryCollection
    std::int32_t GeometryCount() const override { return PointCount(); }
    std::shared_ptr<IGeometry> Geometry(std::int32_t index) const override;
    void AddGeometry(std::shared_ptr<IGeometry> geometry) override;
    void RemoveGeometries(std::int32_t index, std::int32_t count) override;

    // ITransform2D
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

    // ITopologicalOperator: simple when no point repeats (within the cluster tolerance).
    bool IsKnownSimple() const override;
    bool IsSimple() const override;
    void Simplify() override;

    // VertexStore
    std::int32_t StorePartCount() const override { return PointCount(); }
    std::int32_t StorePartSize(std::int32_t) const override { return 1; }
    WKSPoint StoreGet(std::int32_t part, std::int32_t) const override { return points_[part]->Coords(); }
    void StoreSet(std::int32_t part, std::int32_t vertex, WKSPoint p) override;

    const tess::Point& PointAt(std::size_t i) const { return *points_[i]; }

protected:
    IGeometry& OperatorSelf() override { return *this; }
    const IGeometry& OperatorSelf() const override { return *this; }
    void AssignResult(const IGeometry& result) override;
    const IGeometry& RelationalSelf() const override { return *this; }

private:
    std::vector<std::shared_ptr<tess::Point>> points_;
    std::shared_ptr<ISpatialReference> sr_;
    bool knownSimple_ = false;
    std::uint64_t simpleStamp_ = 0;
};

} // namespace tess
