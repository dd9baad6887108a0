#pragma once
// Internal: small pieces shared by the shape classes.

#include <cstdint>
#include <memory>

#include "platform/geometry/Geometry.h"

namespace tess::detail {

class PartSource;

//! Puts the coordinates (or empties the point when p is null) and the reference.
void PutPoint(IPoint& point, const WKSPoint* p, const std::shared_ptr<ISpatialReference>& reference);
//! Fault OutOfRange unless 0 <= index < count.
void CheckIndex(std::int32_t index, std::int32_t count, const char* operation);
//! The envelope of all parts, empty when there is no vertex.
void FillEnvelope(const PartSource& source, const std::shared_ptr<ISpatialReference>& reference,
                  IEnvelope& envelope);
//! ICurve.QueryPointAndDistance over all parts.
void NearestQuery(const PartSource& source, const std::shared_ptr<ISpatialReference>& reference,
                  esriSegmentExtension extension, const IPoint& inPoint, bool asRatio, IPoint& outPoint,
                  double& distanceAlongCurve, double& distanceFromCurve, bool& rightSide);

} // namespace tess::detail
