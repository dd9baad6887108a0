#pragma once
// Shared pieces of the graphics tests: an application with the extension under
// a scripted UI, and a document whose focus map holds an element of every kind,
// straight and curved, named and unnamed, some selected.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "DataTestSupport.h"
#include "frame/clsExtension.h"
#include "platform/carto/Elements.h"
#include "platform/carto/GroupElement.h"
#include "platform/carto/Map.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/PageLayout.h"
#include "platform/carto/Symbols.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/Line.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/ui/ScriptedUI.h"

namespace tess::test {

constexpr std::int32_t kWgs84 = 4326;    // geographic WGS 1984
constexpr std::int32_t kUtm33N = 32633;  // WGS 84 / UTM zone 33N

inline std::shared_ptr<ISpatialReference> Wgs84() {
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(kWgs84);
}
inline std::shared_ptr<ISpatialReference> Utm33N() {
    return SpatialReferenceEnvironment().CreateProjectedCoordinateSystem(kUtm33N);
}

template <class E>
std::shared_ptr<E> Named(std::shared_ptr<E> element, const std::string& name) {
    element->Name(name);
    return element;
}

inline std::shared_ptr<IGeometry> Labelled(std::shared_ptr<IGeometry> shape, std::shared_ptr<ISpatialReference> sr) {
    shape->SpatialReference(std::move(sr));
    return shape;
}

inline std::shared_ptr<Envelope> Box(double xMin, double yMin, double xMax, double yMax) {
    auto box = std::make_shared<Envelope>();
    box->PutCoords(xMin, yMin, xMax, yMax);
    return box;
}

//! A polyline from (x0, y0) east by `width`, then a half circle bulging north back to the start
//! side: one straight line and one circular arc.
inline std::shared_ptr<Polyline> CurvedLine(double x0, double y0, double width) {
    auto path = std::make_shared<Path>();
    Line line;
    line.PutCoords(Point(x0, y0), Point(x0 + width, y0));
    path->AddSegment(line);
    CircularArc arc;
    arc.ConstructThreePoints(Point(x0 + width, y0), Point(x0 + width / 2, y0 + width / 2), Point(x0, y0));
    path->AddSegment(arc);
    auto polyline = std::make_shared<Polyline>();
    polyline->AddGeometry(path);
    return polyline;
}

//! An application with the extension running, a scripted UI and a temporary folder; the
//! document is saved there, so that outputs are proposed beside it.
class GraphicsHostTest : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = SetUI(ui_);
        app_ = Application::Create();
        app_->RegisterExtension(clsExtension::ProgID, "", [] { return std::make_shared<clsExtension>(); });
        app_->Startup();
        extension_ = FindTessExtension(*app_);
        ASSERT_TRUE(extension_);
        app_->SaveDocument(dir_ / "map.map.json");
    }
    void TearDown() override {
        app_->Shutdown();
        SetUI(previous_);
    }

    std::shared_ptr<MxDocument> Doc() const { return app_->MxDoc(); }
    std::shared_ptr<Map> FocusMap() const { return Doc()->FocusMapObject(); }

    std::shared_ptr<IElement> Add(const std::shared_ptr<IElement>& element, bool selected = false) {
        FocusMap()->AddElement(element, 0);
        if (selected)
            FocusMap()->SelectElement(element);
        return element;
    }

    //! Every kind of element on a map in WGS 1984, bottom first:
    //!   Marker "Well" (selected), Marker "", Line "Road" (selected, straight), Line "" (a line and
    //!   a half circle), Polygon "Field", Rectangle "Frame" (selected), Circle "Pond", Ellipse "",
    //!   Text "Label", Picture "Photo", DataGraph "Chart", Group "Cluster" (a marker and a line).
    void AddEveryKind() {
        auto sr = Wgs84();
        FocusMap()->SpatialReference(sr);
        auto well = Named(std::make_shared<MarkerElement>(), "Well");
        well->Geometry(Labelled(std::make_shared<Point>(10.0, 45.0), sr));
        auto red = std::make_shared<SimpleMarkerSymbol>();
        red->Color(std::make_shared<RgbColor>(200, 0, 0));
        red->Size(9);
        well->Symbol(red);
        Add(well, true);
        auto spring = std::make_shared<MarkerElement>();
        spring->Geometry(Labelled(std::make_shared<Point>(11.0, 45.0), sr));
        Add(spring);

        auto road = Named(std::make_shared<LineElement>(), "Road");
        road->Geometry(Labelled(MakePolyline({{{10, 44}, {11, 44}, {11, 45}}}), sr));
        auto blue = std::make_shared<SimpleLineSymbol>();
        blue->Color(std::make_shared<RgbColor>(0, 0, 200));
        blue->Width(3);
        road->Symbol(blue);
        Add(road, true);
        auto loop = std::make_shared<LineElement>();
        loop->Geometry(Labelled(CurvedLine(12, 44, 1), sr));
        Add(loop);

        auto field = Named(std::make_shared<PolygonElement>(), "Field");
        field->Geometry(Labelled(MakePolygon({Square(10, 46, 0.5, true)}), sr));
        auto green = std::make_shared<SimpleFillSymbol>();
        green->Color(std::make_shared<RgbColor>(0, 150, 0));
        field->Symbol(green);
        Add(field);
        auto frame = Named(std::make_shared<RectangleElement>(), "Frame");
        frame->Geometry(Labelled(Box(12, 46, 13, 47), sr));
        Add(frame, true);
        auto pond = Named(std::make_shared<CircleElement>(), "Pond");
        pond->Geometry(Labelled(MakeCirclePolygon(Point(11, 47), 0.2), sr));
        Add(pond);
        auto lake = std::make_shared<EllipseElement>();
        lake->Geometry(Labelled(Box(14, 44, 15, 44.5), sr));
        Add(lake);

        auto label = Named(std::make_shared<TextElement>(), "Label");
        label->Geometry(Labelled(std::make_shared<Point>(10.0, 48.0), sr));
        Add(label);
        auto photo = Named(std::make_shared<PictureElement>(), "Photo");
        photo->Geometry(Labelled(Box(15, 46, 16, 47), sr));
        Add(photo);
        auto chart = Named(std::make_shared<DataGraphElement>(), "Chart");
        chart->Geometry(Labelled(Box(16, 46, 17, 47), sr));
        Add(chart);
        auto group = Named(std::make_shared<GroupElement>(), "Cluster");
        auto member = Named(std::make_shared<MarkerElement>(), "Member");
        member->Geometry(Labelled(std::make_shared<Point>(17.5, 44.0), sr));
        group->AddElement(member);
        auto pipe = std::make_shared<LineElement>();
        pipe->Geometry(Labelled(MakePolyline({{{17.5, 44}, {18, 44.5}}}), sr));
        group->AddElement(pipe);
        Add(group);
    }

    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<Application> app_;
    std::shared_ptr<clsExtension> extension_;
    TempDir dir_;

private:
    std::shared_ptr<IUIServices> previous_;
};

} // namespace tess::test
