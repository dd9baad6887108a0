#pragma once
// Polygons built from the regions that a polyline layer bounds, with the
// attributes of a label point in each, and the words its dialog and report
// share.

#include <memory>
#include <string>

namespace tess {

class IApplication;
class IFeatureLayer;
class IMxDocument;
class ISpatialReference;
class IVariantArray;
class clsExtension;

//! The name of a reference's coordinate unit as reports and dialogs give it: "Decimal Degrees"
//! for a geographic reference, "Unknown Coordinates" for an unknown one (or none), otherwise the
//! name of the projected system's linear unit ("Meter").
std::string CoordinateUnitWord(const std::shared_ptr<ISpatialReference>& reference);

//! Builds a polygon class from the regions that the layer's polylines (all, or the selected ones)
//! bound together, brought together by the cluster tolerance (coordinate units of the layer), and
//! adds it to the focus map. Each polygon gets a unique number and its area and, with
//! transferLabels, the selectedFields of one point of labelPointLayer inside it: the first that
//! the search gives, or the one nearest the polygon's centroid (the earlier on a tie); all points
//! or the layer's selected ones. The point layer may be in another reference; the search then
//! happens in the points' reference. Returns the RTF report; an empty string after telling the
//! user that there were no polylines or that they bound nothing (the empty class then stays), or
//! after a fault, which is reported under "orlBuildPolygons".
std::string orlBuildPolygons(const std::shared_ptr<IFeatureLayer>& polylineLayer, bool doAllRecords,
                             double clusterTolerance, bool transferLabels, bool useAllLabelPoints,
                             bool useFirstLabelPoint, const std::shared_ptr<IFeatureLayer>& labelPointLayer,
                             const std::shared_ptr<IVariantArray>& selectedFields, const std::string& outputPath,
                             const std::shared_ptr<IMxDocument>& document,
                             const std::shared_ptr<IApplication>& application,
                             const std::shared_ptr<clsExtension>& extension);

} // namespace tess
