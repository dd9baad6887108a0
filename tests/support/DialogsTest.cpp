#include "support/frmReport_modal.h"

#include "support/frmMessageBox.h"

#include <gtest/gtest.h>

#include "support/RtfRenderer.h"
#include "TestSupport.h"

namespace tess {
namespace {

const char* const kReport = R"({\rtf1\ansi{\fonttbl{\f0 Arial;}}\pard\qc\b Done\b0\par   3 Records\par})";

class ReportDialogTest : public test::ScriptedUITest {};

TEST_F(ReportDialogTest, ShowsTheReportWithItsCaptions) {
    ui_->QueueFormScript("frmReport_modal", [](Form& f) {
        EXPECT_EQ(f.Caption, " Report");
        EXPECT_EQ(f.Ctl("txtReport").Text, kReport);
        EXPECT_TRUE(f.Ctl("txtReport").Locked);
        f.Fire("cmdOK", FormEvent::Click);
        EXPECT_FALSE(f.IsLoaded());
    });
    frmReport_modal::ShowReport(kReport);
    EXPECT_EQ(ui_->Texts("modal"), std::vector<std::string>{"frmReport_modal"});
}

TEST_F(ReportDialogTest, CopyPutsAllThreeFormsOnTheClipboard) {
    ui_->QueueFormScript("frmReport_modal", [](Form& f) { f.Fire("cmdCopy", FormEvent::Click); });
    frmReport_modal::ShowReport(kReport);
    EXPECT_EQ(ui_->Texts("copy"), std::vector<std::string>{kReport});
    EXPECT_EQ(ui_->Clipboard(), "Done\n  3 Records\n"); // the first blank ends \par
}

TEST_F(ReportDialogTest, CopiedRichTextEscapesWhatTheCodePageLacks) {
    // Names go into reports as UTF-8; other programs read the rich text by its code page.
    const std::string report = R"({\rtf1\ansi\ansicpg1252 Z)" "\xC3\xBCrich \xE6\x9D\xB1\xE4\xBA\xAC" R"(\par})";
    ui_->QueueFormScript("frmReport_modal", [](Form& f) { f.Fire("cmdCopy", FormEvent::Click); });
    frmReport_modal::ShowReport(report);
    const std::string escaped = R"({\rtf1\ansi\ansicpg1252 Z\'fcrich \u26481?\u20140?\par})";
    EXPECT_EQ(ui_->Texts("copy"), std::vector<std::string>{escaped});
    EXPECT_EQ(ui_->Clipboard(), "Z\xC3\xBCrich \xE6\x9D\xB1\xE4\xBA\xAC\n");
}

TEST_F(ReportDialogTest, PrintLeavesTheReportOpen) {
    ui_->QueueFormScript("frmReport_modal", [](Form& f) {
        f.Fire("cmdPrint", FormEvent::Click);
        EXPECT_TRUE(f.IsLoaded());
    });
    frmReport_modal::ShowReport(kReport);
    ASSERT_EQ(ui_->Texts("print").size(), 1u);
    EXPECT_EQ(ui_->Log().back().title, " Report");
}

TEST_F(ReportDialogTest, ResizeStretchesTextAndMovesBottomRow) {
    frmReport_modal form;
    form.Load();
    const Control report = form.Ctl("txtReport");
    const Control ok = form.Ctl("cmdOK");
    const Control corner = form.Ctl("imgCornerBars");
    const double oldWidth = form.Width, oldHeight = form.Height;
    form.Width += 100;
    form.Height += 60;
    form.Fire("", FormEvent::Resize);
    EXPECT_DOUBLE_EQ(form.Ctl("txtReport").Width, report.Width + 100);
    EXPECT_DOUBLE_EQ(form.Ctl("txtReport").Height, report.Height + 60);
    EXPECT_DOUBLE_EQ(form.Ctl("cmdOK").Top, ok.Top + 60);
    EXPECT_DOUBLE_EQ(form.Ctl("cmdOK").Height, ok.Height);
    // Across, the buttons keep their share of the width: 1e-3 px covers single-precision ratios.
    EXPECT_NEAR(form.Ctl("cmdOK").Left, ok.Left * form.Width / oldWidth, 1e-3);
    EXPECT_DOUBLE_EQ(form.Ctl("imgCornerBars").Left, corner.Left + 100);
    EXPECT_DOUBLE_EQ(form.Ctl("imgCornerBars").Top, corner.Top + (form.Height - oldHeight));
}

class MessageBoxTest : public test::ExtensionUITest {
protected:
    // Opens the box as a caller does and lets the script answer; returns ShouldContinue.
    bool Ask(test::ScriptedUITest::FormScript script) {
        extension_->ShouldContinue(true); // left over from an earlier dialog
        frmMessageBox box;
        box.ArcApplication(app_);
        EXPECT_FALSE(extension_->ShouldContinue());
        box.Ctl("txtMessage").Text = "Overwrite 12 fields?";
        if (script)
            ui_->QueueFormScript("frmMessageBox", script);
        box.ShowModal();
        EXPECT_FALSE(box.IsLoaded());
        return extension_->ShouldContinue();
    }
};

TEST_F(MessageBoxTest, YesAndNoAnswerThroughTheExtension) {
    EXPECT_TRUE(Ask([](Form& f) {
        EXPECT_EQ(f.Caption, " Message");
        EXPECT_EQ(f.Ctl("txtMessage").Text, "Overwrite 12 fields?");
        f.Fire("cmdYes", FormEvent::Click);
    }));
    EXPECT_FALSE(Ask([](Form& f) { f.Fire("cmdNo", FormEvent::Click); }));
    EXPECT_FALSE(Ask(nullptr)); // closed without an answer
}

} // namespace
} // namespace tess
