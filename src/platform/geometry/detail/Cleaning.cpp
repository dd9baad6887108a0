#include "platform/geometry/detail/Cleaning.h"

#include <cmath>

namespace tess::detail {

namespace {

//! Relative width of the band about the tolerance where squares of rounded differences cannot
//! decide against the rounded hypot: a few ulps, widely.
constexpr double kTieBand = 1e-12;

//! hypot(b - a) > tolerance, decided on squares where they are clear and by hypot in a near tie,
//! so that the answer is hypot's at a tenth of its cost.
bool FartherThan(WKSPoint a, WKSPoint b, double tolerance) {
    const double dx = b.X - a.X;
    const double dy = b.Y - a.Y;
    const double d2 = dx * dx + dy * dy;
    const double t2 = tolerance * tolerance;
    if (d2 > t2 * (1.0 + kTieBand)) return true;
    if (d2 < t2 * (1.0 - kTieBand)) return false;
    return std::hypot(dx, dy) > tolerance;
}

bool KeepsSegment(WKSPoint last, const SegmentView& s, double tolerance) {
    return s.curve ? Length(s) > tolerance : FartherThan(last, s.to, tolerance);
}

} // namespace

PartData WithoutShortSegments(const PartData& part, double tolerance) {
    PartData out;
    if (part.vertices.empty()) return out;
    out.vertices.reserve(part.vertices.size());
    out.vertices.push_back(part.vertices.front());
    part.ForEachSegment([&out, tolerance](std::int32_t, const SegmentView& s) {
        const WKSPoint last = out.vertices.back();
        if (KeepsSegment(last, s, tolerance)) out.AppendSegment({last, s.to, s.curve});
    });
    return out;
}

bool HasShortSegments(const PartData& part, double tolerance) {
    bool found = false;
    part.ForEachSegment([&found, tolerance](std::int32_t, const SegmentView& s) {
        // Until the first short segment every segment is kept, so its start is the last kept vertex.
        if (!found && !KeepsSegment(s.from, s, tolerance)) found = true;
    });
    return found;
}

PartData CleanRing(const PartData& ring, double tolerance) {
    if (ring.vertices.empty()) return {};
    PartData closed = ring;
    if (!closed.IsClosed()) closed.vertices.push_back(closed.vertices.front());
    PartData out = WithoutShortSegments(closed, tolerance);
    if (!out.IsClosed()) {
        const WKSPoint first = out.vertices.front();
        const WKSPoint last = out.vertices.back();
        if (out.vertices.size() > 1 && !FartherThan(last, first, tolerance)) {
            out.vertices.back() = first;
            out.StraightenAround(static_cast<std::int32_t>(out.vertices.size() - 1));
        } else {
            out.vertices.push_back(first);
        }
    }
    return out;
}

} // namespace tess::detail
