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

#include "DataTestSupport.h"
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

inline std::shared_ptr<IFeatureWorkspace> ShapefileFolder(const std::string& path) {
    return std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(path, 0));
}

using Parts = Rings;

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
