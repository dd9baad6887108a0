// Naming graphic elements: the counts the dialog offers, naming all or the
// selected ones, and the question before names are cleared.

#include <gtest/gtest.h>

#include "GraphicsFixtures.h"
#include "graphics/frmNameElements.h"

namespace tess::test {
namespace {

class NameElementsTest : public GraphicsHostTest {
protected:
    std::unique_ptr<frmNameElements> Open() {
        auto form = std::make_unique<frmNameElements>();
        form->ArcApplication(app_);
        form->Load();
        return form;
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < FocusMap()->ElementCount(); ++i)
            names.push_back(std::dynamic_pointer_cast<IElementProperties>(FocusMap()->ElementAt(i))->Name());
        return names;
    }
};

TEST_F(NameElementsTest, WithoutGraphicsOrSelectionAllIsChosenAndOKDoesNothing) {
    auto form = Open();
    EXPECT_EQ(form->Ctl("optAll").Caption, "Name All Graphics (n = 0)");
    EXPECT_EQ(form->Ctl("optSel").Caption, "Name Selected Graphics (n = 0)");
    EXPECT_FALSE(form->Ctl("optSel").Enabled);
    EXPECT_EQ(form->Ctl("optAll").Value, 1);
    form->Ctl("txtName").Text = "x";
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(form->IsLoaded());
    EXPECT_TRUE(ui_->Messages().empty());
}

TEST_F(NameElementsTest, SelectedElementsAreNamedAndGroupsAsWholes) {
    AddEveryKind();
    auto form = Open();
    EXPECT_EQ(form->Ctl("optAll").Caption, "Name All Graphics (n = 12)");
    EXPECT_EQ(form->Ctl("optSel").Caption, "Name Selected Graphics (n = 3)");
    EXPECT_EQ(form->Ctl("optSel").Value, 1);
    form->Ctl("txtName").Text = "Site";
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(form->IsLoaded());
    const std::vector<std::string> names = Names();
    EXPECT_EQ(names[0], "Site");
    EXPECT_EQ(names[1], "");
    EXPECT_EQ(names[2], "Site");
    EXPECT_EQ(names[5], "Site");
    EXPECT_EQ(names[4], "Field");
    EXPECT_FALSE(Doc()->IsDirty()); // naming marks nothing

    auto all = Open();
    all->Fire("optAll", FormEvent::Click);
    all->Ctl("txtName").Text = "Same";
    all->Fire("cmdOK", FormEvent::Click);
    EXPECT_EQ(Names(), std::vector<std::string>(12, "Same"));
    auto group = std::dynamic_pointer_cast<IGroupElement>(FocusMap()->ElementAt(11));
    EXPECT_EQ(std::dynamic_pointer_cast<IElementProperties>(group->Element(0))->Name(), "Member");
}

TEST_F(NameElementsTest, AnEmptyNameIsConfirmedFirst) {
    AddEveryKind();
    auto form = Open();
    ui_->QueueAnswer(MsgBoxResult::Cancel);
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_TRUE(form->IsLoaded());
    ASSERT_EQ(ui_->Messages().size(), 1u);
    EXPECT_EQ(ui_->Log().back().title, "Confirm Action:");
    EXPECT_EQ(ui_->Messages()[0],
              "Your 'Name' value is an empty string, so your 3 selected graphic elements will\r\n"
              "be assigned no name (i.e. they will be assigned the empty string for a name).\r\n"
              "Any existing name will be removed.\r\n\r\n"
              "Please click 'OK' to confirm this action, or 'Cancel' to exit without making changes...");
    EXPECT_EQ(Names()[0], "Well");
    ui_->QueueAnswer(MsgBoxResult::OK);
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_FALSE(form->IsLoaded());
    EXPECT_EQ(Names()[0], "");
    EXPECT_EQ(Names()[2], "");
    EXPECT_EQ(Names()[4], "Field");
}

} // namespace
} // namespace tess::test
