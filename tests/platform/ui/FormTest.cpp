#include "platform/system/Fault.h"
#include "platform/ui/Form.h"
#include "platform/ui/ScriptedUI.h"

#include <gtest/gtest.h>

namespace tess {
namespace {

// A two-button dialog of the usual shape: OK is enabled only with text, and both unload.
class AskName : public Form {
public:
    AskName() : Form("frmAskName") {
        AddControl("txtName", ControlKind::TextBox);
        AddControl("cmdOK", ControlKind::CommandButton).Caption = "OK";
        AddControl("cmdCancel", ControlKind::CommandButton).Caption = "Cancel";
        On("txtName", FormEvent::Change, [this] { Ctl("cmdOK").Enabled = !Ctl("txtName").Text.empty(); });
        On("cmdOK", FormEvent::Click, [this] { accepted = true; Unload(); });
        On("cmdCancel", FormEvent::Click, [this] { Unload(); });
        On("txtName", FormEvent::KeyPress, [](EventArgs& e) { if (e.KeyAscii == ' ') e.KeyAscii = 0; });
    }
    bool accepted = false;
    int loads = 0, unloads = 0;

protected:
    void Form_Load() override { ++loads; Ctl("cmdOK").Enabled = false; }
    void Form_Unload() override { ++unloads; }
};

class FormTest : public ::testing::Test {
protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }
    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<IUIServices> previous_;
};

TEST_F(FormTest, ScriptDrivesControlsAndButtons) {
    AskName form;
    ui_->QueueFormScript("frmAskName", [](Form& f) {
        f.Fire("cmdOK", FormEvent::Click); // disabled until there is text: ignored
        EXPECT_TRUE(f.IsLoaded());
        f.Ctl("TXTNAME").Text = "roads"; // control names ignore case, as in the hosts
        f.Fire("txtName", FormEvent::Change);
        f.Fire("cmdOK", FormEvent::Click);
    });
    form.ShowModal();
    EXPECT_TRUE(form.accepted);
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_EQ(form.loads, 1);
    EXPECT_EQ(form.unloads, 1);
    ASSERT_EQ(ui_->Texts("modal").size(), 1u);
}

TEST_F(FormTest, UnscriptedModalFormClosesAsCancelled) {
    AskName form;
    form.ShowModal();
    EXPECT_FALSE(form.accepted);
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_EQ(form.unloads, 1);
}

TEST_F(FormTest, KeyPressHandlerCanSwallowKey) {
    AskName form;
    EventArgs args;
    args.KeyAscii = ' ';
    form.Fire("txtName", FormEvent::KeyPress, args);
    EXPECT_EQ(args.KeyAscii, 0);
    args.KeyAscii = 'a';
    form.Fire("txtName", FormEvent::KeyPress, args);
    EXPECT_EQ(args.KeyAscii, 'a');
}

TEST_F(FormTest, UnknownControlIsAFaultNamingIt) {
    AskName form;
    try {
        form.Ctl("lbxNothing");
        FAIL();
    } catch (const Fault& f) {
        EXPECT_NE(f.Description().find("lbxNothing"), std::string::npos);
    }
}

TEST(ControlTest, ListItemsKeepSelectionInStep) {
    Control list("lbxLayers", ControlKind::ListBox);
    list.MultiSelect = true;
    for (const char* item : {"a", "b", "c"})
        list.AddItem(item);
    list.Selected[2] = true;
    list.RemoveItem(0);
    ASSERT_EQ(list.ListCount(), 2);
    EXPECT_EQ(list.List[1], "c");
    EXPECT_TRUE(list.Selected[1]);
    EXPECT_EQ(list.SelCount(), 1);
    EXPECT_THROW(list.RemoveItem(5), Fault);
}

TEST(ScriptedUITest, QuestionsTakeQueuedAnswersAndRecordTexts) {
    ScriptedUI ui;
    EXPECT_EQ(ui.MessageBox("done", MsgBoxButtons::OK, MsgBoxIcon::None, "Done:"), MsgBoxResult::OK);
    ui.QueueAnswer(MsgBoxResult::No);
    EXPECT_EQ(ui.MessageBox("overwrite?", MsgBoxButtons::YesNo, MsgBoxIcon::Question, "Exists:"),
              MsgBoxResult::No);
    EXPECT_THROW(ui.MessageBox("again?", MsgBoxButtons::YesNo, MsgBoxIcon::Question, "Exists:"), Fault);
    ASSERT_EQ(ui.Messages().size(), 3u);
    EXPECT_EQ(ui.Log()[1].title, "Exists:");
    EXPECT_FALSE(ui.Browse({}).has_value());
    ui.QueueBrowse(BrowseResult{"/tmp/out", "roads", "Folder"});
    auto chosen = ui.Browse({});
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(chosen->Category, "Folder");
}

} // namespace
} // namespace tess
