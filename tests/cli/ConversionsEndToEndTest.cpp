// The built tessarine running the conversions other than vertices on the demo
// data in a test's own folder: outputs read back and compared with their
// inputs, round trips that must give the inputs' areas again, and the exit
// codes and messages of input that a conversion cannot take.

#include <gtest/gtest.h>

#include "CliTestSupport.h"
#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/Point.h"

namespace tess::test {
namespace {

namespace fs = std::filesystem;

// Areas in square degrees of shapes a degree across, stored as doubles: only rounding differs.
constexpr double kAreaTolerance = 1e-9; // square degrees

//! Area of every feature's shape, in storage order, after simplifying it: the demo's crescent
//! crosses itself, and simplifying, as every conversion of polygons does, makes both its lobes
//! count positive.
std::vector<double> Areas(const std::string& datasetPath) {
    std::vector<double> areas;
    auto cursor = OpenClass(datasetPath)->Search(nullptr, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature()) {
        auto shape = feature->ShapeCopy();
        dynamic_cast<ITopologicalOperator&>(*shape).Simplify();
        areas.push_back(dynamic_cast<const IArea&>(*shape).Area());
    }
    return areas;
}

std::vector<std::shared_ptr<IGeometry>> Shapes(const std::string& datasetPath) {
    std::vector<std::shared_ptr<IGeometry>> shapes;
    auto cursor = OpenClass(datasetPath)->Search(nullptr, false);
    for (auto feature = cursor->NextFeature(); feature; feature = cursor->NextFeature())
        shapes.push_back(feature->ShapeCopy());
    return shapes;
}

class Conversions : public ::testing::Test {
protected:
    void SetUp() override { CopyDemoData(dir_.Path()); }
    std::string Data(const std::string& name) const { return (dir_.Path() / "data" / "demo" / name).string(); }
    std::string Out(const std::string& name) const { return dir_ / name; }

    TempDir dir_;
};

TEST_F(Conversions, LabelPointsFallInsideTheirParcelsAndCarryTheirAttributes) {
    const ProcessResult run = RunTessarine(
        {"label-points", "--layer", Data("parcels.shp"), "--output", Out("labels.shp"), "--all-fields"}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("Polygons to Label Points Successful:"), std::string::npos) << run.out;
    const auto parcels = Shapes(Data("parcels.shp"));
    const auto parcelRecords = ReadFeatures(Data("parcels.shp"));
    const auto labels = ReadFeatures(Out("labels.shp"));
    ASSERT_EQ(labels.size(), parcels.size());
    for (std::size_t i = 0; i < labels.size(); ++i) {
        ASSERT_EQ(labels[i].points.size(), 1u);
        const auto [x, y] = labels[i].points[0];
        EXPECT_TRUE(dynamic_cast<const IRelationalOperator&>(*parcels[i]).Contains(Point(x, y))) << "parcel " << i;
        EXPECT_EQ(labels[i].values.at("UNIQ_ID"), std::to_string(i + 1));
        EXPECT_EQ(labels[i].values.at("NAME"), parcelRecords[i].values.at("NAME"));
    }
}

TEST_F(Conversions, PolygonsToPolylinesAndBackGiveTheParcelsAreasAgain) {
    ASSERT_EQ(RunTessarine({"to-polylines", "--layer", Data("parcels.shp"), "--output", Out("rims.shp")}, dir_.Path())
                  .exitCode,
              0);
    const ProcessResult back =
        RunTessarine({"to-polygons", "--layer", Out("rims.shp"), "--output", Out("again.shp")}, dir_.Path());
    ASSERT_EQ(back.exitCode, 0) << back.err;
    const std::vector<double> before = Areas(Data("parcels.shp"));
    const std::vector<double> after = Areas(Out("again.shp"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_NEAR(after[i], before[i], kAreaTolerance) << "parcel " << i;
    // The polylines' own fields came along and the new ones stepped aside.
    const auto again = ReadFeatures(Out("again.shp"));
    EXPECT_EQ(again.at(0).values.count("UNIQ_ID_2"), 1u);
}

TEST_F(Conversions, SplitThenCombineByCommandNameKeepsTheTotalArea) {
    const ProcessResult split = RunTessarine(
        {"Tessarine_SplitMultipart", "--layer", Data("parcels.shp"), "--output", Out("pieces.shp"), "--fields", "NAME"},
        dir_.Path());
    ASSERT_EQ(split.exitCode, 0) << split.err;
    const std::vector<double> parcels = Areas(Data("parcels.shp"));
    const std::vector<double> pieces = Areas(Out("pieces.shp"));
    EXPECT_GT(pieces.size(), parcels.size()) << "the demo parcels have several parts";
    double parcelTotal = 0;
    for (double a : parcels)
        parcelTotal += a;
    double pieceTotal = 0;
    for (double a : pieces)
        pieceTotal += a;
    EXPECT_NEAR(pieceTotal, parcelTotal, kAreaTolerance);

    const ProcessResult combined =
        RunTessarine({"combine", "--layer", Out("pieces.shp"), "--output", Out("all.shp"), "--fields", "NAME"}, dir_.Path());
    ASSERT_EQ(combined.exitCode, 0) << combined.err;
    EXPECT_NE(combined.out.find("Joined All Records (n = " + std::to_string(pieces.size()) + ")"), std::string::npos)
        << combined.out;
    const auto all = ReadFeatures(Out("all.shp"));
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].values.at("NAME"), ReadFeatures(Data("parcels.shp")).at(0).values.at("NAME"));
    // The demo parcels do not overlap: the union keeps their area.
    EXPECT_NEAR(Areas(Out("all.shp")).at(0), parcelTotal, kAreaTolerance);
}

TEST_F(Conversions, SphericalCentroidsRefuseALayerWithoutACoordinateSystem) {
    const ProcessResult run = RunTessarine(
        {"spherical-centroids", "--layer", Data("sketch.shp"), "--output", Out("c.shp")}, dir_.Path());
    EXPECT_EQ(run.exitCode, 1) << run.err;
    EXPECT_NE(run.out.find("Selected Feature Class has unknown coordinate system..."), std::string::npos) << run.out;
    EXPECT_FALSE(fs::exists(Out("c.shp")));
}

TEST_F(Conversions, ALayerOfTheWrongKindOrAShapeTheClassCannotHoldIsAFailure) {
    const ProcessResult polygonsOnly = RunTessarine(
        {"to-polylines", "--layer", Data("trails.shp"), "--output", Out("x.shp")}, dir_.Path());
    EXPECT_EQ(polygonsOnly.exitCode, 2);
    EXPECT_NE(polygonsOnly.err.find("Polygons to Polylines"), std::string::npos) << polygonsOnly.err;
    EXPECT_FALSE(fs::exists(Out("x.shp")));

    // Joined points make a multipoint, which the point class of the output refuses: the class
    // stays, empty, and the input is as it was.
    const std::size_t wells = ReadFeatures(Data("wells.shp")).size();
    const ProcessResult points =
        RunTessarine({"combine", "--layer", Data("wells.shp"), "--output", Out("w.shp")}, dir_.Path());
    EXPECT_EQ(points.exitCode, 1);
    EXPECT_NE(points.out.find("Join Features Failed"), std::string::npos) << points.out;
    EXPECT_TRUE(ReadFeatures(Out("w.shp")).empty());
    EXPECT_EQ(ReadFeatures(Data("wells.shp")).size(), wells);
}

TEST_F(Conversions, TheDemoRunsEveryConversionAndSavesAMapOfTheirOutputs) {
    const ProcessResult run =
        RunTessarine({"demo", "--data", (dir_.Path() / "data").string(), "--output", Out("shown")}, dir_.Path());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const char* outputs[] = {"parcels_vertices",     "parcels_label_points", "trails_midpoints",
                             "parcels_spherical_centroids", "trails_polygons", "parcels_outlines",
                             "parcels_parts",        "parcels_combined"};
    for (const char* output : outputs)
        EXPECT_FALSE(ReadFeatures(Out("shown/" + std::string(output) + ".shp")).empty()) << output;
    EXPECT_NE(run.out.find("Tessarine demo, 8 of 8"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Join Features Successful:"), std::string::npos) << run.out;

    // The saved map holds every new layer, and a command can run on it again.
    const ProcessResult again = RunTessarine({"centroids", "--doc", Out("shown/demo.map.json"), "--input",
                                              "parcels_parts", "--output", Out("centres.shp")},
                                             dir_.Path());
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_EQ(ReadFeatures(Out("centres.shp")).size(), ReadFeatures(Out("shown/parcels_parts.shp")).size());
}

} // namespace
} // namespace tess::test
