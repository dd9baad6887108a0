#include "platform/data/detail/FeatureDatasetImpl.h"

#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess::data {

FeatureDatasetImpl::FeatureDatasetImpl(std::shared_ptr<WorkspaceImpl> ws, std::string name)
    : ws_(std::move(ws)), name_(std::move(name)) {}

std::shared_ptr<IFeatureClass> FeatureDatasetImpl::CreateFeatureClass(
    const std::string& name, const std::shared_ptr<IFields>& fields, const std::shared_ptr<IUID>&,
    const std::shared_ptr<IUID>&, esriFeatureType featureType, const std::string& shapeFieldName,
    const std::string& configKeyword) {
    return ws_->CreateClass(name, fields, featureType, shapeFieldName, configKeyword, true, name_,
                            ws_->FeatureDatasetReference(name_));
}

std::vector<std::string> FeatureDatasetImpl::ClassNames() const { return ws_->FeatureDatasetClasses(name_); }

std::string FeatureDatasetImpl::FullName() const { return ws_->PathName() + "/" + name_; }

std::string FeatureDatasetImpl::Category() const {
    return ws_->Driver() == OgrDriver::PersonalGDB ? "Personal Geodatabase Feature Dataset"
                                                   : "File Geodatabase Feature Dataset";
}

std::shared_ptr<IWorkspace> FeatureDatasetImpl::Workspace() const { return ws_; }

std::shared_ptr<IPropertySet> FeatureDatasetImpl::PropertySet() const {
    auto set = std::make_shared<tess::PropertySet>();
    set->SetProperty("DATABASE", ws_->PathName());
    return set;
}

void FeatureDatasetImpl::Delete() {
    throw DataFault(fault::InvalidCall, "tess.data",
                "The feature dataset '" + name_ + "' of '" + ws_->PathName() +
                    "' cannot be deleted on this platform; delete its feature classes instead");
}

std::shared_ptr<ISpatialReference> FeatureDatasetImpl::SpatialReference() const {
    return ws_->FeatureDatasetReference(name_);
}

std::shared_ptr<IEnvelope> FeatureDatasetImpl::Extent() const {
    auto box = std::make_shared<tess::Envelope>();
    for (const std::string& name : ClassNames()) {
        auto geo = std::dynamic_pointer_cast<IGeoDataset>(ws_->OpenFeatureClass(name));
        if (geo)
            if (auto e = geo->Extent(); e && !e->IsEmpty())
                box->Union(*e);
    }
    box->SpatialReference(SpatialReference());
    return box;
}

} // namespace tess::data
