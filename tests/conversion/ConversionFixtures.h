#pragma once
// Shared pieces of the conversion tests: temporary folders and datasets made by
// code, shapes from coordinates, and an application with the extension running
// under a scripted UI.

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "frame/clsExtension.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/data/Cursor.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/system/Arrays.h"
#include "platform/ui/ScriptedUI.h"

namespace tess::test {

//! A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
public:
    TempDir() {
        path_ = (std::filesystem::temp_directory_path() /
                 ("tess-conv-" + std::to_string(::getpid()) + "-" + std::to_string(++counter_)))
                    .string();
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    static inline int counter_ = 0;
    std::string path_;
};

inline std::shared_ptr<IField> MakeField(const std::string& name, esriFieldType type, std::int32_t length = 0,
                                         std::int32_t precision = 0, std::int32_t scale = 0) {
    auto f = std::make_shared<Field>();
    f->Name(name);
    f->Type(type);
    f->Length(length);
    f->Precision(precision);
    f->Scale(scale);
    return f;
}

inline std::shared_ptr<IFeatureClass> CreateClass(IFeatureWorkspace& ws, const std::string& name,
                                                  esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                                  const std::vector<std::shared_ptr<IField>>& extra = {}) {
    auto fields = std::make_shared<Fields>();
    fields->AddField(MakeField("OBJECTID", esriFieldTypeOID));
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(type);
    def->SpatialReference(sr);
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    for (const auto& f : extra)
        fields->AddField(f);
    return ws.CreateFeatureClass(name, fields, nullptr, nullptr, esriFTSimple, "Shape", "");
}

inline std::shared_ptr<IFeatureWorkspace> ShapefileFolder(const std::string& path) {
    return std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(path, 0));
}

using Parts = std::vector<std::vector<WKSPoint>>;

//! A closed square ring: clockwise for an exterior ring, counter-clockwise for a hole.
inline std::vector<WKSPoint> Square(double x, double y, double size, bool clockwise) {
    std::vector<WKSPoint> cw = {{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}, {x, y}};
    if (!clockwise)
        return {cw.rbegin(), cw.rend()};
    return cw;
}

inline std::shared_ptr<IGeometry> MakePolygon(const Parts& rings) {
    auto polygon = std::make_shared<Polygon>();
    for (const auto& r : rings) {
        auto ring = std::make_shared<Ring>();
        ring->AddWKSPoints(static_cast<std::int32_t>(r.size()), r.data());
        polygon->AddPart(ring);
    }
    return polygon;
}

inline std::shared_ptr<IGeometry> MakePolyline(const Parts& paths) {
    auto line = std::make_shared<Polyline>();
    for (const auto& p : paths) {
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(static_cast<std::int32_t>(p.size()), p.data());
        line->AddPart(path);
    }
    return line;
}

inline std::shared_ptr<IGeometry> MakeMultipoint(const std::vector<WKSPoint>& points) {
    auto multipoint = std::make_shared<Multipoint>();
    multipoint->AddWKSPoints(static_cast<std::int32_t>(points.size()), points.data());
    return multipoint;
}

//! Stores one feature with a shape and values by field name.
inline void AddFeature(IFeatureClass& featureClass, const std::shared_ptr<IGeometry>& shape,
                       const std::vector<std::pair<std::string, Variant>>& values = {}) {
    auto feature = featureClass.CreateFeature();
    feature->Shape(shape);
    for (const auto& [name, value] : values)
        feature->Value(featureClass.FindField(name), value);
    feature->Store();
}

//! Every vertex of a stored shape, in its own order.
inline std::vector<WKSPoint> VerticesOf(const IGeometry& shape) {
    const auto& points = dynamic_cast<const IPointCollection&>(shape);
    std::vector<WKSPoint> v(static_cast<std::size_t>(points.PointCount()));
    if (!v.empty())
        points.QueryWKSPoints(0, points.PointCount(), v.data());
    return v;
}

inline std::shared_ptr<ISpatialReference> Utm33N() {
    constexpr std::int32_t kUtm33N = 32633; // WGS 84 / UTM zone 33N
    return SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(kUtm33N);
}

//! An application with the extension running, a scripted UI, and a temporary folder.
class HostTest : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = SetUI(ui_);
        app_ = Application::Create();
        app_->RegisterExtension(clsExtension::ProgID, "", [] { return std::make_shared<clsExtension>(); });
        app_->Startup();
        extension_ = FindTessExtension(*app_);
        ASSERT_TRUE(extension_);
    }
    void TearDown() override {
        app_->Shutdown();
        SetUI(previous_);
    }

    std::shared_ptr<IMxDocument> Document() const {
        return std::dynamic_pointer_cast<IMxDocument>(app_->Document());
    }
    std::shared_ptr<IMap> FocusMap() const { return Document()->FocusMap(); }

    //! A layer of the class, added to the focus map (on top).
    std::shared_ptr<FeatureLayer> AddLayer(const std::shared_ptr<IFeatureClass>& featureClass,
                                           const std::string& name) {
        auto layer = std::make_shared<FeatureLayer>();
        layer->FeatureClass(featureClass);
        layer->Name(name);
        FocusMap()->AddLayer(layer);
        return layer;
    }

    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<Application> app_;
    std::shared_ptr<clsExtension> extension_;
    TempDir dir_;

private:
    std::shared_ptr<IUIServices> previous_;
};

} // namespace tess::test
