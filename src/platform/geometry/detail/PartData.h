#pragma once
// Internal: the storage of one path or ring. Vertices lie contiguously; the
// true curves among the segments are kept aside, sorted by segment index, so a
// part of straight lines carries an empty side list and nothing else.

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/geometry/detail/SegmentMath.h"

namespace tess::detail {

struct CurveEntry {
    std::int32_t segment; //!< segment i runs from vertex i to vertex i + 1
    CurveParams params;
    friend bool operator==(const CurveEntry&, const CurveEntry&) = default;
};

//! A global counter that stamps every change of a part or point, so that an owner can tell
//! whether its parts changed since it was last simplified.
std::uint64_t NextStamp();

struct PartData {
    std::vector<WKSPoint> vertices;
    std::vector<CurveEntry> curves;

    std::int32_t SegmentCount() const {
        return vertices.size() < 2 ? 0 : static_cast<std::int32_t>(vertices.size() - 1);
    }
    const CurveParams* CurveOf(std::int32_t segment) const {
        auto it = std::lower_bound(curves.begin(), curves.end(), segment,
                                   [](const CurveEntry& e, std::int32_t s) { return e.segment < s; });
        return it != curves.end() && it->segment == segment ? &it->params : nullptr;
    }
    SegmentView SegmentAt(std::int32_t i) const { return {vertices[i], vertices[i + 1], CurveOf(i)}; }
    //! Calls f(index, SegmentView) for every segment in order; no allocation, no search.
    template <class F> void ForEachSegment(F&& f) const {
        const std::int32_t n = SegmentCount();
        std::size_t c = 0;
        for (std::int32_t i = 0; i < n; ++i) {
            const CurveParams* curve = nullptr;
            if (c < curves.size() && curves[c].segment == i) curve = &curves[c++].params;
            f(i, SegmentView{vertices[i], vertices[i + 1], curve});
        }
    }
    bool IsClosed() const { return vertices.size() > 1 && vertices.front() == vertices.back(); }
    bool Empty() const { return vertices.empty(); }

    //! Appends a segment that starts at the last vertex (the segment's own start is dropped);
    //! on an empty part both ends are added.
    void AppendSegment(const SegmentView& s);
    //! Curves that start or end at the vertex become straight lines (the vertex was moved).
    void StraightenAround(std::int32_t vertex);
    //! Inserts vertices before position index; a curve that spanned the gap becomes a line.
    void InsertVertices(std::int32_t index, const WKSPoint* points, std::int32_t count);
    //! Removes vertices; segments that lose an end become lines joining the neighbours.
    void RemoveVertices(std::int32_t index, std::int32_t count);
    void Reverse();
    void Transform(const Affine& m);
    void Clear() {
        vertices.clear();
        curves.clear();
    }
};

//! Several parts seen as one curve (a path is one part, a polyline or polygon many).
class PartSource {
public:
    virtual ~PartSource() = default;
    virtual std::size_t SourcePartCount() const = 0;
    virtual const PartData& SourcePart(std::size_t i) const = 0;
};

//! Measurements over all parts of a source.
double SourceLength(const PartSource& src);
void SourceEnvelope(const PartSource& src, WKSEnvelope& box);
//! Point along the parts in order; see ICurve.QueryPoint. False when there is no segment.
bool SourcePointAlong(const PartSource& src, int extension, double distance, bool asRatio, WKSPoint& out);
struct NearestResult {
    WKSPoint point{0.0, 0.0};
    double along = 0.0;
    double distance = 0.0;
    bool right = false;
};
bool SourceNearest(const PartSource& src, int extension, WKSPoint p, NearestResult& out);
//! Signed area (counter-clockwise positive) and area-weighted moments relative to o; a part not
//! closed is closed by a straight line for the sum.
AreaTerms PartAreaTerms(const PartData& part, WKSPoint o);
double PartSignedArea(const PartData& part);
//! Even-odd test of a point against one ring: 1 inside, 0 on the boundary, -1 outside. True curves
//! are taken densified.
int RingContainsPoint(const PartData& ring, WKSPoint p);
//! The same test on a plain vertex ring (closed or not).
int PointInRing(const WKSPoint* vertices, std::size_t count, WKSPoint p);
//! A copy of the part with true curves replaced by straight pieces.
void DensifyPart(const PartData& part, const DensifyLimits& limits, std::vector<WKSPoint>& out);

} // namespace tess::detail
