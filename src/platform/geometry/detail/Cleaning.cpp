#include "platform/geometry/detail/Cleaning.h"

#include <cmath>

namespace tess::detail {

PartData WithoutShortSegments(const PartData& part, double tolerance) {
    PartData out;
    if (part.vertices.empty()) return out;
    out.vertices.reserve(part.vertices.size());
    out.vertices.push_back(part.vertices.front());
    part.ForEachSegment([&out, tolerance](std::int32_t, const SegmentView& s) {
        const WKSPoint last = out.vertices.back();
        const bool keep = s.curve ? Length(s) > tolerance : std::hypot(s.to.X - last.X, s.to.Y - last.Y) > tolerance;
        if (keep) out.AppendSegment({last, s.to, s.curve});
    });
    return out;
}

PartData CleanRing(const PartData& ring, double tolerance) {
    if (ring.vertices.empty()) return {};
    PartData closed = ring;
    if (!closed.IsClosed()) closed.vertices.push_back(closed.vertices.front());
    PartData out = WithoutShortSegments(closed, tolerance);
    if (!out.IsClosed()) {
        const WKSPoint first = out.vertices.front();
        const WKSPoint last = out.vertices.back();
        if (out.vertices.size() > 1 && std::hypot(last.X - first.X, last.Y - first.Y) <= tolerance) {
            out.vertices.back() = first;
            out.StraightenAround(static_cast<std::int32_t>(out.vertices.size() - 1));
        } else {
            out.vertices.push_back(first);
        }
    }
    return out;
}

} // namespace tess::detail
