// The dialog-worker-report protocol of the tool commands, driven with stand-in
// dialogs and workers in the tool table: what the worker is given, what the
// command clears afterwards, cancel, and a failing worker.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ClassTable.h"
#include "extension/ComponentContract.h"
#include "conversion/ConversionRun.h"
#include "extension/ConversionCommands.h"
#include "extension/ToolCommands.h"
#include "platform/carto/FeatureLayer.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

constexpr const char* kReport = R"({\rtf1 report of the run\par})";

std::shared_ptr<ICommand> Make(const std::string& className) {
    return FindClass("Tessarine." + className)->Create().Command;
}

//! What a stand-in conversion worker was given.

class ToolCommandsTest : public test::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        Start();
        layer = std::make_shared<FeatureLayer>();
        fields = std::make_shared<VarArray>();
        fields->Add(Variant(std::string("a field")));
        // Every report window shown: the text it was given.
        ui_->QueueFormScript("frmReport_modal", [this](Form& form) { OnReport(form); });
    }
    void OnReport(Form& form) {
        reports.push_back(form.Ctl("txtReport").Text);
        form.Fire("cmdOK", FormEvent::Click);
        ui_->QueueFormScript("frmReport_modal", [this](Form& f) { OnReport(f); });
    }

    //! A dialog that leaves the extension as a user's OK (or Cancel) would.
    void Answer(bool ok, std::int32_t count) {
        extension_->ShouldContinue(ok);
        if (!ok)
            return;
        extension_->SelectedLayer(layer);
        extension_->SelectedFields(fields);
        extension_->DoAllRecords(true);
        extension_->NewShapefileLocation("/out/vertices.shp");
        extension_->AnalysisRecordCount(count);
    }

    test::RunsGuard guard;
    std::shared_ptr<FeatureLayer> layer;
    std::shared_ptr<VarArray> fields;
    std::vector<std::string> reports;
};

struct ConversionCase {
    const char* className;
    std::int32_t option;
    ConversionWorker ToolRuns::*worker;
    std::optional<std::int32_t> threshold; //!< nothing: the progress flag is always true
};

const ConversionCase kConversions[] = {
    {"clsShapesToVertices", 1, &ToolRuns::ConvertToVertices, 500},
    {"clsConvertLabelpoint", 2, &ToolRuns::ConvertToLabelPoints, 2000},
    {"clsConvertCentroid", 4, &ToolRuns::ConvertToCentroids, 2000},
    {"clsConvertSphCentroid", 8, &ToolRuns::ConvertToSphericalCentroid, 20},
    {"clsConvertToPolygon", 16, &ToolRuns::PolylinesToPolygons, 500},
    {"clsConvertToPolyline", 32, &ToolRuns::PolygonsToPolylines, 500},
    {"clsConvertSplit", 64, &ToolRuns::SplitMultipart, 2000},
    {"clsConvertJoin", 128, &ToolRuns::JoinFeatures, std::nullopt},
};

TEST_F(ToolCommandsTest, ConversionsRunTheirWorkerWithTheDialogsChoicesAndTheirProgressThreshold) {
    for (const ConversionCase& c : kConversions) {
        // At the threshold and one above it: the progress dialog only for more records than that.
        const std::int32_t edge = c.threshold.value_or(0);
        for (std::int32_t count : {edge, edge + 1}) {
            SCOPED_TRACE(std::string(c.className) + " count " + std::to_string(count));
            std::int32_t dialogOption = -1;
            std::optional<ConversionRequest> call;
            Runs().LayerFieldsDialog = [&](const std::shared_ptr<IApplication>& application, std::int32_t option) {
                EXPECT_EQ(application, std::static_pointer_cast<IApplication>(app_));
                dialogOption = option;
                Answer(true, count);
            };
            Runs().*c.worker = [&](const ConversionRequest& request) {
                call = request;
                return std::string(kReport);
            };
            Document()->SetClean();
            reports.clear();

            auto command = Make(c.className);
            command->OnCreate(app_);
            command->OnClick();

            EXPECT_EQ(dialogOption, c.option);
            ASSERT_TRUE(call);
            EXPECT_EQ(call->layer, layer);
            EXPECT_EQ(call->selectedFields, fields);
            EXPECT_TRUE(call->doAllRecords);
            EXPECT_EQ(call->outputPath, "/out/vertices.shp");
            EXPECT_EQ(call->application, std::static_pointer_cast<IApplication>(app_));
            EXPECT_EQ(call->extension, extension_);
            EXPECT_EQ(call->showProgress, !c.threshold || count > *c.threshold);
            EXPECT_FALSE(call->clock); // the worker's own clock
            EXPECT_EQ(reports, std::vector<std::string>{kReport});
            // Cleared after the run; the input layer stays for the next dialog.
            EXPECT_EQ(extension_->SelectedFields(), nullptr);
            EXPECT_EQ(extension_->SelectedFeatureClass(), nullptr);
            EXPECT_EQ(extension_->SelectedLayer(), layer);
            EXPECT_TRUE(Document()->IsDirty());
            Runs().*c.worker = nullptr;
        }
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ToolCommandsTest, CancellingAConversionRunsNothingShowsNothingAndLeavesTheDocumentClean) {
    bool ran = false;
    Runs().LayerFieldsDialog = [&](const std::shared_ptr<IApplication>&, std::int32_t) { Answer(false, 0); };
    Runs().ConvertToCentroids = [&](const ConversionRequest&) {
        ran = true;
        return std::string(kReport);
    };
    extension_->SelectedFields(fields); // left from before; a cancelled run does not touch it
    auto command = Make("clsConvertCentroid");
    command->OnCreate(app_);
    command->OnClick();
    EXPECT_FALSE(ran);
    EXPECT_TRUE(reports.empty());
    EXPECT_FALSE(Document()->IsDirty());
    EXPECT_EQ(extension_->SelectedFields(), fields);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ToolCommandsTest, AFailingWorkerIsReportedAndLeavesTheExtensionAsItStood) {
    Runs().LayerFieldsDialog = [&](const std::shared_ptr<IApplication>&, std::int32_t) { Answer(true, 3); };
    Runs().SplitMultipart = [&](const ConversionRequest&) -> std::string {
        throw Fault(fault::DataFailed, "modCreateVertices", "disk full");
    };
    auto command = Make("clsConvertSplit");
    command->OnCreate(app_);
    command->OnClick();
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("disk full"), std::string::npos);
    EXPECT_NE(ui_->Errors()[0].find("\tICommand_OnClick "), std::string::npos);
    EXPECT_TRUE(reports.empty());
    EXPECT_EQ(extension_->SelectedFields(), fields);
    EXPECT_FALSE(Document()->IsDirty());
}

TEST_F(ToolCommandsTest, CalculateGeometryHandsOverTheOptionsAndClearsThemAfterTheReport) {
    auto options = std::make_shared<VarArray>();
    std::shared_ptr<IVariantArray> given;
    Runs().GeometryDialog = [&](const std::shared_ptr<IApplication>&) {
        extension_->GeometryOptions(options);
        extension_->ShouldContinue(true);
    };
    Runs().CalcGeometry = [&](const std::shared_ptr<IVariantArray>& o, const std::shared_ptr<IApplication>&) {
        given = o;
        return std::string(kReport);
    };
    auto command = Make("clsConvertGeometry");
    command->OnCreate(app_);
    command->OnClick();
    EXPECT_EQ(given, options);
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_EQ(extension_->GeometryOptions(), nullptr);
    EXPECT_TRUE(Document()->IsDirty());

    // Cancel: the dialog writes ShouldContinue false and a null array; nothing runs.
    given.reset();
    Document()->SetClean();
    Runs().GeometryDialog = [&](const std::shared_ptr<IApplication>&) {
        extension_->GeometryOptions(nullptr);
        extension_->ShouldContinue(false);
    };
    command->OnClick();
    EXPECT_EQ(given, nullptr);
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_FALSE(Document()->IsDirty());
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ToolCommandsTest, BuildingPolygonsPassesTheLabelChoicesOnlyWhenLabelsAreTransferred) {
    auto pointLayer = std::make_shared<FeatureLayer>();
    struct Given {
        bool transfer, useAll, useFirst;
        std::shared_ptr<IFeatureLayer> points;
        std::shared_ptr<IVariantArray> fields;
        double tolerance;
        std::shared_ptr<IMxDocument> document;
    };
    std::optional<Given> given;
    Runs().orlBuildPolygons = [&](const std::shared_ptr<IFeatureLayer>& lines, bool doAll, double tolerance,
                                  bool transfer, bool useAll, bool useFirst,
                                  const std::shared_ptr<IFeatureLayer>& points,
                                  const std::shared_ptr<IVariantArray>& f, const std::string& path,
                                  const std::shared_ptr<IMxDocument>& document, const std::shared_ptr<IApplication>&,
                                  const std::shared_ptr<clsExtension>&) {
        EXPECT_EQ(lines, layer);
        EXPECT_TRUE(doAll);
        EXPECT_EQ(path, "/out/vertices.shp");
        given = Given{transfer, useAll, useFirst, points, f, tolerance, document};
        return std::string(kReport);
    };
    for (bool transfer : {false, true}) {
        SCOPED_TRACE(transfer);
        given.reset();
        Runs().BuildParamsDialog = [&](const std::shared_ptr<IApplication>&) {
            Answer(true, 10);
            extension_->BuildClusterTolerance(0.25);
            extension_->BuildShouldTransferLabels(transfer);
            extension_->BuildUseAllLabelPoints(true);
            extension_->BuildUseFirstLabelPoint(true);
            extension_->SelectedPointLayer(pointLayer);
        };
        auto command = Make("clsBuildPolygon");
        command->OnCreate(app_);
        command->OnClick();
        ASSERT_TRUE(given);
        EXPECT_EQ(given->transfer, transfer);
        EXPECT_EQ(given->useAll, transfer);
        EXPECT_EQ(given->useFirst, transfer);
        EXPECT_EQ(given->points, transfer ? pointLayer : nullptr);
        EXPECT_EQ(given->fields, transfer ? std::shared_ptr<IVariantArray>(fields) : nullptr);
        EXPECT_EQ(given->tolerance, 0.25);
        EXPECT_EQ(given->document, std::static_pointer_cast<IMxDocument>(Document()));
        EXPECT_EQ(extension_->SelectedPointLayer(), nullptr);
        EXPECT_EQ(extension_->SelectedFields(), nullptr);
        EXPECT_EQ(extension_->SelectedFeatureClass(), nullptr);
    }
    EXPECT_EQ(reports.size(), 2u);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ToolCommandsTest, WrapRunsOnTheDialogsArgumentListAndReleasesIt) {
    auto arguments = std::make_shared<VarArray>();
    arguments->Add(Variant(std::static_pointer_cast<IFeatureLayer>(layer)));
    std::shared_ptr<IVariantArray> given;
    bool progress = true;
    Runs().BoundaryWrapDialog = [&](const std::shared_ptr<IApplication>&) {
        extension_->frmBoundaryWrapReturn(arguments);
        extension_->ShouldContinue(true);
    };
    Runs().WrapToBoundaries = [&](const std::shared_ptr<IApplication>&, const std::shared_ptr<IMxDocument>&,
                                  const std::shared_ptr<clsExtension>&, const std::shared_ptr<IVariantArray>& a,
                                  bool showProgress) {
        given = a;
        progress = showProgress;
        return std::string(kReport);
    };
    auto command = Make("clsWrapBoundary");
    command->OnCreate(app_);
    command->OnClick();
    EXPECT_EQ(given, arguments);
    EXPECT_FALSE(progress); // a layer without data has no records to wait for
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_EQ(extension_->frmBoundaryWrapReturn(), nullptr);
    EXPECT_TRUE(Document()->IsDirty());

    // Cancel leaves no list; nothing runs.
    given.reset();
    Runs().BoundaryWrapDialog = [&](const std::shared_ptr<IApplication>&) { extension_->ShouldContinue(false); };
    command->OnClick();
    EXPECT_EQ(given, nullptr);
    EXPECT_EQ(reports.size(), 1u);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ToolCommandsTest, PlanetaryCommandsSetUpTheSharedDialogAndRunTheirOwnDirection) {
    struct Case {
        const char* className;
        const char* caption;
        PlanetaryWorker ToolRuns::*worker;
    };
    const Case cases[] = {
        {"OCentricToOGraphic", " Planetocentric to Planetographic:", &ToolRuns::CalcPlanetoCentricToPlanetoGraphic},
        {"OGraphicToOCentric", " Planetographic to Planetocentric:", &ToolRuns::CalcPlanetoGraphicToPlanetoCentric},
    };
    extension_->DirectoryPath("/data/mars.gdb");
    extension_->DirectoryType("File Geodatabase");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.className);
        auto arguments = std::make_shared<VarArray>();
        arguments->Add(Variant(std::static_pointer_cast<IFeatureLayer>(layer)));
        std::shared_ptr<IVariantArray> setup;
        bool ran = false;
        Runs().GeoCentricDialog = [&](const std::shared_ptr<IVariantArray>& list) {
            setup = list;
            extension_->frmGeoCentricReturn(arguments);
            extension_->ShouldContinue(true);
        };
        Runs().CalcPlanetoCentricToPlanetoGraphic = nullptr;
        Runs().CalcPlanetoGraphicToPlanetoCentric = nullptr;
        Runs().*c.worker = [&](const std::shared_ptr<IApplication>&, const std::shared_ptr<IMxDocument>&,
                               const std::shared_ptr<clsExtension>&, const std::shared_ptr<IVariantArray>& a, bool) {
            EXPECT_EQ(a, arguments);
            ran = true;
            return std::string(kReport);
        };
        auto command = Make(c.className);
        command->OnCreate(app_);
        command->OnClick();
        ASSERT_TRUE(ran);
        ASSERT_TRUE(setup);
        ASSERT_EQ(setup->Count(), 6);
        EXPECT_EQ(setup->Element(0).As<IApplication>(), std::static_pointer_cast<IApplication>(app_));
        EXPECT_EQ(setup->Element(1).As<clsExtension>(), extension_);
        EXPECT_EQ(setup->Element(2).ToString(), "/data/mars.gdb");
        EXPECT_EQ(setup->Element(3).ToString(), "File Geodatabase");
        EXPECT_EQ(setup->Element(4).ToString(), c.caption);
        EXPECT_EQ(setup->Element(5).ToString(), GeoCentricInstructions());
        EXPECT_EQ(extension_->frmGeoCentricReturn(), nullptr);
    }
    EXPECT_EQ(reports.size(), 2u);
    EXPECT_TRUE(ui_->Errors().empty());
}

} // namespace
} // namespace tess
