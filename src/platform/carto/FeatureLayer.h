#pragma once
// A layer of a feature class: its name and visibility, where its data lives,
// the selected features, how it shows its fields, and how it draws.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/carto/Layers.h"
#include "platform/data/DatasetUse.h"
#include "platform/data/Table.h" // IGeoDataset

namespace tess {

//! A selection kept for a layer whose data is missing: the object IDs, or a where clause.
//! It is applied when the data is connected, and saved back as it came while it is not.
struct KeptSelection {
    std::vector<std::int32_t> oids;
    std::string whereClause; //!< used when not empty, instead of oids
    bool Empty() const { return oids.empty() && whereClause.empty(); }
    friend bool operator==(const KeptSelection&, const KeptSelection&) = default;
};

//! A field's alias and visibility as a layer keeps them, by field name.
struct FieldDisplay {
    std::string fieldName;
    std::string alias; //!< empty: the field's own alias name
    bool visible = true;
    friend bool operator==(const FieldDisplay&, const FieldDisplay&) = default;
};

//! A new layer is visible, selectable, without data (not Valid) and with an empty name.
class FeatureLayer final : public IGeoFeatureLayer,
                           public IFeatureSelection,
                           public ILayerFields,
                           public IGeoDataset,
                           public IDataLayer {
public:
    FeatureLayer();
    ~FeatureLayer() override;

    // ILayer
    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    bool Valid() const override { return featureClass_ != nullptr; }
    bool Visible() const override { return visible_; }
    void Visible(bool visible) override { visible_ = visible; }

    // IFeatureLayer
    std::shared_ptr<IFeatureClass> FeatureClass() const override { return featureClass_; }
    //! Also names a layer that has no name yet after the class's alias name, and gives a layer
    //! without renderer a simple renderer with a default symbol for the shape type.
    void FeatureClass(const std::shared_ptr<IFeatureClass>& featureClass) override;
    std::string DataSourceType() const override;
    bool Selectable() const override { return selectable_; }
    void Selectable(bool selectable) override { selectable_ = selectable; }

    // IGeoFeatureLayer
    std::shared_ptr<IFeatureRenderer> Renderer() const override { return renderer_; }
    void Renderer(const std::shared_ptr<IFeatureRenderer>& renderer) override { renderer_ = renderer; }

    // IFeatureSelection
    std::shared_ptr<ISelectionSet> SelectionSet() const override;
    void SelectionSet(const std::shared_ptr<ISelectionSet>& selection) override;
    void SelectFeatures(const std::shared_ptr<IQueryFilter>& filter, esriSelectionResultEnum method,
                        bool justOne) override;
    void Clear() override;

    // ILayerFields
    std::int32_t FieldCount() const override;
    std::shared_ptr<IField> Field(std::int32_t index) const override;
    std::shared_ptr<IFieldInfo> FieldInfo(std::int32_t index) const override;
    std::int32_t FindField(const std::string& name) const override;

    // IGeoDataset: the class's; null while the layer has no data.
    std::shared_ptr<ISpatialReference> SpatialReference() const override;
    std::shared_ptr<IEnvelope> Extent() const override;

    // IDataLayer
    DataSourceInfo DataSource() const override { return source_; }
    void DataSource(const DataSourceInfo& source) override;
    //! Opens the class named by DataSource; applies a kept selection on success.
    bool Connect(const std::string& resolveFrom) override;

    //! The selection waiting for the data (see KeptSelection). Setting it on a valid layer applies it.
    const KeptSelection& Kept() const { return kept_; }
    void Kept(const KeptSelection& selection);
    //! The kept selection that was applied when the data came (a document's), so that a host can
    //! tell a selection that came out empty from none asked for; empty once other data is set.
    const KeptSelection& SelectionAsked() const { return asked_; }
    //! The fields whose alias or visibility the layer changed, in field-name order.
    std::vector<FieldDisplay> FieldDisplays() const;
    void FieldDisplays(const std::vector<FieldDisplay>& displays);

private:
    class Info;
    std::shared_ptr<Info> InfoFor(const std::string& fieldName) const;
    void ApplyKept();
    void Attach(const std::shared_ptr<IFeatureClass>& featureClass);

    std::string name_;
    bool visible_ = true;
    bool selectable_ = true;
    std::shared_ptr<IFeatureClass> featureClass_;
    DatasetHold hold_; //!< what the layer shows cannot be deleted under it
    std::shared_ptr<IFeatureRenderer> renderer_;
    mutable std::shared_ptr<ISelectionSet> selection_;
    DataSourceInfo source_;
    KeptSelection kept_;
    KeptSelection asked_;
    mutable std::map<std::string, std::shared_ptr<Info>> infos_; // by lower-case field name
};

} // namespace tess
