#include "DataFixtures.h"

#include "DataTestSupport.h"

#include <array>
#include <stdexcept>
#include <cstdlib>

#include "platform/data/Cursor.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Row.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"

namespace tess::testing {

namespace fs = std::filesystem;

TempFolder::TempFolder(const std::string& tag) {
    std::string pattern = (fs::temp_directory_path() / ("tess-" + tag + "-XXXXXX")).string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a temporary folder for " + tag);
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::permissions(path_, fs::perms::owner_all, fs::perm_options::add, ignored);
    fs::remove_all(path_, ignored);
}

std::shared_ptr<IFeatureClass> MakeShapefile(const std::string& folder, const std::string& name,
                                             esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                             const std::vector<FeatureSpec>& features) {
    ShapefileWorkspaceFactory factory;
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(factory.OpenFromFile(folder, 0));
    return MakeFeatureClass(*workspace, name, type, sr, features);
}

std::shared_ptr<IFeatureClass> MakeFeatureClass(IFeatureWorkspace& workspace, const std::string& name,
                                                esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                                const std::vector<FeatureSpec>& features) {
    auto featureClass = test::CreateClass(workspace, name, type, sr,
                                          {test::MakeField("NAME", esriFieldTypeString, 20),
                                           test::MakeField("POP", esriFieldTypeInteger, 0, 9)});

    auto cursor = featureClass->Insert(true);
    auto buffer = featureClass->CreateFeatureBuffer();
    const auto nameIndex = featureClass->FindField("NAME");
    const auto popIndex = featureClass->FindField("POP");
    for (std::size_t i = 0; i < features.size(); ++i) {
        buffer->Shape(features[i].shape);
        buffer->Value(nameIndex, Variant(features[i].name));
        buffer->Value(popIndex, Variant(static_cast<std::int32_t>(i * 10)));
        cursor->InsertFeature(*buffer);
    }
    cursor->Flush();
    return featureClass;
}

std::vector<FeatureSpec> PointFeatures(int count) {
    std::vector<FeatureSpec> features;
    for (int i = 0; i < count; ++i)
        features.push_back({std::make_shared<Point>(i, i), "p" + std::to_string(i)});
    return features;
}

std::vector<FeatureSpec> SquareFeatures(int count) {
    std::vector<FeatureSpec> features;
    for (int i = 0; i < count; ++i) {
        const double x = 2.0 * i;
        // Clockwise: the host's exterior ring.
        const std::array<WKSPoint, 5> corners{{{x, 0}, {x, 1}, {x + 1, 1}, {x + 1, 0}, {x, 0}}};
        auto ring = std::make_shared<Ring>();
        ring->AddWKSPoints(static_cast<std::int32_t>(corners.size()), corners.data());
        auto polygon = std::make_shared<Polygon>();
        polygon->AddPart(ring);
        features.push_back({polygon, "a" + std::to_string(i)});
    }
    return features;
}

} // namespace tess::testing
