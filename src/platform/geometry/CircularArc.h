#pragma once
// CircularArc: an arc of a circle, or a full circle.

#include "platform/geometry/detail/SegmentBase.h"

namespace tess {

class CircularArc final : public detail::SegmentBase<ICircularArc> {
public:
    CircularArc() = default;
    esriGeometryType GeometryType() const override { return esriGeometryCircularArc; }
    std::shared_ptr<IClone> Clone() const override;
    void Assign(const detail::SegmentView& view) override;

    void PutCoords(const IPoint& center, const IPoint& from, const IPoint& to,
                   esriArcOrientation orientation) override;
    void ConstructThreePoints(const IPoint& from, const IPoint& middle, const IPoint& to) override;
    void PutCoordsByAngle(const IPoint& center, double fromAngle, double centralAngle, double radius) override;
    void ConstructCircle(const IPoint& center, double radius, bool isCounterClockwise) override;
    std::shared_ptr<IPoint> CenterPoint() const override;
    void QueryCenterPoint(IPoint& center) const override;
    double Radius() const override { return curve_.semiMajor; }
    double CentralAngle() const override { return curve_.sweep; }
    double FromAngle() const override;
    double ToAngle() const override;
    bool IsCounterClockwise() const override { return curve_.sweep > 0.0; }
    bool IsMinor() const override;
};

} // namespace tess
