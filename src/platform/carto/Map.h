#pragma once
// The map (data frame): its layers, stand-alone tables, spatial reference,
// graphic elements and view.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/carto/ActiveView.h"
#include "platform/carto/GraphicsContainer.h"

namespace tess {

class ILayer;
class IEnumLayer;
class IStandaloneTable;
class ISpatialReference;
class IUID;

class IMap {
public:
    virtual ~IMap() = default;
    virtual std::string Name() const = 0;
    virtual void Name(const std::string& name) = 0;
    //! Layers at the top level (a group layer counts once).
    virtual std::int32_t LayerCount() const = 0;
    //! The top-level layer at index, 0 being the top of the drawing order; OutOfRange Fault.
    virtual std::shared_ptr<ILayer> Layer(std::int32_t index) const = 0;
    //! Layers in map order, filtered by the interface uid names (null: every layer). With recursive,
    //! the walk descends into group layers, each group coming before its members. The interfaces
    //! known by id are listed in Map.cpp (ILayer, IFeatureLayer, IGeoFeatureLayer, IDataLayer,
    //! IGroupLayer, IRasterLayer and the kinds no layer here has); any other id is an InvalidCall Fault.
    virtual std::shared_ptr<IEnumLayer> Layers(const std::shared_ptr<IUID>& uid, bool recursive) const = 0;
    //! Puts the layer at the top (index 0). A map without a spatial reference takes the layer's.
    //! Null, or a layer already in the map, is an InvalidCall Fault.
    virtual void AddLayer(const std::shared_ptr<ILayer>& layer) = 0;
    //! Removes a top-level layer, or a layer inside a group; nothing happens when it is not there.
    virtual void DeleteLayer(const std::shared_ptr<ILayer>& layer) = 0;
    virtual void ClearLayers() = 0;
    //! Moves a top-level layer to index (clamped to the list).
    virtual void MoveLayer(const std::shared_ptr<ILayer>& layer, std::int32_t toIndex) = 0;
    //! The number of selected features over all feature layers, group members included.
    virtual std::int32_t SelectionCount() const = 0;
    //! Clears the feature selection of every layer.
    virtual void ClearSelection() = 0;
    //! May be null (no reference yet).
    virtual std::shared_ptr<ISpatialReference> SpatialReference() const = 0;
    virtual void SpatialReference(const std::shared_ptr<ISpatialReference>& reference) = 0;
};

class IStandaloneTableCollection {
public:
    virtual ~IStandaloneTableCollection() = default;
    virtual std::int32_t StandaloneTableCount() const = 0;
    //! OutOfRange Fault outside 0..StandaloneTableCount-1.
    virtual std::shared_ptr<IStandaloneTable> StandaloneTable(std::int32_t index) const = 0;
    //! Appends; null or a table already there is an InvalidCall Fault.
    virtual void AddStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) = 0;
    virtual void RemoveStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) = 0;
    virtual void RemoveAllStandaloneTables() = 0;
};

//! Make it with std::make_shared: the view hands itself out as its graphics container.
//! Its full extent is the union of the valid layers' extents and of the elements' bounds.
class Map final : public IMap,
                  public IStandaloneTableCollection,
                  public detail::ActiveViewBase,
                  public GraphicsContainerBase,
                  public std::enable_shared_from_this<Map> {
public:
    //! A new map is named "Layers", as the host names its first data frame.
    Map();

    // IMap
    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    std::int32_t LayerCount() const override { return static_cast<std::int32_t>(layers_.size()); }
    std::shared_ptr<ILayer> Layer(std::int32_t index) const override;
    std::shared_ptr<IEnumLayer> Layers(const std::shared_ptr<IUID>& uid, bool recursive) const override;
    void AddLayer(const std::shared_ptr<ILayer>& layer) override;
    void DeleteLayer(const std::shared_ptr<ILayer>& layer) override;
    void ClearLayers() override { layers_.clear(); }
    void MoveLayer(const std::shared_ptr<ILayer>& layer, std::int32_t toIndex) override;
    std::int32_t SelectionCount() const override;
    void ClearSelection() override;
    std::shared_ptr<ISpatialReference> SpatialReference() const override { return sr_; }
    void SpatialReference(const std::shared_ptr<ISpatialReference>& reference) override { sr_ = reference; }

    // IStandaloneTableCollection
    std::int32_t StandaloneTableCount() const override { return static_cast<std::int32_t>(tables_.size()); }
    std::shared_ptr<IStandaloneTable> StandaloneTable(std::int32_t index) const override;
    void AddStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) override;
    void RemoveStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) override;
    void RemoveAllStandaloneTables() override { tables_.clear(); }

    // IActiveView
    std::shared_ptr<IGraphicsContainer> GraphicsContainer() override;
    std::shared_ptr<IMap> FocusMap() const override;

    //! Every layer, group members included, in map order (groups before their members).
    std::vector<std::shared_ptr<ILayer>> AllLayers() const;

protected:
    std::shared_ptr<IEnvelope> ComputeFullExtent() const override;

private:
    std::string name_;
    std::vector<std::shared_ptr<ILayer>> layers_;
    std::vector<std::shared_ptr<IStandaloneTable>> tables_;
    std::shared_ptr<ISpatialReference> sr_;
};

//! Whether the layer answers to the interface that the id names (see IMap.Layers); an
//! InvalidCall Fault for an id this platform does not know.
bool LayerImplements(const ILayer& layer, const std::string& interfaceId);

} // namespace tess
