#pragma once
// The workspace factories of the platform, and the choice of one by path.

#include <memory>
#include <string>

#include "platform/data/Workspace.h"

namespace tess {

//! The kinds of workspace this platform reads.
enum class WorkspaceKind {
    ShapefileFolder,     //!< a folder of shapefiles and dBASE tables
    FileGeodatabase,     //!< a folder whose name ends in ".gdb"
    PersonalGeodatabase, //!< ".mdb", read-only, and only where an MDB driver for ODBC is installed
    GeoPackage,          //!< ".gpkg": one file holding tables and feature classes
    VectorFile,          //!< any other file of vector data the storage engine reads (GeoJSON,
                         //!< FlatGeobuf, KML, GML, CSV with geometry...): input only, its layers as classes
};

//! The factory of one kind of workspace. The kinds differ only in how their paths look, whether
//! they can be written and what they are called; the host's names for them are the classes below.
class WorkspaceFactory : public IWorkspaceFactory2 {
public:
    explicit WorkspaceFactory(WorkspaceKind kind) : kind_(kind) {}
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    //! Creating a workspace of a kind that cannot be written is a Fault saying so.
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override;
    WorkspaceKind Kind() const { return kind_; }

private:
    WorkspaceKind kind_;
};

class ShapefileWorkspaceFactory final : public WorkspaceFactory {
public:
    ShapefileWorkspaceFactory() : WorkspaceFactory(WorkspaceKind::ShapefileFolder) {}
};
class FileGDBWorkspaceFactory final : public WorkspaceFactory {
public:
    FileGDBWorkspaceFactory() : WorkspaceFactory(WorkspaceKind::FileGeodatabase) {}
};
class AccessWorkspaceFactory final : public WorkspaceFactory {
public:
    AccessWorkspaceFactory() : WorkspaceFactory(WorkspaceKind::PersonalGeodatabase) {}
};
class GeoPackageWorkspaceFactory final : public WorkspaceFactory {
public:
    GeoPackageWorkspaceFactory() : WorkspaceFactory(WorkspaceKind::GeoPackage) {}
};
class VectorFileWorkspaceFactory final : public WorkspaceFactory {
public:
    VectorFileWorkspaceFactory() : WorkspaceFactory(WorkspaceKind::VectorFile) {}
};

//! The factory of a kind, as the class of the host's name.
std::shared_ptr<WorkspaceFactory> MakeWorkspaceFactory(WorkspaceKind kind);

//! The factory for a workspace path by its form: ".gdb" file geodatabase, ".mdb" personal
//! geodatabase, ".gpkg" GeoPackage, any other folder shapefiles, any other file of vector data
//! the engine reads a vector file workspace. Null for anything else.
std::shared_ptr<IWorkspaceFactory2> WorkspaceFactoryForPath(const std::string& path);

//! Splits a dataset path into its workspace and the dataset's name: "d/x.shp" gives "d" and "x",
//! "d/a.gdb/fd/fc" gives "d/a.gdb" and "fc", "d/p.gpkg/t" gives "d/p.gpkg" and "t". Both "/" and
//! "\" separate. False when no workspace can be told from the path.
bool SplitDatasetPath(const std::string& path, std::string& workspacePath, std::string& datasetName);

//! The feature class that a dataset path names as users write it: as SplitDatasetPath reads it,
//! "d/roads.geojson/layer", or a container alone ("d/p.gpkg", "d/roads.geojson") when it holds
//! exactly one feature class. A Fault that says what is wrong otherwise: nothing at the path, no
//! such class, or the classes to choose from.
std::shared_ptr<IFeatureClass> OpenFeatureClassAtPath(const std::string& path);

} // namespace tess
