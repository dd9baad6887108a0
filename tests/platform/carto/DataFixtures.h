#pragma once
// Shapefiles made in temporary folders for the map and document tests.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/geometry/GeometryTypes.h"

namespace tess {
class IFeatureClass;
class IFeatureWorkspace;
class IGeometry;
class ISpatialReference;
} // namespace tess

namespace tess::testing {

//! A fresh folder under the system's temporary folder, removed with everything in it.
class TempFolder {
public:
    explicit TempFolder(const std::string& tag);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

//! One feature to store: its shape and the value of the text field "NAME".
struct FeatureSpec {
    std::shared_ptr<IGeometry> shape;
    std::string name;
};

//! Creates folder/name.shp with a "NAME" text field (alias-free) and a "POP" integer field
//! (each feature's index times 10), stores the features and returns the class.
std::shared_ptr<IFeatureClass> MakeShapefile(const std::string& folder, const std::string& name,
                                             esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                             const std::vector<FeatureSpec>& features);

//! The same in any workspace (a file geodatabase, a GeoPackage...).
std::shared_ptr<IFeatureClass> MakeFeatureClass(IFeatureWorkspace& workspace, const std::string& name,
                                                esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                                const std::vector<FeatureSpec>& features);

//! Points at (i, i) for i = 0..count-1, named "p0", "p1", ...
std::vector<FeatureSpec> PointFeatures(int count);
//! Unit squares with lower left corners at (2i, 0), named "a0", "a1", ...
std::vector<FeatureSpec> SquareFeatures(int count);

} // namespace tess::testing
