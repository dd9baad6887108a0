#pragma once
// Interfaces of layers: drawn content of a map (feature layers, group layers)
// and the stand-alone tables beside them. The concrete classes are in
// FeatureLayer.h, GroupLayer.h and StandaloneTable.h.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tess {

class IFeatureClass;
class ITable;
class IField;
class IFields;
class ISelectionSet;
class IQueryFilter;
class ISymbol;
class IEnvelope;
class ISpatialReference;

class ILayer {
public:
    virtual ~ILayer() = default;
    virtual std::string Name() const = 0;
    virtual void Name(const std::string& name) = 0;
    //! False when the layer's data cannot be reached (a missing file, a class not set).
    virtual bool Valid() const = 0;
    virtual bool Visible() const = 0;
    virtual void Visible(bool visible) = 0;
};

//! Walks layers. Null at the end.
class IEnumLayer {
public:
    virtual ~IEnumLayer() = default;
    virtual void Reset() = 0;
    virtual std::shared_ptr<ILayer> Next() = 0;
};

//! A list-backed walk, fixed when made.
class EnumLayer final : public IEnumLayer {
public:
    EnumLayer() = default;
    explicit EnumLayer(std::vector<std::shared_ptr<ILayer>> layers) : layers_(std::move(layers)) {}
    void Reset() override { next_ = 0; }
    std::shared_ptr<ILayer> Next() override { return next_ < layers_.size() ? layers_[next_++] : nullptr; }

private:
    std::vector<std::shared_ptr<ILayer>> layers_;
    std::size_t next_ = 0;
};

//! Where a layer's or table's data lives, kept even while the data cannot be reached, so that
//! a document saves it back unchanged.
struct DataSourceInfo {
    std::string workspacePath; //!< folder, .gdb or .gpkg path; as written in the document
    std::string datasetName;   //!< class or table name inside the workspace
    std::string sourceType;    //!< the DataSourceType text last known, e.g. "Shapefile Feature Class"
    friend bool operator==(const DataSourceInfo&, const DataSourceInfo&) = default;
};

//! Layers and tables that stand for stored data.
class IDataLayer {
public:
    virtual ~IDataLayer() = default;
    virtual DataSourceInfo DataSource() const = 0;
    //! Sets where the data lives without opening it (the layer turns invalid until Connect).
    virtual void DataSource(const DataSourceInfo& source) = 0;
    //! Opens the data named by DataSource; resolveFrom is the folder that relative workspace
    //! paths start from. True when the data could be opened; false leaves the layer invalid.
    virtual bool Connect(const std::string& resolveFrom) = 0;
};

class IFeatureLayer : public ILayer {
public:
    virtual std::shared_ptr<IFeatureClass> FeatureClass() const = 0;
    //! Setting a class also sets DataSource from it and clears the selection.
    virtual void FeatureClass(const std::shared_ptr<IFeatureClass>& featureClass) = 0;
    //! In the host's words: "Shapefile Feature Class", "File Geodatabase Feature Class",
    //! "Personal Geodatabase Feature Class", "GeoPackage Feature Class"; for a layer whose data
    //! is missing, the type last known.
    virtual std::string DataSourceType() const = 0;
    virtual bool Selectable() const = 0;
    virtual void Selectable(bool selectable) = 0;
};

//! How SelectFeatures combines with the selection that stands.
enum esriSelectionResultEnum : std::int32_t {
    esriSelectionResultNew = 0,
    esriSelectionResultAdd = 1,
    esriSelectionResultSubtract = 2,
    esriSelectionResultAnd = 3,
    esriSelectionResultXOR = 4,
};

class IFeatureSelection {
public:
    virtual ~IFeatureSelection() = default;
    //! The selected features; null while the layer has no data.
    virtual std::shared_ptr<ISelectionSet> SelectionSet() const = 0;
    //! Takes a set over the layer's class (InvalidCall Fault for a set of another class).
    virtual void SelectionSet(const std::shared_ptr<ISelectionSet>& selection) = 0;
    //! Selects the features that pass the filter (all for a null filter), combined by method;
    //! justOne keeps only the first feature found.
    virtual void SelectFeatures(const std::shared_ptr<IQueryFilter>& filter, esriSelectionResultEnum method,
                                bool justOne) = 0;
    virtual void Clear() = 0;
};

//! How a layer shows one field.
class IFieldInfo {
public:
    virtual ~IFieldInfo() = default;
    //! The layer's alias; the field's own alias name until one is set.
    virtual std::string Alias() const = 0;
    virtual void Alias(const std::string& alias) = 0;
    virtual bool Visible() const = 0;
    virtual void Visible(bool visible) = 0;
};

//! The fields of a layer's class as the layer shows them. Indexes are those of the class's fields.
class ILayerFields {
public:
    virtual ~ILayerFields() = default;
    virtual std::int32_t FieldCount() const = 0;
    //! OutOfRange Fault outside 0..FieldCount-1.
    virtual std::shared_ptr<IField> Field(std::int32_t index) const = 0;
    //! The layer's own record of the field (live: setting Alias or Visible changes the layer).
    virtual std::shared_ptr<IFieldInfo> FieldInfo(std::int32_t index) const = 0;
    //! The index of the named field (case-insensitive), or -1 when the class has no such field or
    //! the layer hides it: a hidden field is not offered to tools that look fields up by name.
    virtual std::int32_t FindField(const std::string& name) const = 0;
};

//! The base of renderers: how a layer's features are drawn.
class IFeatureRenderer {
public:
    virtual ~IFeatureRenderer() = default;
};

//! One symbol for every feature.
class ISimpleRenderer : public IFeatureRenderer {
public:
    //! A copy of the symbol.
    virtual std::shared_ptr<ISymbol> Symbol() const = 0;
    virtual void Symbol(const std::shared_ptr<ISymbol>& symbol) = 0;
    virtual std::string Label() const = 0;
    virtual void Label(const std::string& label) = 0;
};

class IGeoFeatureLayer : public IFeatureLayer {
public:
    virtual std::shared_ptr<IFeatureRenderer> Renderer() const = 0;
    virtual void Renderer(const std::shared_ptr<IFeatureRenderer>& renderer) = 0;
};

//! Layers that hold other layers.
class ICompositeLayer {
public:
    virtual ~ICompositeLayer() = default;
    virtual std::int32_t Count() const = 0;
    //! OutOfRange Fault outside 0..Count-1.
    virtual std::shared_ptr<ILayer> Layer(std::int32_t index) const = 0;
};

class IGroupLayer : public ILayer {
public:
    //! Adds at the end; null, the group itself or a group that holds this one is an InvalidCall Fault.
    virtual void Add(const std::shared_ptr<ILayer>& layer) = 0;
    virtual void Delete(const std::shared_ptr<ILayer>& layer) = 0;
    virtual void Clear() = 0;
};

// Layer kinds this platform does not draw; tools test for them and find none.
class IRasterLayer : public ILayer {};
class ITinLayer : public ILayer {};

//! A table shown beside the layers of a map.
class IStandaloneTable {
public:
    virtual ~IStandaloneTable() = default;
    virtual std::string Name() const = 0;
    virtual void Name(const std::string& name) = 0;
    //! False when the table cannot be reached.
    virtual bool Valid() const = 0;
    virtual std::shared_ptr<ITable> Table() const = 0;
    virtual void Table(const std::shared_ptr<ITable>& table) = 0;
};

} // namespace tess
