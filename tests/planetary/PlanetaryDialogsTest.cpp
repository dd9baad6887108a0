#include "planetary/frmBoundaryWrap.h"
#include "planetary/frmGeoCentric.h"

#include "ConversionFixtures.h"

#include "planetary/PlanetaryArguments.h"
#include "support/MyGeneralOperations.h"

namespace tess::test {
namespace {

constexpr double kMarsA = 3396190.0; // metres, Mars 2000
constexpr double kMarsB = 3376200.0;

std::shared_ptr<ISpatialReference> Mars2000() {
    return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(104905); // GCS_Mars_2000
}
std::shared_ptr<ISpatialReference> Wgs84() { return SpatialReferenceEnvironment().CreateGeographicCoordinateSystem(4326); }

class PlanetaryDialogTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        auto gpkg = MakeWorkspace(Format::GeoPackage, dir_);
        // Names a shapefile cannot hold: long, and starting with a digit.
        mars_ = AddLayer(CreateClass(*gpkg, "mars", esriGeometryPolygon, Mars2000(),
                                     {MakeField("crater_diameter_km", esriFieldTypeDouble),
                                      MakeField("2nd_name", esriFieldTypeString, 20)}),
                         "mars");
        AddLayer(CreateClass(*gpkg, "utm", esriGeometryPoint, Utm33N()), "utm");
        AddLayer(CreateClass(*gpkg, "plain", esriGeometryPoint, nullptr), "plain");
        earth_ = AddLayer(CreateClass(*gpkg, "earth", esriGeometryPoint, Wgs84()), "earth");
        extension_->DirectoryPath(dir_.Path());
        extension_->DirectoryType("Shapefile");
    }

    //! A wrap dialog opened as the command opens it.
    std::unique_ptr<frmBoundaryWrap> OpenWrap() {
        auto form = std::make_unique<frmBoundaryWrap>();
        form->ArcApplication(app_);
        EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        return form;
    }

    std::unique_ptr<frmGeoCentric> OpenGeoCentric() {
        auto setup = std::make_shared<VarArray>();
        setup->Add(Variant(std::shared_ptr<IApplication>(app_)));
        setup->Add(Variant(extension_));
        setup->Add(Variant(dir_.Path()));
        setup->Add(Variant(std::string("Shapefile")));
        setup->Add(Variant(std::string(" Planetocentric to Planetographic:")));
        setup->Add(Variant(std::string("instructions")));
        auto form = std::make_unique<frmGeoCentric>();
        form->ArcApplication(setup);
        EXPECT_TRUE(ui_->Errors().empty()) << ui_->Errors().front();
        return form;
    }

    static void Type(Form& form, const std::string& box, const std::string& text) {
        form.Ctl(box).Text = text;
        form.Fire(box, FormEvent::Change);
    }

    static void Choose(Form& form, const std::string& layer) {
        Control& list = form.Ctl("lbxLayers");
        for (int i = 0; i < list.ListCount(); ++i)
            if (list.List[static_cast<std::size_t>(i)] == layer)
                list.ListIndex = i;
        form.Fire("lbxLayers", FormEvent::Click);
    }

    std::shared_ptr<FeatureLayer> mars_;
    std::shared_ptr<FeatureLayer> earth_;
};

TEST_F(PlanetaryDialogTest, OnlyLayersInGeographicCoordinatesAreOffered) {
    auto wrap = OpenWrap();
    EXPECT_EQ(wrap->Ctl("lbxLayers").List, (std::vector<std::string>{"earth", "mars"}));
    EXPECT_TRUE(wrap->Ctl("cmdOK").Enabled);
    auto geo = OpenGeoCentric();
    EXPECT_EQ(geo->Ctl("lbxLayers").List, (std::vector<std::string>{"earth", "mars"}));
}

TEST_F(PlanetaryDialogTest, WithoutGeographicLayersOKStaysOff) {
    FocusMap()->DeleteLayer(mars_);
    FocusMap()->DeleteLayer(earth_);
    auto wrap = OpenWrap();
    EXPECT_EQ(wrap->Ctl("lbxLayers").ListCount(), 0);
    EXPECT_FALSE(wrap->Ctl("cmdOK").Enabled);
}

TEST_F(PlanetaryDialogTest, WrapOpensOnTheRememberedBoxOrTheWholeGlobe) {
    extension_->CustomBoundaryWest(10.5);
    extension_->CustomBoundaryEast(20);
    extension_->CustomBoundarySouth(-5);
    extension_->CustomBoundaryNorth(5.25);
    extension_->LongitudeWrapOption(2);
    extension_->LongitudeShift(-12.5);
    auto form = OpenWrap();
    EXPECT_EQ(form->Caption, " Wrap to Boundary:");
    EXPECT_EQ(form->Ctl("txtWest").Text, "10.5");
    EXPECT_EQ(form->Ctl("txtNorth").Text, "5.25");
    EXPECT_EQ(form->Ctl("txtLongShift").Text, "-12.5");
    EXPECT_EQ(form->Ctl("optWrap360").Value, 1);
    EXPECT_FALSE(form->Ctl("txtWest").Enabled);
    form->Fire("optCustom", FormEvent::Click);
    EXPECT_TRUE(form->Ctl("txtWest").Enabled);
    EXPECT_EQ(form->Ctl("optWrap360").Value, 0);

    extension_->CustomBoundaryWest(30); // not below East
    auto reset = OpenWrap();
    EXPECT_EQ(reset->Ctl("txtWest").Text, "-180");
    EXPECT_EQ(reset->Ctl("txtEast").Text, "180");
    EXPECT_EQ(reset->Ctl("txtSouth").Text, "-90");
    EXPECT_EQ(reset->Ctl("txtNorth").Text, "90");
    EXPECT_EQ(reset->Ctl("txtOutput").Text, dir_.Path() + "/Output.shp");
}

TEST_F(PlanetaryDialogTest, BadCustomBoxesAreRefusedWithTheirMessageAndNothingIsHandedOn) {
    struct Case {
        const char* west;
        const char* south;
        const char* north;
        const char* text;
        const char* title;
    };
    const Case cases[] = {
        {"10", "-10", "10", "Western Boundary Value >= Eastern Boundary Value...", "Invalid Boundary Values:"},
        {"-10", "10", "10", "Southern Boundary Value >= Northern Boundary Value...", "Invalid Boundary Values:"},
        {"-10", "-10", "x", "Northern Boundary Value is invalid...", "Invalid Boundary Value:"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        ui_->Clear();
        auto form = OpenWrap();
        form->Fire("optCustom", FormEvent::Click);
        Type(*form, "txtWest", c.west);
        Type(*form, "txtEast", "10");
        Type(*form, "txtSouth", c.south);
        Type(*form, "txtNorth", c.north);
        form->Fire("cmdOK", FormEvent::Click);
        ASSERT_EQ(ui_->Messages().size(), 1u);
        EXPECT_EQ(ui_->Messages()[0], c.text);
        EXPECT_EQ(ui_->Log().back().title, c.title);
        EXPECT_FALSE(extension_->ShouldContinue());
        EXPECT_EQ(extension_->frmBoundaryWrapReturn(), nullptr);
    }
}

TEST_F(PlanetaryDialogTest, WrapOKHandsOnTheBoxShiftAndAShapefileFieldMap) {
    auto form = OpenWrap();
    Choose(*form, "mars");
    form->Fire("optWrap360", FormEvent::Click);
    Type(*form, "txtLongShift", "-180");
    Type(*form, "txtOutput", dir_.Path() + "/mars_wrapped");
    form->Fire("cmdOK", FormEvent::Click);
    ASSERT_TRUE(ui_->Messages().empty()) << ui_->Messages().front();
    EXPECT_TRUE(extension_->ShouldContinue());
    const auto args = extension_->frmBoundaryWrapReturn();
    ASSERT_TRUE(args);
    EXPECT_EQ(args->Element(wrap_argument::Layer).As<IFeatureLayer>(), mars_);
    EXPECT_EQ(args->Element(wrap_argument::West).ToDouble(), 0);
    EXPECT_EQ(args->Element(wrap_argument::East).ToDouble(), 360);
    EXPECT_EQ(args->Element(wrap_argument::South).ToDouble(), -90);
    EXPECT_EQ(args->Element(wrap_argument::North).ToDouble(), 90);
    EXPECT_EQ(args->Element(wrap_argument::Option).ToDouble(), 2);
    EXPECT_EQ(args->Element(wrap_argument::Shift).ToDouble(), -180);
    EXPECT_EQ(extension_->LongitudeShift(), -180);
    EXPECT_EQ(extension_->LongitudeWrapOption(), 2);

    const auto out = args->Element(wrap_argument::Output).As<IVariantArray>();
    ASSERT_TRUE(out);
    EXPECT_EQ(out->Element(output_description::Name).ToString(), "mars_wrapped.shp");
    EXPECT_EQ(out->Element(output_description::Kind).ToDouble(), output_kind::Shapefile);
    const auto map = out->Element(output_description::FieldMap).As<IVariantArray>();
    ASSERT_TRUE(map);
    std::vector<std::pair<std::string, std::string>> pairs;
    for (std::int32_t i = 0; i < map->Count(); ++i) {
        auto pair = map->Element(i).As<IStringArray>();
        pairs.emplace_back(pair->Element(0), pair->Element(1));
    }
    // Cut to 10 characters; a leading digit makes "Z" and the last 9 of the cut name.
    EXPECT_EQ(pairs, (std::vector<std::pair<std::string, std::string>>{{"crater_diameter_km", "crater_dia"},
                                                                          {"2nd_name", "Z2nd_name"}}));
    EXPECT_EQ(extension_->DirectoryType(), "Shapefile");
}

TEST_F(PlanetaryDialogTest, AMissingOutputFolderKeepsTheDialogOpen) {
    auto form = OpenWrap();
    Type(*form, "txtOutput", dir_ / "nowhere/out.shp");
    form->Fire("cmdOK", FormEvent::Click);
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Messages()[0], "Unable to create Feature Class:\r\n" + (dir_ / "nowhere") + " is not a valid workspace...");
    EXPECT_EQ(ui_->Log().back().title, "Failed to Create Feature Class:");
    EXPECT_FALSE(extension_->ShouldContinue());
}

TEST_F(PlanetaryDialogTest, GeoCentricTakesTheLayersSpheroidAndTypingMakesItCustom) {
    auto form = OpenGeoCentric();
    EXPECT_EQ(form->Caption, " Planetocentric to Planetographic:");
    Choose(*form, "mars");
    EXPECT_EQ(form->SemiMajor(), kMarsA);
    EXPECT_EQ(form->SemiMinor(), kMarsB);
    EXPECT_EQ(form->Ctl("txtMajor").Text, "3396190");
    EXPECT_EQ(form->Ctl("lblCurrent").Caption, "Current Spheroid = " + form->SpheroidName());
    Type(*form, "txtMinor", "3376000");
    EXPECT_EQ(form->Ctl("lblCurrent").Caption, "Current Spheroid = <-- Custom Spheroid -->");
    EXPECT_EQ(form->SemiMinor(), 3376000);
}

TEST_F(PlanetaryDialogTest, GeoCentricRefusesRadiiOfZero) {
    auto form = OpenGeoCentric();
    Type(*form, "txtMajor", "0");
    form->Fire("cmdOK", FormEvent::Click);
    Type(*form, "txtMajor", "3396190");
    Type(*form, "txtMinor", "");
    form->Fire("cmdOK", FormEvent::Click);
    const auto messages = ui_->Messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0], "Semi-Major (Equatorial) Radius value must be >= 0...");
    EXPECT_EQ(messages[1], "Semi-Minor (Polar) Radius value must be >= 0...");
    EXPECT_EQ(ui_->Log().back().title, "Invalid Spheroid Parameter:");
    EXPECT_EQ(extension_->frmGeoCentricReturn(), nullptr);
    EXPECT_FALSE(extension_->ShouldContinue());
}

TEST_F(PlanetaryDialogTest, GeoCentricLoadsASpheroidFromTheSpheroidDialogAndHandsOnItsChoices) {
    extension_->LongitudeWrapOption(1);
    auto form = OpenGeoCentric();
    EXPECT_EQ(form->Ctl("optWrap180").Value, 1);
    Choose(*form, "earth");
    ui_->QueueFormScript("frmSpheroidOptions", [](Form& dialog) {
        dialog.Ctl("txtMajor").Text = "3396190";
        dialog.Fire("txtMajor", FormEvent::Change);
        dialog.Ctl("txtMinor").Text = "3376200";
        dialog.Fire("txtMinor", FormEvent::Change);
        dialog.Fire("cmdOK", FormEvent::Click);
    });
    form->Fire("cmdGetSpheroid", FormEvent::Click);
    EXPECT_EQ(form->SemiMajor(), kMarsA);
    EXPECT_EQ(form->SemiMinor(), kMarsB);
    form->Fire("optNoWrap", FormEvent::Click);
    Type(*form, "txtLongShift", "90");
    form->Fire("cmdOK", FormEvent::Click);
    ASSERT_TRUE(ui_->Messages().empty()) << ui_->Messages().front();
    const auto args = extension_->frmGeoCentricReturn();
    ASSERT_TRUE(args);
    EXPECT_EQ(args->Element(geocentric_argument::Layer).As<IFeatureLayer>(), earth_);
    EXPECT_EQ(args->Element(geocentric_argument::SpheroidName).ToString(), extension_->CurrentSpheroidName());
    EXPECT_EQ(args->Element(geocentric_argument::SemiMajor).ToDouble(), kMarsA);
    EXPECT_EQ(args->Element(geocentric_argument::SemiMinor).ToDouble(), kMarsB);
    EXPECT_EQ(args->Element(geocentric_argument::Shift).ToDouble(), 90);
    EXPECT_EQ(args->Element(geocentric_argument::WrapOption).ToDouble(), 0);
    EXPECT_EQ(extension_->LongitudeWrapOption(), 0);
    EXPECT_TRUE(extension_->ShouldContinue());
}

} // namespace
} // namespace tess::test
