#include "platform/data/WorkspaceFactories.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/data/Table.h"
#include "platform/data/detail/OgrAccess.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

namespace fs = std::filesystem;
using data::NormalizePath;
using data::OgrDriver;
using data::WorkspaceImpl;

constexpr const char* kSource = "tess.data";
constexpr const char* kNewPrefix = ".tess-new-"; // a workspace being made, renamed into place when complete

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
        throw DataFault(fault::NotFound, kSource, "'" + path + "' does not exist");
    throw DataFault(fault::NotFound, kSource, "'" + path + "' is not " + what);
}

std::string NewPath(const std::string& parentDirectory, const std::string& name, const std::string& suffix) {
    const std::string parent = NormalizePath(parentDirectory);
    if (!IsDir(parent))
        Missing(parent, "a folder");
    if (name.empty() || name.find_first_of("/\\") != std::string::npos)
        throw DataFault(fault::InvalidCall, kSource, "'" + name + "' cannot name a new workspace in '" + parent + "'");
    const std::string file = EndsWithNoCase(name, suffix) || suffix.empty() ? name : name + suffix;
    const std::string path = parent + "/" + file;
    std::error_code ec;
    if (fs::exists(path, ec))
        throw DataFault(fault::InvalidCall, kSource, "'" + path + "' already exists");
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
        throw DataFault(fault::DataFailed, kSource, "Cannot create '" + path + "' (" + ec.message() + ")");
    }
}

} // namespace

// ---------------------------------------------------------------- the kinds

namespace {

struct KindInfo {
    OgrDriver driver;
    const char* suffix; //!< of the workspace's name, lower case; empty for any
    const char* what;   //!< "is not ..." when a path is of another kind
    const char* singular;
    const char* plural;
};

const KindInfo& Info(WorkspaceKind kind) {
    static const KindInfo kinds[] = {
        {OgrDriver::Shapefile, "", "a folder of shapefiles", "Shapefile", "Shapefiles"},
        {OgrDriver::FileGDB, ".gdb", "a file geodatabase", "File Geodatabase", "File Geodatabases"},
        {OgrDriver::PersonalGDB, ".mdb", "a personal geodatabase", "Personal Geodatabase", "Personal Geodatabases"},
        {OgrDriver::GeoPackage, ".gpkg", "a GeoPackage", "GeoPackage", "GeoPackages"},
        {OgrDriver::Vector, "", "a file of vector data that this system reads", "Vector File", "Vector Files"},
    };
    return kinds[static_cast<std::size_t>(kind)];
}

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

std::shared_ptr<WorkspaceFactory> MakeWorkspaceFactory(WorkspaceKind kind) {
    switch (kind) {
    case WorkspaceKind::ShapefileFolder:
        return std::make_shared<ShapefileWorkspaceFactory>();
    case WorkspaceKind::FileGeodatabase:
        return std::make_shared<FileGDBWorkspaceFactory>();
    case WorkspaceKind::PersonalGeodatabase:
        return std::make_shared<AccessWorkspaceFactory>();
    case WorkspaceKind::GeoPackage:
        return std::make_shared<GeoPackageWorkspaceFactory>();
    case WorkspaceKind::VectorFile:
        return std::make_shared<VectorFileWorkspaceFactory>();
    }
    return nullptr;
}

std::shared_ptr<IWorkspace> WorkspaceFactory::OpenFromFile(const std::string& path, std::intptr_t) {
    const std::string p = NormalizePath(path);
    const KindInfo& info = Info(kind_);
    if (!IsWorkspace(p))
        Missing(p, info.what);
    return WorkspaceImpl::Open(p, info.driver, MakeWorkspaceFactory(kind_));
}

bool WorkspaceFactory::IsWorkspace(const std::string& path) const {
    const std::string p = NormalizePath(path);
    switch (kind_) {
    case WorkspaceKind::ShapefileFolder:
        return IsDir(p) && !EndsWithNoCase(p, ".gdb");
    case WorkspaceKind::FileGeodatabase:
        return IsDir(p) && EndsWithNoCase(p, ".gdb");
    case WorkspaceKind::PersonalGeodatabase:
    case WorkspaceKind::GeoPackage:
        return IsFile(p) && EndsWithNoCase(p, Info(kind_).suffix);
    case WorkspaceKind::VectorFile:
        return IsVectorFile(p);
    }
    return false;
}

bool WorkspaceFactory::ContainsWorkspace(const std::string& parentDirectory) const {
    switch (kind_) {
    case WorkspaceKind::ShapefileFolder:
        return IsWorkspace(parentDirectory);
    case WorkspaceKind::FileGeodatabase:
        return IsWorkspace(parentDirectory) || AnyChild(parentDirectory, ".gdb", true);
    case WorkspaceKind::PersonalGeodatabase:
    case WorkspaceKind::GeoPackage:
        return AnyChild(parentDirectory, Info(kind_).suffix, false);
    case WorkspaceKind::VectorFile: {
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(NormalizePath(parentDirectory), ec))
            if (IsVectorFile(entry.path().string()))
                return true;
        return false;
    }
    }
    return false;
}

std::shared_ptr<IWorkspace> WorkspaceFactory::Create(const std::string& parentDirectory, const std::string& name) {
    switch (kind_) {
    case WorkspaceKind::ShapefileFolder: {
        const std::string path = NewPath(parentDirectory, name, "");
        std::error_code ec;
        fs::create_directory(path, ec);
        if (ec)
            throw DataFault(fault::DataFailed, kSource, "Cannot create '" + path + "' (" + ec.message() + ")");
        return OpenFromFile(path, 0);
    }
    case WorkspaceKind::FileGeodatabase:
    case WorkspaceKind::GeoPackage: {
        const std::string path = NewPath(parentDirectory, name, Info(kind_).suffix);
        CreateAtomically(path, Info(kind_).driver);
        return OpenFromFile(path, 0);
    }
    case WorkspaceKind::PersonalGeodatabase:
        throw DataFault(fault::InvalidCall, kSource,
                    "Personal geodatabases are read-only on this platform: '" + name + "' cannot be created in '" +
                        NormalizePath(parentDirectory) + "'");
    case WorkspaceKind::VectorFile:
        break;
    }
    throw DataFault(fault::InvalidCall, kSource,
                "'" + name + "' cannot be created in '" + NormalizePath(parentDirectory) +
                    "': files of this kind are read as input only; write shapefiles, file geodatabases or "
                    "GeoPackages");
}

std::string WorkspaceFactory::WorkspaceDescription(bool plural) const {
    return plural ? Info(kind_).plural : Info(kind_).singular;
}

bool WorkspaceFactory::CanWrite() const {
    return kind_ != WorkspaceKind::PersonalGeodatabase && kind_ != WorkspaceKind::VectorFile;
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
        throw DataFault(fault::NotFound, kSource,
                    "'" + path + "' names no dataset (write a.shp, file.gdb/Class, file.gpkg/Layer or a file of "
                    "vector data)");
    }
    const std::string where = workspacePath.empty() ? std::string(".") : workspacePath;
    if (!fs::exists(NormalizePath(where)))
        throw DataFault(fault::NotFound, kSource, "'" + where + "' does not exist");
    auto factory = WorkspaceFactoryForPath(where);
    if (!factory)
        throw DataFault(fault::NotFound, kSource, "'" + where + "' holds no data that this system reads");
    auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(factory->OpenFromFile(where, 0));
    if (!workspace)
        throw DataFault(fault::NotFound, kSource, "'" + where + "' holds no feature classes");
    if (name.empty()) {
        const std::vector<std::string> classes =
            std::dynamic_pointer_cast<IWorkspace>(workspace)->DatasetNames(esriDTFeatureClass);
        if (classes.size() != 1) {
            std::string list;
            for (const std::string& c : classes)
                list += (list.empty() ? "" : ", ") + c;
            throw DataFault(fault::NotFound, kSource,
                        classes.empty() ? "'" + where + "' holds no feature classes"
                                        : "'" + where + "' holds several feature classes; name one as " + where +
                                              "/NAME: " + list);
        }
        name = classes.front();
    }
    return workspace->OpenFeatureClass(name);
}

} // namespace tess
