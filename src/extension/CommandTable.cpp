#include "extension/CommandTable.h"

#include <array>
#include <string>

#include "platform/system/Fault.h"

namespace tess {
namespace {

constexpr std::array<CommandInfo, 21> kCommands{{
    // Tools for features and shapes
    {"clsConvertGeometry", "Tessarine_CalcGeometry", "C&alculate Geometry", "Calculate Geometry",
     "Calculate geometric attributes of data, including spherical area and spheroidal length...", 117},
    {"clsConvertLabelpoint", "Tessarine_PolygonToLabelPoints", "Convert Polygons to La&bel Points",
     "Polygons to Label Points", "Extract label points within polygons...", 112},
    {"clsConvertCentroid", "Tessarine_PolygonToCentroid", "Convert Shapes to &Centroids", "Shapes to Centroids",
     "Identify centroids of Polygons and Polylines...", 113},
    {"clsConvertSphCentroid", "Tessarine_Spherical_Centroid", "Convert Features to &Spherical Centroids",
     "Features to Spherical Centroids", "Calculate centroid of feature draped over sphere...", 119},
    {"clsShapesToVertices", "Tessarine_ShapesToVertices", "Convert Shapes to &Vertices", "Shapes to Vertices",
     "Convert Polylines and Polygons to Vertex Point shapefiles...", 109},
    {"clsConvertToPolygon", "Tessarine_PolylineToPolygon", "Convert &Polylines to Polygons",
     "Polylines to Polygons", "Convert Polylines to Polygons...", 111},
    {"clsConvertToPolyline", "Tessarine_PolygonToPolyline", "Convert Polygons to Poly&lines",
     "Polygons to Polylines", "Convert Polygons to Polylines...", 110},
    {"clsBuildPolygon", "Tessarine_BuildPolygon", "Buil&d Polygons from Polylines", "Similar to ArcInfo Build",
     "Build polygons based on the regions bounded by polylines...", 121},
    {"clsConvertSplit", "Tessarine_SplitMultipart", "Split &Multipart Features", "Split Multipart Features",
     "Split multipart features into single objects...", 115},
    {"clsConvertJoin", "Tessarine_JoinFeatures", "Combine &Features", "Combine Features",
     "Combine multiple features into a single multipart object...", 116},
    // Tools for graphics
    {"cmdNewShapefile", "Tessarine_MakeShapefile", "&Graphic Elements to Shapes", "Create New Shapefile",
     "Create new shapefile, either empty or by converting graphics...", 101},
    {"clsSelGraphics", "Tessarine_SelectGraphics", "Select Graphic Elements by &Type",
     "Select Graphic Elements by Type", "Select Graphics by Type or Name...", 106},
    {"clsSelAllElements", "Tessarine_SelectAllGraphics", "Select All Graphic &Elements",
     "Select All Graphic Elements", "Select All Graphic Elements...", 103},
    {"clsUnselElements", "Tessarine_UnselectAllGraphics", "&Unselect All Graphic Elements",
     "Unselect All Graphic Elements", "Unselect All Graphic Elements...", 104},
    {"clsFlipGraphicSel", "Tessarine_FlipSelection", "&Flip Graphic Element Selection",
     "Flip Graphic Element Selection", "Flip Graphic Element Selection...", 107},
    {"clsZoomToSelected", "Tessarine_ZoomSelGraphics", "&Zoom to Selected Graphic Elements",
     "Zoom to Selected Graphic Elements", "Zoom to Selected Graphic Elements...", 105},
    {"clsNameGraphics", "Tessarine_NameGraphics", "&Name Graphic Elements", "Name Graphic Elements",
     "Name Graphic Elements...", 108},
    // Planetary tools
    {"OGraphicToOCentric", "Tessarine_OGraphic_OCentric", "O&Graphic to OCentric", "",
     "Convert a Planetographic (Geographic) Feature Class to a Planetocentric (Geocentric) Feature Class...", 123},
    {"OCentricToOGraphic", "Tessarine_OCentric_OGraphic", "O&Centric to OGraphic", "",
     "Convert a Planetocentric (Geocentric) Feature Class to a Planetographic (Geographic) Feature Class...", 122},
    {"clsWrapBoundary", "Tessarine_WrapBoundary", "&Wrap Boundary", "",
     "Wrap a feature class around a particular range of longitude and latitude values...", 124},
    // About
    {"cmdAbout", "Tessarine_About", "About Tools for Tessarine Tools", "About Tools for Tessarine Tools",
     "About Tools for Tessarine Tools, and Manual", 120},
}};

} // namespace

std::span<const CommandInfo> AllCommands() { return kCommands; }

const CommandInfo& CommandInfoOf(std::string_view className) {
    for (const CommandInfo& info : kCommands)
        if (info.ClassName == className)
            return info;
    throw Fault(fault::InvalidCall, "CommandTable", "No command class " + std::string(className));
}

std::string CaptionText(std::string_view caption) {
    std::string text;
    for (char c : caption)
        if (c != '&')
            text += c;
    return text;
}

} // namespace tess
