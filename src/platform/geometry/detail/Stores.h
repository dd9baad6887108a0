#pragma once
// Internal: what the vertex and segment enumerators need of their owner, so
// that one enumerator serves paths, rings, polylines, polygons and multipoints.

#include <cstdint>
#include <memory>

#include "platform/geometry/GeometryTypes.h"

namespace tess {
class IEnumVertex;
class IEnumSegment;
}

namespace tess::detail {

class PartSource;

class VertexStore {
public:
    virtual ~VertexStore() = default;
    virtual std::int32_t StorePartCount() const = 0;
    virtual std::int32_t StorePartSize(std::int32_t part) const = 0;
    virtual WKSPoint StoreGet(std::int32_t part, std::int32_t vertex) const = 0;
    //! Writes one vertex; a true curve that starts or ends there becomes a straight line.
    virtual void StoreSet(std::int32_t part, std::int32_t vertex, WKSPoint p) = 0;
};

//! keepAlive holds the owner for the enumerator's life when the owner is shared; may be null.
std::shared_ptr<IEnumVertex> MakeVertexEnumerator(std::shared_ptr<const void> keepAlive, VertexStore& store);
std::shared_ptr<IEnumSegment> MakeSegmentEnumerator(std::shared_ptr<const void> keepAlive,
                                                    const PartSource& source);

} // namespace tess::detail
