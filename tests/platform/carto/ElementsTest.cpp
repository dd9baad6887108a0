// Graphic elements: the kind tests, the shapes each kind takes and keeps, true
// curves of circles and ellipses, bounds, groups, symbols and copies.

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/carto/Elements.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/GroupElement.h"
#include "platform/carto/Map.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/Symbols.h"
#include "platform/geometry/Geometries.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

// Coordinates here are small integers and halves; bounds of true curves come from their exact
// extreme points, so a few ulps at magnitude 100 is all the error allowed.
constexpr double kCoordTolerance = 1e-12; // map units

std::shared_ptr<Point> At(double x, double y) { return std::make_shared<Point>(x, y); }

std::shared_ptr<Polyline> Line2(double x0, double y0, double x1, double y1) {
    auto line = std::make_shared<Polyline>();
    auto path = std::make_shared<Path>();
    const WKSPoint points[] = {{x0, y0}, {x1, y1}};
    path->AddWKSPoints(2, points);
    line->AddPart(path);
    return line;
}

Envelope BoundsOf(const IElement& element) {
    Envelope bounds;
    element.QueryBounds(nullptr, bounds);
    return bounds;
}

void ExpectBox(const IEnvelope& box, double xMin, double yMin, double xMax, double yMax) {
    EXPECT_NEAR(box.XMin(), xMin, kCoordTolerance);
    EXPECT_NEAR(box.YMin(), yMin, kCoordTolerance);
    EXPECT_NEAR(box.XMax(), xMax, kCoordTolerance);
    EXPECT_NEAR(box.YMax(), yMax, kCoordTolerance);
}

//! The one interface of the eleven kind tests that each kind answers to, in the order a
//! selection dialog tests them.
struct KindCase {
    const char* word;
    std::function<std::shared_ptr<IElement>()> make;
    esriGeometryType shapeType;
};

std::vector<std::string> KindTestsPassed(const std::shared_ptr<IElement>& e) {
    std::vector<std::string> passed;
    if (std::dynamic_pointer_cast<IMarkerElement>(e)) passed.push_back("Marker");
    if (std::dynamic_pointer_cast<ILineElement>(e)) passed.push_back("Line");
    if (std::dynamic_pointer_cast<IPolygonElement>(e)) passed.push_back("Polygon");
    if (std::dynamic_pointer_cast<IRectangleElement>(e)) passed.push_back("Rectangle");
    if (std::dynamic_pointer_cast<IEllipseElement>(e)) passed.push_back("Ellipse");
    if (std::dynamic_pointer_cast<ICircleElement>(e)) passed.push_back("Circle");
    if (std::dynamic_pointer_cast<ITextElement>(e)) passed.push_back("Text");
    if (std::dynamic_pointer_cast<IPictureElement>(e)) passed.push_back("Picture");
    if (std::dynamic_pointer_cast<IDataGraphElement>(e)) passed.push_back("DataGraph");
    if (std::dynamic_pointer_cast<IGroupElement>(e)) passed.push_back("Group");
    if (std::dynamic_pointer_cast<IFrameElement>(e)) passed.push_back("MapFrame");
    return passed;
}

const std::vector<KindCase>& Kinds() {
    static const std::vector<KindCase> kinds{
        {"Marker", [] { return std::make_shared<MarkerElement>(); }, esriGeometryPoint},
        {"Line", [] { return std::make_shared<LineElement>(); }, esriGeometryPolyline},
        {"Polygon", [] { return std::make_shared<PolygonElement>(); }, esriGeometryPolygon},
        {"Rectangle", [] { return std::make_shared<RectangleElement>(); }, esriGeometryPolygon},
        {"Ellipse", [] { return std::make_shared<EllipseElement>(); }, esriGeometryPolygon},
        {"Circle", [] { return std::make_shared<CircleElement>(); }, esriGeometryPolygon},
        {"Text", [] { return std::make_shared<TextElement>(); }, esriGeometryPoint},
        {"Picture", [] { return std::make_shared<PictureElement>(); }, esriGeometryEnvelope},
        {"DataGraph", [] { return std::make_shared<DataGraphElement>(); }, esriGeometryEnvelope},
        {"Group", [] { return std::make_shared<GroupElement>(); }, esriGeometryEnvelope},
        {"MapFrame", [] { return std::make_shared<MapFrame>(); }, esriGeometryPolygon},
    };
    return kinds;
}

TEST(GraphicElements, EachKindAnswersToItsOwnTestOnlyAndHasItsShapeType) {
    for (const auto& kind : Kinds()) {
        SCOPED_TRACE(kind.word);
        auto element = kind.make();
        EXPECT_EQ(KindTestsPassed(element), std::vector<std::string>{kind.word});
        EXPECT_EQ(KindWord(KindOf(*element)), kind.word);
        EXPECT_EQ(element->Geometry()->GeometryType(), kind.shapeType);
        auto properties = std::dynamic_pointer_cast<IElementProperties>(element);
        ASSERT_TRUE(properties);
        EXPECT_EQ(properties->Name(), "");
        EXPECT_EQ(properties->Type(), kind.word);
    }
}

TEST(GraphicElements, FillShapesCarryAFillSymbolAndOthersDoNot) {
    for (const auto& kind : Kinds()) {
        SCOPED_TRACE(kind.word);
        const std::string word = kind.word;
        const bool fills = word == "Polygon" || word == "Rectangle" || word == "Ellipse" || word == "Circle";
        auto fill = std::dynamic_pointer_cast<IFillShapeElement>(kind.make());
        EXPECT_EQ(fill != nullptr, fills);
        if (fill) {
            EXPECT_TRUE(std::dynamic_pointer_cast<ISimpleFillSymbol>(fill->Symbol()));
        }
    }
}

TEST(GraphicElements, ShapesOfTheWrongKindAreRefused) {
    auto polygon = MakeRectanglePolygon(Envelope(0, 0, 1, 1));
    struct Refusal {
        std::shared_ptr<IElement> element;
        std::shared_ptr<IGeometry> shape;
    };
    const std::vector<Refusal> refusals{
        {std::make_shared<MarkerElement>(), polygon},
        {std::make_shared<TextElement>(), Line2(0, 0, 1, 1)},
        {std::make_shared<LineElement>(), At(1, 1)},
        {std::make_shared<PolygonElement>(), std::make_shared<Envelope>(0, 0, 1, 1)},
        {std::make_shared<CircleElement>(), At(0, 0)},
        {std::make_shared<PictureElement>(), At(0, 0)},
        {std::make_shared<GroupElement>(), polygon},
    };
    for (const auto& r : refusals) {
        SCOPED_TRACE(KindWord(KindOf(*r.element)));
        EXPECT_THROW(r.element->Geometry(r.shape), Fault);
    }
    EXPECT_THROW(MarkerElement().Geometry(nullptr), Fault);
}

TEST(GraphicElements, TheShapeIsKeptAsACopyAndHandedOutAsACopy) {
    MarkerElement marker;
    auto point = At(3, 4);
    marker.Geometry(point);
    point->PutCoords(100, 100);
    auto first = std::dynamic_pointer_cast<IPoint>(marker.Geometry());
    EXPECT_EQ(first->X(), 3.0);
    first->PutCoords(-1, -1);
    EXPECT_EQ(std::dynamic_pointer_cast<IPoint>(marker.Geometry())->X(), 3.0);
}

TEST(GraphicElements, ATextElementsShapeIsAPointYetItIsNoMarker) {
    TextElement text;
    text.Geometry(At(5, 6));
    text.Text("Crater");
    EXPECT_EQ(text.Geometry()->GeometryType(), esriGeometryPoint);
    EXPECT_EQ(dynamic_cast<IMarkerElement*>(static_cast<IElement*>(&text)), nullptr);
    ExpectBox(BoundsOf(text), 5, 6, 5, 6);
}

TEST(GraphicElements, RectangleFromAnEnvelopeIsAClockwiseRingOfFourLines) {
    RectangleElement rectangle;
    rectangle.Geometry(std::make_shared<Envelope>(1, 2, 5, 4));
    auto polygon = std::dynamic_pointer_cast<Polygon>(rectangle.Geometry());
    ASSERT_TRUE(polygon);
    ASSERT_EQ(polygon->PartCount(), 1u);
    EXPECT_EQ(polygon->Part(0).SegmentCount(), 4);
    EXPECT_FALSE(polygon->Part(0).HasNonLinearSegments());
    EXPECT_TRUE(polygon->Part(0).IsExterior());
    EXPECT_NEAR(polygon->Area(), 8.0, kCoordTolerance);
    ExpectBox(BoundsOf(rectangle), 1, 2, 5, 4);
}

TEST(GraphicElements, CircleIsOneFullCircularArcAndItsBoundsAreTheCirclesOwn) {
    CircleElement circle;
    circle.Geometry(MakeCirclePolygon(Point(10, 20), 5));
    auto polygon = std::dynamic_pointer_cast<Polygon>(circle.Geometry());
    ASSERT_TRUE(polygon);
    ASSERT_EQ(polygon->PartCount(), 1u);
    const Ring& ring = polygon->Part(0);
    ASSERT_EQ(ring.SegmentCount(), 1);
    auto arc = std::dynamic_pointer_cast<ICircularArc>(ring.Segment(0));
    ASSERT_TRUE(arc);
    EXPECT_NEAR(std::fabs(arc->CentralAngle()), 2 * M_PI, kCoordTolerance);
    EXPECT_TRUE(ring.IsExterior());
    // A densified circle would fall short of the true extremes; the bounds touch them.
    ExpectBox(BoundsOf(circle), 5, 15, 15, 25);
    // Area pi r^2, exact for a true curve; 1e-9 of 78.5 allows the integration's rounding.
    EXPECT_NEAR(polygon->Area(), M_PI * 25.0, 1e-9);
}

TEST(GraphicElements, EllipseFromAnEnvelopeIsOneFullEllipticArcInscribedInIt) {
    EllipseElement ellipse;
    ellipse.Geometry(std::make_shared<Envelope>(-4, -1, 4, 1));
    auto polygon = std::dynamic_pointer_cast<Polygon>(ellipse.Geometry());
    ASSERT_TRUE(polygon);
    ASSERT_EQ(polygon->PartCount(), 1u);
    ASSERT_EQ(polygon->Part(0).SegmentCount(), 1);
    auto arc = std::dynamic_pointer_cast<IEllipticArc>(polygon->Part(0).Segment(0));
    ASSERT_TRUE(arc);
    EXPECT_NEAR(arc->SemiMajor(), 4.0, kCoordTolerance);
    EXPECT_NEAR(arc->SemiMinor(), 1.0, kCoordTolerance);
    ExpectBox(BoundsOf(ellipse), -4, -1, 4, 1);
    // pi a b; the elliptic area is integrated numerically, to about 1e-12 relative.
    EXPECT_NEAR(polygon->Area(), M_PI * 4.0, 1e-9);
}

TEST(GraphicElements, CircleWithoutAPositiveRadiusIsRefused) {
    EXPECT_THROW(MakeCirclePolygon(Point(0, 0), 0.0), Fault);
    EXPECT_THROW(MakeCirclePolygon(Point(0, 0), -1.0), Fault);
}

TEST(GraphicElements, PicturesAndDataGraphsSitInAnEnvelope) {
    PictureElement picture;
    picture.Geometry(MakeRectanglePolygon(Envelope(0, 0, 2, 3)));
    EXPECT_EQ(picture.Geometry()->GeometryType(), esriGeometryEnvelope);
    ExpectBox(BoundsOf(picture), 0, 0, 2, 3);
    picture.ImportPictureFromFile("/tmp/logo.png");
    EXPECT_EQ(picture.Filename(), "/tmp/logo.png");
}

TEST(GraphicElements, AnEmptyElementHasEmptyBounds) {
    for (const auto& kind : Kinds()) {
        SCOPED_TRACE(kind.word);
        EXPECT_TRUE(BoundsOf(*kind.make()).IsEmpty());
    }
}

TEST(GraphicElements, SymbolsAreKeptAndHandedOutAsCopies) {
    MarkerElement marker;
    auto symbol = std::make_shared<SimpleMarkerSymbol>();
    symbol->Size(14.0);
    symbol->Color(std::make_shared<RgbColor>(200, 10, 20));
    marker.Symbol(symbol);
    symbol->Size(2.0);
    auto kept = marker.Symbol();
    EXPECT_EQ(kept->Size(), 14.0);
    EXPECT_EQ(kept->Color()->RGB(), 200 + 256 * 10 + 65536 * 20);
    kept->Size(99.0);
    EXPECT_EQ(marker.Symbol()->Size(), 14.0);
}

TEST(GraphicElements, ColoursPackAsTheHostPacksThem) {
    RgbColor color;
    color.RGB(0x123456);
    EXPECT_EQ(color.Red(), 0x56);
    EXPECT_EQ(color.Green(), 0x34);
    EXPECT_EQ(color.Blue(), 0x12);
    EXPECT_THROW(RgbColor(256, 0, 0), Fault);
    EXPECT_THROW(color.RGB(-1), Fault);
}

TEST(GraphicElements, ACloneIsDeepAndEqual) {
    CircleElement circle;
    circle.Geometry(MakeCirclePolygon(Point(0, 0), 2));
    circle.Name("pond");
    auto copy = std::dynamic_pointer_cast<CircleElement>(circle.Clone());
    ASSERT_TRUE(copy);
    EXPECT_TRUE(circle.IsEqual(*copy));
    copy->Move(1, 0);
    EXPECT_FALSE(circle.IsEqual(*copy));
    ExpectBox(BoundsOf(circle), -2, -2, 2, 2);
    ExpectBox(BoundsOf(*copy), -1, -2, 3, 2);
}

TEST(GraphicElements, HitTestFollowsTheShape) {
    CircleElement circle;
    circle.Geometry(MakeCirclePolygon(Point(0, 0), 10));
    EXPECT_TRUE(circle.HitTest(0, 0, 0.0));
    EXPECT_TRUE(circle.HitTest(10.5, 0, 1.0));
    // Inside the box but outside the true circle (a corner).
    EXPECT_FALSE(circle.HitTest(9, 9, 0.5));
    LineElement line;
    line.Geometry(Line2(0, 0, 10, 0));
    EXPECT_TRUE(line.HitTest(5, 0.4, 0.5));
    EXPECT_FALSE(line.HitTest(5, 0.6, 0.5));
}

TEST(GroupElements, BoundsAreTheUnionOfTheMembersAndAMoveMovesThemAll) {
    auto marker = std::make_shared<MarkerElement>();
    marker->Geometry(At(-3, 7));
    auto circle = std::make_shared<CircleElement>();
    circle->Geometry(MakeCirclePolygon(Point(10, 0), 1));
    GroupElement group;
    group.AddElement(marker);
    group.AddElement(circle);
    EXPECT_EQ(group.ElementCount(), 2);
    ExpectBox(BoundsOf(group), -3, -1, 11, 7);
    group.Move(1, 1);
    ExpectBox(BoundsOf(*marker), -2, 8, -2, 8);
    EXPECT_THROW(group.Geometry(At(0, 0)), Fault);
    EXPECT_THROW(group.Element(2), Fault);
}

TEST(GroupElements, AGroupCannotHoldItselfOrAnEnclosingGroup) {
    auto outer = std::make_shared<GroupElement>();
    auto inner = std::make_shared<GroupElement>();
    outer->AddElement(inner);
    EXPECT_THROW(outer->AddElement(outer), Fault);
    EXPECT_THROW(inner->AddElement(outer), Fault);
}

TEST(GroupElements, ACopyHoldsCopiesOfTheMembers) {
    auto marker = std::make_shared<MarkerElement>();
    marker->Geometry(At(1, 1));
    GroupElement group;
    group.AddElement(marker);
    auto copy = std::dynamic_pointer_cast<GroupElement>(group.Clone());
    ASSERT_TRUE(copy);
    EXPECT_NE(copy->Element(0), marker);
    EXPECT_TRUE(group.IsEqual(*copy));
}

TEST(MapFrames, AFrameShowsItsMapAndTakesARectangle) {
    auto map = std::make_shared<Map>();
    MapFrame frame(map);
    EXPECT_FALSE(frame.IsEmpty());
    EXPECT_EQ(frame.Map(), map);
    frame.Geometry(std::make_shared<Envelope>(1, 1, 7.5, 10));
    EXPECT_EQ(frame.Geometry()->GeometryType(), esriGeometryPolygon);
    ExpectBox(BoundsOf(frame), 1, 1, 7.5, 10);
    EXPECT_TRUE(MapFrame().IsEmpty());
}

} // namespace
} // namespace tess
