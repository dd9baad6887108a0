// What a cluster tolerance does to real line work, for each way it can act: regions built, their
// total area, and the time, at each tolerance given. Run by bench/build-polygons.sh.
// Usage: tess_bench_cluster_tolerance FOLDER CLASS TOLERANCE...

#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/data/Cursor.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometry.h"
#include "platform/geometry/PolygonConstruction.h"

int main(int argc, char** argv) {
    using namespace tess;
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s FOLDER CLASS TOLERANCE...\n", argv[0]);
        return 2;
    }
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(ShapefileWorkspaceFactory().OpenFromFile(argv[1], 0));
    auto lines = workspace->OpenFeatureClass(argv[2]);
    std::vector<std::shared_ptr<IGeometry>> shapes;
    auto cursor = lines->Search(nullptr, false);
    for (auto f = cursor->NextFeature(); f; f = cursor->NextFeature())
        shapes.push_back(f->ShapeCopy());
    std::printf("method\ttolerance\tregions\ttotal_area\tseconds\n");
    for (int i = 3; i < argc; ++i) {
        const double tolerance = std::stod(argv[i]);
        for (const auto& [method, name] : {std::pair{ClusterMethod::SnapVertices, "snap-vertices"},
                                           std::pair{ClusterMethod::SnapRound, "snap-round"}}) {
            if (tolerance == 0.0 && method == ClusterMethod::SnapRound)
                continue; // the same exact noding
            const auto start = std::chrono::steady_clock::now();
            const auto polygons = ConstructPolygonsFromLines(shapes, tolerance, method);
            const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            double area = 0.0;
            for (const auto& p : polygons)
                area += dynamic_cast<const IArea&>(*p).Area();
            std::printf("%s\t%g\t%zu\t%.6f\t%.3f\n", name, tolerance, polygons.size(), area, seconds);
        }
    }
    return 0;
}
