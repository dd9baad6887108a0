#pragma once
// The runs that write one point per input feature: label points, centroids and
// spherical centroids. They share their own fields (Uniq_ID, X_Coord, Y_Coord),
// their output type and the writing of the point.

#include <memory>
#include <vector>

#include "conversion/ConversionRun.h"

namespace tess {

class IPoint;

class PointPerFeatureRun : public ConversionRun {
protected:
    using ConversionRun::ConversionRun;

    std::vector<OwnField> OwnFields(const IFeatureClass&) const override;
    esriGeometryType OutputShapeType(const IFeatureClass&) const override { return esriGeometryPoint; }

    //! Writes the point as the next output feature: its shape, X_Coord and Y_Coord from it, the
    //! output number, the carried-over values. A point that is not there (a routine that failed,
    //! a shape type without a branch) is a fault, as nothing can be stored for it.
    void WritePoint(const std::shared_ptr<IPoint>& point);
};

} // namespace tess
