#pragma once
// Workspaces (a folder of shapefiles, a file geodatabase, a personal geodatabase,
// a GeoPackage), what they hold, edit sessions, and their factories.
//
// Writes never damage a dataset: changes to a shapefile or a file geodatabase are made on
// copies of the files concerned and swapped in by renames under a small journal when the
// last cursor of the change is released (or at StopEditing), and GeoPackages write inside
// transactions. A process killed at any point leaves the old or the new data; the next open
// of the workspace completes or rolls back an interrupted swap.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/data/DataTypes.h"

namespace tess {

class IFields;
class IFeatureClass;
class ITable;
class IFeatureDataset;
class ISpatialReference;
class IUID;
class IWorkspaceFactory;

class IWorkspace {
public:
    virtual ~IWorkspace() = default;
    //! The folder, .gdb folder, .mdb or .gpkg file, with "/" separators and no trailing one.
    virtual std::string PathName() const = 0;
    virtual esriWorkspaceType Type() const = 0;
    virtual std::shared_ptr<IWorkspaceFactory> WorkspaceFactory() const = 0;
    virtual bool IsDirectory() const = 0;
    //! Names of the datasets of one type (esriDTFeatureClass, esriDTTable, esriDTFeatureDataset,
    //! esriDTAny), stand-alone ones and those inside feature datasets.
    virtual std::vector<std::string> DatasetNames(esriDatasetType type) const = 0;
};

class IFeatureWorkspace {
public:
    virtual ~IFeatureWorkspace() = default;
    //! Any table, feature classes included. A NotFound Fault naming it when absent.
    virtual std::shared_ptr<ITable> OpenTable(const std::string& name) = 0;
    //! A NotFound Fault naming it when absent or not a feature class.
    virtual std::shared_ptr<IFeatureClass> OpenFeatureClass(const std::string& name) = 0;
    //! The fields must hold one geometry field (its definition gives the shape type and reference);
    //! an object-ID field, if given, names the OID column of a geodatabase (a shapefile always has
    //! "FID"). clsid and extclsid may be null; featureType esriFTSimple is what is stored.
    virtual std::shared_ptr<IFeatureClass> CreateFeatureClass(const std::string& name,
                                                              const std::shared_ptr<IFields>& fields,
                                                              const std::shared_ptr<IUID>& clsid,
                                                              const std::shared_ptr<IUID>& extclsid,
                                                              esriFeatureType featureType,
                                                              const std::string& shapeFieldName,
                                                              const std::string& configKeyword) = 0;
    //! A table without shapes (a dBASE file in a shapefile folder).
    virtual std::shared_ptr<ITable> CreateTable(const std::string& name, const std::shared_ptr<IFields>& fields,
                                                const std::shared_ptr<IUID>& clsid,
                                                const std::shared_ptr<IUID>& extclsid,
                                                const std::string& configKeyword) = 0;
    virtual std::shared_ptr<IFeatureDataset> OpenFeatureDataset(const std::string& name) = 0;
    //! Only file geodatabases hold feature datasets: an InvalidCall Fault in shapefile folders
    //! and GeoPackages.
    virtual std::shared_ptr<IFeatureDataset> CreateFeatureDataset(const std::string& name,
                                                                  const std::shared_ptr<ISpatialReference>& sr) = 0;
};

//! Edit sessions. Outside a session every cursor's changes are saved when the cursor is
//! released; inside one, all changes wait for StopEditing(true) and StopEditing(false) drops them.
class IWorkspaceEdit {
public:
    virtual ~IWorkspaceEdit() = default;
    virtual void StartEditing(bool withUndoRedo) = 0;
    //! Saves or drops every change since StartEditing. A Fault naming the workspace when saving fails
    //! (the data on disk is then as before StartEditing).
    virtual void StopEditing(bool saveEdits) = 0;
    virtual bool IsBeingEdited() const = 0;
    //! Operations group changes for the host's undo; this platform keeps no undo, so they only mark.
    virtual void StartEditOperation() = 0;
    virtual void StopEditOperation() = 0;
    virtual void AbortEditOperation() = 0;
    virtual bool HasEdits() const = 0;
};

class IWorkspaceFactory {
public:
    virtual ~IWorkspaceFactory() = default;
    //! Opens the workspace at path (the window argument of the host is ignored). The same path gives
    //! the same workspace object while it is in use. A Fault naming the path when it is missing or
    //! not a workspace of this kind.
    virtual std::shared_ptr<IWorkspace> OpenFromFile(const std::string& path, std::intptr_t window) = 0;
    virtual bool IsWorkspace(const std::string& path) const = 0;
    //! Whether the folder is, or directly holds, a workspace of this kind.
    virtual bool ContainsWorkspace(const std::string& parentDirectory) const = 0;
    //! Creates a new, empty workspace (folder, .gdb or .gpkg) and opens it. A Fault when the name is taken.
    virtual std::shared_ptr<IWorkspace> Create(const std::string& parentDirectory, const std::string& name) = 0;
    //! "Shapefiles", "File Geodatabase"...
    virtual std::string WorkspaceDescription(bool plural) const = 0;
};

class IWorkspaceFactory2 : public IWorkspaceFactory {
public:
    //! Whether this platform can write workspaces of this kind.
    virtual bool CanWrite() const = 0;
};

} // namespace tess
