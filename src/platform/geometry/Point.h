#pragma once
// Point: a coordinate pair.

#include "platform/geometry/detail/Operators.h"
#include "platform/system/Clone.h"

namespace tess {

//! A new point is empty until its coordinates are put (X and Y read NaN then).
class Point final : public IPoint,
                    public ITransform2D,
                    public IClone,
                    public detail::TopologicalOperatorImpl,
                    public detail::RelationalOperatorImpl {
public:
    Point();
    Point(double x, double y);
    Point(const Point& other);

    // IGeometry
    esriGeometryType GeometryType() const override { return esriGeometryPoint; }
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override { sr_ = std::move(reference); }
    bool IsEmpty() const override { return empty_; }
    void SetEmpty() override;
    std::shared_ptr<IEnvelope> Envelope() const override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // IPoint
    void PutCoords(double x, double y) override;
    void QueryCoords(double& x, double& y) const override;
    double X() const override { return x_; }
    void X(double x) override;
    double Y() const override { return y_; }
    void Y(double y) override;

    // ITransform2D
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    void Rotate(const IPoint& origin, double angle) override;

    // IClone
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

    // ITopologicalOperator: a point is always simple.
    bool IsKnownSimple() const override { return true; }
    bool IsSimple() const override { return true; }
    void Simplify() override {}

    WKSPoint Coords() const { return {x_, y_}; }
    //! Changes of the point (for the known-simple state of a multipoint holding it).
    std::uint64_t Stamp() const { return stamp_; }

protected:
    IGeometry& OperatorSelf() override { return *this; }
    const IGeometry& OperatorSelf() const override { return *this; }
    void AssignResult(const IGeometry& result) override;
    const IGeometry& RelationalSelf() const override { return *this; }

private:
    void Touch();

    double x_;
    double y_;
    bool empty_;
    std::shared_ptr<ISpatialReference> sr_;
    std::uint64_t stamp_;
};

} // namespace tess
