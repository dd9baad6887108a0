#pragma once
// Identity of stored datasets (workspaces, tables, feature classes, feature
// datasets) and the feature dataset of a geodatabase.

#include <memory>
#include <string>
#include <vector>

#include "platform/data/DataTypes.h"

namespace tess {

class IWorkspace;
class IPropertySet;
class IFields;
class IFeatureClass;
class IUID;

class IDataset {
public:
    virtual ~IDataset() = default;
    virtual std::string Name() const = 0;
    //! The full path: folder/name.shp, db.gdb/dataset/class, db.gpkg/table, or the workspace path.
    virtual std::string FullName() const = 0;
    virtual std::string BrowseName() const = 0;
    virtual void BrowseName(const std::string& name) = 0;
    //! In the host's words: "Shapefile Feature Class", "File Geodatabase Feature Class",
    //! "File Geodatabase Feature Dataset", "Personal Geodatabase Feature Class", "dBASE Table"...
    virtual std::string Category() const = 0;
    virtual esriDatasetType Type() const = 0;
    virtual std::shared_ptr<IWorkspace> Workspace() const = 0;
    //! "DATABASE" (the workspace path); file geodatabase classes add "Datafile Format" (0 for the
    //! uncompressed tables this platform reads, 1 for compressed ones).
    virtual std::shared_ptr<IPropertySet> PropertySet() const = 0;
    virtual bool CanDelete() const = 0;
    //! Removes the dataset from its storage. A Fault naming it when that fails.
    virtual void Delete() = 0;
};

class IFeatureDataset {
public:
    virtual ~IFeatureDataset() = default;
    //! As IFeatureWorkspace.CreateFeatureClass; the class takes the dataset's spatial reference.
    virtual std::shared_ptr<IFeatureClass> CreateFeatureClass(const std::string& name,
                                                              const std::shared_ptr<IFields>& fields,
                                                              const std::shared_ptr<IUID>& clsid,
                                                              const std::shared_ptr<IUID>& extclsid,
                                                              esriFeatureType featureType,
                                                              const std::string& shapeFieldName,
                                                              const std::string& configKeyword) = 0;
    //! The feature classes inside, by name in storage order.
    virtual std::vector<std::string> ClassNames() const = 0;
};

} // namespace tess
