// tessarine: the headless host. Runs the toolkit's commands on map documents and
// datasets from the command line.

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string_view>

namespace {

struct MenuEntry {
    std::string_view friendlyName;
    std::string_view commandName;
    std::string_view caption;
};

// The menu as the hosts show it, sub-menu by sub-menu.
constexpr MenuEntry kShapes[] = {
    {"calculate", "Tessarine_CalcGeometry", "Calculate Geometry"},
    {"label-points", "Tessarine_PolygonToLabelPoints", "Convert Polygons to Label Points"},
    {"centroids", "Tessarine_PolygonToCentroid", "Convert Shapes to Centroids"},
    {"spherical-centroids", "Tessarine_Spherical_Centroid", "Convert Features to Spherical Centroids"},
    {"vertices", "Tessarine_ShapesToVertices", "Convert Shapes to Vertices"},
    {"to-polygons", "Tessarine_PolylineToPolygon", "Convert Polylines to Polygons"},
    {"to-polylines", "Tessarine_PolygonToPolyline", "Convert Polygons to Polylines"},
    {"build-polygons", "Tessarine_BuildPolygon", "Build Polygons from Polylines"},
    {"split", "Tessarine_SplitMultipart", "Split Multipart Features"},
    {"combine", "Tessarine_JoinFeatures", "Combine Features"},
};
constexpr MenuEntry kGeodesic[] = {
    {"ographic-to-ocentric", "Tessarine_OGraphic_OCentric", "OGraphic to OCentric"},
    {"ocentric-to-ographic", "Tessarine_OCentric_OGraphic", "OCentric to OGraphic"},
    {"wrap", "Tessarine_WrapBoundary", "Wrap Boundary"},
};
constexpr MenuEntry kGraphics[] = {
    {"graphics-to-shapes", "Tessarine_MakeShapefile", "Graphic Elements to Shapes"},
    {"graphics select-type", "Tessarine_SelectGraphics", "Select Graphic Elements by Type"},
    {"graphics select-all", "Tessarine_SelectAllGraphics", "Select All Graphic Elements"},
    {"graphics unselect", "Tessarine_UnselectAllGraphics", "Unselect All Graphic Elements"},
    {"graphics flip", "Tessarine_FlipSelection", "Flip Graphic Element Selection"},
    {"graphics zoom", "Tessarine_ZoomSelGraphics", "Zoom to Selected Graphic Elements"},
    {"graphics name", "Tessarine_NameGraphics", "Name Graphic Elements"},
};

template <std::size_t N>
void PrintGroup(const char* title, const MenuEntry (&entries)[N]) {
    std::printf("  %s\n", title);
    for (const auto& e : entries)
        std::printf("    %-22.*s %-34.*s %.*s\n", int(e.friendlyName.size()), e.friendlyName.data(),
                    int(e.commandName.size()), e.commandName.data(), int(e.caption.size()), e.caption.data());
}

void PrintCommands() {
    std::printf("Tessarine Tools\n");
    PrintGroup("Tools for Features and Shapes", kShapes);
    PrintGroup("OCentric/OGraphic Geodesic Tools", kGeodesic);
    PrintGroup("Tools for Graphics", kGraphics);
    std::printf("  About Tools for Tessarine Tools\n");
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"tessarine " TESS_VERSION " - geometry tools for GIS analysts, run headless"};
    app.set_version_flag("--version", "tessarine " TESS_VERSION);
    app.require_subcommand(0, 1);
    auto* commands = app.add_subcommand("commands", "Show the toolbar and menus as a map host shows them");
    auto* demo = app.add_subcommand("demo", "Run on the bundled demo data");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e) == 0 ? 0 : 2;
    }
    if (*commands) {
        PrintCommands();
        return 0;
    }
    if (*demo || app.get_subcommands().empty()) {
        std::printf("tessarine %s\n\n", TESS_VERSION);
        PrintCommands();
        std::printf("\nThe tools are being built; this demo grows as each lands.\n");
        return 0;
    }
    return 0;
}
