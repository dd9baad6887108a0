#pragma once
// The frame that shows a map on the page layout.

#include <memory>

#include "platform/carto/Elements.h"

namespace tess {

//! Its shape is the polygon of a rectangle in page units (an envelope is turned into one).
//! The frame shares the map; a copy of the frame shows the same map.
class MapFrame final : public detail::ElementBase, public IMapFrame {
public:
    MapFrame();
    explicit MapFrame(std::shared_ptr<IMap> map);

    bool IsEmpty() const override { return !map_; }
    std::shared_ptr<IMap> Map() const override { return map_; }
    void Map(const std::shared_ptr<IMap>& map) override { map_ = map; }

    ElementKind Kind() const override { return ElementKind::MapFrame; }
    std::shared_ptr<IClone> Clone() const override;
    bool IsEqual(const IClone& other) const override;

protected:
    std::shared_ptr<IGeometry> Accept(const IGeometry& geometry) const override;

private:
    std::shared_ptr<IMap> map_;
};

} // namespace tess
