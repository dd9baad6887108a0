// The command classes: their constants, the polygon-building variant on an old
// host, the "not available yet" report of tools this build lacks, the About
// command, and the selection tool helper.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ClassTable.h"
#include "extension/CommandBitmaps.h"
#include "extension/CommandTable.h"
#include "extension/ComponentContract.h"
#include "extension/ToolRuns.h"
#include "platform/framework/CommandBars.h"
#include "support/GeneralHelpers.h"

namespace tess {
namespace {

struct CommandConstants {
    const char* className;
    const char* name;
    const char* caption;
    const char* tooltip;
    const char* message;
    std::int32_t bitmap;
};

// As the menus show them; the names carry the common prefix.
const CommandConstants kExpected[] = {
    {"cmdNewShapefile", "Tessarine_MakeShapefile", "&Graphic Elements to Shapes", "Create New Shapefile",
     "Create new shapefile, either empty or by converting graphics...", 101},
    {"clsSelGraphics", "Tessarine_SelectGraphics", "Select Graphic Elements by &Type",
     "Select Graphic Elements by Type", "Select Graphics by Type or Name...", 106},
    {"clsSelAllElements", "Tessarine_SelectAllGraphics", "Select All Graphic &Elements",
     "Select All Graphic Elements", "Select All Graphic Elements...", 103},
    {"clsUnselElements", "Tessarine_UnselectAllGraphics", "&Unselect All Graphic Elements",
     "Unselect All Graphic Elements", "Unselect All Graphic Elements...", 104},
    {"clsZoomToSelected", "Tessarine_ZoomSelGraphics", "&Zoom to Selected Graphic Elements",
     "Zoom to Selected Graphic Elements", "Zoom to Selected Graphic Elements...", 105},
    {"clsFlipGraphicSel", "Tessarine_FlipSelection", "&Flip Graphic Element Selection",
     "Flip Graphic Element Selection", "Flip Graphic Element Selection...", 107},
    {"clsNameGraphics", "Tessarine_NameGraphics", "&Name Graphic Elements", "Name Graphic Elements",
     "Name Graphic Elements...", 108},
    {"clsShapesToVertices", "Tessarine_ShapesToVertices", "Convert Shapes to &Vertices", "Shapes to Vertices",
     "Convert Polylines and Polygons to Vertex Point shapefiles...", 109},
    {"clsConvertToPolyline", "Tessarine_PolygonToPolyline", "Convert Polygons to Poly&lines",
     "Polygons to Polylines", "Convert Polygons to Polylines...", 110},
    {"clsConvertToPolygon", "Tessarine_PolylineToPolygon", "Convert &Polylines to Polygons",
     "Polylines to Polygons", "Convert Polylines to Polygons...", 111},
    {"clsConvertLabelpoint", "Tessarine_PolygonToLabelPoints", "Convert Polygons to La&bel Points",
     "Polygons to Label Points", "Extract label points within polygons...", 112},
    {"clsConvertCentroid", "Tessarine_PolygonToCentroid", "Convert Shapes to &Centroids", "Shapes to Centroids",
     "Identify centroids of Polygons and Polylines...", 113},
    {"clsConvertSphCentroid", "Tessarine_Spherical_Centroid", "Convert Features to &Spherical Centroids",
     "Features to Spherical Centroids", "Calculate centroid of feature draped over sphere...", 119},
    {"clsConvertSplit", "Tessarine_SplitMultipart", "Split &Multipart Features", "Split Multipart Features",
     "Split multipart features into single objects...", 115},
    {"clsConvertJoin", "Tessarine_JoinFeatures", "Combine &Features", "Combine Features",
     "Combine multiple features into a single multipart object...", 116},
    {"clsConvertGeometry", "Tessarine_CalcGeometry", "C&alculate Geometry", "Calculate Geometry",
     "Calculate geometric attributes of data, including spherical area and spheroidal length...", 117},
    {"cmdAbout", "Tessarine_About", "About Tools for Tessarine Tools", "About Tools for Tessarine Tools",
     "About Tools for Tessarine Tools, and Manual", 120},
    {"clsBuildPolygon", "Tessarine_BuildPolygon", "Buil&d Polygons from Polylines", "Similar to ArcInfo Build",
     "Build polygons based on the regions bounded by polylines...", 121},
    {"clsWrapBoundary", "Tessarine_WrapBoundary", "&Wrap Boundary", "",
     "Wrap a feature class around a particular range of longitude and latitude values...", 124},
    {"OCentricToOGraphic", "Tessarine_OCentric_OGraphic", "O&Centric to OGraphic", "",
     "Convert a Planetocentric (Geocentric) Feature Class to a Planetographic (Geographic) Feature Class...", 122},
    {"OGraphicToOCentric", "Tessarine_OGraphic_OCentric", "O&Graphic to OCentric", "",
     "Convert a Planetographic (Geographic) Feature Class to a Planetocentric (Geocentric) Feature Class...", 123},
};

std::shared_ptr<ICommand> Make(const std::string& className) {
    const ClassEntry* entry = FindClass("Tessarine." + className);
    if (!entry)
        return nullptr;
    return entry->Create().Command;
}

class CommandsTest : public test::HostTest {};

TEST_F(CommandsTest, EveryCommandAnswersItsConstants) {
    Start();
    std::size_t commandClasses = 0;
    for (const ClassEntry& entry : ClassTable())
        commandClasses += entry.Kind == ClassKind::Command;
    EXPECT_EQ(commandClasses, std::size(kExpected));

    for (const CommandConstants& c : kExpected) {
        SCOPED_TRACE(c.className);
        auto command = Make(c.className);
        ASSERT_TRUE(command);
        command->OnCreate(app_);
        EXPECT_EQ(command->Name(), c.name);
        EXPECT_EQ(command->Caption(), c.caption);
        EXPECT_EQ(command->Tooltip(), c.tooltip);
        EXPECT_EQ(command->Message(), c.message);
        EXPECT_EQ(command->Bitmap(), c.bitmap);
        EXPECT_EQ(command->Category(), "Halvorn");
        EXPECT_EQ(command->HelpFile(), "");
        EXPECT_EQ(command->HelpContextID(), 0);
        EXPECT_TRUE(command->Enabled()); // on a 10.0 host, with an empty map in data view
        EXPECT_FALSE(command->Checked());
        const CommandBitmap* picture = LoadCommandBitmap(command->Bitmap());
        ASSERT_NE(picture, nullptr);
        EXPECT_EQ(picture->Width * picture->Height * picture->BytesPerPixel,
                  static_cast<std::int32_t>(picture->Pixels.size()));
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(CommandsTest, PolygonBuildingFollowsTheHostVersion) {
    struct Case {
        const char* version;
        bool enabled;
    };
    const Case cases[] = {{"9.1", false}, {"8.3", false}, {"9", false}, {"9.2", true}, {"9.3.1", true}, {"10.0", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.version);
        registry_->HostVersion(c.version);
        Start();
        auto command = Make("clsBuildPolygon");
        command->OnCreate(app_);
        EXPECT_EQ(command->Enabled(), c.enabled);
        if (c.enabled) {
            EXPECT_EQ(command->Caption(), "Buil&d Polygons from Polylines");
            EXPECT_EQ(command->Tooltip(), "Similar to ArcInfo Build");
            EXPECT_EQ(command->Message(), "Build polygons based on the regions bounded by polylines...");
        } else {
            EXPECT_EQ(command->Caption(), "Buil&d Polygons (Disabled: Pre-ArcGIS 9.2)");
            EXPECT_EQ(command->Tooltip(), "Disabled:  This function requires ArcGIS 9.2 or newer...");
            EXPECT_EQ(command->Message(), "Disabled:  This function requires ArcGIS 9.2 or newer...");
        }
        // The other commands do not look at the version.
        auto vertices = Make("clsShapesToVertices");
        vertices->OnCreate(app_);
        EXPECT_TRUE(vertices->Enabled());
        app_->Shutdown();
        app_.reset();
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

// With the tool table of this build, every command whose dialog or worker has not landed yet says
// so when clicked, and opens nothing.
TEST_F(CommandsTest, ToolsNotInThisBuildReportThatTheyAreNotAvailableYet) {
    Start();
    test::RunsGuard guard;
    Runs() = ToolRuns{}; // the state of a build with none of the tools
    const char* const lacking[] = {"cmdNewShapefile", "clsSelGraphics", "clsNameGraphics", "clsShapesToVertices",
                                   "clsConvertToPolyline", "clsConvertToPolygon", "clsConvertLabelpoint",
                                   "clsConvertCentroid", "clsConvertSphCentroid", "clsConvertSplit",
                                   "clsConvertJoin", "clsConvertGeometry", "clsBuildPolygon", "clsWrapBoundary",
                                   "OCentricToOGraphic", "OGraphicToOCentric"};
    for (const char* className : lacking) {
        SCOPED_TRACE(className);
        ui_->Clear();
        auto command = Make(className);
        command->OnCreate(app_);
        command->OnClick();
        const auto errors = ui_->Errors();
        ASSERT_EQ(errors.size(), 1u);
        const std::string caption = CaptionText(command->Caption());
        EXPECT_NE(errors[0].find("The tool \"" + caption + "\" is not available yet in this build."),
                  std::string::npos)
            << errors[0];
        EXPECT_NE(errors[0].find("\tICommand_OnClick "), std::string::npos);
        EXPECT_TRUE(ui_->Texts("modal").empty()); // no dialog, no report
    }
    EXPECT_FALSE(Document()->IsDirty());
}

TEST_F(CommandsTest, AboutShowsTheAboutBoxModally) {
    Start();
    auto about = Make("cmdAbout");
    about->OnCreate(app_);
    std::string caption;
    ui_->QueueFormScript("frmAbout", [&](Form& form) {
        caption = form.Caption;
        form.Fire("cmdOK", FormEvent::Click);
    });
    about->OnClick();
    EXPECT_EQ(ui_->Texts("modal"), std::vector<std::string>{"frmAbout"});
    EXPECT_EQ(caption, " About Tools for Tessarine Tools:");
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(CommandsTest, NamingGraphicsGivesTheDialogTheDocumentsApplication) {
    Start();
    test::RunsGuard guard;
    std::shared_ptr<IApplication> given;
    Runs().NameElementsDialog = [&](const std::shared_ptr<IApplication>& application) { given = application; };
    auto command = Make("clsNameGraphics");
    command->OnCreate(app_);
    command->OnClick();
    EXPECT_EQ(given, std::static_pointer_cast<IApplication>(app_));
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(CommandsTest, AClickBeforeOnCreateIsReportedNotCrashed) {
    auto command = Make("clsSelAllElements");
    command->OnClick();
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("ICommand_OnClick "), std::string::npos);
}

TEST_F(CommandsTest, EnableSelectToolMakesTheHostsSelectionToolCurrent) {
    Start();
    ASSERT_EQ(app_->CurrentTool(), nullptr);
    EnableSelectTool(app_);
    ASSERT_NE(app_->CurrentTool(), nullptr);
    EXPECT_EQ(app_->CurrentTool()->ID(), kSelectElementsToolId);
    EXPECT_TRUE(ui_->Errors().empty());

    // A host without that tool: the fault is reported, nothing else changes.
    app_->Commands()->RemoveCommand(kSelectElementsToolId);
    app_->CurrentTool(nullptr);
    EnableSelectTool(app_);
    EXPECT_EQ(app_->CurrentTool(), nullptr);
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("EnableSelectTool "), std::string::npos);
}

} // namespace
} // namespace tess
