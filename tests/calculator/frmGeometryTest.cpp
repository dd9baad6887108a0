// The calculator's dialog without a screen: what it offers for a layer, the
// combo boxes' names and colours, the field-name rules and the two questions,
// the spheroid from Advanced, and the options it leaves for the run.

#include "CalculatorFixtures.h"
#include "calculator/frmGeometry.h"
#include "platform/system/Arrays.h"

namespace tess::test {
namespace {

constexpr std::uint32_t kTaken = 12845055; // pale yellow
constexpr std::uint32_t kNew = 16777215;   // white

class GeometryDialogTest : public CalcTest {
protected:
    //! Opens the dialog on the map as it stands, then lets the script work it.
    void Open(const std::function<void(Form&)>& script) {
        ui_->QueueFormScript("frmGeometry", script);
        ShowGeometryDialog(app_, "");
    }

    std::shared_ptr<FeatureLayer> ShapefileLines(const std::vector<std::shared_ptr<IField>>& fields = {}) {
        std::filesystem::create_directories(dir_ / "shp");
        auto folder = ShapefileFolder(dir_ / "shp");
        auto featureClass = CreateClass(*folder, "roads", esriGeometryPolyline, Wgs84(), fields);
        AddFeature(*featureClass, MakePolyline({{{0, 0}, {1, 1}}}));
        return AddLayer(featureClass, "roads");
    }

    static void Tick(Form& form, int id) {
        form.Ctl("chk" + std::to_string(id)).Value = 1;
        form.Fire("chk" + std::to_string(id), FormEvent::Click);
    }

    static void Answer(ScriptedUI& ui, bool yes) {
        ui.QueueFormScript("frmMessageBox", [yes](Form& box) { box.Fire(yes ? "cmdYes" : "cmdNo", FormEvent::Click); });
    }
};

TEST_F(GeometryDialogTest, OffersTheCatalogueOfTheChosenLayer) {
    Layer("wells", esriGeometryPoint, Utm33N(), {MakePoint(1, 1)});
    auto lines = Layer("roads", esriGeometryPolyline, Wgs84(), {MakePolyline({{{0, 0}, {1, 1}}})});
    Document()->SelectedLayer(lines);
    Open([](Form& form) {
        const Control& list = form.Ctl("lbxLayers");
        ASSERT_EQ(list.ListCount(), 2);
        EXPECT_EQ(list.List[static_cast<std::size_t>(list.ListIndex)], "roads");
        EXPECT_EQ(form.Ctl("lbSelFeatureType").Caption, "Polyline Feature Class:  Geographic Coordinate System");
        EXPECT_EQ(form.Ctl("chk3").Caption, "Midpoint");
        EXPECT_TRUE(form.Ctl("chk8").Visible);
        EXPECT_FALSE(form.Ctl("chk9").Visible);
        EXPECT_EQ(form.Ctl("cbx31").Text, "Mid_X");
        EXPECT_EQ(form.Ctl("cbx31").BackColor, kNew);
        EXPECT_FALSE(form.Ctl("cbx31").Visible); // until its box is ticked
        EXPECT_EQ(form.Ctl("lblSpheroidOptions").Caption,
                  "Spheroid: WGS_1984,  Maj.Rad. = 6378137m,  Min.Rad. = 6356752.31424518m");
        EXPECT_TRUE(form.Ctl("cmdAdvanced").Enabled);
        EXPECT_EQ(form.Ctl("optAll").Caption, "Calculate All Records (n = 1)");
        EXPECT_EQ(form.Ctl("optSel").Caption, "Selected Records (n = 0)");
        EXPECT_FALSE(form.Ctl("cmdOK").Enabled);
        Tick(form, 3);
        EXPECT_TRUE(form.Ctl("cbx31").Visible);
        EXPECT_TRUE(form.Ctl("cbx32").Visible);
        EXPECT_TRUE(form.Ctl("cmdOK").Enabled);

        // The point layer: projected, two options, no Advanced for points.
        Control& layers = form.Ctl("lbxLayers");
        layers.ListIndex = layers.List[0] == "wells" ? 0 : 1;
        form.Fire("lbxLayers", FormEvent::Click);
        EXPECT_EQ(form.Ctl("chk2").Caption, "Longitude / Latitude");
        EXPECT_EQ(form.Ctl("chk3").Value, 0); // the change cleared every tick
        EXPECT_FALSE(form.Ctl("cmdAdvanced").Enabled);
        EXPECT_EQ(form.Ctl("cmdAdvanced").ToolTipText, "Advanced functions irrelevant for Point feature classes:");
        form.Fire("cmdCancel", FormEvent::Click);
    });
    EXPECT_FALSE(extension_->ShouldContinue());
    EXPECT_FALSE(extension_->GeometryOptions());
}

TEST_F(GeometryDialogTest, WithoutFeatureLayersOnlyCancelAndManualWork) {
    Open([](Form& form) {
        for (const auto& control : form.Controls()) {
            const bool kept = control->Name() == "cmdCancel" || control->Name() == "cmdManual" ||
                              control->Name() == "txtMessage" || control->Name() == "Line1";
            EXPECT_EQ(control->Enabled, kept) << control->Name();
        }
        EXPECT_EQ(form.Ctl("chk11").Caption, "No Feature Layers");
    });
}

TEST_F(GeometryDialogTest, ExistingNumericFieldsAreOfferedAndColoured) {
    auto featureClass = CreateClass(*workspace_, "parcels", esriGeometryPolygon, nullptr,
                                    {MakeField("Poly_Area", esriFieldTypeDouble), MakeField("Name", esriFieldTypeString),
                                     MakeField("Parts", esriFieldTypeInteger)});
    AddLayer(featureClass, "parcels");
    Open([](Form& form) {
        // The first numeric field bearing the default name counts as no match: it stands twice.
        const Control& area = form.Ctl("cbx11");
        EXPECT_EQ(area.BackColor, kNew);
        EXPECT_EQ(area.List, (std::vector<std::string>{"Poly_Area", "Poly_Area", "Parts"}));
        const Control& parts = form.Ctl("cbx41");
        EXPECT_EQ(parts.BackColor, kTaken);
        EXPECT_EQ(parts.Text, "Parts");
        EXPECT_EQ(parts.List, (std::vector<std::string>{"Poly_Area", "Parts"}));
        // A text field is no candidate: typing its name keeps the box white.
        Control& length = form.Ctl("cbx31");
        length.Text = "Name";
        form.Fire("cbx31", FormEvent::LostFocus);
        EXPECT_EQ(length.BackColor, kNew);
        length.Text = "parts";
        form.Fire("cbx31", FormEvent::LostFocus);
        EXPECT_EQ(length.BackColor, kTaken);
        EXPECT_EQ(length.Text, "Parts");
        form.Fire("cbx31", FormEvent::Change);
        EXPECT_EQ(length.BackColor, kNew);
        form.Fire("cmdCancel", FormEvent::Click);
    });
}

TEST_F(GeometryDialogTest, ShapefileNamesAreCheckedAndExistingFieldsConfirmed) {
    ShapefileLines({MakeField("Sph_Len", esriFieldTypeDouble, 0, 16, 6), MakeField("Other", esriFieldTypeDouble, 0, 16, 6)});
    Answer(*ui_, false);
    Open([this](Form& form) {
        Tick(form, 1);
        form.Ctl("cbx11").Text = "1 length km";
        form.Fire("cmdOK", FormEvent::Click);
        ASSERT_TRUE(form.IsLoaded()) << "No keeps the dialog open";
        EXPECT_FALSE(extension_->GeometryOptions());

        form.Ctl("cbx11").Text = "Other";
        Answer(*ui_, false);
        form.Fire("cmdOK", FormEvent::Click);
        ASSERT_TRUE(form.IsLoaded());
        EXPECT_FALSE(extension_->GeometryOptions());
        Answer(*ui_, true);
        form.Fire("cmdOK", FormEvent::Click);
        EXPECT_FALSE(form.IsLoaded());
    });
    std::vector<std::string> texts;
    for (const auto& shown : ui_->Log())
        if (shown.kind == "modal" && shown.text == "frmMessageBox")
            texts.push_back(shown.title);
    EXPECT_EQ(texts, (std::vector<std::string>{" Possible Problems with Field Names:", " Confirm Field Names:",
                                               " Confirm Field Names:"}));
    ASSERT_TRUE(extension_->ShouldContinue());
    auto options = extension_->GeometryOptions();
    ASSERT_TRUE(options);
    ASSERT_EQ(options->Count(), 8);
    auto entry = options->Element(2).As<IVariantArray>()->Element(0).As<IVariantArray>();
    EXPECT_EQ(entry->Element(0).ToLong(), 1);
    EXPECT_EQ(entry->Element(1).ToString(), "Other");
    EXPECT_EQ(entry->Element(2).ToString(), "");
    EXPECT_EQ(options->Element(4).ToString(), "WGS_1984");
    EXPECT_FALSE(options->Element(7).ToBool());
}

TEST_F(GeometryDialogTest, BadNamesAreListedOneLinePerProblem) {
    ShapefileLines();
    std::string text;
    ui_->QueueFormScript("frmMessageBox", [&text](Form& box) {
        text = box.Ctl("txtMessage").Text;
        box.Fire("cmdNo", FormEvent::Click);
    });
    Open([](Form& form) {
        Tick(form, 1);
        form.Ctl("cbx11").Text = "_a b";
        form.Fire("cmdOK", FormEvent::Click);
        form.Fire("cmdCancel", FormEvent::Click);
    });
    const std::string lead = "  --> Option 'Spheroidal Length',  Field Name = _a b";
    EXPECT_NE(text.find(lead + "  (Begins with invalid character '_')\r\n" + lead +
                        "  (Contains invalid character ' ')\r\n"),
              std::string::npos)
        << text;
}

TEST_F(GeometryDialogTest, GeodatabaseNamesPassWithoutAWord) {
    Layer("roads", esriGeometryPolyline, Wgs84(), {MakePolyline({{{0, 0}, {1, 1}}})});
    Open([](Form& form) {
        Tick(form, 1);
        form.Ctl("cbx11").Text = "a name of many words that no shapefile would take";
        form.Fire("cmdOK", FormEvent::Click);
    });
    EXPECT_TRUE(extension_->ShouldContinue());
    for (const auto& shown : ui_->Log())
        EXPECT_NE(shown.text, "frmMessageBox");
}

TEST_F(GeometryDialogTest, AdvancedHandsTheChosenSpheroidAndLatitudeKindOn) {
    auto mars = Mars2000();
    ASSERT_TRUE(mars);
    Layer("canyons", esriGeometryPolyline, mars, {MakePolyline({{{0, 0}, {1, 1}}})});
    ui_->QueueFormScript("frmSpheroidOptionsExt", [](Form& dialog) {
        Control& planets = dialog.Ctl("cbxESRIPlanets");
        planets.Text = "Mars 2000";
        dialog.Fire("cmdLoadESRIPlanetary", FormEvent::Click);
        EXPECT_EQ(dialog.Ctl("lblCurrent").Caption, "Current Spheroid = Mars 2000");
        dialog.Fire("optCentric", FormEvent::Click);
        dialog.Fire("cmdOK", FormEvent::Click);
    });
    Open([](Form& form) {
        form.Fire("cmdAdvanced", FormEvent::Click);
        EXPECT_EQ(form.Ctl("lblSpheroidOptions").Caption,
                  "Spheroid: Mars 2000,  Maj.Rad. = 3396190m,  Min.Rad. = 3376200m");
        Tick(form, 1);
        form.Fire("cmdOK", FormEvent::Click);
    });
    auto options = extension_->GeometryOptions();
    ASSERT_TRUE(options);
    EXPECT_EQ(options->Element(4).ToString(), "Mars 2000");
    EXPECT_EQ(options->Element(5).ToDouble(), 3396190.0);
    EXPECT_EQ(options->Element(6).ToDouble(), 3376200.0);
    EXPECT_TRUE(options->Element(7).ToBool());
}

} // namespace
} // namespace tess::test
