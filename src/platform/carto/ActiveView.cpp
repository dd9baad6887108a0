#include "platform/carto/ActiveView.h"

#include "platform/carto/Display.h"
#include "platform/geometry/Envelope.h"

namespace tess::detail {
namespace {
std::shared_ptr<IEnvelope> CopyOf(const std::shared_ptr<IEnvelope>& envelope) {
    return envelope ? envelope->Envelope() : nullptr;
}
} // namespace

ActiveViewBase::ActiveViewBase() : display_(std::make_shared<tess::ScreenDisplay>()) {}

std::shared_ptr<IEnvelope> ActiveViewBase::Extent() const { return extent_ ? CopyOf(extent_) : FullExtent(); }

void ActiveViewBase::Extent(const std::shared_ptr<IEnvelope>& extent) { extent_ = CopyOf(extent); }

std::shared_ptr<IEnvelope> ActiveViewBase::FullExtent() const {
    return fullExtent_ ? CopyOf(fullExtent_) : ComputeFullExtent();
}

void ActiveViewBase::FullExtent(const std::shared_ptr<IEnvelope>& extent) { fullExtent_ = CopyOf(extent); }

void ActiveViewBase::Refresh() {
    ViewRefresh request;
    request.full = true;
    request.data = Variant::Nothing();
    Record(std::move(request));
}

void ActiveViewBase::PartialRefresh(std::int32_t phase, const Variant& data, const std::shared_ptr<IEnvelope>& envelope) {
    ViewRefresh request;
    request.phase = phase;
    request.data = data.IsEmpty() ? Variant::Nothing() : data;
    request.envelope = CopyOf(envelope);
    Record(std::move(request));
}

void ActiveViewBase::Record(ViewRefresh request) {
    refreshes_.push_back(std::move(request));
    if (listener_)
        listener_(refreshes_.back());
}

} // namespace tess::detail
