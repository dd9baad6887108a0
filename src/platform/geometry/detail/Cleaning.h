#pragma once
// Internal: removal of repeated vertices and short segments, shared by the
// simplification of polylines and polygons.

#include "platform/geometry/detail/PartData.h"

namespace tess::detail {

//! The part without segments of no length: a straight segment whose end lies within tolerance
//! of the last kept vertex is dropped, a true curve when its length is within tolerance. With a
//! tolerance of 0 only exactly repeated vertices go.
PartData WithoutShortSegments(const PartData& part, double tolerance);
//! Whether WithoutShortSegments would drop anything from the part.
bool HasShortSegments(const PartData& part, double tolerance);
//! As above for a ring, which is closed first and stays closed.
PartData CleanRing(const PartData& ring, double tolerance);

} // namespace tess::detail
