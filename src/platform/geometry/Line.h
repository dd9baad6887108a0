#pragma once
// Line: a straight segment.

#include "platform/geometry/detail/SegmentBase.h"

namespace tess {

class Line final : public detail::SegmentBase<ILine> {
public:
    Line() = default;
    Line(WKSPoint from, WKSPoint to);
    esriGeometryType GeometryType() const override { return esriGeometryLine; }
    void PutCoords(const IPoint& from, const IPoint& to) override;
    double Angle() const override;
    std::shared_ptr<IClone> Clone() const override;
    void Assign(const detail::SegmentView& view) override;
};

} // namespace tess
