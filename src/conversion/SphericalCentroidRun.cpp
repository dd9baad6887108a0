// Spherical centroids: one point per feature, computed on the curved body in
// the geographic system of the input.

#include <optional>

#include "conversion/ConversionWords.h"
#include "conversion/PointPerFeatureRun.h"
#include "conversion/ShapeSteps.h"
#include "conversion/modCreateVertices.h"
#include "geodesy/GeodesyConstants.h"
#include "geodesy/MultipointCentroids.h"
#include "geodesy/PolylineMeasures.h"
#include "geodesy/SphericalArea.h"
#include "platform/geometry/Point.h"
#include "platform/srs/SpatialReference.h"
#include "support/ReportTemplates.h"

namespace tess {
namespace {

namespace geo = MyGeometricOperations;

constexpr double kHalfWay = 0.5;     // of a polyline's length, as a ratio
constexpr double kSurfaceHeight = 0; // metres above the spheroid, of a multipoint's vertices

std::string UnknownReferenceReport() {
    const std::string crlf(kReportLineBreak);
    return std::string(R"({\rtf1\ansi\ansicpg1252\deff0\deflang1033{\fonttbl{\f0\fswiss\fcharset0 Arial;}})") + crlf +
           R"({\*\generator Msftedit 5.41.15.1507;}\viewkind4\uc1\pard\qc\b\f0\fs16 )"
           R"(!!!  Features to Spherical Centroids Failed  !!!\par)" + crlf +
           R"(Selected Feature Class has unknown coordinate system...\par)" + crlf + R"(\par)" + crlf +
           R"(This function must know the projection of the data in order to calculate the geographic )"
           R"(centroid!  Bailing out...\par)" + crlf +
           R"(----------------------------------------------------------\par)" + crlf + "}" + crlf;
}

class SphericalCentroidRun final : public PointPerFeatureRun {
public:
    SphericalCentroidRun() : PointPerFeatureRun(kSphericalCentroidsWords, "ConvertToSphericalCentroid") {}

protected:
    std::optional<std::string> Prepare(const std::shared_ptr<ISpatialReference>& reference) override {
        // The body and its geographic system come from the layer's reference: without one that
        // is known, there is nothing to measure on.
        projected_ = std::dynamic_pointer_cast<IProjectedCoordinateSystem>(reference);
        geographic_ = projected_ ? projected_->GeographicCoordinateSystem()
                                 : std::dynamic_pointer_cast<IGeographicCoordinateSystem>(reference);
        if (!reference || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(reference) || !geographic_)
            return UnknownReferenceReport();
        const std::shared_ptr<ISpheroid> spheroid = geographic_->Datum()->Spheroid();
        semiMajor_ = spheroid->SemiMajorAxis();
        semiMinor_ = spheroid->SemiMinorAxis();
        return std::nullopt;
    }

    void OutputGeoreference(std::shared_ptr<ISpatialReference>& reference,
                            std::shared_ptr<IEnvelope>& extent) const override {
        if (!projected_)
            return;
        reference = geographic_;
        if (extent)
            extent->Project(geographic_);
    }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        std::shared_ptr<IPoint> point;
        switch (InputShapeType()) {
        case esriGeometryPolygon: {
            ToGeographic(shape);
            double lon = 0.0;
            double lat = 0.0;
            geo::SphericalPolygonArea2(ShapeAs<IPolygon>(shape), true, lon, lat, semiMajor_, semiMinor_);
            point = std::make_shared<Point>();
            point->PutCoords(lon, lat);
            break;
        }
        case esriGeometryPolyline: {
            ToGeographic(shape);
            // The length goes into the semi-major axis, the semi-minor axis stands as the major
            // one and the WGS 1984 minor axis as the minor: on WGS 1984 data the segments are
            // measured on the sphere of the semi-minor radius. Users' earlier outputs were made
            // so; a polyline layer never reads the semi-major axis again.
            double position = kHalfWay;
            point = geo::SpheroidalPolylineMidpoint2(ShapeAs<IPolyline>(shape), position, true, semiMajor_,
                                                     semiMinor_, geo::kWgs84SemiMinor);
            break;
        }
        case esriGeometryMultipoint:
            ToGeographic(shape);
            point = geo::MultipointCentroidSpheroid(ShapeAs<IPointCollection>(shape), semiMajor_, semiMinor_,
                                                    kSurfaceHeight);
            break;
        default:
            // No branch: the buffer goes in as it stands.
            InsertBuffer();
            return;
        }
        WritePoint(point);
    }

private:
    //! Projected shapes are measured in their geographic system; the input is never written.
    void ToGeographic(IGeometry& shape) const {
        if (projected_)
            shape.Project(geographic_);
    }

    std::shared_ptr<IProjectedCoordinateSystem> projected_;
    std::shared_ptr<IGeographicCoordinateSystem> geographic_;
    double semiMajor_ = 0.0; //!< of the input's spheroid, in its unit
    double semiMinor_ = 0.0;
};

} // namespace

std::string ConvertToSphericalCentroid(const ConversionRequest& request) {
    SphericalCentroidRun run;
    return run.Execute(request);
}

} // namespace tess
