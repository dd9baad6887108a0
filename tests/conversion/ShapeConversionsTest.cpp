// Polygons to polylines and back, split multipart and combine features on
// datasets made in temporary folders: the shapes that come out (rings, holes,
// parts, order), their measures and attributes, round trips in every kind of
// output, and the input kinds that have no branch.

#include <gtest/gtest.h>

#include <cmath>

#include "ConversionFixtures.h"
#include "conversion/modCreateVertices.h"
#include "platform/data/SelectionSet.h"

namespace tess::test {
namespace {

// Areas and lengths of shapes with coordinates of a few units, as stored: a file geodatabase
// keeps vertices on a grid of about 1e-4 units, which moves a measure by less than this.
constexpr double kMeasureTolerance = 1e-2; // square units or units

//! One output feature as read back.
struct Record {
    std::shared_ptr<IGeometry> shape;
    double measure = 0;   //!< Area, Length or Count, when the run has one
    Variant id;           //!< Uniq_ID as stored
    std::string name;     //!< the carried NAME, when there is one
};

std::vector<Record> ReadRecords(IFeatureClass& output, const std::string& measure,
                                const std::string& idField = "Uniq_ID") {
    std::vector<Record> records;
    const std::int32_t measureIndex = output.FindField(measure);
    const std::int32_t nameIndex = output.FindField("NAME");
    for (const auto& feature : FeaturesOf(output)) {
        Record r;
        r.shape = feature->Shape();
        if (measureIndex >= 0)
            r.measure = feature->Value(measureIndex).ToDouble();
        r.id = feature->Value(output.FindField(idField));
        if (nameIndex >= 0)
            r.name = feature->Value(nameIndex).ToString();
        records.push_back(std::move(r));
    }
    return records;
}

double AreaOf(const IGeometry& shape) { return dynamic_cast<const IArea&>(shape).Area(); }
double LengthOf(const IGeometry& shape) { return dynamic_cast<const ICurve&>(shape).Length(); }

//! Exterior rings and holes of a polygon.
std::pair<std::int32_t, std::int32_t> RingCounts(const IGeometry& shape) {
    const auto& polygon = dynamic_cast<const IPolygon&>(shape);
    const std::int32_t rings = dynamic_cast<const IGeometryCollection&>(shape).GeometryCount();
    return {polygon.ExteriorRingCount(), rings - polygon.ExteriorRingCount()};
}

//! Two islands, the first (10 by 10) with two holes of 2 by 2, the second 5 by 5: 117 square units.
std::shared_ptr<Polygon> IslandsWithHoles() {
    return MakePolygon({Square(0, 0, 10, true), Square(2, 2, 2, false), Square(6, 6, 2, false),
                        Square(20, 0, 5, true)});
}

class ShapeConversionsTest : public ConversionTest {
protected:
    std::shared_ptr<FeatureLayer> LayerOf(const OutputPlace& place, const std::string& name) {
        return AddLayer(place.Open(name), name);
    }
};

TEST_F(ShapeConversionsTest, HolesGoToPolylinesAndComeBackAsPolygonsInEveryKindOfOutput) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N(), {MakeField("NAME", esriFieldTypeString, 8)});
    AddFeature(*parcels, IslandsWithHoles(), {{"NAME", Variant("A")}});
    AddFeature(*parcels, MakePolygon({Square(100, 100, 1, true)}), {{"NAME", Variant("B")}});
    auto layer = AddLayer(parcels, "parcels");

    for (const OutputPlace& place : MakeOutputPlaces(dir_)) {
        SCOPED_TRACE(place.label);
        OutputKind(place.directoryType);
        const std::string toLines =
            Run(&PolygonsToPolylines, layer, SelectFields(*parcels, {"NAME"}), true, place.Path("rims"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        EXPECT_NE(toLines.find(R"(  ** Contains 2 polylines\par)"), std::string::npos) << toLines;
        const auto lines = ReadRecords(*place.Open("rims"), "Length");
        ASSERT_EQ(lines.size(), 2u);
        // Exterior, its holes, the next exterior; every path closed.
        const Rings paths = PartsOf(*lines[0].shape);
        ASSERT_EQ(paths.size(), 4u);
        const double perimeters[] = {40, 8, 8, 20};
        for (std::size_t i = 0; i < paths.size(); ++i) {
            ASSERT_FALSE(paths[i].empty());
            EXPECT_EQ(paths[i].front(), paths[i].back()) << "path " << i;
            EXPECT_NEAR(LengthOf(*MakePolyline({paths[i]})), perimeters[i], kMeasureTolerance) << "path " << i;
        }
        EXPECT_NEAR(lines[0].measure, 76.0, kMeasureTolerance); // holes' boundaries included
        EXPECT_EQ(lines[0].name, "A");
        EXPECT_EQ(lines[1].id.ToLong(), 2);

        const std::string toPolygons =
            Run(&PolylinesToPolygons, LayerOf(place, "rims"), nullptr, true, place.Path("parcels_again"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        EXPECT_NE(toPolygons.find(R"(  ** Contains 2 polygons\par)"), std::string::npos) << toPolygons;
        // The polylines' own fields were carried along: the new ones step aside.
        const auto polygons = ReadRecords(*place.Open("parcels_again"), "Area", "Uniq_ID_2");
        ASSERT_EQ(polygons.size(), 2u);
        EXPECT_NEAR(AreaOf(*polygons[0].shape), 117.0, kMeasureTolerance);
        EXPECT_NEAR(polygons[0].measure, 117.0, kMeasureTolerance);
        EXPECT_EQ(RingCounts(*polygons[0].shape), std::make_pair(2, 2));
        EXPECT_NEAR(polygons[1].measure, 1.0, kMeasureTolerance);
    }
}

TEST_F(ShapeConversionsTest, PolylinePartsAreClosedIntoRingsAndNestedLoopsBecomeHoles) {
    auto lines = CreateClass(*input_, "lines", esriGeometryPolyline, Utm33N());
    // A loop with a smaller loop inside it, both drawn the same way round.
    AddFeature(*lines, MakePolyline({Square(0, 0, 10, true), Square(2, 2, 2, true)}));
    // Two vertices enclose nothing: the record is written with an empty shape.
    AddFeature(*lines, MakePolyline({{{0, 0}, {5, 5}}}));
    // An open line is closed from its end back to its start.
    AddFeature(*lines, MakePolyline({{{0, 0}, {4, 0}, {4, 3}}}));
    auto layer = AddLayer(lines, "lines");
    OutputKind("Shapefile");
    const std::string report = Run(&PolylinesToPolygons, layer, nullptr, true, dir_ / "out/areas.shp");
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

    const auto polygons = ReadRecords(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("areas"), "Area");
    ASSERT_EQ(polygons.size(), 3u);
    EXPECT_DOUBLE_EQ(polygons[0].measure, 96.0);
    EXPECT_EQ(RingCounts(*polygons[0].shape), std::make_pair(1, 1));
    EXPECT_TRUE(!polygons[1].shape || polygons[1].shape->IsEmpty());
    EXPECT_EQ(polygons[1].measure, 0.0);
    EXPECT_EQ(polygons[1].id.ToLong(), 2);
    EXPECT_DOUBLE_EQ(polygons[2].measure, 6.0);
    EXPECT_NE(report.find(R"(  ** Contains 3 polygons\par)"), std::string::npos) << report;
}

TEST_F(ShapeConversionsTest, SplitKeepsHolesWithTheirRingsAndCombineJoinsThePartsAgainInEveryKindOfOutput) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N(), {MakeField("NAME", esriFieldTypeString, 8)});
    AddFeature(*parcels, IslandsWithHoles(), {{"NAME", Variant("A")}});
    AddFeature(*parcels, MakePolygon({Square(100, 100, 1, true)}), {{"NAME", Variant("B")}});
    auto layer = AddLayer(parcels, "parcels");

    for (const OutputPlace& place : MakeOutputPlaces(dir_)) {
        SCOPED_TRACE(place.label);
        OutputKind(place.directoryType);
        const std::string split =
            Run(&SplitMultipart, layer, SelectFields(*parcels, {"NAME"}), true, place.Path("pieces"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        EXPECT_NE(split.find(R"(  ** Split All Records (n = 2)\par)"), std::string::npos) << split;
        EXPECT_NE(split.find(R"(  ** Contains 3 features\par)"), std::string::npos) << split;
        const auto pieces = ReadRecords(*place.Open("pieces"), "Area");
        ASSERT_EQ(pieces.size(), 3u);
        EXPECT_EQ(RingCounts(*pieces[0].shape), std::make_pair(1, 2));
        EXPECT_NEAR(pieces[0].measure, 92.0, kMeasureTolerance);
        EXPECT_NEAR(pieces[1].measure, 25.0, kMeasureTolerance);
        EXPECT_NEAR(pieces[2].measure, 1.0, kMeasureTolerance);
        const char* names[] = {"A", "A", "B"};
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            EXPECT_EQ(pieces[i].id.ToLong(), static_cast<std::int32_t>(i + 1));
            EXPECT_EQ(pieces[i].name, names[i]);
        }

        // The two pieces of A, selected, joined again.
        auto piecesLayer = LayerOf(place, "pieces");
        auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(piecesLayer->FeatureClass()));
        const auto stored = FeaturesOf(*piecesLayer->FeatureClass());
        selection->Add(stored[0]->OID());
        selection->Add(stored[1]->OID());
        piecesLayer->SelectionSet(selection);
        const std::string joined = Run(&JoinFeatures, piecesLayer,
                                       SelectFields(*piecesLayer->FeatureClass(), {"NAME"}), false, place.Path("whole"));
        ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        EXPECT_NE(joined.find(R"(  ** Joined Selected Records (n = 2)\par)"), std::string::npos) << joined;
        EXPECT_NE(joined.find(R"(  ** Contains 1 feature\par)"), std::string::npos) << joined;
        const auto whole = ReadRecords(*place.Open("whole"), "Area_2", "Uniq_ID_2");
        ASSERT_EQ(whole.size(), 1u);
        EXPECT_EQ(RingCounts(*whole[0].shape), std::make_pair(2, 2));
        EXPECT_NEAR(whole[0].measure, 117.0, kMeasureTolerance);
        EXPECT_EQ(whole[0].id.ToLong(), 1);
        EXPECT_EQ(whole[0].name, "A");
    }
}

TEST_F(ShapeConversionsTest, SplitGivesAPointPerVertexOfAMultipointAndALinePerPath) {
    auto wells = CreateClass(*input_, "wells", esriGeometryMultipoint, Utm33N());
    AddFeature(*wells, MakeMultipoint({{1, 1}, {2, 2}, {1, 1}}));
    auto roads = CreateClass(*input_, "roads", esriGeometryPolyline, Utm33N());
    AddFeature(*roads, MakePolyline({{{0, 0}, {3, 4}}, {{10, 0}, {10, 2}, {11, 2}}}));
    OutputKind("Shapefile");

    Run(&SplitMultipart, AddLayer(wells, "wells"), nullptr, true, dir_ / "out/points.shp");
    auto points = ShapefileFolder(dir_ / "out")->OpenFeatureClass("points");
    EXPECT_EQ(points->ShapeType(), esriGeometryPoint);
    const auto vertices = FeaturesOf(*points);
    ASSERT_EQ(vertices.size(), 3u); // the repeated vertex too
    const double xs[] = {1, 2, 1};
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        EXPECT_EQ(std::dynamic_pointer_cast<IPoint>(vertices[i]->Shape())->X(), xs[i]);
        EXPECT_EQ(vertices[i]->Value(points->FindField("X_Coord")).ToDouble(), xs[i]);
        EXPECT_EQ(vertices[i]->Value(points->FindField("Y_Coord")).ToDouble(), xs[i]);
    }

    Run(&SplitMultipart, AddLayer(roads, "roads"), nullptr, true, dir_ / "out/paths.shp");
    const auto paths = ReadRecords(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("paths"), "Length");
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_DOUBLE_EQ(paths[0].measure, 5.0);
    EXPECT_DOUBLE_EQ(paths[1].measure, 3.0);
    EXPECT_EQ(PartsOf(*paths[1].shape), (Rings{{{10, 0}, {10, 2}, {11, 2}}}));
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ShapeConversionsTest, CombineDissolvesTouchingPolygonsAndKeepsTheFirstFeaturesAttributesThoughItIsEmpty) {
    auto parcels = CreateClass(*input_, "parcels", esriGeometryPolygon, Utm33N(), {MakeField("NAME", esriFieldTypeString, 8)});
    AddFeature(*parcels, std::make_shared<Polygon>(), {{"NAME", Variant("first")}});
    AddFeature(*parcels, MakePolygon({Square(0, 0, 1, true)}), {{"NAME", Variant("second")}});
    AddFeature(*parcels, MakePolygon({Square(1, 0, 1, true)}), {{"NAME", Variant("third")}});
    auto layer = AddLayer(parcels, "parcels");
    OutputKind("Shapefile");
    const std::string report =
        Run(&JoinFeatures, layer, SelectFields(*parcels, {"NAME"}), true, dir_ / "out/one.shp", true);
    ASSERT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();

    const auto joined = ReadRecords(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("one"), "Area");
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(RingCounts(*joined[0].shape), std::make_pair(1, 0)); // no boundary between them
    EXPECT_DOUBLE_EQ(joined[0].measure, 2.0);
    EXPECT_EQ(joined[0].name, "first");
    EXPECT_EQ(joined[0].id.ToLong(), 1);
    EXPECT_NE(report.find(R"(  ** Joined All Records (n = 3)\par)"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(\b Empty Features Found:\b0  These features were skipped in the analysis...\par)"
                          "\r\n"
                          R"(  ** OID Value = 0\par)"),
              std::string::npos)
        << report;
    // Asked for a progress window, the run never opens one.
    EXPECT_TRUE(ui_->Texts("modeless").empty());
}

TEST_F(ShapeConversionsTest, CombineUnionsPolylinesAndWritesOneEmptyFeatureWhenAllAreEmpty) {
    auto roads = CreateClass(*input_, "roads", esriGeometryPolyline, Utm33N());
    AddFeature(*roads, MakePolyline({{{0, 0}, {10, 0}}}));
    AddFeature(*roads, MakePolyline({{{5, 0}, {15, 0}}}));
    auto gaps = CreateClass(*input_, "gaps", esriGeometryPolyline, Utm33N());
    AddFeature(*gaps, std::make_shared<Polyline>());
    AddFeature(*gaps, std::make_shared<Polyline>());
    OutputKind("Shapefile");

    Run(&JoinFeatures, AddLayer(roads, "roads"), nullptr, true, dir_ / "out/road.shp");
    const auto road = ReadRecords(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("road"), "Length");
    ASSERT_EQ(road.size(), 1u);
    EXPECT_DOUBLE_EQ(road[0].measure, 15.0); // the overlap counts once
    EXPECT_DOUBLE_EQ(LengthOf(*road[0].shape), 15.0);

    const std::string report = Run(&JoinFeatures, AddLayer(gaps, "gaps"), nullptr, true, dir_ / "out/gap.shp");
    const auto gap = ReadRecords(*ShapefileFolder(dir_ / "out")->OpenFeatureClass("gap"), "Length");
    ASSERT_EQ(gap.size(), 1u);
    EXPECT_TRUE(!gap[0].shape || gap[0].shape->IsEmpty());
    EXPECT_EQ(gap[0].measure, 0.0);
    EXPECT_NE(report.find(R"(  ** OID Value = 0\par)" "\r\n" R"(  ** OID Value = 1\par)"), std::string::npos) << report;
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ShapeConversionsTest, InputKindsWithoutABranch) {
    auto wells = CreateClass(*input_, "wells", esriGeometryPoint, Utm33N());
    AddFeature(*wells, std::make_shared<Point>(1.0, 1.0));
    AddFeature(*wells, std::make_shared<Point>(1.0, 1.0));
    AddFeature(*wells, std::make_shared<Point>(2.0, 3.0));
    auto samples = CreateClass(*input_, "samples", esriGeometryMultipoint, Utm33N(), {MakeField("NAME", esriFieldTypeString, 8)});
    AddFeature(*samples, MakeMultipoint({{1, 1}, {2, 2}}), {{"NAME", Variant("s")}});
    OutputKind("Shapefile");

    // Joined points make a multipoint, which the point class that the run made refuses.
    const std::string points = Run(&JoinFeatures, AddLayer(wells, "wells"), nullptr, true, dir_ / "out/joined.shp");
    EXPECT_NE(points.find(R"(!!!  Join Features Failed  !!!\par)"), std::string::npos) << points;
    EXPECT_NE(points.find(R"(Function = JoinFeatures\par)"), std::string::npos) << points;
    EXPECT_NE(points.find("Error 13:"), std::string::npos) << points;
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_EQ(wells->FeatureCount(nullptr), 3);

    // Multipoints gather nothing: one record with the attributes alone.
    Run(&JoinFeatures, AddLayer(samples, "samples"), SelectFields(*samples, {"NAME"}), true, dir_ / "out/mp.shp");
    auto mp = ShapefileFolder(dir_ / "out")->OpenFeatureClass("mp");
    EXPECT_EQ(mp->ShapeType(), esriGeometryMultipoint);
    const auto records = ReadRecords(*mp, "Count");
    ASSERT_EQ(records.size(), 1u);
    EXPECT_TRUE(!records[0].shape || records[0].shape->IsEmpty());
    EXPECT_EQ(records[0].name, "s");
    EXPECT_EQ(mp->FindField("Count"), -1);

    // Points have no parts to split and give the output no type: no class can be made of that,
    // and the run fails where it would have written into one.
    ui_->Clear();
    const std::string split = Run(&SplitMultipart, AddLayer(wells, "wells"), nullptr, true, dir_ / "out/split.shp");
    EXPECT_NE(split.find(R"(!!!  Split Multipart Shapes Failed  !!!\par)"), std::string::npos) << split;
    EXPECT_NE(split.find(R"(Analyzing Record #0\par)"), std::string::npos) << split;
    EXPECT_FALSE(std::filesystem::exists(dir_ / "out/split.shp"));
    EXPECT_EQ(wells->FeatureCount(nullptr), 3);
}

TEST_F(ShapeConversionsTest, PolygonOnlyRunsFailOnOtherLayersAndLeaveThemAsTheyWere) {
    auto roads = CreateClass(*input_, "roads", esriGeometryPolyline, Utm33N());
    AddFeature(*roads, MakePolyline({{{0, 0}, {10, 0}}}));
    OutputKind("Shapefile");
    const std::string report = Run(&PolygonsToPolylines, AddLayer(roads, "roads"), nullptr, true, dir_ / "out/r.shp");
    EXPECT_NE(report.find(R"(!!!  Polygons to Polylines Failed  !!!\par)"), std::string::npos) << report;
    EXPECT_NE(report.find(R"(Error 13:  Type mismatch\par)"), std::string::npos) << report;
    ASSERT_EQ(ui_->Errors().size(), 1u);
    ASSERT_EQ(roads->FeatureCount(nullptr), 1);
    EXPECT_EQ(PartsOf(*FeaturesOf(*roads).front()->Shape()), (Rings{{{0, 0}, {10, 0}}}));
}

} // namespace
} // namespace tess::test
