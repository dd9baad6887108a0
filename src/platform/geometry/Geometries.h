#pragma once
// All geometry classes at once, for code that builds shapes of many kinds.
// Include it from .cpp files only.

#include "platform/geometry/BezierCurve.h"
#include "platform/geometry/CircularArc.h"
#include "platform/geometry/EllipticArc.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/GeometryBag.h"
#include "platform/geometry/Line.h"
#include "platform/geometry/Multipoint.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/Polyline.h"
#include "platform/geometry/Ring.h"
