#include "platform/geometry/detail/SegmentBase.h"

#include <cmath>

#include "platform/geometry/BezierCurve.h"
#include "platform/geometry/CircularArc.h"
#include "platform/geometry/EllipticArc.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/Line.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/detail/PartData.h"
#include "platform/geometry/detail/Projection.h"
#include "platform/system/Fault.h"

namespace tess::detail {

std::shared_ptr<ISegment> MakeSegment(const SegmentView& view, std::shared_ptr<ISpatialReference> reference) {
    std::shared_ptr<ISegment> s;
    const SegKind kind = view.curve ? view.curve->kind : SegKind::Line;
    switch (kind) {
    case SegKind::Line:
        s = std::make_shared<Line>();
        break;
    case SegKind::Circular:
        s = std::make_shared<CircularArc>();
        break;
    case SegKind::Elliptic:
        s = std::make_shared<EllipticArc>();
        break;
    case SegKind::Bezier:
        s = std::make_shared<BezierCurve>();
        break;
    }
    dynamic_cast<SegmentStore&>(*s).Assign(view);
    s->SpatialReference(std::move(reference));
    return s;
}

const SegmentStore& StoreOf(const ISegment& segment) {
    const auto* store = dynamic_cast<const SegmentStore*>(&segment);
    if (!store) throw GeometryFault(fault::InvalidCall, "Segment", "Unsupported segment implementation");
    return *store;
}

namespace {

//! The segment as a one-part source, to reuse the along-curve measurements.
class OneSegmentSource final : public PartSource {
public:
    explicit OneSegmentSource(const SegmentView& s) {
        part_.vertices = {s.from, s.to};
        if (s.curve) part_.curves.push_back({0, *s.curve});
    }
    std::size_t SourcePartCount() const override { return 1; }
    const PartData& SourcePart(std::size_t) const override { return part_; }

private:
    PartData part_;
};

std::shared_ptr<IPoint> MakePoint(WKSPoint p, const std::shared_ptr<ISpatialReference>& sr) {
    auto pt = std::make_shared<Point>(p.X, p.Y);
    pt->SpatialReference(sr);
    return pt;
}

} // namespace

template <class I> void SegmentBase<I>::SetEmpty() {
    from_ = to_ = {0.0, 0.0};
    empty_ = true;
}

template <class I> std::shared_ptr<IEnvelope> SegmentBase<I>::Envelope() const {
    auto e = std::make_shared<tess::Envelope>();
    QueryEnvelope(*e);
    return e;
}

template <class I> void SegmentBase<I>::QueryEnvelope(IEnvelope& envelope) const {
    envelope.SpatialReference(sr_);
    if (empty_) {
        envelope.SetEmpty();
        return;
    }
    WKSEnvelope box{from_.X, from_.Y, from_.X, from_.Y};
    ExtendEnvelope(View(), box);
    envelope.PutCoords(box.XMin, box.YMin, box.XMax, box.YMax);
}

template <class I> void SegmentBase<I>::Project(std::shared_ptr<ISpatialReference> reference) {
    const ProjectAction action = PlanProjection(sr_, reference);
    if (action == ProjectAction::None) return;
    if (action == ProjectAction::Transform && !empty_) {
        if (curve_.kind == SegKind::Line || curve_.kind == SegKind::Bezier) {
            WKSPoint pts[4] = {from_, to_, curve_.p1, curve_.p2};
            TransformPoints(*sr_, *reference, pts, curve_.kind == SegKind::Line ? 2 : 4);
            from_ = pts[0];
            to_ = pts[1];
            curve_.p1 = pts[2];
            curve_.p2 = pts[3];
        } else {
            // A conic stays a conic: map it by the local affine map at its centre, taken from the
            // centre and the ends of its two axes, and put its ends where the transformation puts them.
            const double cr = std::cos(curve_.rotation);
            const double sr = std::sin(curve_.rotation);
            const double a = curve_.semiMajor;
            const double b = a * curve_.ratio;
            WKSPoint pts[5] = {curve_.p1,
                               {curve_.p1.X + a * cr, curve_.p1.Y + a * sr},
                               {curve_.p1.X - b * sr, curve_.p1.Y + b * cr},
                               from_,
                               to_};
            TransformPoints(*sr_, *reference, pts, 5);
            // Columns of the linear part map the axis vectors (a, 0) and (0, b) in the ellipse frame.
            const double ux = (pts[1].X - pts[0].X) / a, uy = (pts[1].Y - pts[0].Y) / a;
            const double vx = (pts[2].X - pts[0].X) / b, vy = (pts[2].Y - pts[0].Y) / b;
            // Linear part L with L R(rot) = [u v], so L = [u v] R(-rot).
            Affine m;
            m.a = ux * cr + vx * sr;
            m.b = -ux * sr + vx * cr;
            m.d = uy * cr + vy * sr;
            m.e = -uy * sr + vy * cr;
            m.c = pts[0].X - (m.a * curve_.p1.X + m.b * curve_.p1.Y);
            m.f = pts[0].Y - (m.d * curve_.p1.X + m.e * curve_.p1.Y);
            CurveParams c = TransformCurve(curve_, m);
            if (curve_.kind == SegKind::Circular && c.kind != SegKind::Circular) {
                c.kind = SegKind::Circular;
                c.semiMajor = 0.5 * (c.semiMajor + c.semiMajor * c.ratio);
                c.fromParam += c.rotation;
                c.ratio = 1.0;
                c.rotation = 0.0;
            }
            curve_ = c;
            from_ = pts[3];
            to_ = pts[4];
        }
    }
    sr_ = std::move(reference);
}

template <class I> void SegmentBase<I>::SnapToSpatialReference() {
    if (empty_) return;
    const SnapGrid grid = GridOf(sr_);
    from_ = grid.Snap(from_);
    to_ = grid.Snap(to_);
    if (curve_.kind != SegKind::Line) curve_.p1 = grid.Snap(curve_.p1);
    if (curve_.kind == SegKind::Bezier) curve_.p2 = grid.Snap(curve_.p2);
}

template <class I> double SegmentBase<I>::Length() const { return empty_ ? 0.0 : detail::Length(View()); }

template <class I> std::shared_ptr<IPoint> SegmentBase<I>::FromPoint() const {
    if (empty_) {
        auto p = std::make_shared<Point>();
        p->SpatialReference(sr_);
        return p;
    }
    return MakePoint(from_, sr_);
}

template <class I> std::shared_ptr<IPoint> SegmentBase<I>::ToPoint() const {
    if (empty_) {
        auto p = std::make_shared<Point>();
        p->SpatialReference(sr_);
        return p;
    }
    return MakePoint(to_, sr_);
}

template <class I> void SegmentBase<I>::QueryFromPoint(IPoint& point) const {
    if (empty_)
        point.SetEmpty();
    else
        point.PutCoords(from_.X, from_.Y);
    point.SpatialReference(sr_);
}

template <class I> void SegmentBase<I>::QueryToPoint(IPoint& point) const {
    if (empty_)
        point.SetEmpty();
    else
        point.PutCoords(to_.X, to_.Y);
    point.SpatialReference(sr_);
}

template <class I> void SegmentBase<I>::FromPoint(const IPoint& point) { MoveEnd(true, {point.X(), point.Y()}); }

template <class I> void SegmentBase<I>::ToPoint(const IPoint& point) { MoveEnd(false, {point.X(), point.Y()}); }

template <class I> void SegmentBase<I>::MoveEnd(bool atStart, WKSPoint p) {
    if (empty_ || curve_.kind == SegKind::Line) {
        if (empty_) from_ = to_ = p;
        (atStart ? from_ : to_) = p;
        empty_ = false;
        return;
    }
    const WKSPoint fixed = atStart ? to_ : from_;
    const WKSPoint moving = atStart ? from_ : to_;
    Affine m;
    if (from_ == to_) {
        // A closed curve moves as a whole.
        m = Affine::Translation(p.X - moving.X, p.Y - moving.Y);
    } else {
        // The similarity that keeps the other end and brings this end to p keeps the curve's shape.
        const double ox = moving.X - fixed.X, oy = moving.Y - fixed.Y;
        const double nx = p.X - fixed.X, ny = p.Y - fixed.Y;
        const double den = ox * ox + oy * oy;
        const double k = (nx * ox + ny * oy) / den;
        const double s = (ny * ox - nx * oy) / den;
        m = {k, -s, fixed.X - k * fixed.X + s * fixed.Y, s, k, fixed.Y - s * fixed.X - k * fixed.Y};
    }
    ApplyAffine(m);
    (atStart ? from_ : to_) = p;
}

template <class I>
void SegmentBase<I>::QueryPoint(esriSegmentExtension extension, double distanceAlongCurve, bool asRatio,
                                IPoint& outPoint) const {
    if (empty_) {
        outPoint.SetEmpty();
        return;
    }
    WKSPoint p;
    SourcePointAlong(OneSegmentSource(View()), extension, distanceAlongCurve, asRatio, p);
    outPoint.PutCoords(p.X, p.Y);
    outPoint.SpatialReference(sr_);
}

template <class I>
void SegmentBase<I>::QueryPointAndDistance(esriSegmentExtension extension, const IPoint& inPoint, bool asRatio,
                                           IPoint& outPoint, double& distanceAlongCurve,
                                           double& distanceFromCurve, bool& rightSide) const {
    if (empty_) throw GeometryFault(fault::GeometryFailed, "QueryPointAndDistance", "The segment is empty");
    const OneSegmentSource src(View());
    NearestResult r;
    SourceNearest(src, extension, {inPoint.X(), inPoint.Y()}, r);
    const double length = Length();
    outPoint.PutCoords(r.point.X, r.point.Y);
    outPoint.SpatialReference(sr_);
    distanceAlongCurve = asRatio ? (length > 0.0 ? r.along / length : 0.0) : r.along;
    distanceFromCurve = r.distance;
    rightSide = r.right;
}

template <class I> void SegmentBase<I>::ReverseOrientation() {
    std::swap(from_, to_);
    curve_ = ReverseCurve(curve_);
}

template <class I> void SegmentBase<I>::ApplyAffine(const Affine& m) {
    const CurveParams c = TransformCurve(curve_, m);
    if (c.kind != curve_.kind)
        throw GeometryFault(fault::InvalidCall, "Scale", "A circular arc cannot be scaled unequally");
    curve_ = c;
    from_ = m.Apply(from_);
    to_ = m.Apply(to_);
}

template <class I> void SegmentBase<I>::Move(double dx, double dy) {
    if (!empty_) ApplyAffine(Affine::Translation(dx, dy));
}

template <class I> void SegmentBase<I>::Scale(const IPoint& origin, double sx, double sy) {
    if (!empty_) ApplyAffine(Affine::Scaling({origin.X(), origin.Y()}, sx, sy));
}

template <class I> void SegmentBase<I>::Rotate(const IPoint& origin, double angle) {
    if (!empty_) ApplyAffine(Affine::Rotation({origin.X(), origin.Y()}, angle));
}

template <class I> bool SegmentBase<I>::IsEqual(const IClone& other) const {
    const auto* g = dynamic_cast<const IGeometry*>(&other);
    const auto* s = dynamic_cast<const SegmentStore*>(&other);
    if (!g || !s || g->GeometryType() != this->GeometryType()) return false;
    const auto& o = static_cast<const SegmentBase&>(*s);
    if (empty_ || o.empty_) return empty_ == o.empty_;
    return from_ == o.from_ && to_ == o.to_ && curve_ == o.curve_;
}

template class SegmentBase<ILine>;
template class SegmentBase<ICircularArc>;
template class SegmentBase<IEllipticArc>;
template class SegmentBase<IBezierCurve>;

} // namespace tess::detail
