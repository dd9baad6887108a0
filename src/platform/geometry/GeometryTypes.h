#pragma once
// Enumerations and plain coordinate records of the geometry model. The values
// are the host's, so that numbers stored in documents and compared in logic
// ("GeometryType is 13") keep their meaning.

#include <cstdint>

namespace tess {

enum esriGeometryType : std::int32_t {
    esriGeometryNull = 0,
    esriGeometryPoint = 1,
    esriGeometryMultipoint = 2,
    esriGeometryPolyline = 3,
    esriGeometryPolygon = 4,
    esriGeometryEnvelope = 5,
    esriGeometryPath = 6,
    esriGeometryAny = 7,
    esriGeometryRing = 11,
    esriGeometryLine = 13,
    esriGeometryCircularArc = 14,
    esriGeometryBezier3Curve = 15,
    esriGeometryEllipticArc = 16,
    esriGeometryBag = 17,
};

//! How ICurve.QueryPoint and QueryPointAndDistance treat distances beyond the ends.
enum esriSegmentExtension : std::int32_t {
    esriNoExtension = 0,         //!< clamp to the ends
    esriExtendTangentAtFrom = 1, //!< before the start: along the tangent at the start
    esriExtendTangentAtTo = 4,   //!< past the end: along the tangent at the end
    esriExtendTangents = 5,      //!< both
};

//! Direction of a circular arc given by centre and end points.
enum esriArcOrientation : std::int32_t {
    esriArcClockwise = 0,
    esriArcCounterClockwise = 1,
    esriArcMinor = 2,
    esriArcMajor = 3,
};

//! Dimension of the result asked of ITopologicalOperator.Intersect.
enum esriGeometryDimension : std::int32_t {
    esriGeometryNoDimension = -1,
    esriGeometry0Dimension = 1,
    esriGeometry1Dimension = 2,
    esriGeometry2Dimension = 4,
};

//! Spatial relation of a spatial filter.
enum esriSpatialRelEnum : std::int32_t {
    esriSpatialRelUndefined = 0,
    esriSpatialRelIntersects = 1,
    esriSpatialRelEnvelopeIntersects = 2,
    esriSpatialRelIndexIntersects = 3,
    esriSpatialRelTouches = 4,
    esriSpatialRelOverlaps = 5,
    esriSpatialRelCrosses = 6,
    esriSpatialRelWithin = 7,
    esriSpatialRelContains = 8,
    esriSpatialRelRelation = 9,
};

//! A coordinate pair as stored in the vertex arrays of paths and rings.
struct WKSPoint {
    double X;
    double Y;
    friend bool operator==(const WKSPoint&, const WKSPoint&) = default;
};

//! An axis-aligned rectangle as plain numbers.
struct WKSEnvelope {
    double XMin;
    double YMin;
    double XMax;
    double YMax;
};

} // namespace tess
