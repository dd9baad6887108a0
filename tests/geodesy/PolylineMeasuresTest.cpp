#include "geodesy/PolylineMeasures.h"
#include "geodesy/Vincenty.h"

#include "FaultRecorder.h"
#include "GeometryBuilders.h"

#include <GeographicLib/Geodesic.hpp>
#include <gtest/gtest.h>

namespace tess::MyGeometricOperations {
namespace {

using namespace tess::testing;

constexpr double kWgsA = 6378137.0, kWgsB = 6356752.31424518;

TEST(SpheroidalPolylineLength, SumsSegmentsAndSkipsTheGapsBetweenParts) {
    const auto line = MakePolyline({{{0, 0}, {1, 0}, {1, 1}}, {{50, 50}, {50, 51}}});
    double a1, a2;
    const double expected = DistanceVincentyNumbers(0, 0, 1, 0, a1, a2) + DistanceVincentyNumbers(1, 0, 1, 1, a1, a2) +
                            DistanceVincentyNumbers(50, 50, 50, 51, a1, a2);
    EXPECT_DOUBLE_EQ(SpheroidalPolylineLength(*line), expected);
    // Against an exact geodesic: Vincenty's series is good to 0.1 mm a segment.
    const GeographicLib::Geodesic exact(kWgsA, (kWgsA - kWgsB) / kWgsA);
    double s1, s2, s3, z;
    exact.Inverse(0, 0, 0, 1, s1, z, z);
    exact.Inverse(0, 1, 1, 1, s2, z, z);
    exact.Inverse(50, 50, 51, 50, s3, z, z);
    EXPECT_NEAR(SpheroidalPolylineLength2(*line, kWgsA, kWgsB), s1 + s2 + s3, 3e-4); // metres
    EXPECT_EQ(SpheroidalPolylineLength(Polyline()), 0.0);
}

TEST(SpheroidalPolylineMidpoint2, HalfRatioIsTheGeodesicMiddle) {
    const auto line = MakePolyline({{{0, 0}, {10, 10}}});
    double position = 0.5, total = 0;
    const auto middle = SpheroidalPolylineMidpoint2(*line, position, true, total, kWgsA, kWgsB);
    ASSERT_TRUE(middle);
    EXPECT_EQ(position, 0.5);
    const GeographicLib::Geodesic exact(kWgsA, (kWgsA - kWgsB) / kWgsA);
    double s12, az1, az2, lat, lon;
    exact.Inverse(0, 0, 10, 10, s12, az1, az2);
    EXPECT_NEAR(total, s12, 1e-4); // metres
    exact.Direct(0, 0, az1, s12 / 2, lat, lon);
    EXPECT_NEAR(middle->X(), lon, 1e-8); // degrees, about 1 mm
    EXPECT_NEAR(middle->Y(), lat, 1e-8);
    EXPECT_TRUE(middle->SpatialReference()->IsEqual(*Wgs84()));
}

TEST(SpheroidalPolylineMidpoint2, RatioIsClampedAndWrittenBack) {
    const auto line = MakePolyline({{{0, 0}, {1, 0}, {2, 0}}});
    double position = 1.7, total = 0;
    const auto beyond = SpheroidalPolylineMidpoint2(*line, position, true, total, kWgsA, kWgsB);
    EXPECT_EQ(position, 1.0);
    // At the end no segment ends past the target: the walk starts from (0, 0) with the last
    // segment's length and azimuth, which lands a segment's length east of (0, 0).
    ASSERT_TRUE(beyond);
    EXPECT_NEAR(beyond->X(), 1.0, 1e-9);
    EXPECT_NEAR(beyond->Y(), 0.0, 1e-9);
    position = -3.0;
    const auto first = SpheroidalPolylineMidpoint2(*line, position, true, total, kWgsA, kWgsB);
    EXPECT_EQ(position, 0.0);
    EXPECT_EQ(first->X(), 0.0);
    EXPECT_EQ(first->Y(), 0.0);
}

TEST(SpheroidalPolylineMidpoint2, DistanceIsNotClampedAndZeroLengthFirstSegmentIsPassed) {
    const auto line = MakePolyline({{{5, 5}, {5, 5}, {6, 5}}});
    double position = 0.0, total = -1;
    const auto start = SpheroidalPolylineMidpoint2(*line, position, false, total, kWgsA, kWgsB);
    // The zero-length first segment's running total is not greater than 0: the second is used.
    EXPECT_EQ(start->X(), 5.0);
    EXPECT_EQ(start->Y(), 5.0);
    EXPECT_GT(total, 0.0);
    position = 50000.0;
    const auto along = SpheroidalPolylineMidpoint2(*line, position, false, total, kWgsA, kWgsB);
    EXPECT_EQ(position, 50000.0);
    EXPECT_GT(along->X(), 5.4);
}

TEST(SpheroidalPolylineMidpoint2, EmptyLineWalksFromTheOriginAndStillGivesTheLength) {
    Polyline empty;
    empty.SpatialReference(Wgs84());
    double position = 0.5, total = -1;
    const auto point = SpheroidalPolylineMidpoint2(empty, position, true, total, kWgsA, kWgsB);
    EXPECT_EQ(total, 0.0);
    ASSERT_TRUE(point);
    EXPECT_EQ(point->X(), 0.0);
    EXPECT_EQ(point->Y(), 0.0);
}

TEST(SpheroidalPolylineMidpoint2, LineWithoutReferenceGivesTheUnsetEndPoint) {
    FaultRecorder faults;
    const auto line = MakePolyline({{{0, 0}, {1, 1}}}, nullptr);
    double position = 0.5, total = 0;
    const auto point = SpheroidalPolylineMidpoint2(*line, position, true, total, kWgsA, kWgsB);
    ASSERT_TRUE(point);
    EXPECT_TRUE(point->IsEmpty());
    EXPECT_GT(total, 0.0);
    EXPECT_TRUE(faults.LastNames("PointLineVincenty2 ")) << faults.Last();
}

} // namespace
} // namespace tess::MyGeometricOperations
