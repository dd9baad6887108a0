#pragma once
// The workspace factories of the platform, and the choice of one by path.

#include <memory>
#include <string>

#include "platform/data/Workspace.h"

namespace tess {

//! A folder of shapefiles and dBASE tables.
class ShapefileWorkspaceFactory final : public IWorkspaceFactory2 {
public:
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override { return true; }
};

//! A file geodatabase: a folder whose name ends in ".gdb".
class FileGDBWorkspaceFactory final : public IWorkspaceFactory2 {
public:
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override { return true; }
};

//! A personal geodatabase (".mdb"), read-only here, and only where an MDB driver for ODBC is
//! installed. Creating anything in it is a Fault saying so.
class AccessWorkspaceFactory final : public IWorkspaceFactory2 {
public:
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override { return false; }
};

//! A GeoPackage (".gpkg"): one file holding tables and feature classes.
class GeoPackageWorkspaceFactory final : public IWorkspaceFactory2 {
public:
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override { return true; }
};

//! Any other file of vector data that the storage engine reads (GeoJSON, FlatGeobuf, KML, GML,
//! CSV with geometry...): read as input, one workspace per file, its layers as feature classes.
class VectorFileWorkspaceFactory final : public IWorkspaceFactory2 {
public:
    std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) override;
    bool IsWorkspace(const std::string& path) const override;
    bool ContainsWorkspace(const std::string& parentDirectory) const override;
    std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) override;
    std::string WorkspaceDescription(bool plural) const override;
    bool CanWrite() const override { return false; }
};

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
