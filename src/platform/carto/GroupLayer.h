#pragma once
// A layer that holds other layers, drawn and listed together.

#include <memory>
#include <string>
#include <vector>

#include "platform/carto/Layers.h"

namespace tess {

//! Always Valid; its members answer for their own data. A new group is visible and empty.
class GroupLayer final : public IGroupLayer, public ICompositeLayer {
public:
    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    bool Valid() const override { return true; }
    bool Visible() const override { return visible_; }
    void Visible(bool visible) override { visible_ = visible; }

    void Add(const std::shared_ptr<ILayer>& layer) override;
    //! Removes a direct member; nothing happens when it is not one.
    void Delete(const std::shared_ptr<ILayer>& layer) override;
    void Clear() override { layers_.clear(); }

    std::int32_t Count() const override { return static_cast<std::int32_t>(layers_.size()); }
    std::shared_ptr<ILayer> Layer(std::int32_t index) const override;

private:
    bool Holds(const ILayer& layer) const;

    std::string name_;
    bool visible_ = true;
    std::vector<std::shared_ptr<ILayer>> layers_;
};

} // namespace tess
