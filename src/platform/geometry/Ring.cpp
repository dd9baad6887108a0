#include "platform/geometry/Ring.h"

#include "platform/geometry/Point.h"
#include "platform/geometry/Polygon.h"
#include "platform/geometry/detail/Helpers.h"

namespace tess {

std::shared_ptr<IClone> Ring::Clone() const { return std::make_shared<Ring>(*this); }

void Ring::Close() {
    if (part_.vertices.size() < 2 || part_.IsClosed()) return;
    part_.vertices.push_back(part_.vertices.front());
    Touch();
}

bool Ring::IsExterior() const { return detail::PartSignedArea(part_) < 0.0; }

double Ring::Area() const { return -detail::PartSignedArea(part_); }

std::shared_ptr<IPoint> Ring::Centroid() const {
    auto p = std::make_shared<tess::Point>();
    QueryCentroid(*p);
    return p;
}

void Ring::QueryCentroid(IPoint& centroid) const {
    if (part_.vertices.empty()) {
        detail::PutPoint(centroid, nullptr, sr_);
        return;
    }
    const WKSPoint o = part_.vertices.front();
    const detail::AreaTerms t = detail::PartAreaTerms(part_, o);
    WKSPoint c;
    if (t.area != 0.0) {
        c = {o.X + t.mx / t.area, o.Y + t.my / t.area};
    } else {
        // No area: the centre of the extent stands in.
        WKSEnvelope box;
        detail::SourceEnvelope(*this, box);
        c = {0.5 * (box.XMin + box.XMax), 0.5 * (box.YMin + box.YMax)};
    }
    detail::PutPoint(centroid, &c, sr_);
}

std::shared_ptr<IPoint> Ring::LabelPoint() const {
    auto p = std::make_shared<tess::Point>();
    QueryLabelPoint(*p);
    return p;
}

void Ring::QueryLabelPoint(IPoint& labelPoint) const {
    Polygon polygon;
    polygon.AddPart(std::make_shared<Ring>(*this));
    polygon.QueryLabelPoint(labelPoint);
    labelPoint.SpatialReference(sr_);
}

} // namespace tess
