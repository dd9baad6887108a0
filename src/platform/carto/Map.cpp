#include "platform/carto/Map.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>

#include "platform/carto/GraphicElements.h"
#include "platform/carto/Layers.h"
#include "platform/data/SelectionSet.h"
#include "platform/data/Table.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"

namespace tess {
namespace {

constexpr const char* kSource = "Map";
constexpr const char* kDefaultMapName = "Layers";

struct KnownInterface {
    const char* id;
    bool (*test)(const ILayer&);
};

template <class T>
bool Is(const ILayer& layer) {
    return dynamic_cast<const T*>(&layer) != nullptr;
}

bool AnyLayer(const ILayer&) { return true; }
bool NoLayerHere(const ILayer&) { return false; }

// Interface ids of layer kinds, as callers pass them to Layers.
const std::array<KnownInterface, 6> kLayerInterfaces{{
    {"{34C20002-4D3C-11D0-92D8-00805F7C28B0}", &AnyLayer},
    {"{40A9E885-5533-11D0-98BE-00805F7CED21}", &Is<IFeatureLayer>},
    {"{E156D7E5-22AF-11D3-9F99-00C04F6BC78E}", &Is<IGeoFeatureLayer>},
    {"{6CA416B1-E160-11D2-9F4E-00C04F6BC78E}", &Is<IDataLayer>},
    {"{EDAD6644-1810-11D1-86AE-0000F8751720}", &Is<IGroupLayer>},
    // A feature-layer kind of the host that no layer of this platform is.
    {"{605BC37A-15E9-40A0-90FB-DE4CC376838C}", &NoLayerHere},
}};

bool SameText(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return std::toupper(x) == std::toupper(y);
           });
}

const KnownInterface& FindInterface(const std::string& interfaceId) {
    for (const auto& known : kLayerInterfaces) {
        if (SameText(known.id, interfaceId))
            return known;
    }
    throw Fault(fault::InvalidCall, kSource, "Layers of the interface " + interfaceId + " are not known here");
}

void Walk(const std::vector<std::shared_ptr<ILayer>>& layers, bool recursive,
          std::vector<std::shared_ptr<ILayer>>& out) {
    for (const auto& layer : layers) {
        out.push_back(layer);
        if (!recursive)
            continue;
        if (auto* composite = dynamic_cast<const ICompositeLayer*>(layer.get())) {
            std::vector<std::shared_ptr<ILayer>> members;
            for (std::int32_t i = 0; i < composite->Count(); ++i)
                members.push_back(composite->Layer(i));
            Walk(members, true, out);
        }
    }
}

void Grow(IEnvelope& total, const IEnvelope& part) {
    if (part.IsEmpty())
        return;
    if (total.IsEmpty())
        total.PutCoords(part.XMin(), part.YMin(), part.XMax(), part.YMax());
    else
        total.Union(part);
}

} // namespace

bool LayerImplements(const ILayer& layer, const std::string& interfaceId) {
    return FindInterface(interfaceId).test(layer);
}

Map::Map() : name_(kDefaultMapName) {}

std::shared_ptr<ILayer> Map::Layer(std::int32_t index) const {
    if (index < 0 || index >= LayerCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Layer " + std::to_string(index) + " of a map of " + std::to_string(LayerCount()));
    return layers_[static_cast<std::size_t>(index)];
}

std::vector<std::shared_ptr<ILayer>> Map::AllLayers() const {
    std::vector<std::shared_ptr<ILayer>> all;
    Walk(layers_, true, all);
    return all;
}

std::shared_ptr<IEnumLayer> Map::Layers(const std::shared_ptr<IUID>& uid, bool recursive) const {
    std::vector<std::shared_ptr<ILayer>> walked;
    Walk(layers_, recursive, walked);
    if (uid && !uid->Value().empty()) {
        const KnownInterface& known = FindInterface(uid->Value());
        std::erase_if(walked, [&](const auto& layer) { return !known.test(*layer); });
    }
    return std::make_shared<EnumLayer>(std::move(walked));
}

void Map::AddLayer(const std::shared_ptr<ILayer>& layer) {
    if (!layer)
        throw Fault(fault::ObjectNotSet, kSource, "No layer was given to add to the map");
    const auto all = AllLayers();
    if (std::find(all.begin(), all.end(), layer) != all.end())
        throw Fault(fault::InvalidCall, kSource, "The layer '" + layer->Name() + "' is already in the map");
    layers_.insert(layers_.begin(), layer);
    if (sr_)
        return;
    // The first layer with a reference gives the map its own; a group answers by its members.
    std::vector<std::shared_ptr<ILayer>> added;
    Walk({layer}, true, added);
    for (const auto& candidate : added) {
        if (auto* geo = dynamic_cast<const IGeoDataset*>(candidate.get()); geo && geo->SpatialReference()) {
            sr_ = geo->SpatialReference();
            return;
        }
    }
}

void Map::DeleteLayer(const std::shared_ptr<ILayer>& layer) {
    if (!layer)
        return;
    if (std::erase(layers_, layer) > 0)
        return;
    for (const auto& candidate : AllLayers()) {
        if (auto group = std::dynamic_pointer_cast<IGroupLayer>(candidate))
            group->Delete(layer);
    }
}

void Map::MoveLayer(const std::shared_ptr<ILayer>& layer, std::int32_t toIndex) {
    auto it = std::find(layers_.begin(), layers_.end(), layer);
    if (it == layers_.end())
        throw Fault(fault::InvalidCall, kSource, "Only a top-level layer of the map can be moved");
    layers_.erase(it);
    const auto place = std::clamp<std::int32_t>(toIndex, 0, LayerCount());
    layers_.insert(layers_.begin() + place, layer);
}

std::int32_t Map::SelectionCount() const {
    std::int32_t count = 0;
    for (const auto& layer : AllLayers()) {
        auto* selection = dynamic_cast<const IFeatureSelection*>(layer.get());
        if (!selection)
            continue;
        if (auto set = selection->SelectionSet())
            count += set->Count();
    }
    return count;
}

void Map::ClearSelection() {
    for (const auto& layer : AllLayers()) {
        if (auto* selection = dynamic_cast<IFeatureSelection*>(layer.get()))
            selection->Clear();
    }
}

std::shared_ptr<IStandaloneTable> Map::StandaloneTable(std::int32_t index) const {
    if (index < 0 || index >= StandaloneTableCount())
        throw Fault(fault::OutOfRange, kSource,
                    "Table " + std::to_string(index) + " of a map of " + std::to_string(StandaloneTableCount()));
    return tables_[static_cast<std::size_t>(index)];
}

void Map::AddStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) {
    if (!table)
        throw Fault(fault::ObjectNotSet, kSource, "No table was given to add to the map");
    if (std::find(tables_.begin(), tables_.end(), table) != tables_.end())
        throw Fault(fault::InvalidCall, kSource, "The table '" + table->Name() + "' is already in the map");
    tables_.push_back(table);
}

void Map::RemoveStandaloneTable(const std::shared_ptr<IStandaloneTable>& table) { std::erase(tables_, table); }

std::shared_ptr<IGraphicsContainer> Map::GraphicsContainer() {
    return std::shared_ptr<IGraphicsContainer>(shared_from_this(), static_cast<IGraphicsContainer*>(this));
}

std::shared_ptr<IMap> Map::FocusMap() const {
    auto self = std::const_pointer_cast<Map>(shared_from_this());
    return std::shared_ptr<IMap>(self, static_cast<IMap*>(self.get()));
}

std::shared_ptr<IEnvelope> Map::ComputeFullExtent() const {
    auto total = std::make_shared<Envelope>();
    total->SpatialReference(sr_);
    for (const auto& layer : AllLayers()) {
        if (dynamic_cast<const ICompositeLayer*>(layer.get()) || !layer->Valid())
            continue;
        if (auto* geo = dynamic_cast<const IGeoDataset*>(layer.get())) {
            if (auto extent = geo->Extent())
                Grow(*total, *extent);
        }
    }
    Envelope bounds;
    for (std::int32_t i = 0; i < ElementCount(); ++i) {
        ElementAt(i)->QueryBounds(nullptr, bounds);
        Grow(*total, bounds);
    }
    return total;
}

} // namespace tess
