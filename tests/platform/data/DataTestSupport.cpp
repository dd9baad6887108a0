#include "DataTestSupport.h"

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>

#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometries.h"

namespace tess::test {

TempDir::TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/tess-data-XXXXXX";
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a temporary folder");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ec;
    // Read-only folders made by a test must become writable again to be removed.
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path_, ec))
        std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(path_, ec);
}

std::string FormatName(Format format) {
    switch (format) {
    case Format::Shapefile:
        return "Shapefile";
    case Format::FileGDB:
        return "FileGDB";
    case Format::GeoPackage:
        return "GeoPackage";
    }
    return {};
}

std::shared_ptr<IWorkspace> MakeWorkspace(Format format, const TempDir& dir) {
    switch (format) {
    case Format::Shapefile:
        return ShapefileWorkspaceFactory().Create(dir.Path(), "shapes");
    case Format::FileGDB:
        return FileGDBWorkspaceFactory().Create(dir.Path(), "data.gdb");
    case Format::GeoPackage:
        return GeoPackageWorkspaceFactory().Create(dir.Path(), "data.gpkg");
    }
    return nullptr;
}

std::shared_ptr<IField> MakeField(const std::string& name, esriFieldType type, std::int32_t length,
                                  std::int32_t precision, std::int32_t scale) {
    auto f = std::make_shared<Field>();
    f->Name(name);
    f->Type(type);
    f->Length(length);
    f->Precision(precision);
    f->Scale(scale);
    return f;
}

std::shared_ptr<IFields> ClassFields(esriGeometryType type, const std::shared_ptr<ISpatialReference>& sr,
                                     const std::vector<std::shared_ptr<IField>>& extra) {
    auto fields = std::make_shared<Fields>();
    fields->AddField(MakeField("OBJECTID", esriFieldTypeOID));
    auto def = std::make_shared<GeometryDef>();
    def->GeometryType(type);
    def->SpatialReference(sr);
    auto shape = std::make_shared<Field>();
    shape->Name("Shape");
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(def);
    fields->AddField(shape);
    for (const auto& f : extra)
        fields->AddField(f);
    return fields;
}

std::shared_ptr<IFeatureClass> CreateClass(IWorkspace& ws, const std::string& name, esriGeometryType type,
                                           const std::shared_ptr<ISpatialReference>& sr,
                                           const std::vector<std::shared_ptr<IField>>& extra) {
    return CreateClass(dynamic_cast<IFeatureWorkspace&>(ws), name, type, sr, extra);
}

std::shared_ptr<IFeatureClass> CreateClass(IFeatureWorkspace& ws, const std::string& name, esriGeometryType type,
                                           const std::shared_ptr<ISpatialReference>& sr,
                                           const std::vector<std::shared_ptr<IField>>& extra) {
    return ws.CreateFeatureClass(name, ClassFields(type, sr, extra), nullptr, nullptr, esriFTSimple, "Shape", "");
}

std::shared_ptr<Point> MakePoint(double x, double y) { return std::make_shared<Point>(x, y); }

std::shared_ptr<Polygon> MakePolygon(const Rings& rings) {
    auto polygon = std::make_shared<Polygon>();
    for (const auto& r : rings) {
        auto ring = std::make_shared<Ring>();
        ring->AddWKSPoints(static_cast<std::int32_t>(r.size()), r.data());
        polygon->AddPart(ring);
    }
    return polygon;
}

std::shared_ptr<Polyline> MakePolyline(const Rings& paths) {
    auto line = std::make_shared<Polyline>();
    for (const auto& p : paths) {
        auto path = std::make_shared<Path>();
        path->AddWKSPoints(static_cast<std::int32_t>(p.size()), p.data());
        line->AddPart(path);
    }
    return line;
}

Rings PartsOf(const IGeometry& shape) {
    Rings parts;
    if (const auto* polygon = dynamic_cast<const Polygon*>(&shape)) {
        for (std::size_t i = 0; i < polygon->PartCount(); ++i) {
            auto v = polygon->Part(i).Vertices();
            parts.emplace_back(v.begin(), v.end());
        }
    } else if (const auto* line = dynamic_cast<const Polyline*>(&shape)) {
        for (std::size_t i = 0; i < line->PartCount(); ++i) {
            auto v = line->Part(i).Vertices();
            parts.emplace_back(v.begin(), v.end());
        }
    }
    return parts;
}

std::vector<WKSPoint> Square(double x, double y, double size, bool clockwise) {
    std::vector<WKSPoint> cw = {{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}, {x, y}};
    if (!clockwise)
        return {cw.rbegin(), cw.rend()};
    return cw;
}

} // namespace tess::test
