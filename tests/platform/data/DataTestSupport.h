#pragma once
// Helpers of the data tests: temporary folders, workspaces of each kind,
// field lists and shapes built from coordinates.

#include <memory>
#include <string>
#include <vector>

#include "platform/data/DataTypes.h"
#include "platform/geometry/GeometryTypes.h"

namespace tess {
class IFeatureWorkspace;
class IWorkspace;
class IField;
class IFields;
class IFeatureClass;
class ISpatialReference;
class IGeometry;
class Point;
class Polygon;
class Polyline;
} // namespace tess

namespace tess::test {

//! A fresh folder under the system's temporary folder, removed with everything in it.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& Path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

enum class Format { Shapefile, FileGDB, GeoPackage };
std::string FormatName(Format format);

//! A new, empty workspace of the format in the folder (the folder itself for shapefiles).
std::shared_ptr<IWorkspace> MakeWorkspace(Format format, const TempDir& dir);

std::shared_ptr<IField> MakeField(const std::string& name, esriFieldType type, std::int32_t length = 0,
                                  std::int32_t precision = 0, std::int32_t scale = 0);
//! An object-ID field, a geometry field "Shape" and the extra fields.
std::shared_ptr<IFields> ClassFields(esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                     const std::vector<std::shared_ptr<IField>>& extra = {});
std::shared_ptr<IFeatureClass> CreateClass(IWorkspace& ws, const std::string& name, esriGeometryType type,
                                           const std::shared_ptr<ISpatialReference>& sr,
                                           const std::vector<std::shared_ptr<IField>>& extra = {});
std::shared_ptr<IFeatureClass> CreateClass(IFeatureWorkspace& ws, const std::string& name, esriGeometryType type,
                                           const std::shared_ptr<ISpatialReference>& sr,
                                           const std::vector<std::shared_ptr<IField>>& extra = {});

using Rings = std::vector<std::vector<WKSPoint>>;
std::shared_ptr<Point> MakePoint(double x, double y);
//! Rings (or paths) as given: first vertex repeated last for rings.
std::shared_ptr<Polygon> MakePolygon(const Rings& rings);
std::shared_ptr<Polyline> MakePolyline(const Rings& paths);
//! The parts of a polyline or polygon, vertex by vertex.
Rings PartsOf(const IGeometry& shape);
//! A closed square ring, clockwise (an exterior ring) or counter-clockwise (a hole).
std::vector<WKSPoint> Square(double x, double y, double size, bool clockwise);

} // namespace tess::test
