#pragma once
// Internal: what the four segment classes share. A segment holds its two
// ends and, for a true curve, its CurveParams. Instantiated in SegmentBase.cpp
// for ILine, ICircularArc, IEllipticArc and IBezierCurve.

#include <memory>

#include "platform/geometry/Geometry.h"
#include "platform/system/Clone.h"
#include "platform/geometry/detail/SegmentMath.h"

namespace tess::detail {

//! Non-template access to any segment's data (cross-cast from ISegment).
class SegmentStore {
public:
    virtual ~SegmentStore() = default;
    SegmentView View() const { return {from_, to_, curve_.kind == SegKind::Line ? nullptr : &curve_}; }
    //! Takes the shape of a view; the concrete class refuses a kind it cannot hold (Fault).
    virtual void Assign(const SegmentView& view) = 0;

protected:
    WKSPoint from_{0.0, 0.0};
    WKSPoint to_{0.0, 0.0};
    CurveParams curve_;
    bool empty_ = true;
};

//! A new segment of the view's kind (Line, CircularArc, EllipticArc or BezierCurve).
std::shared_ptr<ISegment> MakeSegment(const SegmentView& view, std::shared_ptr<ISpatialReference> reference);
//! The data of any segment; Fault for a foreign implementation.
const SegmentStore& StoreOf(const ISegment& segment);

template <class Interface>
class SegmentBase : public Interface, public SegmentStore, public ITransform2D, public IClone {
public:
    // IGeometry
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override { sr_ = std::move(reference); }
    bool IsEmpty() const override { return empty_; }
    void SetEmpty() override;
    std::shared_ptr<IEnvelope> Envelope() const override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // ICurve
    double Length() const override;
    std::shared_ptr<IPoint> FromPoint() const override;
    //! Moving one end of a true curve keeps its shape: it is turned and scaled about the other end
    //! (a closed curve moves as a whole).
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
    bool IsClosed() const override { return !empty_ && from_ == to_; }
    void ReverseOrientation() override;

    // ITransform2D
    void Move(double dx, double dy) override;
    //! Unequal factors on a circular arc are refused (Fault): the result would be elliptic.
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone
    bool IsEqual(const IClone& other) const override;

protected:
    SegmentBase() = default;
    SegmentBase(const SegmentBase&) = default;
    void MoveEnd(bool atStart, WKSPoint p);
    void ApplyAffine(const Affine& m);

    std::shared_ptr<ISpatialReference> sr_;
};

extern template class SegmentBase<ILine>;
extern template class SegmentBase<ICircularArc>;
extern template class SegmentBase<IEllipticArc>;
extern template class SegmentBase<IBezierCurve>;

} // namespace tess::detail
