// The layer-and-fields dialog driven as a user drives it: what each conversion
// offers, how the choices show, and what OK leaves for the worker.

#include <gtest/gtest.h>

#include "ConversionFixtures.h"
#include "conversion/frmLayerFields.h"
#include "platform/carto/Layers.h"
#include "platform/data/SelectionSet.h"

namespace tess::test {
namespace {

class LayerFieldsTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        std::filesystem::create_directories(dir_ / "in");
        std::filesystem::create_directories(dir_ / "out");
        std::filesystem::create_directories(dir_ / "doc");
        auto in = ShapefileFolder(dir_ / "in");
        auto sr = Utm33N();
        // Added bottom first: the map lists zones, roads, parcels, sites, wells.
        wells_ = AddLayer(CreateClass(*in, "wells", esriGeometryPoint, sr), "wells");
        sites_ = AddLayer(CreateClass(*in, "sites", esriGeometryMultipoint, sr), "sites");
        auto parcels = CreateClass(*in, "parcels", esriGeometryPolygon, sr,
                                   {MakeField("NAME", esriFieldTypeString, 20), MakeField("POP", esriFieldTypeInteger),
                                    MakeField("AREA", esriFieldTypeDouble)});
        AddFeature(*parcels, MakePolygon({Square(0, 0, 1, true)}));
        AddFeature(*parcels, MakePolygon({Square(5, 0, 1, true)}));
        parcels_ = AddLayer(parcels, "parcels");
        roads_ = AddLayer(CreateClass(*in, "roads", esriGeometryPolyline, sr), "roads");
        auto gpkg = std::dynamic_pointer_cast<IFeatureWorkspace>(
            GeoPackageWorkspaceFactory().Create(dir_.Path(), "zones.gpkg"));
        zones_ = AddLayer(CreateClass(*gpkg, "zones", esriGeometryPolygon, sr,
                                      {MakeField("ZONE", esriFieldTypeString, 8),
                                       MakeField("SHAPE_LENGTH", esriFieldTypeDouble),
                                       MakeField("shape_area", esriFieldTypeDouble)}),
                          "zones");
        app_->SaveDocument(dir_ / "doc/map.map.json");
    }

    //! A dialog set up as its command sets it up, and loaded as showing it loads it.
    std::unique_ptr<frmLayerFields> Open(std::int32_t option) {
        auto form = std::make_unique<frmLayerFields>();
        form->ArcApplication(app_);
        form->ConversionOption(option);
        form->Load();
        return form;
    }

    static std::string Text(const frmLayerFields& form, const char* control) { return form.Ctl(control).Text; }

    std::shared_ptr<FeatureLayer> wells_, sites_, parcels_, roads_, zones_;
};

TEST_F(LayerFieldsTest, EachConversionOffersItsLayersWordsAndOutputName) {
    struct Case {
        std::int32_t option;
        const char* caption;
        std::vector<std::string> layers;
        const char* messageStart;
        const char* output;
    };
    const std::vector<std::string> lines{"zones", "roads", "parcels", "sites"};
    const std::vector<std::string> all{"zones", "roads", "parcels", "sites", "wells"};
    const Case cases[] = {
        {1, " Shapes to Vertices:", lines, "This function will convert polyline, polygon and multipoint", "vertex.shp"},
        {2, " Polygons to Label Points:", {"zones", "parcels"}, "This function will generate a shapefile of points "
                                                               "that represent the label points", "Label_Points.shp"},
        {4, " Shapes to Centroids:", lines, "This function will generate a shapefile of points that represent "
                                            "either the planimetric", "Centroids.shp"},
        {8, " Shapes to Spherical Centroids:", lines, "This function will generate a shapefile of points that "
                                                      "represent the spherical", "Spherical_Centroids.shp"},
        {16, " Polylines to Polygons:", {"roads"}, "This function will convert polyline features to a polygon",
         "Polygons.shp"},
        {32, " Polygons to Polylines:", {"zones", "parcels"}, "This function will convert polygon features to a "
                                                             "polyline", "Polylines.shp"},
        {64, " Split Multipart Features:", all, "This function will split any multipart features found in the "
                                                "selected feature class.The new shapefile", "Split_Shapes.shp"},
        {128, " Combine Features:", all, "This function will combine all specified features into a single geometry.",
         "Combined_Shapes.shp"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.option);
        auto form = Open(c.option);
        EXPECT_EQ(form->Caption, c.caption);
        EXPECT_EQ(form->Ctl("lbxLayers").List, c.layers);
        EXPECT_EQ(form->Ctl("lbxLayers").ListIndex, 0);
        EXPECT_EQ(Text(*form, "txtMessage").rfind(c.messageStart, 0), 0u) << Text(*form, "txtMessage");
        // The last run left nothing: the document's folder, a shapefile of the default name.
        EXPECT_EQ(Text(*form, "txtOutput"), dir_ / ("doc/" + std::string(c.output)));
        EXPECT_EQ(form->OutputKind(), 1);
        EXPECT_TRUE(form->Ctl("cmdOK").Enabled);
    }
    EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
}

TEST_F(LayerFieldsTest, WithoutALayerOfTheRightKindOKStaysOff) {
    FocusMap()->DeleteLayer(roads_);
    auto form = Open(conversion_option::PolylinesToPolygons);
    EXPECT_EQ(form->Ctl("lbxLayers").ListCount(), 0);
    EXPECT_EQ(form->Ctl("lbxFields").ListCount(), 0);
    EXPECT_FALSE(form->Ctl("cmdOK").Enabled);
    EXPECT_EQ(form->Ctl("optAll").Value, 1);
    // An unknown option offers nothing, and keeps the caption of the design.
    auto other = Open(3);
    EXPECT_EQ(other->Caption, " Input Parameters:");
    EXPECT_EQ(other->Ctl("lbxLayers").ListCount(), 0);
    EXPECT_FALSE(other->Ctl("cmdOK").Enabled);
}

TEST_F(LayerFieldsTest, TheLayerChosenInTheTableOfContentsIsPreferredWhenItFits) {
    Document()->SelectedLayer(parcels_);
    EXPECT_EQ(Open(conversion_option::Vertices)->Ctl("lbxLayers").ListIndex, 2);
    // A layer of the wrong kind: the first line.
    Document()->SelectedLayer(wells_);
    EXPECT_EQ(Open(conversion_option::Vertices)->Ctl("lbxLayers").ListIndex, 0);
}

TEST_F(LayerFieldsTest, FieldsListLeavesOutIdentifiersShapesAndStoredMeasures) {
    auto form = Open(conversion_option::Vertices); // zones first
    EXPECT_EQ(form->Ctl("lbxFields").List, std::vector<std::string>{"ZONE"});

    // The layer's alias is what the list shows.
    auto info = parcels_->FieldInfo(parcels_->FindField("POP"));
    info->Alias("Population");
    form->Ctl("lbxLayers").ListIndex = 2;
    form->Fire("lbxLayers", FormEvent::Click);
    EXPECT_EQ(form->Ctl("lbxFields").List, (std::vector<std::string>{"NAME", "Population", "AREA"}));
}

TEST_F(LayerFieldsTest, RecordOptionsFollowTheSelection) {
    Document()->SelectedLayer(parcels_);
    struct Case {
        std::vector<std::int32_t> selected;
        std::int32_t option;
        const char* allCaption;
        const char* selectedCaption;
        int allValue, selValue;
        bool selEnabled;
    };
    const Case cases[] = {
        {{}, 1, "Convert All Records (n = 2)", "Convert Selected Records (n = 0)", 1, 0, false},
        {{1}, 1, "Convert All Records (n = 2)", "Convert Selected Records (n = 1)", 0, 1, true},
        {{0, 1}, 128, "Combine All Records (n = 2)", "Combine Selected Records (n = 2)", 0, 1, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.selectedCaption);
        auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(parcels_->FeatureClass()));
        selection->AddList(c.selected);
        parcels_->SelectionSet(selection);
        auto form = Open(c.option);
        EXPECT_EQ(form->Ctl("optAll").Caption, c.allCaption);
        EXPECT_EQ(form->Ctl("optSel").Caption, c.selectedCaption);
        EXPECT_EQ(form->Ctl("optAll").Value, c.allValue);
        EXPECT_EQ(form->Ctl("optSel").Value, c.selValue);
        EXPECT_TRUE(form->Ctl("optAll").Enabled);
        EXPECT_EQ(form->Ctl("optSel").Enabled, c.selEnabled);
    }
}

TEST_F(LayerFieldsTest, SelectAllIsAToggleOfTheButtonNotAReadingOfTheList) {
    Document()->SelectedLayer(parcels_);
    auto form = Open(conversion_option::Vertices);
    Control& fields = form->Ctl("lbxFields");
    EXPECT_EQ(form->Ctl("cmdSelFields").Caption, "Select All Fields");
    form->Fire("cmdSelFields", FormEvent::Click);
    EXPECT_EQ(fields.Selected, (std::vector<bool>{true, true, true}));
    EXPECT_EQ(form->Ctl("cmdSelFields").Caption, "Unselect All Fields");
    form->Fire("cmdSelFields", FormEvent::Click);
    EXPECT_EQ(fields.Selected, (std::vector<bool>{false, false, false}));

    // Every line chosen by hand: the button still offers to select all.
    fields.Selected = {true, true, true};
    EXPECT_EQ(form->Ctl("cmdSelFields").Caption, "Select All Fields");
    // A new layer starts over.
    form->Fire("cmdSelFields", FormEvent::Click);
    form->Ctl("lbxLayers").ListIndex = 0;
    form->Fire("lbxLayers", FormEvent::Click);
    EXPECT_EQ(form->Ctl("cmdSelFields").Caption, "Select All Fields");
}

TEST_F(LayerFieldsTest, TypedOutputTellsItsKindByTheEndOfThePath) {
    struct Case {
        std::string text;
        std::int32_t kind;
        std::string directory;
        std::string name;
    };
    const Case cases[] = {
        {"/data/out/pts", 1, "/data/out", "pts.shp"},
        {"/data/out/pts.shp", 1, "/data/out", "pts.shp"},
        {"C:\\data\\new.gdb", 2, "C:/data", "new.gdb"},
        {"/data/old.mdb", 4, "/data", "old.mdb"},
        {"/data/p.gpkg/pts", 8, "/data/p.gpkg", "pts"},
        // A class typed into a geodatabase by hand reads as a shapefile.
        {"/data/new.gdb/pts", 1, "/data/new.gdb", "pts.shp"},
    };
    auto form = Open(conversion_option::Vertices);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        form->Ctl("txtOutput").Text = c.text;
        form->Fire("txtOutput", FormEvent::Change);
        EXPECT_EQ(form->OutputKind(), c.kind);
        EXPECT_EQ(form->OutputDirectory(), c.directory);
        EXPECT_EQ(form->OutputName(), c.name);
    }
}

TEST_F(LayerFieldsTest, BrowsingIntoAFeatureDatasetSetsKindDatasetAndALegalName) {
    auto form = Open(conversion_option::Vertices);
    ui_->QueueBrowse(BrowseResult{dir_ / "out.gdb/survey", "my pts.shp", "File Geodatabase Feature Dataset"});
    form->Fire("cmdGetWorkspace", FormEvent::Click);
    EXPECT_EQ(ui_->LastBrowse().Title, "Enter the name of your new Feature Class or Shapefile:");
    EXPECT_EQ(ui_->LastBrowse().Name, "vertex.shp");
    EXPECT_EQ(form->OutputKind(), 2);
    EXPECT_TRUE(form->IsFeatureDataset());
    EXPECT_EQ(form->FeatDatasetName(), "survey");
    EXPECT_EQ(form->OutputDirectory(), dir_ / "out.gdb");
    EXPECT_EQ(form->OutputName(), "my_pts");
    EXPECT_EQ(Text(*form, "txtOutput"), dir_ / "out.gdb/survey/my_pts");

    // Then a folder: a shapefile again, outside any dataset.
    ui_->QueueBrowse(BrowseResult{dir_ / "out", "pts", "Folder"});
    form->Fire("cmdGetWorkspace", FormEvent::Click);
    EXPECT_EQ(form->OutputKind(), 1);
    EXPECT_FALSE(form->IsFeatureDataset());
    EXPECT_EQ(Text(*form, "txtOutput"), dir_ / "out/pts");
}

TEST_F(LayerFieldsTest, AnUnexpectedPlaceAsksAgainOrLeavesTheFormAsItWas) {
    auto form = Open(conversion_option::Vertices);
    const std::string before = Text(*form, "txtOutput");
    ui_->QueueBrowse(BrowseResult{dir_ / "img.tif", "x", "Raster Dataset"});
    ui_->QueueAnswer(MsgBoxResult::OK);
    ui_->QueueBrowse(BrowseResult{dir_ / "img.tif", "x", "Raster Dataset"});
    ui_->QueueAnswer(MsgBoxResult::Cancel);
    form->Fire("cmdGetWorkspace", FormEvent::Click);

    const auto messages = ui_->Messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "Unexpected Feature Class Type (Raster Dataset)!\r\n"
                           "This function will only create shapefiles or feature classes in \r\n"
                           "File or Personal GeoDatabases.  Please click 'OK' to select a \r\n"
                           "new Feature Class Name, or 'Cancel' to bail out.");
    EXPECT_EQ(ui_->Log()[1].title, "Invalid Feature Class Type:");
    EXPECT_EQ(Text(*form, "txtOutput"), before);
    EXPECT_EQ(form->OutputKind(), 1);
}

TEST_F(LayerFieldsTest, OKIntoAMissingFolderSaysSoAndStays) {
    auto form = Open(conversion_option::Vertices);
    form->Ctl("txtOutput").Text = dir_ / "nowhere/pts.shp";
    form->Fire("txtOutput", FormEvent::Change);
    form->Fire("cmdOK", FormEvent::Click);
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "Unable to create Feature Class:\r\n" + (dir_ / "nowhere") + " is not a valid workspace...");
    EXPECT_EQ(ui_->Log()[0].title, "Failed to Create Feature Class:");
    EXPECT_TRUE(form->IsLoaded());
    EXPECT_FALSE(extension_->ShouldContinue());
}

TEST_F(LayerFieldsTest, OKLeavesEveryChoiceForTheWorker) {
    Document()->SelectedLayer(parcels_);
    auto selection = MakeSelectionSet(std::dynamic_pointer_cast<ITable>(parcels_->FeatureClass()));
    selection->Add(1);
    parcels_->SelectionSet(selection);
    auto gdb = std::dynamic_pointer_cast<IFeatureWorkspace>(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    gdb->CreateFeatureDataset("survey", Utm33N());
    auto form = Open(conversion_option::Vertices);
    form->Ctl("lbxFields").Selected = {true, false, true};
    ui_->QueueBrowse(BrowseResult{dir_ / "out.gdb/survey", "pts", "File Geodatabase Feature Dataset"});
    form->Fire("cmdGetWorkspace", FormEvent::Click);
    form->Fire("cmdOK", FormEvent::Click);

    EXPECT_FALSE(form->IsLoaded());
    EXPECT_TRUE(extension_->ShouldContinue());
    EXPECT_EQ(extension_->NewShapefileLocation(), dir_ / "out.gdb/survey/pts");
    EXPECT_EQ(extension_->DirectoryPath(), dir_ / "out.gdb");
    EXPECT_EQ(extension_->DirectoryType(), "File Geodatabase");
    EXPECT_TRUE(extension_->IsFeatureDataset());
    EXPECT_EQ(extension_->FeatDatasetName(), "survey");
    EXPECT_EQ(extension_->SelectedLayer(), parcels_);
    EXPECT_FALSE(extension_->DoAllRecords());
    EXPECT_EQ(extension_->AnalysisRecordCount(), 1);
    const auto fields = extension_->SelectedFields();
    ASSERT_TRUE(fields);
    ASSERT_EQ(fields->Count(), 2);
    EXPECT_EQ(fields->Element(0).As<IField>()->Name(), "NAME");
    EXPECT_EQ(fields->Element(1).As<IField>()->Name(), "AREA");

    // With all records the count is the class's.
    auto again = Open(conversion_option::Vertices);
    again->Fire("optAll", FormEvent::Click);
    EXPECT_EQ(again->Ctl("optSel").Value, 0);
    again->Fire("cmdOK", FormEvent::Click);
    EXPECT_TRUE(extension_->DoAllRecords());
    EXPECT_EQ(extension_->AnalysisRecordCount(), 2);
    EXPECT_EQ(extension_->SelectedFields()->Count(), 0);
}

TEST_F(LayerFieldsTest, ClosingInAnyOtherWayCancelsTheRun) {
    extension_->ShouldContinue(true);
    // The close box: the dialog is shown and nothing is pressed.
    ShowLayerFieldsDialog(app_, conversion_option::Vertices, "");
    EXPECT_FALSE(extension_->ShouldContinue());

    ui_->QueueFormScript("frmLayerFields", [](Form& form) { form.Fire("cmdCancel", FormEvent::Click); });
    extension_->SelectedLayer(parcels_);
    ShowLayerFieldsDialog(app_, conversion_option::Vertices, "");
    EXPECT_FALSE(extension_->ShouldContinue());
    EXPECT_FALSE(extension_->SelectedLayer());
    EXPECT_FALSE(extension_->SelectedFields());
}

TEST_F(LayerFieldsTest, TheLastOutputPlaceIsOfferedWithAFreeName) {
    auto gdb = std::dynamic_pointer_cast<IFeatureWorkspace>(FileGDBWorkspaceFactory().Create(dir_.Path(), "out.gdb"));
    gdb->CreateFeatureDataset("survey", Utm33N());
    CreateClass(*gdb, "vertex", esriGeometryPoint, Utm33N());
    CreateClass(*ShapefileFolder(dir_ / "out"), "vertex", esriGeometryPoint, Utm33N());
    struct Case {
        const char* directoryType;
        std::string directory;
        bool inDataset;
        std::string expected;
        std::int32_t kind;
    };
    const Case cases[] = {
        {"Shapefile", dir_ / "out", false, dir_ / "out/vertex_2.shp", 1},
        {"", dir_ / "out", false, dir_ / "out/vertex_2.shp", 1},
        {"File Geodatabase", dir_ / "out.gdb", false, dir_ / "out.gdb/vertex_2", 2},
        {"File Geodatabase", dir_ / "out.gdb", true, dir_ / "out.gdb/survey/vertex_2", 2},
        // A place that is gone, or a kind not known: the document's folder.
        {"Shapefile", dir_ / "gone", false, dir_ / "doc/vertex.shp", 1},
        {"Coverage", dir_ / "out", false, dir_ / "doc/vertex", 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        extension_->DirectoryType(c.directoryType);
        extension_->DirectoryPath(c.directory);
        extension_->IsFeatureDataset(c.inDataset);
        extension_->FeatDatasetName(c.inDataset ? "survey" : "");
        auto form = Open(conversion_option::Vertices);
        EXPECT_EQ(Text(*form, "txtOutput"), c.expected);
        EXPECT_EQ(form->OutputKind(), c.kind);
        EXPECT_EQ(form->IsFeatureDataset(), c.inDataset);
    }
}

} // namespace
} // namespace tess::test
