#include "platform/geometry/detail/Helpers.h"

#include <string>

#include "platform/geometry/detail/PartData.h"
#include "platform/system/Fault.h"

namespace tess::detail {

void PutPoint(IPoint& point, const WKSPoint* p, const std::shared_ptr<ISpatialReference>& reference) {
    if (p)
        point.PutCoords(p->X, p->Y);
    else
        point.SetEmpty();
    point.SpatialReference(reference);
}

void CheckIndex(std::int32_t index, std::int32_t count, const char* operation) {
    if (index < 0 || index >= count)
        throw GeometryFault(fault::OutOfRange, operation,
                    "Index " + std::to_string(index) + " out of range 0.." + std::to_string(count - 1));
}

void FillEnvelope(const PartSource& source, const std::shared_ptr<ISpatialReference>& reference,
                  IEnvelope& envelope) {
    WKSEnvelope box;
    SourceEnvelope(source, box);
    if (box.XMin > box.XMax)
        envelope.SetEmpty();
    else
        envelope.PutCoords(box.XMin, box.YMin, box.XMax, box.YMax);
    envelope.SpatialReference(reference);
}

void NearestQuery(const PartSource& source, const std::shared_ptr<ISpatialReference>& reference,
                  esriSegmentExtension extension, const IPoint& inPoint, bool asRatio, IPoint& outPoint,
                  double& distanceAlongCurve, double& distanceFromCurve, bool& rightSide) {
    NearestResult r;
    if (!SourceNearest(source, extension, {inPoint.X(), inPoint.Y()}, r))
        throw GeometryFault(fault::GeometryFailed, "QueryPointAndDistance", "The curve is empty");
    PutPoint(outPoint, &r.point, reference);
    const double length = SourceLength(source);
    distanceAlongCurve = asRatio ? (length > 0.0 ? r.along / length : 0.0) : r.along;
    distanceFromCurve = r.distance;
    rightSide = r.right;
}

} // namespace tess::detail
