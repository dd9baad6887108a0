#pragma once
// Internal: one object implements interfaces whose members share a name and
// arguments but not a result (IWorkspace.Type and IDataset.Type, ITable.Search
// and IFeatureClass.Search). Each facet gives the final override of one
// interface's member and forwards it under a name of its own.

#include <memory>

#include "platform/data/Dataset.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"

namespace tess::data {

class WorkspaceTypeFacet : public IWorkspace {
public:
    esriWorkspaceType Type() const final { return WorkspaceType(); }

protected:
    virtual esriWorkspaceType WorkspaceType() const = 0;
};

class DatasetTypeFacet : public IDataset {
public:
    esriDatasetType Type() const final { return DatasetType(); }

protected:
    virtual esriDatasetType DatasetType() const = 0;
};

class FeatureClassFacet : public virtual IFeatureClass {
public:
    std::shared_ptr<IFeatureCursor> Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) final {
        return SearchFeatures(filter, recycling);
    }
    std::shared_ptr<IFeatureCursor> Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) final {
        return UpdateFeatures(filter, recycling);
    }
    std::shared_ptr<IFeatureCursor> Insert(bool useBuffering) final { return InsertFeatures(useBuffering); }
    std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter, esriSelectionType type,
                                          esriSelectionOption option,
                                          const std::shared_ptr<IWorkspace>& selectionContainer) final {
        return SelectFeatures(filter, type, option, selectionContainer);
    }

protected:
    virtual std::shared_ptr<IFeatureCursor> SearchFeatures(const std::shared_ptr<IQueryFilter>& filter,
                                                           bool recycling) = 0;
    virtual std::shared_ptr<IFeatureCursor> UpdateFeatures(const std::shared_ptr<IQueryFilter>& filter,
                                                           bool recycling) = 0;
    virtual std::shared_ptr<IFeatureCursor> InsertFeatures(bool useBuffering) = 0;
    virtual std::shared_ptr<ISelectionSet> SelectFeatures(const std::shared_ptr<IQueryFilter>& filter,
                                                          esriSelectionType type, esriSelectionOption option,
                                                          const std::shared_ptr<IWorkspace>& selectionContainer) = 0;
};

} // namespace tess::data
