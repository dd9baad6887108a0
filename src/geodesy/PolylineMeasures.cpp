#include "geodesy/PolylineMeasures.h"

#include "frame/ErrorHandling.h"
#include "geodesy/Vincenty.h"
#include "geodesy/detail/SegmentWalk.h"
#include "platform/geometry/Point.h"
#include "platform/system/CheckedArithmetic.h"

#include <vector>

namespace tess::MyGeometricOperations {

namespace {

// Each segment's Vincenty distance is a trapped routine of its own: a failure there reports
// under DistanceVincentyNumbers(2), counts 0, and the walk goes on.
template <class Distance>
double PolylineLength(const char* procedure, const char* source, const IPolyline& Polyline, Distance&& distance) {
    return Trapped(procedure, 0.0, [&] {
        FloatingPointCheck check;
        double total = 0.0;
        detail::ForEachSegment(Polyline, [&](WKSPoint from, WKSPoint to) { total += distance(from, to); });
        check.Check(source);
        return total;
    });
}

struct SegmentRow {
    double length;
    double runningTotal; //!< at the segment's end
    double azimuth;      //!< forward, at its start
    double fromX;
    double fromY;
};

} // namespace

double SpheroidalPolylineLength(const IPolyline& Polyline) {
    return PolylineLength("SpheroidalPolylineLength ", "SpheroidalPolylineLength", Polyline,
                          [](WKSPoint from, WKSPoint to) {
                              double az1, az2;
                              return DistanceVincentyNumbers(from.X, from.Y, to.X, to.Y, az1, az2);
                          });
}

double SpheroidalPolylineLength2(const IPolyline& Polyline, double SemiMajor, double SemiMinor) {
    return PolylineLength("SpheroidalPolylineLength2 ", "SpheroidalPolylineLength2", Polyline,
                          [&](WKSPoint from, WKSPoint to) {
                              double az1, az2;
                              return DistanceVincentyNumbers2(from.X, from.Y, to.X, to.Y, az1, az2, SemiMajor,
                                                              SemiMinor);
                          });
}

std::shared_ptr<IPoint> SpheroidalPolylineMidpoint2(const IPolyline& Polyline, double& Position, bool AsRatio,
                                                    double& TotalLength, double SemiMajor, double SemiMinor) {
    return Trapped("SpheroidalPolylineMidpoint2 ", std::shared_ptr<IPoint>(), [&] {
        FloatingPointCheck check;
        std::vector<SegmentRow> rows;
        double total = 0.0;
        detail::ForEachSegment(Polyline, [&](WKSPoint from, WKSPoint to) {
            double az1 = 0.0, az2 = 0.0;
            const double length = DistanceVincentyNumbers2(from.X, from.Y, to.X, to.Y, az1, az2, SemiMajor, SemiMinor);
            total += length;
            rows.push_back({length, total, az1, from.X, from.Y});
        });
        check.Check("SpheroidalPolylineMidpoint2");
        TotalLength = total;

        if (AsRatio) {
            if (Position > 1.0)
                Position = 1.0;
            if (Position < 0.0)
                Position = 0.0;
        }
        const double target = AsRatio ? Position * total : Position;

        // The first segment that ends past the target. Without one, the last row's length and
        // azimuth stay, and the walk starts from (0, 0).
        double length = 0.0, runningTotal = 0.0, azimuth = 0.0, x = 0.0, y = 0.0;
        for (const SegmentRow& row : rows) {
            length = row.length;
            runningTotal = row.runningTotal;
            azimuth = row.azimuth;
            if (row.runningTotal > target) {
                x = row.fromX;
                y = row.fromY;
                break;
            }
        }
        const double along = length - (runningTotal - target);
        check.Check("SpheroidalPolylineMidpoint2");

        Point start(x, y);
        start.SpatialReference(Polyline.SpatialReference());
        auto end = std::make_shared<Point>();
        double farAzimuth = 0.0;
        std::int32_t vertexCount = 0;
        std::shared_ptr<IPolyline> noLine;
        PointLineVincenty2(start, along, azimuth, *end, farAzimuth, vertexCount, noLine);
        return std::static_pointer_cast<IPoint>(end);
    });
}

} // namespace tess::MyGeometricOperations
