#pragma once
// Internal: a feature dataset of a file geodatabase.

#include <memory>
#include <string>
#include <vector>

#include "platform/data/Dataset.h"
#include "platform/data/Table.h"
#include "platform/data/detail/Facets.h"

namespace tess::data {

class WorkspaceImpl;

class FeatureDatasetImpl final : public IFeatureDataset, public DatasetTypeFacet, public IGeoDataset {
public:
    FeatureDatasetImpl(std::shared_ptr<WorkspaceImpl> ws, std::string name);

    // IFeatureDataset
    std::shared_ptr<IFeatureClass> CreateFeatureClass(const std::string& name, const std::shared_ptr<IFields>& fields,
                                                      const std::shared_ptr<IUID>& clsid,
                                                      const std::shared_ptr<IUID>& extclsid,
                                                      esriFeatureType featureType, const std::string& shapeFieldName,
                                                      const std::string& configKeyword) override;
    std::vector<std::string> ClassNames() const override;

    // IDataset
    std::string Name() const override { return name_; }
    std::string FullName() const override;
    std::string BrowseName() const override { return browseName_.empty() ? name_ : browseName_; }
    void BrowseName(const std::string& name) override { browseName_ = name; }
    std::string Category() const override;
    std::shared_ptr<IWorkspace> Workspace() const override;
    std::shared_ptr<IPropertySet> PropertySet() const override;
    bool CanDelete() const override { return false; }
    //! The engine cannot remove a feature dataset itself: an InvalidCall Fault.
    void Delete() override;

    // IGeoDataset
    std::shared_ptr<ISpatialReference> SpatialReference() const override;
    //! The union of the extents of the classes inside.
    std::shared_ptr<IEnvelope> Extent() const override;

protected:
    esriDatasetType DatasetType() const override { return esriDTFeatureDataset; }

private:
    std::shared_ptr<WorkspaceImpl> ws_;
    std::string name_;
    std::string browseName_;
};

} // namespace tess::data
