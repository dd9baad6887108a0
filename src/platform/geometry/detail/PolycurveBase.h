#pragma once
// Internal: everything a Polyline and a Polygon share: parts held as live
// Path or Ring objects, the point, segment and part collections over them,
// and the curve measurements across parts. Instantiated in PolycurveBase.cpp
// for (IPolyline, Path) and (IPolygon4, Ring) only.

#include <memory>
#include <vector>

#include "platform/geometry/Path.h"
#include "platform/geometry/Ring.h"

namespace tess::detail {

template <class Interface, class PartT>
class PolycurveBase : public Interface,
                      public IPointCollection,
                      public ISegmentCollection,
                      public IGeometryCollection,
                      public ITransform2D,
                      public IClone,
                      public PartSource,
                      public VertexStore,
                      public std::enable_shared_from_this<PolycurveBase<Interface, PartT>> {
public:
    //! Typed part access without a cast or a virtual call.
    std::size_t PartCount() const { return parts_.size(); }
    const PartT& Part(std::size_t i) const { return *parts_[i]; }
    PartT& Part(std::size_t i) { return *parts_[i]; }
    const std::shared_ptr<PartT>& PartPtr(std::size_t i) const { return parts_[i]; }
    //! Appends a part object itself (live, not copied).
    void AddPart(std::shared_ptr<PartT> part);

    // IGeometry
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override;
    bool IsEmpty() const override;
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
    bool IsClosed() const override;
    void ReverseOrientation() override;

    // IPointCollection
    std::int32_t PointCount() const override;
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
    std::int32_t SegmentCount() const override;
    std::shared_ptr<ISegment> Segment(std::int32_t index) const override;
    void AddSegment(const ISegment& segment) override;
    void AddSegmentCollection(const ISegmentCollection& segments) override;
    bool HasNonLinearSegments() const override;
    std::shared_ptr<IEnumSegment> EnumSegments() const override;

    // IGeometryCollection
    std::int32_t GeometryCount() const override { return static_cast<std::int32_t>(parts_.size()); }
    std::shared_ptr<IGeometry> Geometry(std::int32_t index) const override;
    void AddGeometry(std::shared_ptr<IGeometry> geometry) override;
    void RemoveGeometries(std::int32_t index, std::int32_t count) override;

    // ITransform2D
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone (Clone is the concrete class's)
    bool IsEqual(const IClone& other) const override;

    // PartSource
    std::size_t SourcePartCount() const override { return parts_.size(); }
    const PartData& SourcePart(std::size_t i) const override { return parts_[i]->Data(); }

    // VertexStore
    std::int32_t StorePartCount() const override { return static_cast<std::int32_t>(parts_.size()); }
    std::int32_t StorePartSize(std::int32_t part) const override { return parts_[part]->PointCount(); }
    WKSPoint StoreGet(std::int32_t part, std::int32_t vertex) const override {
        return parts_[part]->Vertices()[vertex];
    }
    void StoreSet(std::int32_t part, std::int32_t vertex, WKSPoint p) override;

    //! Known simple: set by Simplify, cleared when the shape or any of its parts changes.
    bool KnownSimpleState() const;
    //! Marks the shape as simple (or not) under the cluster tolerance of its present reference.
    void MarkKnownSimple(bool simple);
    //! Known simple under a tolerance at least that of the present reference: simplifying again
    //! would change nothing.
    bool SimplifyChangesNothing() const;
    //! A stamp that grows whenever the shape or any of its parts changes.
    std::uint64_t LatestChange() const;

protected:
    PolycurveBase() = default;
    PolycurveBase(const PolycurveBase& other);
    PolycurveBase& operator=(const PolycurveBase&) = delete;

    //! A new part of the owner's kind made from any geometry (a copy), null when it has no vertices.
    std::shared_ptr<PartT> ConvertPart(const IGeometry& geometry) const;
    //! Global vertex index to (part, vertex); Fault when out of range. index == count is allowed
    //! when allowEnd (for inserting at the end).
    void Locate(std::int32_t index, std::size_t& part, std::int32_t& vertex, bool allowEnd) const;
    void Changed() {
        knownSimple_ = false;
        changeStamp_ = NextStamp();
    }

    std::vector<std::shared_ptr<PartT>> parts_;
    std::shared_ptr<ISpatialReference> sr_;
    bool knownSimple_ = false;
    std::uint64_t simpleStamp_ = 0;
    double simpleTolerance_ = 0.0; //!< the cluster tolerance that the known-simple state holds for
    std::uint64_t changeStamp_ = NextStamp();
};

extern template class PolycurveBase<IPolyline, Path>;
extern template class PolycurveBase<IPolygon4, Ring>;

} // namespace tess::detail
