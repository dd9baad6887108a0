// The one-click commands on graphic elements, on a map with a rectangle, a
// marker and a polygon: selection after the click, the area repainted, the
// zoomed extent, a map without graphics, and the layout view.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ClassTable.h"
#include "extension/ComponentContract.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/Elements.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/geometry/Geometries.h"

namespace tess {
namespace {

// Bounds come from one multiply and one add per side: a few units in the last place of
// coordinates below 10, so 1e-12 map units separates rounding from a wrong factor.
constexpr double kBoundsTolerance = 1e-12;
constexpr std::int32_t kPhase26 = 26;

struct Box {
    double xMin, yMin, xMax, yMax;
};

void ExpectBox(const IEnvelope& envelope, const Box& box) {
    EXPECT_NEAR(envelope.XMin(), box.xMin, kBoundsTolerance);
    EXPECT_NEAR(envelope.YMin(), box.yMin, kBoundsTolerance);
    EXPECT_NEAR(envelope.XMax(), box.xMax, kBoundsTolerance);
    EXPECT_NEAR(envelope.YMax(), box.yMax, kBoundsTolerance);
}

class GraphicsCommandsTest : public test::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        Start();
        map = Document()->FocusMapObject();
        view = std::dynamic_pointer_cast<IActiveView>(std::static_pointer_cast<IMap>(map));
    }

    //! Rectangle (0,0)-(2,1), marker at (5,4), triangle within (1,1)-(3,3).
    void AddGraphics() {
        rectangle = std::make_shared<RectangleElement>();
        rectangle->Geometry(std::make_shared<Envelope>(0.0, 0.0, 2.0, 1.0));
        marker = std::make_shared<MarkerElement>();
        marker->Geometry(std::make_shared<Point>(5.0, 4.0));
        triangle = std::make_shared<PolygonElement>();
        auto ring = std::make_shared<Polygon>();
        const WKSPoint corners[] = {{1.0, 1.0}, {2.0, 3.0}, {3.0, 1.0}, {1.0, 1.0}};
        ring->AddWKSPoints(4, corners);
        triangle->Geometry(ring);
        for (const auto& element : std::vector<std::shared_ptr<IElement>>{rectangle, marker, triangle})
            map->AddElement(element, 0);
    }

    void Click(const std::string& className) {
        auto command = FindClass("Tessarine." + className)->Create().Command;
        command->OnCreate(app_);
        view->ClearRefreshes();
        Document()->SetClean();
        command->OnClick();
    }

    std::vector<std::shared_ptr<IElement>> Selected() const {
        std::vector<std::shared_ptr<IElement>> selected;
        auto walk = map->SelectedElements();
        walk->Reset();
        while (auto e = walk->Next())
            selected.push_back(e);
        return selected;
    }

    std::shared_ptr<Map> map;
    std::shared_ptr<IActiveView> view;
    std::shared_ptr<IElement> rectangle, marker, triangle;
};

TEST_F(GraphicsCommandsTest, SelectAllRepaintsExactlyTheBoundsOfEveryElement) {
    AddGraphics();
    map->SelectElement(marker);
    Click("clsSelAllElements");
    EXPECT_EQ(map->ElementSelectionCount(), 3);
    ASSERT_EQ(view->Refreshes().size(), 1u);
    const ViewRefresh& refresh = view->Refreshes()[0];
    EXPECT_FALSE(refresh.full);
    EXPECT_EQ(refresh.phase, kPhase26);
    EXPECT_TRUE(refresh.data.IsNothing());
    ASSERT_TRUE(refresh.envelope);
    ExpectBox(*refresh.envelope, {0.0, 0.0, 5.0, 4.0}); // no expansion for select all
    EXPECT_TRUE(Document()->IsDirty());
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(GraphicsCommandsTest, UnselectRepaintsWhatWasSelectedGrownByATenth) {
    AddGraphics();
    map->SelectElement(rectangle);
    map->SelectElement(marker);
    Click("clsUnselElements");
    EXPECT_EQ(map->ElementSelectionCount(), 0);
    ASSERT_EQ(view->Refreshes().size(), 1u);
    // (0,0)-(5,4) grown by 1.1 about its centre (2.5, 2).
    ExpectBox(*view->Refreshes()[0].envelope, {-0.25, -0.2, 5.25, 4.2});
    EXPECT_EQ(view->Refreshes()[0].phase, kPhase26);
    EXPECT_TRUE(Document()->IsDirty());
}

TEST_F(GraphicsCommandsTest, UnselectWithNothingSelectedDoesNothing) {
    AddGraphics();
    Click("clsUnselElements");
    EXPECT_TRUE(view->Refreshes().empty());
    EXPECT_FALSE(Document()->IsDirty());
}

TEST_F(GraphicsCommandsTest, FlipTurnsEverySelectionAroundAndRepaintsAllElements) {
    AddGraphics();
    map->SelectElement(triangle);
    Click("clsFlipGraphicSel");
    EXPECT_EQ(Selected(), (std::vector<std::shared_ptr<IElement>>{rectangle, marker}));
    ASSERT_EQ(view->Refreshes().size(), 1u);
    ExpectBox(*view->Refreshes()[0].envelope, {-0.25, -0.2, 5.25, 4.2});

    // With everything selected, nothing stays selected, and the old elements are repainted.
    map->SelectAllElements();
    Click("clsFlipGraphicSel");
    EXPECT_EQ(map->ElementSelectionCount(), 0);
    ASSERT_EQ(view->Refreshes().size(), 1u);
    ExpectBox(*view->Refreshes()[0].envelope, {-0.25, -0.2, 5.25, 4.2});
    EXPECT_TRUE(Document()->IsDirty());
}

TEST_F(GraphicsCommandsTest, ZoomSetsTheExtentToTheSelectedGrownByAFiftieth) {
    AddGraphics();
    map->SelectElement(rectangle);
    map->SelectElement(triangle);
    Click("clsZoomToSelected");
    // (0,0)-(3,3) grown by 1.05 about (1.5, 1.5).
    ExpectBox(*view->Extent(), {-0.075, -0.075, 3.075, 3.075});
    ASSERT_EQ(view->Refreshes().size(), 1u);
    EXPECT_TRUE(view->Refreshes()[0].full);
    EXPECT_TRUE(Document()->IsDirty()); // counted as a change, though only the view changed
    EXPECT_EQ(map->ElementSelectionCount(), 2);
}

TEST_F(GraphicsCommandsTest, ZoomToOnePointElementGivesAPointExtent) {
    AddGraphics();
    map->SelectElement(marker);
    Click("clsZoomToSelected");
    ExpectBox(*view->Extent(), {5.0, 4.0, 5.0, 4.0});
    EXPECT_EQ(view->Refreshes().size(), 1u);
}

TEST_F(GraphicsCommandsTest, ZoomWithNothingSelectedLeavesTheView) {
    AddGraphics();
    auto before = std::make_shared<Envelope>(10.0, 10.0, 20.0, 20.0);
    view->Extent(before);
    Click("clsZoomToSelected");
    ExpectBox(*view->Extent(), {10.0, 10.0, 20.0, 20.0});
    EXPECT_TRUE(view->Refreshes().empty());
    EXPECT_FALSE(Document()->IsDirty());
}

TEST_F(GraphicsCommandsTest, AMapWithoutGraphicsIsLeftAloneByAllFour) {
    for (const char* name : {"clsSelAllElements", "clsUnselElements", "clsFlipGraphicSel", "clsZoomToSelected"}) {
        SCOPED_TRACE(name);
        Click(name);
        EXPECT_EQ(map->ElementSelectionCount(), 0);
        EXPECT_TRUE(view->Refreshes().empty());
        EXPECT_FALSE(Document()->IsDirty());
    }
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(GraphicsCommandsTest, InLayoutViewTheCommandsWorkOnTheFocusMapAndRepaintTheLayout) {
    AddGraphics();
    auto layoutView = std::dynamic_pointer_cast<IActiveView>(Document()->PageLayout());
    auto layout = std::dynamic_pointer_cast<IGraphicsContainer>(Document()->PageLayout());
    Document()->ActiveView(layoutView);
    layoutView->ClearRefreshes();
    const std::int32_t layoutElements = layout->ElementCount();
    Click("clsSelAllElements");
    EXPECT_EQ(map->ElementSelectionCount(), 3);
    auto layoutSelection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(layout);
    EXPECT_EQ(layoutSelection->ElementSelectionCount(), 0); // the frame on the page is not touched
    EXPECT_EQ(layout->ElementCount(), layoutElements);
    ASSERT_EQ(layoutView->Refreshes().size(), 1u);
    EXPECT_EQ(layoutView->Refreshes()[0].phase, kPhase26);
    EXPECT_TRUE(view->Refreshes().empty());
}

} // namespace
} // namespace tess
