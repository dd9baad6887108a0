#include "platform/carto/PageLayout.h"

#include <algorithm>
#include <cmath>

#include "platform/carto/MapFrame.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"

namespace tess {
namespace {
constexpr double kLetterWidth = 8.5;  // inches
constexpr double kLetterHeight = 11.0; // inches
constexpr double kFrameMargin = 1.0;   // inches between the sheet's edge and a new map frame
} // namespace

PageLayout::PageLayout() : width_(kLetterWidth), height_(kLetterHeight) {}

void PageLayout::PageSize(double width, double height) {
    if (!(width > 0.0) || !(height > 0.0) || !std::isfinite(width) || !std::isfinite(height))
        throw Fault(fault::InvalidCall, "PageLayout", "A page needs a width and a height above 0");
    width_ = width;
    height_ = height;
}

std::shared_ptr<IGraphicsContainer> PageLayout::GraphicsContainer() {
    return std::shared_ptr<IGraphicsContainer>(shared_from_this(), static_cast<IGraphicsContainer*>(this));
}

std::shared_ptr<IMap> PageLayout::FocusMap() const {
    if (auto focus = focus_.lock())
        return focus;
    for (std::int32_t i = 0; i < ElementCount(); ++i) {
        if (auto frame = std::dynamic_pointer_cast<IMapFrame>(ElementAt(i)); frame && frame->Map())
            return frame->Map();
    }
    return nullptr;
}

std::shared_ptr<MapFrame> PageLayout::AddMapFrame(const std::shared_ptr<IMap>& map) {
    auto frame = std::make_shared<MapFrame>(map);
    const double margin = std::min({kFrameMargin, width_ / 4.0, height_ / 4.0});
    frame->Geometry(std::make_shared<Envelope>(margin, margin, width_ - margin, height_ - margin));
    AddElement(frame);
    return frame;
}

std::shared_ptr<IEnvelope> PageLayout::ComputeFullExtent() const {
    return std::make_shared<Envelope>(0.0, 0.0, width_, height_);
}

} // namespace tess
