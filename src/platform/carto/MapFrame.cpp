#include "platform/carto/MapFrame.h"

#include "platform/geometry/Polygon.h"
#include "platform/system/Fault.h"

namespace tess {

MapFrame::MapFrame() : ElementBase(std::make_shared<tess::Polygon>()) {}

MapFrame::MapFrame(std::shared_ptr<IMap> map) : MapFrame() { map_ = std::move(map); }

std::shared_ptr<IClone> MapFrame::Clone() const { return std::make_shared<MapFrame>(*this); }

bool MapFrame::IsEqual(const IClone& other) const {
    auto* o = dynamic_cast<const MapFrame*>(&other);
    return o && SameBase(*o) && o->map_ == map_;
}

std::shared_ptr<IGeometry> MapFrame::Accept(const IGeometry& geometry) const {
    if (auto* box = dynamic_cast<const IEnvelope*>(&geometry))
        return MakeRectanglePolygon(*box);
    if (geometry.GeometryType() != esriGeometryPolygon)
        throw Fault(fault::InvalidCall, "MapFrame", "A map frame takes a polygon or an envelope");
    return std::dynamic_pointer_cast<IGeometry>(dynamic_cast<const IClone&>(geometry).Clone());
}

} // namespace tess
