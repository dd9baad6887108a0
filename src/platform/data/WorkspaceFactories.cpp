#include "platform/data/WorkspaceFactories.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/data/Table.h"
#include "platform/data/detail/OgrAccess.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {

namespace fs = std::filesystem;
using data::NormalizePath;
using data::OgrDriver;
using data::WorkspaceImpl;

constexpr const char* kSource = "tess.data";
constexpr const char* kNewPrefix = ".tess-new-"; // a workspace being made, renamed into place when complete

std::string Lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

bool EndsWithNoCase(const std::string& s, const std::string& suffix) {
    return s.size() >= suffix.size() && Lower(s.substr(s.size() - suffix.size())) == suffix;
}

bool IsDir(const std::string& p) {
    std::error_code ec;
    return fs::is_directory(p, ec);
}

bool IsFile(const std::string& p) {
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

bool AnyChild(const std::string& parent, const std::string& suffix, bool directories) {
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(NormalizePath(parent), ec)) {
        const std::string name = entry.path().filename().string();
        if (EndsWithNoCase(name, suffix) && (directories ? entry.is_directory() : entry.is_regular_file()))
            return true;
    }
    return false;
}

[[noreturn]] void Missing(const std::string& path, const std::string& what) {
    std::error_code ec;
    if (!fs::exists(path, ec))
        throw Fault(fault::NotFound, kSource, "'" + path + "' does not exist");
    throw Fault(fault::NotFound, kSource, "'" + path + "' is not " + what);
}

std::string NewPath(const std::string& parentDirectory, const std::string& name, const std::string& suffix) {
    const std::string parent = NormalizePath(parentDirectory);
    if (!IsDir(parent))
        Missing(parent, "a folder");
    if (name.empty() || name.find_first_of("/\\") != std::string::npos)
        throw Fault(fault::InvalidCall, kSource, "'" + name + "' cannot name a new workspace in '" + parent + "'");
    const std::string file = EndsWithNoCase(name, suffix) || suffix.empty() ? name : name + suffix;
    const std::string path = parent + "/" + file;
    std::error_code ec;
    if (fs::exists(path, ec))
        throw Fault(fault::InvalidCall, kSource, "'" + path + "' already exists");
    return path;
}

// Made under a hidden name and renamed into place, so that a kill leaves no half-made workspace.
void CreateAtomically(const std::string& path, OgrDriver driver) {
    const fs::path final(path);
    const std::string temp = (final.parent_path() / (kNewPrefix + final.filename().string())).string();
    std::error_code ec;
    fs::remove_all(temp, ec);
    try {
        auto ds = data::OgrDataset::Create(temp, driver);
        ds->Close();
    } catch (...) {
        fs::remove_all(temp, ec);
        throw;
    }
    fs::rename(temp, path, ec);
    if (ec) {
        fs::remove_all(temp, ec);
        throw Fault(fault::DataFailed, kSource, "Cannot create '" + path + "' (" + ec.message() + ")");
    }
}

} // namespace

// ---------------------------------------------------------------- shapefiles

std::shared_ptr<IWorkspace> ShapefileWorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    if (!IsWorkspace(p))
        Missing(p, "a folder of shapefiles");
    return WorkspaceImpl::Open(p, OgrDriver::Shapefile, std::make_shared<ShapefileWorkspaceFactory>());
}

bool ShapefileWorkspaceFactory::IsWorkspace(const std::string& path) const {
    const std::string p = NormalizePath(path);
    return IsDir(p) && !EndsWithNoCase(p, ".gdb");
}

bool ShapefileWorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    return IsWorkspace(parentDirectory);
}

std::shared_ptr<IWorkspace> ShapefileWorkspaceFactory::Create(const std::string& parentDirectory,
                                                             const std::string& name) {
    const std::string path = NewPath(parentDirectory, name, "");
    std::error_code ec;
    fs::create_directory(path, ec);
    if (ec)
        throw Fault(fault::DataFailed, kSource, "Cannot create '" + path + "' (" + ec.message() + ")");
    return OpenFromFile(path, 0);
}

std::string ShapefileWorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? "Shapefiles" : "Shapefile";
}

// ---------------------------------------------------------------- file geodatabases

std::shared_ptr<IWorkspace> FileGDBWorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    if (!IsWorkspace(p))
        Missing(p, "a file geodatabase");
    return WorkspaceImpl::Open(p, OgrDriver::FileGDB, std::make_shared<FileGDBWorkspaceFactory>());
}

bool FileGDBWorkspaceFactory::IsWorkspace(const std::string& path) const {
    const std::string p = NormalizePath(path);
    return IsDir(p) && EndsWithNoCase(p, ".gdb");
}

bool FileGDBWorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    return IsWorkspace(parentDirectory) || AnyChild(parentDirectory, ".gdb", true);
}

std::shared_ptr<IWorkspace> FileGDBWorkspaceFactory::Create(const std::string& parentDirectory,
                                                           const std::string& name) {
    const std::string path = NewPath(parentDirectory, name, ".gdb");
    CreateAtomically(path, OgrDriver::FileGDB);
    return OpenFromFile(path, 0);
}

std::string FileGDBWorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? "File Geodatabases" : "File Geodatabase";
}

// ---------------------------------------------------------------- personal geodatabases

std::shared_ptr<IWorkspace> AccessWorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    if (!IsWorkspace(p))
        Missing(p, "a personal geodatabase");
    return WorkspaceImpl::Open(p, OgrDriver::PersonalGDB, std::make_shared<AccessWorkspaceFactory>());
}

bool AccessWorkspaceFactory::IsWorkspace(const std::string& path) const {
    const std::string p = NormalizePath(path);
    return IsFile(p) && EndsWithNoCase(p, ".mdb");
}

bool AccessWorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    return AnyChild(parentDirectory, ".mdb", false);
}

std::shared_ptr<IWorkspace> AccessWorkspaceFactory::Create(const std::string& parentDirectory,
                                                          const std::string& name) {
    throw Fault(fault::InvalidCall, kSource,
                "Personal geodatabases are read-only on this platform: '" + name + "' cannot be created in '" +
                    NormalizePath(parentDirectory) + "'");
}

std::string AccessWorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? "Personal Geodatabases" : "Personal Geodatabase";
}

// ---------------------------------------------------------------- GeoPackages

std::shared_ptr<IWorkspace> GeoPackageWorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    if (!IsWorkspace(p))
        Missing(p, "a GeoPackage");
    return WorkspaceImpl::Open(p, OgrDriver::GeoPackage, std::make_shared<GeoPackageWorkspaceFactory>());
}

bool GeoPackageWorkspaceFactory::IsWorkspace(const std::string& path) const {
    const std::string p = NormalizePath(path);
    return IsFile(p) && EndsWithNoCase(p, ".gpkg");
}

bool GeoPackageWorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    return AnyChild(parentDirectory, ".gpkg", false);
}

std::shared_ptr<IWorkspace> GeoPackageWorkspaceFactory::Create(const std::string& parentDirectory,
                                                              const std::string& name) {
    const std::string path = NewPath(parentDirectory, name, ".gpkg");
    CreateAtomically(path, OgrDriver::GeoPackage);
    return OpenFromFile(path, 0);
}

std::string GeoPackageWorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? "GeoPackages" : "GeoPackage";
}

// ---------------------------------------------------------------- other vector files

namespace {

// Files that belong to the kinds above, or to a shapefile, are never vector file workspaces.
bool OwnKindOfFile(const std::string& p) {
    for (const char* ext : {".shp", ".shx", ".dbf", ".prj", ".cpg", ".gpkg", ".mdb"})
        if (EndsWithNoCase(p, ext))
            return true;
    return false;
}

bool IsVectorFile(const std::string& p) {
    return IsFile(p) && !OwnKindOfFile(p) && !data::OgrDataset::IdentifyVectorFormat(p).empty();
}

} // namespace

std::shared_ptr<IWorkspace> VectorFileWorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    if (!IsWorkspace(p))
        Missing(p, "a file of vector data that this system reads");
    return WorkspaceImpl::Open(p, OgrDriver::Vector, std::make_shared<VectorFileWorkspaceFactory>());
}

bool VectorFileWorkspaceFactory::IsWorkspace(const std::string& path) const { return IsVectorFile(NormalizePath(path)); }

bool VectorFileWorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(NormalizePath(parentDirectory), ec))
        if (IsVectorFile(entry.path().string()))
            return true;
    return false;
}

std::shared_ptr<IWorkspace> VectorFileWorkspaceFactory::Create(const std::string& parentDirectory,
                                                              const std::string& name) {
    throw Fault(fault::InvalidCall, kSource,
                "'" + name + "' cannot be created in '" + NormalizePath(parentDirectory) +
                    "': files of this kind are read as input only; write shapefiles, file geodatabases or "
                    "GeoPackages");
}

std::string VectorFileWorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? "Vector Files" : "Vector File";
}

// ---------------------------------------------------------------- by path

std::shared_ptr<IWorkspaceFactory2> WorkspaceFactoryForPath(const std::string& path) {
    std::string p = path;
    std::replace(p.begin(), p.end(), '\\', '/');
    while (p.size() > 1 && p.back() == '/')
        p.pop_back();
    if (EndsWithNoCase(p, ".gdb"))
        return std::make_shared<FileGDBWorkspaceFactory>();
    if (EndsWithNoCase(p, ".mdb"))
        return std::make_shared<AccessWorkspaceFactory>();
    if (EndsWithNoCase(p, ".gpkg"))
        return std::make_shared<GeoPackageWorkspaceFactory>();
    if (IsDir(NormalizePath(p)))
        return std::make_shared<ShapefileWorkspaceFactory>();
    if (IsVectorFile(NormalizePath(p)))
        return std::make_shared<VectorFileWorkspaceFactory>();
    return nullptr;
}

bool SplitDatasetPath(const std::string& path, std::string& workspacePath, std::string& datasetName) {
    std::string p = path;
    std::replace(p.begin(), p.end(), '\\', '/');
    while (p.size() > 1 && p.back() == '/')
        p.pop_back();
    if (p.empty())
        return false;
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= p.size(); ++i) {
        if (i == p.size() || p[i] == '/') {
            parts.push_back(p.substr(start, i - start));
            start = i + 1;
        }
    }
    auto join = [&](std::size_t count) {
        std::string out;
        for (std::size_t i = 0; i < count; ++i)
            out += (i ? "/" : "") + parts[i];
        return out.empty() && p.front() == '/' ? std::string("/") : out;
    };
    for (std::size_t i = parts.size(); i-- > 0;) {
        const std::string& part = parts[i];
        const bool container = EndsWithNoCase(part, ".gdb") || EndsWithNoCase(part, ".gpkg") ||
                               EndsWithNoCase(part, ".mdb") ||
                               (i + 1 < parts.size() && IsVectorFile(NormalizePath(join(i + 1))));
        if (container) {
            if (i + 1 >= parts.size())
                return false;
            workspacePath = join(i + 1);
            datasetName = parts.back();
            return true;
        }
    }
    std::string name = parts.back();
    if (EndsWithNoCase(name, ".shp") || EndsWithNoCase(name, ".dbf"))
        name.resize(name.size() - 4);
    if (name.empty() || parts.size() < 2)
        return false;
    workspacePath = join(parts.size() - 1);
    datasetName = name;
    return true;
}

std::shared_ptr<IFeatureClass> OpenFeatureClassAtPath(const std::string& path) {
    std::string workspacePath;
    std::string name;
    std::string container = path;
    std::replace(container.begin(), container.end(), '\\', '/');
    while (container.size() > 1 && container.back() == '/')
        container.pop_back();
    const std::string normal = NormalizePath(container);
    const bool alone = (IsFile(normal) && !OwnKindOfFile(normal)) || EndsWithNoCase(normal, ".gpkg") ||
                       EndsWithNoCase(normal, ".gdb") || EndsWithNoCase(normal, ".mdb");
    if (alone) {
        workspacePath = container;
    } else if (!SplitDatasetPath(path, workspacePath, name)) {
        throw Fault(fault::NotFound, kSource,
                    "'" + path + "' names no dataset (write a.shp, file.gdb/Class, file.gpkg/Layer or a file of "
                    "vector data)");
    }
    const std::string where = workspacePath.empty() ? std::string(".") : workspacePath;
    if (!fs::exists(NormalizePath(where)))
        throw Fault(fault::NotFound, kSource, "'" + where + "' does not exist");
    auto factory = WorkspaceFactoryForPath(where);
    if (!factory)
        throw Fault(fault::NotFound, kSource, "'" + where + "' holds no data that this system reads");
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(factory->OpenFromFile(where, 0));
    if (!workspace)
        throw Fault(fault::NotFound, kSource, "'" + where + "' holds no feature classes");
    if (name.empty()) {
        const std::vector<std::string> classes =
            std::dynamic_pointer_cast<IWorkspace>(workspace)->DatasetNames(esriDTFeatureClass);
        if (classes.size() != 1) {
            std::string list;
            for (const std::string& c : classes)
                list += (list.empty() ? "" : ", ") + c;
            throw Fault(fault::NotFound, kSource,
                        classes.empty() ? "'" + where + "' holds no feature classes"
                                        : "'" + where + "' holds several feature classes; name one as " + where +
                                              "/NAME: " + list);
        }
        name = classes.front();
    }
    return workspace->OpenFeatureClass(name);
}

} // namespace tess
