// Polylines to polygons and polygons to polylines: one output feature per
// input feature, of the other kind.

#include "conversion/ConversionRun.h"
#include "conversion/ConversionWords.h"
#include "conversion/ShapeSteps.h"
#include "conversion/modCreateVertices.h"
#include "platform/data/Row.h"
#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

// Own fields of both runs, in output order: the identifier, then the one measure.
constexpr std::size_t kIdField = 0;
constexpr std::size_t kMeasureField = 1;

class PolylinesToPolygonsRun final : public ConversionRun {
public:
    PolylinesToPolygonsRun() : ConversionRun(kPolylinesToPolygonsWords, "PolylinesToPolygons") {}

protected:
    std::vector<OwnField> OwnFields(const IFeatureClass&) const override {
        return {{"Uniq_ID", OwnField::Kind::Identifier}, {"Area", OwnField::Kind::Measure}};
    }
    esriGeometryType OutputShapeType(const IFeatureClass&) const override { return esriGeometryPolygon; }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        auto polygon = std::make_shared<Polygon>();
        const auto& parts = ShapeAs<const IGeometryCollection>(shape);
        for (std::int32_t i = 0; i < parts.GeometryCount(); ++i) {
            auto ring = std::make_shared<Ring>();
            ring->AddSegmentCollection(ShapeAs<const ISegmentCollection>(*parts.Geometry(i)));
            ring->Close();
            polygon->AddGeometry(ring);
        }
        // Simplifying orders the rings and makes a ring inside another a hole; a part that
        // encloses nothing goes, and an empty polygon is still written.
        MarkLine();
        SimplifyStep(*polygon);
        polygon->SpatialReference(InputReference());
        IFeatureBuffer& buffer = Buffer();
        buffer.Shape(polygon);
        const std::int32_t number = NextOutputNumber();
        buffer.Value(OwnFieldIndex(kMeasureField), Variant(polygon->Area()));
        buffer.Value(OwnFieldIndex(kIdField), Variant(number));
        CopyAttributes();
        InsertBuffer();
    }
};

class PolygonsToPolylinesRun final : public ConversionRun {
public:
    PolygonsToPolylinesRun() : ConversionRun(kPolygonsToPolylinesWords, "PolygonsToPolylines") {}

protected:
    std::vector<OwnField> OwnFields(const IFeatureClass&) const override {
        return {{"Uniq_ID", OwnField::Kind::Identifier}, {"Length", OwnField::Kind::Measure}};
    }
    esriGeometryType OutputShapeType(const IFeatureClass&) const override { return esriGeometryPolyline; }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        MarkLine();
        SimplifyStep(shape);
        auto& polygon = ShapeAs<IPolygon4>(shape);
        auto polyline = std::make_shared<Polyline>();
        // Component by component: the exterior ring, then its holes.
        const std::int32_t count = polygon.ExteriorRingCount();
        const std::shared_ptr<IGeometryBag> bag = polygon.ConnectedComponentBag();
        const auto& components = ShapeAs<const IGeometryCollection>(*bag);
        for (std::int32_t i = 0; i < count && i < components.GeometryCount(); ++i) {
            auto component = components.Geometry(i);
            SimplifyStep(*component);
            const auto& part = ShapeAs<const IPolygon4>(*component);
            const auto exteriorRings = part.ExteriorRingBag();
            const std::shared_ptr<IGeometry> first = ShapeAs<const IGeometryCollection>(*exteriorRings).Geometry(0);
            const auto& exterior = ShapeAs<const IRing>(*first);
            AddRingAsPath(exterior, *polyline);
            if (part.InteriorRingCount(exterior) > 0) {
                const auto holes = part.InteriorRingBag(exterior);
                const auto& holeList = ShapeAs<const IGeometryCollection>(*holes);
                for (std::int32_t h = 0; h < holeList.GeometryCount(); ++h)
                    AddRingAsPath(ShapeAs<const IRing>(*holeList.Geometry(h)), *polyline);
            }
        }
        SimplifyStep(*polyline);
        polyline->SpatialReference(InputReference());
        IFeatureBuffer& buffer = Buffer();
        buffer.Shape(polyline);
        const std::int32_t number = NextOutputNumber();
        buffer.Value(OwnFieldIndex(kMeasureField), Variant(polyline->Length()));
        buffer.Value(OwnFieldIndex(kIdField), Variant(number));
        CopyAttributes();
        InsertBuffer();
    }
};

} // namespace

std::string PolylinesToPolygons(const ConversionRequest& request) {
    PolylinesToPolygonsRun run;
    return run.Execute(request);
}

std::string PolygonsToPolylines(const ConversionRequest& request) {
    PolygonsToPolylinesRun run;
    return run.Execute(request);
}

} // namespace tess
