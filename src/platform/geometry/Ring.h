#pragma once
// Ring: a closed path, the part of a polygon. Clockwise rings are exterior
// rings, counter-clockwise rings are holes.

#include "platform/geometry/detail/PathBase.h"

namespace tess {

//! Vertices are stored contiguously and a closed ring repeats its first vertex last;
//! Vertices() gives them to measuring code without allocation (see detail::PathBase).
class Ring final : public detail::PathBase<IRing>, public IArea {
public:
    Ring() = default;
    esriGeometryType GeometryType() const override { return esriGeometryRing; }
    std::shared_ptr<IClone> Clone() const override;

    // IRing
    void Close() override;
    bool IsExterior() const override;

    // IArea: a ring alone, counted as if closed. Area is positive when clockwise.
    double Area() const override;
    std::shared_ptr<IPoint> Centroid() const override;
    void QueryCentroid(IPoint& centroid) const override;
    std::shared_ptr<IPoint> LabelPoint() const override;
    void QueryLabelPoint(IPoint& labelPoint) const override;
};

} // namespace tess
