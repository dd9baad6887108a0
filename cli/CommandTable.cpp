#include "CommandTable.h"

#include "TextUtil.h"

namespace tess::cli {
namespace {

constexpr FriendlyCommand kCommands[] = {
    {"vertices", "Tessarine_ShapesToVertices", DialogKind::LayerFields},
    {"label-points", "Tessarine_PolygonToLabelPoints", DialogKind::LayerFields},
    {"centroids", "Tessarine_PolygonToCentroid", DialogKind::LayerFields},
    {"spherical-centroids", "Tessarine_Spherical_Centroid", DialogKind::LayerFields},
    {"to-polygons", "Tessarine_PolylineToPolygon", DialogKind::LayerFields},
    {"to-polylines", "Tessarine_PolygonToPolyline", DialogKind::LayerFields},
    {"split", "Tessarine_SplitMultipart", DialogKind::LayerFields},
    {"combine", "Tessarine_JoinFeatures", DialogKind::LayerFields},
    {"graphics select-all", "Tessarine_SelectAllGraphics", DialogKind::None},
    {"graphics unselect", "Tessarine_UnselectAllGraphics", DialogKind::None},
    {"graphics flip", "Tessarine_FlipSelection", DialogKind::None},
    {"graphics zoom", "Tessarine_ZoomSelGraphics", DialogKind::None},
    {"calculate", "Tessarine_CalcGeometry", DialogKind::Unsupported},
    {"build-polygons", "Tessarine_BuildPolygon", DialogKind::Unsupported},
    {"ographic-to-ocentric", "Tessarine_OGraphic_OCentric", DialogKind::Unsupported},
    {"ocentric-to-ographic", "Tessarine_OCentric_OGraphic", DialogKind::Unsupported},
    {"wrap", "Tessarine_WrapBoundary", DialogKind::Unsupported},
    {"graphics-to-shapes", "Tessarine_MakeShapefile", DialogKind::Unsupported},
    {"graphics select-type", "Tessarine_SelectGraphics", DialogKind::Unsupported},
    {"graphics name", "Tessarine_NameGraphics", DialogKind::Unsupported},
    {"about", "Tessarine_About", DialogKind::Unsupported},
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
