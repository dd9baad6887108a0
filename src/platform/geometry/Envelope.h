#pragma once
// Envelope: an axis-aligned rectangle.

#include "platform/geometry/detail/Operators.h"
#include "platform/system/Clone.h"

namespace tess {

namespace detail {
//! A class cannot declare a member function of its own name, so IGeometry::Envelope of
//! the Envelope class is implemented one level up. Call it through IGeometry or IEnvelope.
class EnvelopeGeometryBase : public IEnvelope {
public:
    std::shared_ptr<IEnvelope> Envelope() const override;
};
} // namespace detail

//! A new envelope is empty (its coordinates read NaN) until coordinates are put.
class Envelope final : public detail::EnvelopeGeometryBase,
                       public IArea,
                       public ITransform2D,
                       public IClone,
                       public detail::RelationalOperatorImpl {
public:
    Envelope();
    Envelope(double xMin, double yMin, double xMax, double yMax);
    Envelope(const Envelope& other) = default;

    // IGeometry
    esriGeometryType GeometryType() const override { return esriGeometryEnvelope; }
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(std::shared_ptr<ISpatialReference> reference) override { sr_ = std::move(reference); }
    bool IsEmpty() const override { return empty_; }
    void SetEmpty() override;
    void QueryEnvelope(IEnvelope& envelope) const override;
    //! Projects the four corners and takes the box around them (with densified edges).
    void Project(std::shared_ptr<ISpatialReference> reference) override;
    void SnapToSpatialReference() override;

    // IEnvelope
    void PutCoords(double xMin, double yMin, double xMax, double yMax) override;
    void QueryCoords(double& xMin, double& yMin, double& xMax, double& yMax) const override;
    double XMin() const override { return box_.XMin; }
    void XMin(double value) override;
    double YMin() const override { return box_.YMin; }
    void YMin(double value) override;
    double XMax() const override { return box_.XMax; }
    void XMax(double value) override;
    double YMax() const override { return box_.YMax; }
    void YMax(double value) override;
    double Width() const override;
    double Height() const override;
    void Union(const IEnvelope& other) override;
    void Expand(double dx, double dy, bool asRatio) override;
    void Intersect(const IEnvelope& other) override;
    void CenterAt(const IPoint& center) override;
    std::shared_ptr<IPoint> LowerLeft() const override;
    std::shared_ptr<IPoint> LowerRight() const override;
    std::shared_ptr<IPoint> UpperLeft() const override;
    std::shared_ptr<IPoint> UpperRight() const override;

    // IArea
    double Area() const override;
    std::shared_ptr<IPoint> Centroid() const override;
    void QueryCentroid(IPoint& centroid) const override;
    std::shared_ptr<IPoint> LabelPoint() const override;
    void QueryLabelPoint(IPoint& labelPoint) const override;

    // ITransform2D
    void Move(double dx, double dy) override;
    void Scale(const IPoint& origin, double sx, double sy) override;
    //! The box around the rotated rectangle.
    void Rotate(const IPoint& origin, double angle) override;

    // IClone
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

    WKSEnvelope Box() const { return box_; }

protected:
    const IGeometry& RelationalSelf() const override { return *this; }

private:
    void Normalize();

    WKSEnvelope box_;
    bool empty_;
    std::shared_ptr<ISpatialReference> sr_;
};

} // namespace tess
