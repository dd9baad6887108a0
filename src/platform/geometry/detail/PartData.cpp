#include "platform/geometry/detail/PartData.h"

#include <atomic>
#include <cmath>
#include <limits>

namespace tess::detail {

std::uint64_t NextStamp() {
    static std::atomic<std::uint64_t> counter{1};
    return counter.fetch_add(1, std::memory_order_relaxed);
}

void PartData::AppendSegment(const SegmentView& s) {
    if (vertices.empty()) vertices.push_back(s.from);
    const auto index = static_cast<std::int32_t>(vertices.size() - 1);
    vertices.push_back(s.to);
    if (s.curve) curves.push_back({index, *s.curve});
}

void PartData::StraightenAround(std::int32_t vertex) {
    std::erase_if(curves, [vertex](const CurveEntry& e) { return e.segment == vertex - 1 || e.segment == vertex; });
}

void PartData::InsertVertices(std::int32_t index, const WKSPoint* points, std::int32_t count) {
    if (count <= 0) return;
    vertices.insert(vertices.begin() + index, points, points + count);
    std::erase_if(curves, [index](const CurveEntry& e) { return e.segment == index - 1; });
    for (CurveEntry& e : curves)
        if (e.segment >= index) e.segment += count;
}

void PartData::RemoveVertices(std::int32_t index, std::int32_t count) {
    if (count <= 0) return;
    vertices.erase(vertices.begin() + index, vertices.begin() + index + count);
    const std::int32_t last = index + count - 1;
    std::erase_if(curves, [index, last](const CurveEntry& e) { return e.segment >= index - 1 && e.segment <= last; });
    for (CurveEntry& e : curves)
        if (e.segment > last) e.segment -= count;
}

void PartData::Reverse() {
    std::reverse(vertices.begin(), vertices.end());
    const std::int32_t n = SegmentCount();
    for (CurveEntry& e : curves) {
        e.segment = n - 1 - e.segment;
        e.params = ReverseCurve(e.params);
    }
    std::reverse(curves.begin(), curves.end());
}

void PartData::Transform(const Affine& m) {
    for (WKSPoint& v : vertices) v = m.Apply(v);
    for (CurveEntry& e : curves) e.params = TransformCurve(e.params, m);
}

double SourceLength(const PartSource& src) {
    double total = 0.0;
    for (std::size_t p = 0; p < src.SourcePartCount(); ++p)
        src.SourcePart(p).ForEachSegment([&total](std::int32_t, const SegmentView& s) { total += Length(s); });
    return total;
}

void SourceEnvelope(const PartSource& src, WKSEnvelope& box) {
    box = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
           -std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (std::size_t p = 0; p < src.SourcePartCount(); ++p) {
        const PartData& part = src.SourcePart(p);
        if (part.curves.empty()) {
            for (const WKSPoint& v : part.vertices) {
                box.XMin = std::min(box.XMin, v.X);
                box.YMin = std::min(box.YMin, v.Y);
                box.XMax = std::max(box.XMax, v.X);
                box.YMax = std::max(box.YMax, v.Y);
            }
        } else {
            if (part.vertices.size() == 1) ExtendEnvelope({part.vertices[0], part.vertices[0], nullptr}, box);
            part.ForEachSegment([&box](std::int32_t, const SegmentView& s) { ExtendEnvelope(s, box); });
        }
    }
}

namespace {

bool FirstSegment(const PartSource& src, SegmentView& out) {
    for (std::size_t p = 0; p < src.SourcePartCount(); ++p) {
        const PartData& part = src.SourcePart(p);
        if (part.SegmentCount() > 0) {
            out = part.SegmentAt(0);
            return true;
        }
    }
    return false;
}

bool LastSegment(const PartSource& src, SegmentView& out) {
    for (std::size_t p = src.SourcePartCount(); p-- > 0;) {
        const PartData& part = src.SourcePart(p);
        if (part.SegmentCount() > 0) {
            out = part.SegmentAt(part.SegmentCount() - 1);
            return true;
        }
    }
    return false;
}

bool FirstVertex(const PartSource& src, WKSPoint& out) {
    for (std::size_t p = 0; p < src.SourcePartCount(); ++p) {
        if (!src.SourcePart(p).vertices.empty()) {
            out = src.SourcePart(p).vertices.front();
            return true;
        }
    }
    return false;
}

} // namespace

bool SourcePointAlong(const PartSource& src, int extension, double distance, bool asRatio, WKSPoint& out) {
    SegmentView first{};
    SegmentView last{};
    if (!FirstSegment(src, first)) return FirstVertex(src, out);
    LastSegment(src, last);
    const double total = SourceLength(src);
    const double d = asRatio ? distance * total : distance;
    if (d <= 0.0) {
        out = first.from;
        if (d < 0.0 && (extension & esriExtendTangentAtFrom)) {
            const WKSPoint t = TangentAt(first, 0.0);
            out = {first.from.X + t.X * d, first.from.Y + t.Y * d};
        }
        return true;
    }
    if (d >= total) {
        out = last.to;
        if (d > total && (extension & esriExtendTangentAtTo)) {
            const WKSPoint t = TangentAt(last, 1.0);
            out = {last.to.X + t.X * (d - total), last.to.Y + t.Y * (d - total)};
        }
        return true;
    }
    double acc = 0.0;
    bool found = false;
    for (std::size_t p = 0; p < src.SourcePartCount() && !found; ++p) {
        src.SourcePart(p).ForEachSegment([&](std::int32_t, const SegmentView& s) {
            if (found) return;
            const double len = Length(s);
            if (acc + len >= d) {
                out = PointAtDistance(s, d - acc);
                found = true;
            }
            acc += len;
        });
    }
    if (!found) out = last.to;
    return true;
}

bool SourceNearest(const PartSource& src, int extension, WKSPoint p, NearestResult& out) {
    SegmentView first{};
    if (!FirstSegment(src, first)) {
        WKSPoint v;
        if (!FirstVertex(src, v)) return false;
        out = {v, 0.0, std::hypot(p.X - v.X, p.Y - v.Y), false};
        return true;
    }
    SegmentView last{};
    LastSegment(src, last);
    double best = std::numeric_limits<double>::infinity();
    double acc = 0.0;
    WKSPoint tangent{0.0, 0.0};
    for (std::size_t k = 0; k < src.SourcePartCount(); ++k) {
        src.SourcePart(k).ForEachSegment([&](std::int32_t, const SegmentView& s) {
            WKSPoint q;
            const double u = NearestParameter(s, p, q);
            const double dist = std::hypot(p.X - q.X, p.Y - q.Y);
            if (dist < best) {
                best = dist;
                out.point = q;
                out.along = acc + LengthToParameter(s, u);
                out.distance = dist;
                tangent = TangentAt(s, u);
            }
            acc += Length(s);
        });
    }
    const double total = acc;
    // Beyond the ends, the tangent lines may come closer than the curve itself.
    if (extension & esriExtendTangentAtFrom) {
        const WKSPoint t = TangentAt(first, 0.0);
        const double k = (p.X - first.from.X) * t.X + (p.Y - first.from.Y) * t.Y;
        const WKSPoint q{first.from.X + t.X * k, first.from.Y + t.Y * k};
        const double dist = std::hypot(p.X - q.X, p.Y - q.Y);
        if (k < 0.0 && dist < best) {
            best = dist;
            out = {q, k, dist, false};
            tangent = t;
        }
    }
    if (extension & esriExtendTangentAtTo) {
        const WKSPoint t = TangentAt(last, 1.0);
        const double k = (p.X - last.to.X) * t.X + (p.Y - last.to.Y) * t.Y;
        const WKSPoint q{last.to.X + t.X * k, last.to.Y + t.Y * k};
        const double dist = std::hypot(p.X - q.X, p.Y - q.Y);
        if (k > 0.0 && dist < best) {
            out = {q, total + k, dist, false};
            tangent = t;
        }
    }
    const double side = tangent.X * (p.Y - out.point.Y) - tangent.Y * (p.X - out.point.X);
    out.right = side < 0.0;
    return true;
}

AreaTerms PartAreaTerms(const PartData& part, WKSPoint o) {
    AreaTerms sum;
    const std::size_t n = part.vertices.size();
    if (n < 2) return sum;
    if (part.curves.empty()) {
        // The plain ring: a single pass over contiguous vertices.
        const WKSPoint* v = part.vertices.data();
        double px = v[0].X - o.X;
        double py = v[0].Y - o.Y;
        for (std::size_t i = 1; i < n; ++i) {
            const double qx = v[i].X - o.X;
            const double qy = v[i].Y - o.Y;
            const double cross = px * qy - qx * py;
            sum.area += cross;
            sum.mx += cross * (px + qx);
            sum.my += cross * (py + qy);
            px = qx;
            py = qy;
        }
        sum.area *= 0.5;
        sum.mx /= 6.0;
        sum.my /= 6.0;
    } else {
        part.ForEachSegment([&sum, o](std::int32_t, const SegmentView& s) {
            const AreaTerms t = AreaIntegrals(s, o);
            sum.area += t.area;
            sum.mx += t.mx;
            sum.my += t.my;
        });
    }
    if (!part.IsClosed()) {
        const AreaTerms t = AreaIntegrals({part.vertices.back(), part.vertices.front(), nullptr}, o);
        sum.area += t.area;
        sum.mx += t.mx;
        sum.my += t.my;
    }
    return sum;
}

double PartSignedArea(const PartData& part) {
    if (part.vertices.empty()) return 0.0;
    return PartAreaTerms(part, part.vertices.front()).area;
}

namespace {

int ContainsInVertices(const WKSPoint* v, std::size_t n, WKSPoint p) {
    if (n < 3) return -1;
    bool inside = false;
    for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
        const WKSPoint& a = v[j];
        const WKSPoint& b = v[i];
        const double cross = (b.X - a.X) * (p.Y - a.Y) - (b.Y - a.Y) * (p.X - a.X);
        if (cross == 0.0 && p.X >= std::min(a.X, b.X) && p.X <= std::max(a.X, b.X) &&
            p.Y >= std::min(a.Y, b.Y) && p.Y <= std::max(a.Y, b.Y))
            return 0;
        if ((a.Y > p.Y) != (b.Y > p.Y)) {
            const double x = a.X + (p.Y - a.Y) * (b.X - a.X) / (b.Y - a.Y);
            if (p.X < x) inside = !inside;
        }
    }
    return inside ? 1 : -1;
}

} // namespace

int PointInRing(const WKSPoint* vertices, std::size_t count, WKSPoint p) {
    return ContainsInVertices(vertices, count, p);
}

int RingContainsPoint(const PartData& ring, WKSPoint p) {
    if (ring.curves.empty()) return ContainsInVertices(ring.vertices.data(), ring.vertices.size(), p);
    std::vector<WKSPoint> dense;
    DensifyPart(ring, DefaultDensifyLimits(), dense);
    return ContainsInVertices(dense.data(), dense.size(), p);
}

void DensifyPart(const PartData& part, const DensifyLimits& limits, std::vector<WKSPoint>& out) {
    out.clear();
    if (part.vertices.empty()) return;
    if (part.curves.empty()) {
        out = part.vertices;
        return;
    }
    out.reserve(part.vertices.size() + 64 * part.curves.size());
    out.push_back(part.vertices.front());
    part.ForEachSegment([&](std::int32_t, const SegmentView& s) { Densify(s, limits, out); });
}

} // namespace tess::detail
