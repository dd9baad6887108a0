#pragma once
// Polygons from the regions that line work bounds, as a topology builder makes
// them: the lines are brought together by a cluster tolerance, noded where they
// cross, and every bounded region becomes one polygon. A line is never closed
// on its own; only the regions the lines enclose together count.

#include <memory>
#include <vector>

namespace tess {

class IGeometry;
class IPolygon;

//! How a cluster tolerance brings line work together.
enum class ClusterMethod {
    //! Vertices closer together than the tolerance merge into the first of them in input order,
    //! and a line end closer than the tolerance to a segment becomes a vertex of that segment
    //! (the segment bends to the end). All other vertices keep their exact coordinates.
    SnapVertices,
    //! Every vertex and crossing is rounded to a grid whose cells are the tolerance wide
    //! (snap-rounding). Closes gaps of up to about half the tolerance only, and moves all line
    //! work by up to half a cell diagonal.
    SnapRound,
};

//! One polygon per bounded region of the lines, in the engine's order, with clockwise exterior
//! rings and counter-clockwise holes, in the reference of the first line. Polylines give their
//! paths, polygons their rings; true curves are densified. Empty when the lines bound nothing.
//! \param clusterTolerance in the units of the lines' coordinates, 0 or more (0: exact noding).
//! A negative or non-finite tolerance is a Fault.
std::vector<std::shared_ptr<IPolygon>> ConstructPolygonsFromLines(const std::vector<std::shared_ptr<IGeometry>>& lines,
                                                                  double clusterTolerance,
                                                                  ClusterMethod method = ClusterMethod::SnapVertices);

} // namespace tess
