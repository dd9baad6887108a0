#pragma once
// BezierCurve: a cubic Bezier segment.

#include "platform/geometry/detail/SegmentBase.h"

namespace tess {

class BezierCurve final : public detail::SegmentBase<IBezierCurve> {
public:
    BezierCurve() = default;
    esriGeometryType GeometryType() const override { return esriGeometryBezier3Curve; }
    std::shared_ptr<IClone> Clone() const override;
    void Assign(const detail::SegmentView& view) override;

    void PutCoords(const IPoint& from, const IPoint& control1, const IPoint& control2,
                   const IPoint& to) override;
    void QueryCoord(std::int32_t index, IPoint& point) const override;
    void PutCoord(std::int32_t index, const IPoint& point) override;
};

} // namespace tess
