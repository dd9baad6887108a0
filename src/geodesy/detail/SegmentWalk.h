#pragma once
// Walks the segment ends of a shape in order, part by part. The geometry classes
// of the platform expose their vertices as contiguous spans, which this reads with
// no allocation and no virtual call per vertex; any other implementation is read
// through ISegmentCollection. Include from .cpp files only.

#include "platform/geometry/Geometry.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/system/Fault.h"

#include <span>

namespace tess::MyGeometricOperations::detail {

//! Calls onSegment(from, to) for each segment, in order; a true curve gives its chord.
template <class OnSegment>
void ForEachSegment(const IGeometry& shape, OnSegment&& onSegment) {
    const auto walk = [&](std::span<const WKSPoint> vertices) {
        for (std::size_t i = 0; i + 1 < vertices.size(); ++i)
            onSegment(vertices[i], vertices[i + 1]);
    };
    if (const auto* polygon = dynamic_cast<const Polygon*>(&shape)) {
        for (std::size_t i = 0; i < polygon->PartCount(); ++i)
            walk(polygon->Part(i).Vertices());
        return;
    }
    if (const auto* polyline = dynamic_cast<const Polyline*>(&shape)) {
        for (std::size_t i = 0; i < polyline->PartCount(); ++i)
            walk(polyline->Part(i).Vertices());
        return;
    }
    if (const auto* ring = dynamic_cast<const Ring*>(&shape)) {
        walk(ring->Vertices());
        return;
    }
    if (const auto* path = dynamic_cast<const Path*>(&shape)) {
        walk(path->Vertices());
        return;
    }
    const auto* segments = dynamic_cast<const ISegmentCollection*>(&shape);
    if (!segments)
        throw Fault(fault::TypeMismatch, "ForEachSegment", "Type mismatch");
    const std::int32_t count = segments->SegmentCount();
    for (std::int32_t i = 0; i < count; ++i) {
        const auto segment = segments->Segment(i);
        const auto from = segment->FromPoint();
        const auto to = segment->ToPoint();
        onSegment(WKSPoint{from->X(), from->Y()}, WKSPoint{to->X(), to->Y()});
    }
}

} // namespace tess::MyGeometricOperations::detail
