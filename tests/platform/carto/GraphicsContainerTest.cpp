// Graphics containers: drawing order, the walk, selection semantics (twice,
// absent, flip, select all, order, dominant), deletion, location.

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "platform/carto/Elements.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/Map.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/PageLayout.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

std::shared_ptr<IElement> MarkerAt(double x, double y) {
    auto marker = std::make_shared<MarkerElement>();
    marker->Geometry(std::make_shared<Point>(x, y));
    return marker;
}

std::vector<std::shared_ptr<IElement>> Walk(IGraphicsContainer& container) {
    std::vector<std::shared_ptr<IElement>> seen;
    container.Reset();
    while (auto element = container.Next())
        seen.push_back(element);
    return seen;
}

std::vector<std::shared_ptr<IElement>> Drain(IEnumElement& elements) {
    std::vector<std::shared_ptr<IElement>> seen;
    elements.Reset();
    while (auto element = elements.Next())
        seen.push_back(element);
    return seen;
}

class ContainerTest : public ::testing::Test {
protected:
    void SetUp() override {
        map = std::make_shared<Map>();
        for (int i = 0; i < 4; ++i) {
            elements.push_back(MarkerAt(i, i));
            map->AddElement(elements.back(), 0);
        }
    }
    std::shared_ptr<Map> map;
    std::vector<std::shared_ptr<IElement>> elements;
};

TEST_F(ContainerTest, TheMapIsItsOwnContainerAndWalksInDrawingOrder) {
    auto container = std::dynamic_pointer_cast<IGraphicsContainer>(std::static_pointer_cast<IMap>(map));
    ASSERT_TRUE(container);
    EXPECT_EQ(container.get(), map->GraphicsContainer().get());
    EXPECT_EQ(Walk(*container), elements);
    EXPECT_EQ(container->Next(), nullptr); // the walk stays at its end until Reset
}

TEST_F(ContainerTest, AddingAnElementTwiceIsRefused) {
    EXPECT_THROW(map->AddElement(elements[0], 0), Fault);
    EXPECT_THROW(map->AddElement(nullptr, 0), Fault);
    EXPECT_EQ(map->ElementCount(), 4);
}

TEST_F(ContainerTest, SelectingTwiceCountsOnceAndUnselectingTheAbsentChangesNothing) {
    map->SelectElement(elements[1]);
    map->SelectElement(elements[1]);
    EXPECT_EQ(map->ElementSelectionCount(), 1);
    map->UnselectElement(elements[2]); // not selected
    map->UnselectElement(MarkerAt(9, 9)); // not even in the container
    map->UnselectElement(nullptr);
    EXPECT_EQ(map->ElementSelectionCount(), 1);
    EXPECT_TRUE(map->ElementSelected(elements[1]));
    EXPECT_FALSE(map->ElementSelected(elements[2]));
}

TEST_F(ContainerTest, OnlyMembersCanBeSelected) {
    EXPECT_THROW(map->SelectElement(MarkerAt(9, 9)), Fault);
    EXPECT_THROW(map->SelectElement(nullptr), Fault);
    EXPECT_EQ(map->ElementSelectionCount(), 0);
}

TEST_F(ContainerTest, FlippingByTheWalkInvertsTheSelection) {
    map->SelectElement(elements[0]);
    map->SelectElement(elements[2]);
    map->Reset();
    while (auto element = map->Next()) {
        if (map->ElementSelected(element))
            map->UnselectElement(element);
        else
            map->SelectElement(element);
    }
    EXPECT_EQ(Drain(*map->SelectedElements()), (std::vector<std::shared_ptr<IElement>>{elements[1], elements[3]}));
}

TEST_F(ContainerTest, FlippingAFullSelectionLeavesNothingSelected) {
    map->SelectAllElements();
    map->Reset();
    while (auto element = map->Next()) {
        if (map->ElementSelected(element))
            map->UnselectElement(element);
        else
            map->SelectElement(element);
    }
    EXPECT_EQ(map->ElementSelectionCount(), 0);
}

TEST_F(ContainerTest, SelectionOrderIsTheOrderOfSelecting) {
    map->SelectElement(elements[3]);
    map->SelectElement(elements[1]);
    map->SelectAllElements(); // the rest follow in drawing order
    EXPECT_EQ(map->SelectedElement(0), elements[3]);
    EXPECT_EQ(map->SelectedElement(1), elements[1]);
    EXPECT_EQ(map->SelectedElement(2), elements[0]);
    EXPECT_EQ(map->SelectedElement(3), elements[2]);
    EXPECT_THROW(map->SelectedElement(4), Fault);
    EXPECT_EQ(map->DominantElement(), elements[3]);
    map->DominantElement(elements[2]);
    EXPECT_EQ(map->DominantElement(), elements[2]);
    map->UnselectElement(elements[2]);
    EXPECT_EQ(map->DominantElement(), elements[3]);
    EXPECT_THROW(map->DominantElement(elements[2]), Fault);
}

TEST_F(ContainerTest, SelectedElementsIsASnapshot) {
    map->SelectElement(elements[0]);
    auto selected = map->SelectedElements();
    map->UnselectAllElements();
    EXPECT_EQ(Drain(*selected).size(), 1u);
    EXPECT_EQ(Drain(*map->SelectedElements()).size(), 0u);
    EXPECT_EQ(map->DominantElement(), nullptr);
}

TEST_F(ContainerTest, SelectAndUnselectByEnumerator) {
    EnumElement some({elements[0], elements[2]});
    map->SelectElements(some);
    EXPECT_EQ(map->ElementSelectionCount(), 2);
    EnumElement one({elements[2]});
    map->UnselectElements(one);
    EXPECT_EQ(Drain(*map->SelectedElements()), std::vector<std::shared_ptr<IElement>>{elements[0]});
}

TEST_F(ContainerTest, DeletingTakesTheElementOutOfTheSelectionAndTheWalkGoesOn) {
    map->SelectElement(elements[1]);
    map->Reset();
    EXPECT_EQ(map->Next(), elements[0]);
    EXPECT_EQ(map->Next(), elements[1]);
    map->DeleteElement(elements[1]);
    EXPECT_EQ(map->Next(), elements[2]);
    EXPECT_EQ(map->ElementSelectionCount(), 0);
    EXPECT_EQ(map->ElementCount(), 3);
    map->DeleteElement(elements[1]); // no longer there: nothing happens
    map->DeleteAllElements();
    EXPECT_EQ(map->ElementCount(), 0);
    EXPECT_EQ(map->Next(), nullptr);
}

TEST_F(ContainerTest, BringToFrontAndSendToBackKeepTheMovedInTheirOrder) {
    EnumElement front({elements[2], elements[0]});
    map->BringToFront(front);
    EXPECT_EQ(Walk(*map), (std::vector<std::shared_ptr<IElement>>{elements[1], elements[3], elements[0], elements[2]}));
    EnumElement back({elements[2]});
    map->SendToBack(back);
    EXPECT_EQ(Walk(*map).front(), elements[2]);
}

TEST_F(ContainerTest, LocateFindsTopFirstAndNothingGivesNull) {
    auto over = MarkerAt(1, 1);
    map->AddElement(over, 0);
    auto hits = map->LocateElements(Point(1.05, 1), 0.1);
    ASSERT_TRUE(hits);
    EXPECT_EQ(Drain(*hits), (std::vector<std::shared_ptr<IElement>>{over, elements[1]}));
    EXPECT_EQ(map->LocateElements(Point(50, 50), 0.1), nullptr);
    auto inBox = map->LocateElementsByEnvelope(Envelope(1.5, 1.5, 3.5, 3.5));
    ASSERT_TRUE(inBox);
    EXPECT_EQ(Drain(*inBox), (std::vector<std::shared_ptr<IElement>>{elements[2], elements[3]}));
}

TEST(PageLayoutContainer, HoldsTheFramesOfMapsAndFindsThem) {
    auto map = std::make_shared<Map>();
    auto layout = std::make_shared<PageLayout>();
    auto frame = layout->AddMapFrame(map);
    EXPECT_EQ(layout->ElementCount(), 1);
    EXPECT_EQ(layout->FindFrame(Variant(std::static_pointer_cast<IMap>(map))).get(),
              static_cast<IFrameElement*>(frame.get()));
    EXPECT_EQ(layout->FindFrame(Variant(std::static_pointer_cast<IMap>(std::make_shared<Map>()))), nullptr);
    EXPECT_EQ(layout->FocusMap(), map);
    // The layout's own container, not the map's.
    EXPECT_EQ(map->ElementCount(), 0);
    EXPECT_TRUE(std::dynamic_pointer_cast<IPageLayout>(std::static_pointer_cast<IActiveView>(layout)));
    EXPECT_FALSE(std::dynamic_pointer_cast<IPageLayout>(std::static_pointer_cast<IActiveView>(map)));
}

} // namespace
} // namespace tess
