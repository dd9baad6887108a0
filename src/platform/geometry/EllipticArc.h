#pragma once
// EllipticArc: an arc of an ellipse, or a full ellipse.

#include "platform/geometry/detail/SegmentBase.h"

namespace tess {

class EllipticArc final : public detail::SegmentBase<IEllipticArc> {
public:
    EllipticArc() = default;
    esriGeometryType GeometryType() const override { return esriGeometryEllipticArc; }
    std::shared_ptr<IClone> Clone() const override;
    void Assign(const detail::SegmentView& view) override;

    void PutCoordsByAngle(const IPoint& center, double rotation, double semiMajor, double minorMajorRatio,
                          double fromAngle, double centralAngle) override;
    void ConstructEnvelope(const IEnvelope& envelope) override;
    std::shared_ptr<IPoint> CenterPoint() const override;
    void QueryCenterPoint(IPoint& center) const override;
    double SemiMajor() const override { return curve_.semiMajor; }
    double SemiMinor() const override { return curve_.semiMajor * curve_.ratio; }
    double MinorMajorRatio() const override { return curve_.ratio; }
    double Rotation() const override { return curve_.rotation; }
    double FromAngle() const override;
    double CentralAngle() const override;
    bool IsCounterClockwise() const override { return curve_.sweep > 0.0; }
};

} // namespace tess
