#pragma once
// Internal: everything a Path and a Ring share. The template is instantiated
// for IPath and IRing only, in PathBase.cpp.

#include <memory>
#include <span>

#include "platform/geometry/Geometry.h"
#include "platform/system/Clone.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/Stores.h"

namespace tess::detail {

template <class Interface>
class PathBase : public Interface,
                 public IPointCollection,
                 public ISegmentCollection,
                 public ITransform2D,
                 public IClone,
                 public PartSource,
                 public VertexStore,
                 public std::enable_shared_from_this<PathBase<Interface>> {
public:
    // Direct access for measuring code: no allocation, no virtual call per vertex. A closed
    // ring's last vertex repeats its first. Writing through the mutable span leaves true curves
    // as they are (their parameters do not follow a moved end); call Touch() after writing.
    std::span<const WKSPoint> Vertices() const { return part_.vertices; }
    std::span<WKSPoint> MutableVertices() {
        Touch();
        return part_.vertices;
    }
    const PartData& Data() const { return part_; }
    PartData& MutableData() {
        Touch();
        return part_;
    }
    //! Marks the part as changed (clears the owner's known-simple state).
    void Touch() { stamp_ = NextStamp(); }
    std::uint64_t Stamp() const { return stamp_; }

    // IGeometry
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override { sr_ = std::move(reference); }
    bool IsEmpty() const override { return part_.vertices.empty(); }
    void SetEmpty() override;
    std::shared_ptr<IEnvelope> Envelope() const override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // ICurve
    double Length() const override;
    std::shared_ptr<IPoint> FromPoint() const override;
    void FromPoint(const IPoint& point) override;
    std::shared_ptr<IPoint> ToPoint() const override;
    void ToPoint(const IPoint& point) override;
    void QueryFromPoint(IPoint& point) const override;
    void QueryToPoint(IPoint& point) const override;
    void QueryPoint(esriSegmentExtension extension, double distanceAlongCurve, bool asRatio,
                    IPoint& outPoint) const override;
    void QueryPointAndDistance(esriSegmentExtension extension, const IPoint& inPoint, bool asRatio,
                               IPoint& outPoint, double& distanceAlongCurve, double& distanceFromCurve,
                               bool& rightSide) const override;
    bool IsClosed() const override { return part_.IsClosed(); }
    void ReverseOrientation() override;

    // IPointCollection
    std::int32_t PointCount() const override { return static_cast<std::int32_t>(part_.vertices.size()); }
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

    // ISegmentCollection
    std::int32_t SegmentCount() const override { return part_.SegmentCount(); }
    std::shared_ptr<ISegment> Segment(std::int32_t index) const override;
    void AddSegment(const ISegment& segment) override;
    void AddSegmentCollection(const ISegmentCollection& segments) override;
    bool HasNonLinearSegments() const override { return !part_.curves.empty(); }
    std::shared_ptr<IEnumSegment> EnumSegments() const override;

    // ITransform2D
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone (Clone is the concrete class's)
    bool IsEqual(const IClone& other) const override;

    // PartSource
    std::size_t SourcePartCount() const override { return part_.vertices.empty() ? 0 : 1; }
    const PartData& SourcePart(std::size_t) const override { return part_; }

    // VertexStore
    std::int32_t StorePartCount() const override { return part_.vertices.empty() ? 0 : 1; }
    std::int32_t StorePartSize(std::int32_t) const override { return PointCount(); }
    WKSPoint StoreGet(std::int32_t, std::int32_t vertex) const override { return part_.vertices[vertex]; }
    void StoreSet(std::int32_t part, std::int32_t vertex, WKSPoint p) override;

protected:
    PathBase() = default;
    PathBase(const PathBase& other)
        : Interface(other), IPointCollection(other), ISegmentCollection(other), ITransform2D(other), IClone(other),
          PartSource(other), VertexStore(other), std::enable_shared_from_this<PathBase>(), part_(other.part_),
          sr_(other.sr_), stamp_(NextStamp()) {}
    PathBase& operator=(const PathBase&) = delete;

    PartData part_;
    std::shared_ptr<ISpatialReference> sr_;
    std::uint64_t stamp_ = NextStamp();
};

extern template class PathBase<IPath>;
extern template class PathBase<IRing>;

} // namespace tess::detail
