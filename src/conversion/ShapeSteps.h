#pragma once
// Small steps on shapes that several conversions take the same way.

#include "platform/geometry/Geometry.h"
#include "platform/system/Fault.h"

namespace tess {

//! The shape as one of its interfaces; a shape without it is a type mismatch, as a worker that
//! reads a shape as the wrong kind reports it.
template <class Interface, class Shape>
Interface& ShapeAs(Shape& shape) {
    auto* typed = dynamic_cast<Interface*>(&shape);
    if (!typed)
        throw Fault(fault::TypeMismatch, "modCreateVertices", "Type mismatch");
    return *typed;
}

//! Asks whether the shape is known to be simple and whether it is, then simplifies it whatever
//! the answers: the questions decide nothing, and a polygon keeps the work of the second for the
//! simplification that follows.
void SimplifyStep(IGeometry& shape);

//! Appends a new path with the ring's segments to the polyline: it stays closed.
void AddRingAsPath(const IRing& ring, IGeometryCollection& polyline);

} // namespace tess
