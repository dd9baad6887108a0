#include "platform/carto/GroupLayer.h"

#include <algorithm>

#include "platform/system/Fault.h"

namespace tess {
namespace {
constexpr const char* kSource = "GroupLayer";
}

bool GroupLayer::Holds(const ILayer& layer) const {
    for (const auto& member : layers_) {
        if (member.get() == &layer)
            return true;
        if (auto* group = dynamic_cast<const GroupLayer*>(member.get()); group && group->Holds(layer))
            return true;
    }
    return false;
}

void GroupLayer::Add(const std::shared_ptr<ILayer>& layer) {
    if (!layer)
        throw Fault(fault::ObjectNotSet, kSource, "No layer was given to add to the group '" + name_ + "'");
    const ILayer& self = *this;
    if (layer.get() == &self)
        throw Fault(fault::InvalidCall, kSource, "The group layer '" + name_ + "' cannot hold itself");
    if (auto* group = dynamic_cast<const GroupLayer*>(layer.get()); group && group->Holds(self))
        throw Fault(fault::InvalidCall, kSource, "The group layer '" + name_ + "' cannot hold a group that holds it");
    if (Holds(*layer))
        throw Fault(fault::InvalidCall, kSource,
                    "The layer '" + layer->Name() + "' is already in the group '" + name_ + "'");
    layers_.push_back(layer);
}

void GroupLayer::Delete(const std::shared_ptr<ILayer>& layer) { std::erase(layers_, layer); }

std::shared_ptr<ILayer> GroupLayer::Layer(std::int32_t index) const {
    if (index < 0 || index >= Count())
        throw Fault(fault::OutOfRange, kSource,
                    "Layer " + std::to_string(index) + " of the group '" + name_ + "' of " + std::to_string(Count()));
    return layers_[static_cast<std::size_t>(index)];
}

} // namespace tess
