#include "support/AnchorObjectList.h"

#include <gtest/gtest.h>

#include <ostream>

#include "platform/ui/Form.h"
#include "TestSupport.h"

namespace tess {
namespace {

// Anchors keep their values in single precision: a ratio times a container of a few hundred
// pixels is off by at most about 1e-4 px.
constexpr double kPixelTolerance = 1e-3;

class Panel : public Form {
public:
    Panel() : Form("frmPanel") {
        Width = 200;
        Height = 100;
        AddControl("ctlA", ControlKind::TextBox);
        AddControl("fraBox", ControlKind::Frame);
    }
};

void Place(Control& c, double left, double top, double width, double height) {
    c.Left = left;
    c.Top = top;
    c.Width = width;
    c.Height = height;
}

struct AxisCase {
    AnchorTypes type;
    double left, width; // after the container grows from 200 to 300
};

void PrintTo(const AxisCase& c, std::ostream* os) { *os << "type " << static_cast<int>(c.type); }

class AnchorBehaviourTest : public ::testing::TestWithParam<AxisCase> {};

TEST_P(AnchorBehaviourTest, SevenBehavioursOnBothAxes) {
    const AxisCase& c = GetParam();
    Panel form;
    Control& ctl = form.Ctl("ctlA");
    // The same geometry on both axes: start 10, size 100, container 200.
    form.Height = 200;
    Place(ctl, 10, 10, 100, 100);
    AnchorObjectList list(form);
    list.Item(ctl).SetAnchors(c.type, c.type);
    form.Width = 300;
    form.Height = 300;
    list.DoAnchors();
    EXPECT_NEAR(ctl.Left, c.left, kPixelTolerance);
    EXPECT_NEAR(ctl.Width, c.width, kPixelTolerance);
    EXPECT_NEAR(ctl.Top, c.left, kPixelTolerance);
    EXPECT_NEAR(ctl.Height, c.width, kPixelTolerance);
}

INSTANTIATE_TEST_SUITE_P(Types, AnchorBehaviourTest,
                         ::testing::Values(AxisCase{enumNone, 15, 150},      // all in proportion
                                           AxisCase{enumStart, 10, 150},     // start stays
                                           AxisCase{enumStartSize, 10, 100}, // nothing moves
                                           AxisCase{enumStartEnd, 10, 200},  // stretches by the growth
                                           AxisCase{enumSize, 40, 100},      // centre 60 -> 90
                                           AxisCase{enumSizeEnd, 110, 100},  // end stays 90 from the edge
                                           AxisCase{enumEnd, 15, 195}));     // end margin 90, start 15

TEST(AnchorObject, StartEndGrowsExactlyWithTheContainerAndRefusesNegativeSizes) {
    Panel form;
    Control& ctl = form.Ctl("ctlA");
    Place(ctl, 8, 8, 184, 84);
    AnchorObjectList list(form);
    list.Item(ctl).SetAnchors(enumStartEnd, enumStartEnd);
    for (double growth : {0.0, 1.0, 37.5, 400.0}) {
        form.Width = 200 + growth;
        form.Height = 100 + growth;
        list.DoAnchors();
        EXPECT_DOUBLE_EQ(ctl.Width, 184 + growth);
        EXPECT_DOUBLE_EQ(ctl.Height, 84 + growth);
        EXPECT_DOUBLE_EQ(ctl.Left, 8);
    }
    form.Width = 10; // a width of -6: the control refuses and stays
    list.DoAnchors();
    EXPECT_DOUBLE_EQ(ctl.Width, 184 + 400);
}

TEST(AnchorObject, ControlInsideAFrameFollowsTheFrame) {
    Panel form;
    Control& frame = form.Ctl("fraBox");
    Control& ctl = form.Ctl("ctlA");
    Place(frame, 0, 0, 100, 100);
    Place(ctl, 20, 20, 60, 60);
    AnchorObjectList list(form);
    list.Item(ctl, frame).SetAnchors(enumNone, enumNone);
    frame.Width = 50;
    form.Width = 1000; // the form's size does not matter to this control
    list.DoAnchors();
    EXPECT_NEAR(ctl.Left, 10, kPixelTolerance);
    EXPECT_NEAR(ctl.Width, 30, kPixelTolerance);
    EXPECT_NEAR(ctl.Top, 20, kPixelTolerance);
}

TEST(AnchorObjectList, ItemAddsOnFirstUseOnly) {
    Panel form;
    AnchorObjectList list(form);
    EXPECT_EQ(&list.Form(), &form);
    EXPECT_EQ(list.Count(), 0);
    AnchorObject& a = list.Item(form.Ctl("ctlA"));
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(a.X().MinValue(), -2147483647);
    EXPECT_EQ(a.Y2().MaxValue(), 2147483647);
    EXPECT_EQ(&list.Item(form.Ctl("ctlA")), &a);
    EXPECT_EQ(list.Count(), 1);
    list.Item(form.Ctl("fraBox"));
    EXPECT_EQ(list.IndexOf(form.Ctl("fraBox")), 1);
    list.Remove(form.Ctl("ctlA"));
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.IndexOf(form.Ctl("ctlA")), -1);
    EXPECT_EQ(list.IndexOf(form.Ctl("fraBox")), 0);
    list.Remove(form.Ctl("ctlA")); // unknown: nothing happens
    EXPECT_EQ(list.Count(), 1);
}

class AnchorFaultTest : public test::ScriptedUITest {};

TEST_F(AnchorFaultTest, RatioAgainstEmptyContainerIsReported) {
    Panel form;
    form.Width = 0;
    Control& ctl = form.Ctl("ctlA");
    Place(ctl, 10, 10, 100, 50);
    AnchorObjectList list(form);
    list.Item(ctl).SetAnchors(enumNone, enumNone);
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("Division by zero"), std::string::npos);
}

} // namespace
} // namespace tess
