// Lengths, points along, nearest points and extents of segments, paths and
// polylines, true curves included.

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "GeometryTestSupport.h"

namespace tess {
namespace {

using testing::Wkt;

constexpr double kPi = std::numbers::pi;

// Perimeter of an ellipse by the Gauss-Kummer series, summed until the terms vanish in double
// precision: pi (a + b) sum (binom(1/2, n))^2 h^n, h = ((a - b) / (a + b))^2.
double EllipsePerimeter(double a, double b) {
    const double h = std::pow((a - b) / (a + b), 2);
    double sum = 1.0;
    double binom = 1.0; // binom(1/2, n)
    double hn = 1.0;
    for (int n = 1; n < 1000000; ++n) {
        binom *= (0.5 - (n - 1)) / n;
        hn *= h;
        const double term = binom * binom * hn;
        sum += term;
        if (term < 1e-20) break;
    }
    return kPi * (a + b) * sum;
}

// Length of a segment by chords over 2^k parameter steps, refined by one Richardson step
// (the chord error is O(n^-2)).
double ChordLength(const ISegment& s, int steps) {
    auto chords = [&s](int n) {
        double total = 0.0;
        Point prev, next;
        s.QueryFromPoint(prev);
        // Points at equal parameter steps are not available through ICurve; equal arc-length
        // steps serve as well for a sum of chords.
        const double length = s.Length();
        for (int i = 1; i <= n; ++i) {
            s.QueryPoint(esriNoExtension, length * i / n, false, next);
            total += std::hypot(next.X() - prev.X(), next.Y() - prev.Y());
            prev.PutCoords(next.X(), next.Y());
        }
        return total;
    };
    const double fine = chords(steps);
    const double coarse = chords(steps / 2);
    return fine + (fine - coarse) / 3.0;
}

TEST(CurveLength, CircleIsTwoPiR) {
    CircularArc circle;
    circle.ConstructCircle(Point(1, 1), 3.0, true);
    EXPECT_NEAR(circle.Length(), 2.0 * kPi * 3.0, 1e-14 * 20); // analytic: rounding only
    EXPECT_TRUE(circle.IsClosed());
    EXPECT_DOUBLE_EQ(circle.CentralAngle(), 2.0 * kPi);
}

TEST(CurveLength, EllipseMatchesTheSeries) {
    EllipticArc ellipse;
    ellipse.PutCoordsByAngle(Point(0, 0), 0.3, 5.0, 0.6, 0.0, 2.0 * kPi);
    const double expected = EllipsePerimeter(5.0, 3.0);
    // Integration to about 1e-13 relative; allow 1e-12.
    EXPECT_NEAR(ellipse.Length(), expected, 1e-12 * expected);
    EllipticArc quarter;
    quarter.PutCoordsByAngle(Point(0, 0), 0.3, 5.0, 0.6, 0.0, kPi / 2.0);
    EXPECT_NEAR(quarter.Length(), expected / 4.0, 1e-12 * expected);
}

TEST(CurveLength, FlatEllipseStaysAccurate) {
    EllipticArc ellipse;
    ellipse.PutCoordsByAngle(Point(0, 0), 0.0, 1.0, 0.01, 0.0, 2.0 * kPi);
    const double expected = EllipsePerimeter(1.0, 0.01);
    EXPECT_NEAR(ellipse.Length(), expected, 1e-12 * expected);
}

TEST(CurveLength, BezierMatchesFineSubdivision) {
    BezierCurve bezier;
    bezier.PutCoords(Point(0, 0), Point(1, 3), Point(4, -2), Point(5, 1));
    // 2^10 chords with one Richardson step: error O(n^-4), below 1e-11 relative.
    const double reference = ChordLength(bezier, 1 << 10);
    EXPECT_NEAR(bezier.Length(), reference, 1e-10 * reference);
}

TEST(CurveLength, PolylineWithArcAddsArcLengths) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, kPi / 2.0, 2.0); // (2,0) to (0,2)
    Polyline line;
    line.AddSegment(Line({4, 0}, {2, 0}));
    line.AddSegment(arc);
    EXPECT_EQ(line.PartCount(), 1u);
    EXPECT_NEAR(line.Length(), 2.0 + kPi, 1e-14 * 10);
}

struct AlongCase {
    const char* name;
    esriSegmentExtension extension;
    double distance;
    bool asRatio;
    double x;
    double y;
};

class PolylineQueryPoint : public ::testing::TestWithParam<AlongCase> {};

// An L-shaped two-part line: (0,0)-(10,0), then (10,10)-(10,20); length 20.
TEST_P(PolylineQueryPoint, FindsThePointAlong) {
    const auto line = Wkt<Polyline>("MULTILINESTRING((0 0, 10 0), (10 10, 10 20))");
    const AlongCase& c = GetParam();
    Point p;
    line->QueryPoint(c.extension, c.distance, c.asRatio, p);
    EXPECT_NEAR(p.X(), c.x, 1e-12);
    EXPECT_NEAR(p.Y(), c.y, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Distances, PolylineQueryPoint,
    ::testing::Values(AlongCase{"Start", esriNoExtension, 0.0, false, 0, 0},
                      AlongCase{"MiddleOfFirstPart", esriNoExtension, 5.0, false, 5, 0},
                      AlongCase{"HalfRatioIsTheGapEnd", esriNoExtension, 0.5, true, 10, 0},
                      AlongCase{"InSecondPart", esriNoExtension, 0.75, true, 10, 15},
                      AlongCase{"BeyondEndClamps", esriNoExtension, 30.0, false, 10, 20},
                      AlongCase{"BeforeStartClamps", esriNoExtension, -3.0, false, 0, 0},
                      AlongCase{"BeyondEndExtends", esriExtendTangentAtTo, 25.0, false, 10, 25},
                      AlongCase{"BeforeStartExtends", esriExtendTangentAtFrom, -3.0, false, -3, 0},
                      AlongCase{"ExtendAtToDoesNotExtendFrom", esriExtendTangentAtTo, -3.0, false, 0, 0},
                      AlongCase{"BothWaysRatio", esriExtendTangents, 1.5, true, 10, 30}),
    [](const ::testing::TestParamInfo<AlongCase>& info) { return std::string(info.param.name); });

TEST(CurveQueryPoint, ArcByRatioAndBeyondItsEndAlongTheTangent) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, kPi / 2.0, 2.0); // counter-clockwise, (2,0) to (0,2)
    Point p;
    arc.QueryPoint(esriNoExtension, 0.5, true, p);
    EXPECT_NEAR(p.X(), std::sqrt(2.0), 1e-14 * 10);
    EXPECT_NEAR(p.Y(), std::sqrt(2.0), 1e-14 * 10);
    // The tangent at (0,2) points in -x.
    arc.QueryPoint(esriExtendTangentAtTo, arc.Length() + 1.0, false, p);
    EXPECT_NEAR(p.X(), -1.0, 1e-12);
    EXPECT_NEAR(p.Y(), 2.0, 1e-12);
}

TEST(CurveQueryPoint, EllipticArcByDistanceIsOnTheEllipseAtThatArcLength) {
    EllipticArc ellipse;
    ellipse.PutCoordsByAngle(Point(0, 0), 0.0, 5.0, 0.6, 0.0, 2.0 * kPi);
    Point p;
    ellipse.QueryPoint(esriNoExtension, 0.25, true, p);
    // A quarter of the perimeter from the end of the major axis is the end of the minor one.
    EXPECT_NEAR(p.X(), 0.0, 1e-9);
    EXPECT_NEAR(p.Y(), 3.0, 1e-9);
}

TEST(CurveNearest, DistanceAlongFromAndSide) {
    const auto line = Wkt<Polyline>("LINESTRING(0 0, 10 0, 10 10)");
    Point out;
    double along = 0, from = 0;
    bool right = false;
    line->QueryPointAndDistance(esriNoExtension, Point(4, -2), false, out, along, from, right);
    EXPECT_DOUBLE_EQ(out.X(), 4.0);
    EXPECT_DOUBLE_EQ(along, 4.0);
    EXPECT_DOUBLE_EQ(from, 2.0);
    EXPECT_TRUE(right);
    line->QueryPointAndDistance(esriNoExtension, Point(8, 5), true, out, along, from, right);
    EXPECT_DOUBLE_EQ(out.X(), 10.0);
    EXPECT_DOUBLE_EQ(out.Y(), 5.0);
    EXPECT_DOUBLE_EQ(along, 0.75);
    EXPECT_FALSE(right);
    line->QueryPointAndDistance(esriExtendTangents, Point(-5, 1), false, out, along, from, right);
    EXPECT_DOUBLE_EQ(along, -5.0);
    EXPECT_DOUBLE_EQ(from, 1.0);
}

TEST(CurveNearest, OnAnArc) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, kPi, 2.0);
    Point out;
    double along = 0, from = 0;
    bool right = false;
    arc.QueryPointAndDistance(esriNoExtension, Point(0, 5), false, out, along, from, right);
    EXPECT_NEAR(out.Y(), 2.0, 1e-12);
    EXPECT_NEAR(along, kPi, 1e-12);
    EXPECT_NEAR(from, 3.0, 1e-12);
    EXPECT_TRUE(right); // outside a counter-clockwise arc is to its right
}

TEST(CurveEnvelope, TrueCurvesByTheirExtremePoints) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), kPi * 80.0 / 180.0, kPi * 20.0 / 180.0, 10.0);
    const auto e = arc.Envelope();
    EXPECT_NEAR(e->YMax(), 10.0, 1e-14 * 100); // the top passes through 90 degrees
    BezierCurve bezier;
    bezier.PutCoords(Point(0, 0), Point(0, 1), Point(1, 1), Point(1, 0));
    EXPECT_NEAR(bezier.Envelope()->YMax(), 0.75, 1e-15 * 10); // y = 3t(1 - t) peaks at t = 1/2
    EllipticArc ellipse;
    ellipse.PutCoordsByAngle(Point(0, 0), kPi / 4.0, 2.0, 0.5, 0.0, 2.0 * kPi);
    // Half-width of a rotated ellipse: sqrt(a^2 cos^2 + b^2 sin^2).
    EXPECT_NEAR(ellipse.Envelope()->XMax(), std::sqrt(4.0 * 0.5 + 1.0 * 0.5), 1e-14 * 10);
}

TEST(CircularArcConstruction, ThreePointsGiveCentreRadiusAndDirection) {
    CircularArc arc;
    arc.ConstructThreePoints(Point(1, 0), Point(0, 1), Point(-1, 0));
    EXPECT_NEAR(arc.CenterPoint()->X(), 0.0, 1e-15);
    EXPECT_NEAR(arc.CenterPoint()->Y(), 0.0, 1e-15);
    EXPECT_NEAR(arc.Radius(), 1.0, 1e-15);
    EXPECT_TRUE(arc.IsCounterClockwise());
    EXPECT_NEAR(arc.CentralAngle(), kPi, 1e-15);
    EXPECT_THROW(arc.ConstructThreePoints(Point(0, 0), Point(1, 1), Point(2, 2)), Fault);
}

TEST(CircularArcConstruction, MinorAndMajorChooseTheWayRound) {
    CircularArc arc;
    arc.PutCoords(Point(0, 0), Point(1, 0), Point(0, 1), esriArcMinor);
    EXPECT_NEAR(arc.CentralAngle(), kPi / 2.0, 1e-15);
    arc.PutCoords(Point(0, 0), Point(1, 0), Point(0, 1), esriArcMajor);
    EXPECT_NEAR(arc.CentralAngle(), -1.5 * kPi, 1e-15);
    arc.PutCoords(Point(0, 0), Point(1, 0), Point(0, 1), esriArcClockwise);
    EXPECT_FALSE(arc.IsCounterClockwise());
}

TEST(CurveTransform, MoveCarriesCurvesAlong) {
    const auto circle = testing::CirclePolygon(0, 0, 1, true);
    const double length = circle->Length();
    circle->Move(10, -5);
    EXPECT_DOUBLE_EQ(circle->Length(), length);
    EXPECT_NEAR(circle->Centroid()->X(), 10.0, 1e-12);
    EXPECT_NEAR(circle->Centroid()->Y(), -5.0, 1e-12);
    EXPECT_NEAR(circle->Envelope()->XMin(), 9.0, 1e-12);
}

TEST(CurveTransform, UnequalScaleTurnsACircleIntoAnEllipse) {
    const auto circle = testing::CirclePolygon(0, 0, 1, true);
    circle->Scale(Point(0, 0), 3.0, 2.0);
    EXPECT_EQ(circle->Segment(0)->GeometryType(), esriGeometryEllipticArc);
    EXPECT_NEAR(circle->Area(), kPi * 6.0, 1e-11);
    CircularArc alone;
    alone.ConstructCircle(Point(0, 0), 1.0, true);
    EXPECT_THROW(alone.Scale(Point(0, 0), 3.0, 2.0), Fault);
}

TEST(CurveTransform, RotateAndReverse) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, kPi / 2.0, 1.0);
    arc.Rotate(Point(0, 0), kPi / 2.0);
    EXPECT_NEAR(arc.FromPoint()->X(), 0.0, 1e-15);
    EXPECT_NEAR(arc.FromPoint()->Y(), 1.0, 1e-15);
    EXPECT_NEAR(arc.FromAngle(), kPi / 2.0, 1e-15);
    arc.ReverseOrientation();
    EXPECT_FALSE(arc.IsCounterClockwise());
    EXPECT_NEAR(arc.FromPoint()->X(), -1.0, 1e-15);
}

TEST(CurveEnds, MovingAnEndOfAnArcKeepsItAnArc) {
    CircularArc arc;
    arc.PutCoordsByAngle(Point(0, 0), 0.0, kPi / 2.0, 1.0);
    arc.ToPoint(Point(0, 2)); // the chord doubles, so the arc scales about its start
    EXPECT_NEAR(arc.CentralAngle(), kPi / 2.0, 1e-14);
    EXPECT_NEAR(arc.ToPoint()->Y(), 2.0, 1e-15);
    EXPECT_NEAR(arc.Length(), kPi / 2.0 * std::sqrt(5.0 / 2.0), 1e-14 * 10);
}

} // namespace
} // namespace tess
