// Split multipart and combine features: one output feature per part, and one
// output feature for all the input. Their fields and output type follow the
// input class's shape type.

#include <vector>

#include "conversion/ConversionRun.h"
#include "conversion/ConversionWords.h"
#include "conversion/ShapeSteps.h"
#include "conversion/modCreateVertices.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/system/Clone.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

// Own fields in output order: the identifier, then the measures of the shape type.
constexpr std::size_t kIdField = 0;
constexpr std::size_t kMeasureField = 1; // Length, Area or Count; X_Coord for points
constexpr std::size_t kYField = 2;       // Y_Coord, for points

const OwnField kIdentifier{"Uniq_ID", OwnField::Kind::Identifier};

class SplitMultipartRun final : public ConversionRun {
public:
    SplitMultipartRun() : ConversionRun(kSplitMultipartWords, "SplitMultipart") {}

protected:
    std::vector<OwnField> OwnFields(const IFeatureClass& input) const override {
        switch (input.ShapeType()) {
        case esriGeometryMultipoint:
            return {kIdentifier, {"X_Coord", OwnField::Kind::Measure}, {"Y_Coord", OwnField::Kind::Measure}};
        case esriGeometryPolyline:
            return {kIdentifier, {"Length", OwnField::Kind::Measure}};
        case esriGeometryPolygon:
            return {kIdentifier, {"Area", OwnField::Kind::Measure}};
        default:
            return {kIdentifier};
        }
    }
    //! Parts keep their kind; a multipoint's parts are points. Other classes have no parts to
    //! split and get no type.
    esriGeometryType OutputShapeType(const IFeatureClass& input) const override {
        switch (input.ShapeType()) {
        case esriGeometryMultipoint:
            return esriGeometryPoint;
        case esriGeometryPolyline:
        case esriGeometryPolygon:
            return input.ShapeType();
        default:
            return esriGeometryNull;
        }
    }
    AttributeReading ReadsAttributes() const override { return AttributeReading::BeforeEmptyTest; }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        MarkLine();
        switch (InputShapeType()) {
        case esriGeometryMultipoint: {
            const auto& points = ShapeAs<const IPointCollection>(shape);
            for (std::int32_t i = 0; i < points.PointCount(); ++i) {
                const std::shared_ptr<IPoint> point = points.Point(i);
                point->SpatialReference(InputReference());
                Buffer().Shape(point);
                Buffer().Value(OwnFieldIndex(kMeasureField), Variant(point->X()));
                Buffer().Value(OwnFieldIndex(kYField), Variant(point->Y()));
                Write();
            }
            break;
        }
        case esriGeometryPolygon: {
            // A component is an exterior ring with its holes: a hole never leaves its ring.
            auto& polygon = ShapeAs<IPolygon4>(shape);
            const std::int32_t count = polygon.ExteriorRingCount();
            const std::shared_ptr<IGeometryBag> bag = polygon.ConnectedComponentBag();
            const auto& components = ShapeAs<const IGeometryCollection>(*bag);
            for (std::int32_t i = 0; i < count && i < components.GeometryCount(); ++i) {
                const std::shared_ptr<IGeometry> component = components.Geometry(i);
                component->SpatialReference(InputReference());
                SimplifyStep(*component);
                Buffer().Shape(component);
                Buffer().Value(OwnFieldIndex(kMeasureField), Variant(ShapeAs<const IArea>(*component).Area()));
                Write();
            }
            break;
        }
        case esriGeometryPolyline: {
            const auto& parts = ShapeAs<const IGeometryCollection>(shape);
            for (std::int32_t i = 0; i < parts.GeometryCount(); ++i) {
                auto polyline = std::make_shared<Polyline>();
                polyline->AddSegmentCollection(ShapeAs<const ISegmentCollection>(*parts.Geometry(i)));
                SimplifyStep(*polyline);
                polyline->SpatialReference(InputReference());
                Buffer().Shape(polyline);
                Buffer().Value(OwnFieldIndex(kMeasureField), Variant(polyline->Length()));
                Write();
            }
            break;
        }
        default:
            // Points have no parts: nothing is written.
            break;
        }
    }

private:
    //! The rest of every part's record: its number, the feature's values, and in it goes.
    void Write() {
        Buffer().Value(OwnFieldIndex(kIdField), Variant(NextOutputNumber()));
        CopyAttributes();
        InsertBuffer();
    }
};

class JoinFeaturesRun final : public ConversionRun {
public:
    JoinFeaturesRun() : ConversionRun(kJoinFeaturesWords, "JoinFeatures") {}

protected:
    std::vector<OwnField> OwnFields(const IFeatureClass& input) const override {
        switch (input.ShapeType()) {
        case esriGeometryPoint:
            return {kIdentifier, {"Count", OwnField::Kind::Measure}};
        case esriGeometryPolyline:
            return {kIdentifier, {"Length", OwnField::Kind::Measure}};
        case esriGeometryPolygon:
            return {kIdentifier, {"Area", OwnField::Kind::Measure}};
        default:
            return {kIdentifier};
        }
    }
    //! The input's own type, points included: the multipoint that joined points make is then
    //! refused by the point class, and the run fails as any run does.
    esriGeometryType OutputShapeType(const IFeatureClass& input) const override { return input.ShapeType(); }
    bool UsesProgressWindow() const override { return false; }
    AttributeReading ReadsAttributes() const override { return AttributeReading::FirstFeature; }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        MarkLine();
        switch (InputShapeType()) {
        case esriGeometryPoint:
            points_->AddPoint(ShapeAs<const IPoint>(shape));
            break;
        case esriGeometryPolyline:
        case esriGeometryPolygon:
            // The cursor reuses its shape for the next feature: the bag keeps a copy.
            members_->AddGeometry(CloneAs<IGeometry>(ShapeAs<const IClone>(shape)));
            break;
        default:
            break;
        }
    }

    void FinishFeatures() override {
        MarkLine();
        IFeatureBuffer& buffer = Buffer();
        switch (InputShapeType()) {
        case esriGeometryPoint:
            // Simplifying removes repeated points before they are counted.
            SimplifyStep(*points_);
            points_->SpatialReference(InputReference());
            buffer.Shape(points_);
            buffer.Value(OwnFieldIndex(kMeasureField), Variant(static_cast<double>(points_->PointCount())));
            buffer.Value(OwnFieldIndex(kIdField), Variant(kTheOnlyFeature));
            break;
        case esriGeometryPolyline: {
            auto polyline = std::make_shared<Polyline>();
            polyline->SpatialReference(InputReference());
            polyline->ConstructUnion(*members_);
            SimplifyStep(*polyline);
            buffer.Shape(polyline);
            buffer.Value(OwnFieldIndex(kMeasureField), Variant(polyline->Length()));
            buffer.Value(OwnFieldIndex(kIdField), Variant(kTheOnlyFeature));
            break;
        }
        case esriGeometryPolygon: {
            // The union dissolves overlaps and the boundaries between touching polygons.
            auto polygon = std::make_shared<Polygon>();
            polygon->SpatialReference(InputReference());
            polygon->ConstructUnion(*members_);
            SimplifyStep(*polygon);
            buffer.Shape(polygon);
            buffer.Value(OwnFieldIndex(kMeasureField), Variant(polygon->Area()));
            buffer.Value(OwnFieldIndex(kIdField), Variant(kTheOnlyFeature));
            break;
        }
        default:
            // Nothing gathered: the record goes in with the attributes alone.
            break;
        }
        CopyAttributes();
        InsertBuffer();
    }

private:
    static constexpr std::int32_t kTheOnlyFeature = 1;
    std::shared_ptr<Multipoint> points_ = std::make_shared<Multipoint>();
    std::shared_ptr<GeometryBag> members_ = std::make_shared<GeometryBag>();
};

} // namespace

std::string SplitMultipart(const ConversionRequest& request) {
    SplitMultipartRun run;
    return run.Execute(request);
}

std::string JoinFeatures(const ConversionRequest& request) {
    JoinFeaturesRun run;
    return run.Execute(request);
}

} // namespace tess
