// The two spheroid dialogs without a screen: what they open with, the Load
// buttons, typed radii and the guard around the dialog's own writes, and what
// OK and Cancel leave on the extension.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "FaultRecorder.h"
#include "frame/clsExtension.h"
#include "platform/system/Arrays.h"
#include "platform/system/Variant.h"
#include "spheroids/USGS_Functions.h"
#include "spheroids/frmSpheroidOptionsExt.h"

namespace tess {
namespace {

namespace fs = std::filesystem;

class SpheroidDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::random_device seed;
        folder_ = fs::temp_directory_path() / ("tess-spheroid-dialog-" + std::to_string(seed()));
        fs::create_directories(folder_);
        previous_ = USGS_Functions::AppPath();
        USGS_Functions::AppPath(folder_.string());
        extension_->CurrentSpheroidName("before");
        extension_->CurrentSpheroidMajorAxis(1.0);
        extension_->CurrentSpheroidMinorAxis(1.0);
    }
    void TearDown() override {
        USGS_Functions::AppPath(previous_);
        fs::remove_all(folder_);
    }

    std::shared_ptr<IVariantArray> Setup() const {
        auto setup = std::make_shared<VarArray>();
        setup->Add(Variant(nullptr));
        setup->Add(Variant(extension_));
        setup->Add(Variant(std::string("WGS_1984")));
        setup->Add(Variant(6378137.0));
        setup->Add(Variant(6356752.31424518));
        return setup;
    }

    void Type(Form& form, const std::string& box, const std::string& text) {
        form.Ctl(box).Text = text;
        form.Fire(box, FormEvent::Change);
    }

    std::shared_ptr<clsExtension> extension_ = std::make_shared<clsExtension>();
    fs::path folder_;
    std::string previous_;
    testing::FaultRecorder faults_;
};

TEST_F(SpheroidDialogTest, OpensOnTheCurrentSpheroidWithSortedListsAndTheFileMissing) {
    frmSpheroidOptions dialog;
    dialog.ArcApplication(Setup());
    EXPECT_EQ(dialog.Caption, " Spheroid Parameters:");
    EXPECT_EQ(dialog.Ctl("lblCurrent").Caption, "Current Spheroid = WGS_1984");
    EXPECT_EQ(dialog.Ctl("cmdLoadCurrent").Caption, "Load 'WGS_1984' Parameters");
    EXPECT_EQ(dialog.Ctl("txtMajor").Text, "6378137");
    EXPECT_EQ(dialog.Ctl("txtMinor").Text, "6356752.31424518");
    const Control& custom = dialog.Ctl("cbxUSGS");
    EXPECT_FALSE(custom.Enabled);
    EXPECT_EQ(custom.List, (std::vector<std::string>{"<-- Missing 'Spheroids.dat' file -->"}));
    const Control& planets = dialog.Ctl("cbxESRIPlanets");
    ASSERT_GT(planets.ListCount(), 1);
    EXPECT_TRUE(std::is_sorted(planets.List.begin(), planets.List.end()));
    EXPECT_EQ(planets.ListIndex, 0);
    EXPECT_TRUE(extension_->CurrentSpheroidCanceled());
    EXPECT_TRUE(dialog.Ctl("cmdOK").Enabled);

    // With the file missing the Load button still works, and its fault is the handler's.
    dialog.Fire("cmdLoadUSGS", FormEvent::Click);
    EXPECT_TRUE(faults_.LastNames("cmdLoadUSGS_Click ")) << faults_.Last();
}

TEST_F(SpheroidDialogTest, LoadFillsTheRadiiWithoutMakingACustomSpheroid) {
    std::ofstream(folder_ / "spheroids.dat") << "Moonish,1737400,1737000,test\n";
    frmSpheroidOptions dialog;
    dialog.ArcApplication(Setup());
    EXPECT_TRUE(dialog.Ctl("cbxUSGS").Enabled);
    dialog.Ctl("cbxUSGS").Text = "Moonish";
    dialog.Fire("cmdLoadUSGS", FormEvent::Click);
    EXPECT_EQ(dialog.Ctl("lblCurrent").Caption, "Current Spheroid = Moonish");
    EXPECT_EQ(dialog.Ctl("txtMajor").Text, "1737400");
    EXPECT_EQ(dialog.WorkingName(), "Moonish");
    EXPECT_EQ(dialog.WorkingMinor(), 1737000.0);
    dialog.Fire("cmdLoadCurrent", FormEvent::Click);
    EXPECT_EQ(dialog.WorkingName(), "WGS_1984");
    EXPECT_EQ(dialog.WorkingMajor(), 6378137.0);
}

TEST_F(SpheroidDialogTest, TypedRadiiMakeACustomSpheroidAndZeroOrTextDisablesOK) {
    frmSpheroidOptions dialog;
    dialog.ArcApplication(Setup());
    Type(dialog, "txtMajor", "");
    EXPECT_EQ(dialog.Ctl("lblCurrent").Caption, "Current Spheroid = <-- CUSTOM -->");
    EXPECT_FALSE(dialog.Ctl("cmdOK").Enabled);
    Type(dialog, "txtMajor", "0");
    EXPECT_FALSE(dialog.Ctl("cmdOK").Enabled);
    Type(dialog, "txtMajor", "6400000");
    EXPECT_TRUE(dialog.Ctl("cmdOK").Enabled);
    EventArgs key;
    key.KeyAscii = 'x';
    dialog.Fire("txtMinor", FormEvent::KeyPress, key);
    EXPECT_EQ(key.KeyAscii, 0);
    dialog.Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(extension_->CurrentSpheroidCanceled());
    EXPECT_EQ(extension_->CurrentSpheroidName(), "Custom Spheroid");
    EXPECT_EQ(extension_->CurrentSpheroidMajorAxis(), 6400000.0);
    EXPECT_EQ(extension_->CurrentSpheroidMinorAxis(), 6356752.31424518);
}

TEST_F(SpheroidDialogTest, CancelAfterTypingLeavesTheExtensionAsItWas) {
    frmSpheroidOptions dialog;
    dialog.ArcApplication(Setup());
    Type(dialog, "txtMajor", "7000000");
    dialog.Fire("cmdCancel", FormEvent::Click);
    EXPECT_TRUE(extension_->CurrentSpheroidCanceled());
    EXPECT_EQ(extension_->CurrentSpheroidName(), "before");
    EXPECT_EQ(extension_->CurrentSpheroidMajorAxis(), 1.0);
}

TEST_F(SpheroidDialogTest, ExtendedDialogAlsoTellsThePlanetocentricChoice) {
    frmSpheroidOptionsExt dialog;
    dialog.ArcApplication(Setup());
    EXPECT_EQ(dialog.Caption, " Advanced Geometry Parameters:");
    EXPECT_EQ(dialog.Ctl("optGraphic").Value, 1);
    dialog.Ctl("cbxESRIPlanets").Text = "Mars 2000";
    dialog.Fire("cmdLoadESRIPlanetary", FormEvent::Click);
    dialog.Fire("optCentric", FormEvent::Click);
    dialog.Fire("cmdOK", FormEvent::Click);
    EXPECT_EQ(extension_->CurrentSpheroidName(), "Mars 2000");
    EXPECT_EQ(extension_->CurrentSpheroidMajorAxis(), 3396190.0);
    EXPECT_TRUE(extension_->CurrentSpheroidGeocentric());
    EXPECT_NE(CentricVsGraphicHelp().find(R"(\par Please refer to the manual for illustrations of these concepts.\par)"),
              std::string::npos);
}

} // namespace
} // namespace tess
