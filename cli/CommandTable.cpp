#include "CommandTable.h"

#include "TextUtil.h"

namespace tess::cli {
namespace {

constexpr FriendlyCommand kCommands[] = {
    {"vertices", "Tessarine_ShapesToVertices", DialogKind::LayerFields, "Convert Shapes to Vertices"},
    {"label-points", "Tessarine_PolygonToLabelPoints", DialogKind::LayerFields, "Convert Polygons to Label Points"},
    {"centroids", "Tessarine_PolygonToCentroid", DialogKind::LayerFields, "Convert Shapes to Centroids"},
    {"spherical-centroids", "Tessarine_Spherical_Centroid", DialogKind::LayerFields, "Convert Features to Spherical Centroids"},
    {"to-polygons", "Tessarine_PolylineToPolygon", DialogKind::LayerFields, "Convert Polylines to Polygons"},
    {"to-polylines", "Tessarine_PolygonToPolyline", DialogKind::LayerFields, "Convert Polygons to Polylines"},
    {"split", "Tessarine_SplitMultipart", DialogKind::LayerFields, "Split Multipart Features"},
    {"combine", "Tessarine_JoinFeatures", DialogKind::LayerFields, "Combine Features"},
    {"graphics select-all", "Tessarine_SelectAllGraphics", DialogKind::None, "Select All Graphic Elements"},
    {"graphics unselect", "Tessarine_UnselectAllGraphics", DialogKind::None, "Unselect All Graphic Elements"},
    {"graphics flip", "Tessarine_FlipSelection", DialogKind::None, "Flip Graphic Element Selection"},
    {"graphics zoom", "Tessarine_ZoomSelGraphics", DialogKind::None, "Zoom to Selected Graphic Elements"},
    {"calculate", "Tessarine_CalcGeometry", DialogKind::Calculate, "Calculate Geometry"},
    {"build-polygons", "Tessarine_BuildPolygon", DialogKind::BuildPolygons, "Build Polygons from Polylines"},
    {"ographic-to-ocentric", "Tessarine_OGraphic_OCentric", DialogKind::Planetary, "OGraphic to OCentric"},
    {"ocentric-to-ographic", "Tessarine_OCentric_OGraphic", DialogKind::Planetary, "OCentric to OGraphic"},
    {"wrap", "Tessarine_WrapBoundary", DialogKind::Planetary, "Wrap Boundary"},
    {"graphics-to-shapes", "Tessarine_MakeShapefile", DialogKind::GraphicsShapefile, "Graphic Elements to Shapes"},
    {"graphics select", "Tessarine_SelectGraphics", DialogKind::SelectGraphics, "Select Graphic Elements by Type"},
    {"graphics name", "Tessarine_NameGraphics", DialogKind::NameElements, "Name Graphic Elements"},
    {"about", "Tessarine_About", DialogKind::Unsupported, "About Tools for Tessarine Tools"},
};

} // namespace

std::span<const FriendlyCommand> FriendlyCommands() { return kCommands; }

const FriendlyCommand* FindFriendlyCommand(std::string_view name) {
    for (const FriendlyCommand& command : kCommands)
        if (EqualsNoCase(command.friendly, name) || EqualsNoCase(command.commandName, name))
            return &command;
    return nullptr;
}

} // namespace tess::cli
