// Selecting graphic elements by kind, by names from the list and by a typed
// pattern: the counts the dialog shows and what OK adds to the selection.

#include <gtest/gtest.h>

#include "GraphicsFixtures.h"
#include "graphics/frmSelectGraphics.h"
#include "platform/carto/EnumElement.h"

namespace tess::test {
namespace {

TEST(GraphicNameMatches, StarIsAnyRunAmpersandAnyOneCharacterAndCaseIsIgnored) {
    struct Case {
        const char* name;
        const char* pattern;
        bool matches;
    };
    const Case cases[] = {
        {"Road", "road", true},        {"Road", "ROAD", true},       {"Road", "Roa", false},
        {"Road 12", "road*", true},    {"Main road", "*road", true}, {"Main road", "*ROAD*", true},
        {"Road", "*", true},           {"Road", "R&ad", true},       {"Rad", "R&ad", false},
        {"Road", "&&&&", true},        {"Road", "&&&", false},       {"Roads and roads", "r*s*s", true},
        {"abcabd", "*abd", true},      {"Road?", "Road?", true},     {"Roadx", "Road?", false},
        {"Road", "R*d*", true},        {"", "*", true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(GraphicNameMatches(c.name, c.pattern), c.matches) << c.name << " / " << c.pattern;
}

class SelectGraphicsTest : public GraphicsHostTest {
protected:
    std::unique_ptr<frmSelectGraphics> Open() {
        auto form = std::make_unique<frmSelectGraphics>();
        form->ArcApplication(app_);
        form->Load();
        return form;
    }

    std::vector<std::string> SelectedNames(IGraphicsContainerSelect& container) const {
        std::vector<std::string> names;
        auto walk = container.SelectedElements();
        for (auto element = walk->Next(); element; element = walk->Next())
            names.push_back(std::dynamic_pointer_cast<IElementProperties>(element)->Name());
        return names;
    }
};

TEST_F(SelectGraphicsTest, EachKindHasItsCountAndAnEmptyMapDisablesEverything) {
    {
        auto form = Open();
        for (const char* box : frmSelectGraphics::TypeBoxes()) {
            EXPECT_FALSE(form->Ctl(box).Enabled) << box;
            EXPECT_EQ(form->Ctl(box).Caption.substr(form->Ctl(box).Caption.size() - 3), "[0]") << box;
        }
        EXPECT_FALSE(form->Ctl("txtName").Enabled);
        EXPECT_FALSE(form->Ctl("lbxNamesActive").Visible);
        EXPECT_TRUE(form->Ctl("lbxNamesInactive").Visible);
        EXPECT_EQ(form->Ctl("lbxNamesInactive").List, std::vector<std::string>{"<-- No Names Found -->!"});
        // Nothing ticked, nothing typed: OK only closes.
        form->Fire("cmdOK", FormEvent::Click);
        EXPECT_FALSE(form->IsLoaded());
        EXPECT_TRUE(FocusMap()->Refreshes().empty());
        EXPECT_FALSE(Doc()->IsDirty());
    }
    AddEveryKind();
    auto form = Open();
    const std::vector<std::string> captions{"Points [2]",   "Lines [2]",    "Polygons [1]",       "Rectangles [1]",
                                            "Ellipses [1]", "Circles [1]",  "Text [1]",           "Pictures [1]",
                                            "Data Graphs [1]", "Group Elements [1]", "Frames [0]"};
    for (std::size_t i = 0; i < captions.size(); ++i)
        EXPECT_EQ(form->Ctl(frmSelectGraphics::TypeBoxes()[i]).Caption, captions[i]);
    EXPECT_FALSE(form->Ctl("chkFrames").Enabled);
    EXPECT_TRUE(form->Ctl("lbxNamesActive").Visible);
    // Sorted by bytes; group members are not walked.
    EXPECT_EQ(form->Ctl("lbxNamesActive").List,
              (std::vector<std::string>{"Chart [1]", "Cluster [1]", "Field [1]", "Frame [1]", "Label [1]",
                                        "Photo [1]", "Pond [1]", "Road [1]", "Well [1]"}));
}

TEST_F(SelectGraphicsTest, NamesCountTheirElementsAndOKAddsToTheSelection) {
    for (const char* name : {"road", "river", "road", "road"}) {
        auto line = Named(std::make_shared<LineElement>(), name);
        line->Geometry(MakePolyline({{{0, 0}, {1, 1}}}));
        Add(line);
    }
    auto rectangle = Named(std::make_shared<RectangleElement>(), "Rim");
    rectangle->Geometry(Box(0, 0, 1, 1));
    Add(rectangle, true);
    auto form = Open();
    EXPECT_EQ(form->Ctl("lbxNamesActive").List, (std::vector<std::string>{"Rim [1]", "river [1]", "road [3]"}));
    EXPECT_EQ(form->Ctl("chkPolygons").Caption, "Polygons [0]"); // a rectangle is only a rectangle
    form->Ctl("lbxNamesActive").Selected[1] = true;             // river
    form->Ctl("txtName").Text = "R*D";
    form->Fire("cmdOK", FormEvent::Click);
    // The rectangle stays selected first; river from the list, the roads by the pattern.
    EXPECT_EQ(SelectedNames(*FocusMap()), (std::vector<std::string>{"Rim", "river", "road", "road", "road"}));
    ASSERT_EQ(FocusMap()->Refreshes().size(), 1u);
    EXPECT_EQ(FocusMap()->Refreshes()[0].phase, 26);
    EXPECT_TRUE(Doc()->IsDirty());
}

TEST_F(SelectGraphicsTest, TypeAndPatternDoNotSelectTwiceAndLayoutViewUsesThePageLayout) {
    AddEveryKind();
    FocusMap()->UnselectAllElements();
    auto form = Open();
    form->Ctl("chkPoints").Value = 1;
    form->Ctl("txtName").Text = "w*"; // Well, already chosen as a point
    form->Fire("cmdOK", FormEvent::Click);
    EXPECT_EQ(SelectedNames(*FocusMap()), (std::vector<std::string>{"Well", ""}));

    auto layout = Doc()->Layout();
    auto title = Named(std::make_shared<TextElement>(), "Title");
    title->Geometry(std::make_shared<Point>(4.0, 10.0));
    layout->AddElement(title, 0);
    Doc()->ActiveView(std::dynamic_pointer_cast<IActiveView>(layout));
    auto inLayout = Open();
    EXPECT_EQ(inLayout->Ctl("chkFrames").Caption, "Frames [1]");
    EXPECT_EQ(inLayout->Ctl("chkText").Caption, "Text [1]");
    EXPECT_EQ(inLayout->Ctl("chkPoints").Caption, "Points [0]");
    inLayout->Ctl("chkFrames").Value = 1;
    inLayout->Ctl("txtName").Text = "title";
    inLayout->Fire("cmdOK", FormEvent::Click);
    EXPECT_EQ(layout->ElementSelectionCount(), 2);
    EXPECT_EQ(FocusMap()->ElementSelectionCount(), 2); // the map's selection is left alone
}

} // namespace
} // namespace tess::test
