// Label points and centroids: one point per feature, in the input's coordinates.

#include <vector>

#include "conversion/ConversionWords.h"
#include "conversion/PointPerFeatureRun.h"
#include "conversion/ShapeSteps.h"
#include "conversion/modCreateVertices.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"

namespace tess {
namespace {

constexpr double kHalfWay = 0.5; // of a polyline's length, as a ratio

class LabelPointRun final : public PointPerFeatureRun {
public:
    LabelPointRun() : PointPerFeatureRun(kLabelPointsWords, "ConvertToLabelPoints") {}

protected:
    void ProcessFeature(IFeature&, IGeometry& shape) override {
        // Every shape is taken as a polygon; anything else is a type mismatch.
        WritePoint(ShapeAs<const IArea>(ShapeAs<IPolygon>(shape)).LabelPoint());
    }
};

class CentroidRun final : public PointPerFeatureRun {
public:
    CentroidRun() : PointPerFeatureRun(kCentroidsWords, "ConvertToCentroids") {}

protected:
    // The branch follows the class's shape type, not each feature's: a layer has one.
    void ProcessFeature(IFeature&, IGeometry& shape) override {
        switch (InputShapeType()) {
        case esriGeometryPolygon:
            // The planar centre of mass, as the shape stands: it may lie outside.
            point_ = ShapeAs<const IArea>(shape).Centroid();
            break;
        case esriGeometryPolyline: {
            auto point = std::make_shared<Point>();
            ShapeAs<const ICurve>(shape).QueryPoint(esriNoExtension, kHalfWay, true, *point);
            point_ = point;
            break;
        }
        case esriGeometryMultipoint:
            point_ = MeanOfVertices(ShapeAs<const IPointCollection>(shape));
            break;
        default:
            // No branch: the point of the last feature, if any, is written again.
            break;
        }
        WritePoint(point_);
    }

private:
    //! The plain mean of the vertices; a vertex given twice counts twice.
    std::shared_ptr<IPoint> MeanOfVertices(const IPointCollection& points) {
        const std::int32_t count = points.PointCount();
        vertices_.resize(static_cast<std::size_t>(count));
        points.QueryWKSPoints(0, count, vertices_.data());
        double sumX = 0.0;
        double sumY = 0.0;
        for (const WKSPoint& v : vertices_) {
            sumX += v.X;
            sumY += v.Y;
        }
        auto mean = std::make_shared<Point>();
        mean->PutCoords(sumX / static_cast<double>(count), sumY / static_cast<double>(count));
        return mean;
    }

    std::shared_ptr<IPoint> point_;
    std::vector<WKSPoint> vertices_;
};

} // namespace

std::string ConvertToLabelPoints(const ConversionRequest& request) {
    LabelPointRun run;
    return run.Execute(request);
}

std::string ConvertToCentroids(const ConversionRequest& request) {
    CentroidRun run;
    return run.Execute(request);
}

} // namespace tess
