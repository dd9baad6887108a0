#include "platform/carto/FeatureLayer.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "platform/carto/SimpleRenderer.h"
#include "platform/carto/Symbols.h"
#include "platform/carto/detail/DataSources.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Workspace.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "FeatureLayer";

std::shared_ptr<ISymbol> DefaultSymbol(esriGeometryType shapeType) {
    switch (shapeType) {
    case esriGeometryPoint:
    case esriGeometryMultipoint:
        return std::make_shared<SimpleMarkerSymbol>();
    case esriGeometryPolyline:
        return std::make_shared<SimpleLineSymbol>();
    case esriGeometryPolygon:
        return std::make_shared<SimpleFillSymbol>();
    default:
        return nullptr;
    }
}

//! The same stored table: the same object, or the same dataset by full name.
bool SameTable(const std::shared_ptr<ITable>& a, const std::shared_ptr<ITable>& b) {
    if (!a || !b)
        return false;
    if (a == b)
        return true;
    auto* da = dynamic_cast<const IDataset*>(a.get());
    auto* db = dynamic_cast<const IDataset*>(b.get());
    return da && db && da->FullName() == db->FullName();
}

} // namespace

//! The layer's record of one field, by name, so that it outlives a change of the class.
class FeatureLayer::Info final : public IFieldInfo {
public:
    explicit Info(std::string fieldName) : fieldName_(std::move(fieldName)) {}

    std::string Alias() const override {
        if (alias_)
            return *alias_;
        return field_ ? field_->AliasName() : fieldName_;
    }
    void Alias(const std::string& alias) override { alias_ = alias; }
    bool Visible() const override { return visible_; }
    void Visible(bool visible) override { visible_ = visible; }

    void Bind(std::shared_ptr<IField> field) { field_ = std::move(field); }
    const std::string& FieldName() const { return fieldName_; }
    bool Changed() const { return alias_.has_value() || !visible_; }
    const std::optional<std::string>& OwnAlias() const { return alias_; }

private:
    std::string fieldName_;
    std::optional<std::string> alias_;
    bool visible_ = true;
    std::shared_ptr<IField> field_;
};

FeatureLayer::FeatureLayer() = default;
FeatureLayer::~FeatureLayer() = default;

void FeatureLayer::FeatureClass(const std::shared_ptr<IFeatureClass>& featureClass) {
    kept_ = {};
    asked_ = {};
    if (!featureClass) {
        featureClass_.reset();
        hold_.Release();
        selection_.reset();
        return;
    }
    if (auto* dataset = dynamic_cast<const IDataset*>(featureClass.get()))
        source_ = detail::DescribeDataset(*dataset);
    if (name_.empty())
        name_ = featureClass->AliasName();
    Attach(featureClass);
}

void FeatureLayer::Attach(const std::shared_ptr<IFeatureClass>& featureClass) {
    featureClass_ = featureClass;
    selection_.reset();
    hold_.Release();
    if (auto* dataset = dynamic_cast<const IDataset*>(featureClass.get())) {
        source_.sourceType = dataset->Category();
        hold_ = HoldDataset(*dataset, [this] { return "the layer '" + name_ + "' of the map"; });
    }
    if (!renderer_) {
        auto renderer = std::make_shared<SimpleRenderer>();
        renderer->Symbol(DefaultSymbol(featureClass->ShapeType()));
        renderer_ = renderer;
    }
}

std::string FeatureLayer::DataSourceType() const {
    if (auto* dataset = dynamic_cast<const IDataset*>(featureClass_.get()))
        return dataset->Category();
    return source_.sourceType;
}

// Selection

std::shared_ptr<ISelectionSet> FeatureLayer::SelectionSet() const {
    if (!selection_ && featureClass_) {
        if (auto table = std::dynamic_pointer_cast<ITable>(featureClass_))
            selection_ = MakeSelectionSet(table);
    }
    return selection_;
}

void FeatureLayer::SelectionSet(const std::shared_ptr<ISelectionSet>& selection) {
    if (!selection) {
        Clear();
        return;
    }
    if (!SameTable(selection->Target(), std::dynamic_pointer_cast<ITable>(featureClass_)))
        throw Fault(fault::InvalidCall, kSource,
                    "The selection of the layer '" + name_ + "' must be a set over its own feature class");
    selection_ = selection;
}

void FeatureLayer::SelectFeatures(const std::shared_ptr<IQueryFilter>& filter, esriSelectionResultEnum method,
                                  bool justOne) {
    if (!featureClass_)
        throw Fault(fault::ObjectNotSet, kSource, "The layer '" + name_ + "' has no data to select from");
    auto found = featureClass_->Select(filter, esriSelectionTypeIDSet,
                                       justOne ? esriSelectionOptionOnlyOne : esriSelectionOptionNormal, nullptr);
    if (method == esriSelectionResultNew) {
        selection_ = found;
        return;
    }
    esriSetOperation operation = esriSetUnion;
    switch (method) {
    case esriSelectionResultAdd:
        operation = esriSetUnion;
        break;
    case esriSelectionResultSubtract:
        operation = esriSetDifference;
        break;
    case esriSelectionResultAnd:
        operation = esriSetIntersection;
        break;
    case esriSelectionResultXOR:
        operation = esriSetSymDifference;
        break;
    default:
        throw Fault(fault::InvalidCall, kSource, "Unknown selection method " + std::to_string(method));
    }
    std::shared_ptr<ISelectionSet> combined;
    SelectionSet()->Combine(found, operation, combined);
    selection_ = combined;
}

void FeatureLayer::Clear() {
    selection_.reset(); // an empty set is made when next asked for
}

void FeatureLayer::Kept(const KeptSelection& selection) {
    kept_ = selection;
    if (featureClass_)
        ApplyKept();
}

void FeatureLayer::ApplyKept() {
    if (kept_.Empty())
        return;
    asked_ = kept_;
    if (!kept_.whereClause.empty()) {
        auto filter = std::make_shared<QueryFilter>();
        filter->WhereClause(kept_.whereClause);
        try {
            SelectFeatures(filter, esriSelectionResultNew, false);
        } catch (const Fault&) {
            // A condition the data cannot answer selects nothing and stays to be saved back.
            selection_.reset();
            return;
        }
    } else {
        Clear();
        SelectionSet()->AddList(kept_.oids);
    }
    kept_ = {};
}

// Fields

std::int32_t FeatureLayer::FieldCount() const {
    return featureClass_ ? featureClass_->Fields()->FieldCount() : 0;
}

std::shared_ptr<IField> FeatureLayer::Field(std::int32_t index) const {
    if (index < 0 || index >= FieldCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Field " + std::to_string(index) + " of the layer '" + name_ + "' with " +
                        std::to_string(FieldCount()) + " fields");
    return featureClass_->Fields()->Field(index);
}

std::shared_ptr<FeatureLayer::Info> FeatureLayer::InfoFor(const std::string& fieldName) const {
    auto& info = infos_[Lower(fieldName)];
    if (!info)
        info = std::make_shared<Info>(fieldName);
    return info;
}

std::shared_ptr<IFieldInfo> FeatureLayer::FieldInfo(std::int32_t index) const {
    auto field = Field(index);
    auto info = InfoFor(field->Name());
    info->Bind(field);
    return info;
}

std::int32_t FeatureLayer::FindField(const std::string& name) const {
    if (!featureClass_)
        return -1;
    const std::int32_t index = featureClass_->Fields()->FindField(name);
    if (index < 0)
        return -1;
    auto it = infos_.find(Lower(featureClass_->Fields()->Field(index)->Name()));
    if (it != infos_.end() && !it->second->Visible())
        return -1;
    return index;
}

std::vector<FieldDisplay> FeatureLayer::FieldDisplays() const {
    std::vector<FieldDisplay> displays;
    for (const auto& [key, info] : infos_) {
        if (!info->Changed())
            continue;
        displays.push_back({info->FieldName(), info->OwnAlias().value_or(""), info->Visible()});
    }
    return displays;
}

void FeatureLayer::FieldDisplays(const std::vector<FieldDisplay>& displays) {
    for (const auto& display : displays) {
        auto info = InfoFor(display.fieldName);
        if (!display.alias.empty())
            info->Alias(display.alias);
        info->Visible(display.visible);
    }
}

// Geography

std::shared_ptr<ISpatialReference> FeatureLayer::SpatialReference() const {
    auto* geo = dynamic_cast<const IGeoDataset*>(featureClass_.get());
    return geo ? geo->SpatialReference() : nullptr;
}

std::shared_ptr<IEnvelope> FeatureLayer::Extent() const {
    auto* geo = dynamic_cast<const IGeoDataset*>(featureClass_.get());
    return geo ? geo->Extent() : nullptr;
}

// Data source

void FeatureLayer::DataSource(const DataSourceInfo& source) {
    source_ = source;
    featureClass_.reset();
    hold_.Release();
    selection_.reset();
}

bool FeatureLayer::Connect(const std::string& resolveFrom) {
    auto workspace = detail::TryOpenWorkspace(detail::ResolveWorkspacePath(source_.workspacePath, resolveFrom));
    if (!workspace || source_.datasetName.empty())
        return false;
    std::shared_ptr<IFeatureClass> featureClass;
    try {
        featureClass = workspace->OpenFeatureClass(source_.datasetName);
    } catch (const Fault&) {
        return false;
    }
    if (!featureClass)
        return false;
    Attach(featureClass);
    ApplyKept();
    return true;
}

} // namespace tess
