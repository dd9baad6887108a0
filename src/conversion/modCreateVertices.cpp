#include "conversion/modCreateVertices.h"

#include <vector>

#include "conversion/ConversionRun.h"
#include "conversion/ConversionWords.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

// Own fields of the vertex points, in output order.
constexpr std::size_t kIdField = 0;
constexpr std::size_t kXField = 1;
constexpr std::size_t kYField = 2;

class VertexRun final : public ConversionRun {
public:
    VertexRun() : ConversionRun(kVerticesWords, "ConvertToVertices") {}

protected:
    std::vector<OwnField> OwnFields(const IFeatureClass&) const override {
        return {{"Uniq_ID", OwnField::Kind::Identifier},
                {"X_Coord", OwnField::Kind::Measure},
                {"Y_Coord", OwnField::Kind::Measure}};
    }
    esriGeometryType OutputShapeType(const IFeatureClass&) const override { return esriGeometryPoint; }
    bool FlushesWhileRunning() const override { return true; }
    bool ReportsSkippedFeatures() const override { return false; }

    void ProcessFeature(IFeature&, IGeometry& shape) override {
        const auto* points = dynamic_cast<const IPointCollection*>(&shape);
        if (!points)
            throw Fault(fault::TypeMismatch, "modCreateVertices", "Type mismatch");
        const std::int32_t count = points->PointCount();
        // One copy of the vertices per feature into a buffer that only ever grows.
        vertices_.resize(static_cast<std::size_t>(count));
        points->QueryWKSPoints(0, count, vertices_.data());

        IFeatureBuffer& buffer = Buffer();
        const std::int32_t idIndex = OwnFieldIndex(kIdField);
        const std::int32_t xIndex = OwnFieldIndex(kXField);
        const std::int32_t yIndex = OwnFieldIndex(kYField);
        for (const WKSPoint& vertex : vertices_) {
            const std::int32_t number = NextOutputNumber();
            // The point carries no reference of its own, so it is stored as it stands, in the
            // input's coordinates, without any test of references per vertex.
            point_->PutCoords(vertex.X, vertex.Y);
            buffer.Shape(point_);
            buffer.Value(xIndex, Variant(vertex.X));
            buffer.Value(yIndex, Variant(vertex.Y));
            buffer.Value(idIndex, Variant(number));
            CopyAttributes();
            InsertBuffer();
        }
    }

private:
    std::shared_ptr<Point> point_ = std::make_shared<Point>(); // the one point of the run, reused
    std::vector<WKSPoint> vertices_;
};

} // namespace

std::string ConvertToVertices(const ConversionRequest& request) {
    VertexRun run;
    return run.Execute(request);
}

} // namespace tess
