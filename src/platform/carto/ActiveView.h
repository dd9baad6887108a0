#pragma once
// Views: the map and the page layout as something drawn. Nothing draws here;
// every Refresh and PartialRefresh is recorded, so that a host can repaint
// what was asked and tests can see what was asked.

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/system/Variant.h"

namespace tess {

class IEnvelope;
class IGraphicsContainer;
class IMap;
class IScreenDisplay;

//! Phases of drawing; PartialRefresh takes a sum of them (26 = geography, graphics and their selection).
enum esriViewDrawPhase : std::int32_t {
    esriViewNone = 0,
    esriViewBackground = 1,
    esriViewGeography = 2,
    esriViewGeoSelection = 4,
    esriViewGraphics = 8,
    esriViewGraphicSelection = 16,
    esriViewForeground = 32,
};

//! One request to redraw.
struct ViewRefresh {
    bool full = false;           //!< Refresh (everything); false for PartialRefresh
    std::int32_t phase = 0;      //!< the phases asked (0 for a full refresh)
    Variant data;                //!< the object to redraw, Nothing for all of the phases
    std::shared_ptr<IEnvelope> envelope; //!< a copy of the area, null for the whole view
};

class IActiveView {
public:
    virtual ~IActiveView() = default;
    //! The visible area (a copy). Until one is set: the full extent.
    virtual std::shared_ptr<IEnvelope> Extent() const = 0;
    //! Keeps a copy; an empty or zero-sized envelope is kept as it is.
    virtual void Extent(const std::shared_ptr<IEnvelope>& extent) = 0;
    //! The area of all content (a copy); empty when there is nothing.
    virtual std::shared_ptr<IEnvelope> FullExtent() const = 0;
    //! Overrides the computed full extent; null goes back to computing it.
    virtual void FullExtent(const std::shared_ptr<IEnvelope>& extent) = 0;
    virtual void Refresh() = 0;
    virtual void PartialRefresh(std::int32_t phase, const Variant& data, const std::shared_ptr<IEnvelope>& envelope) = 0;
    virtual std::shared_ptr<IGraphicsContainer> GraphicsContainer() = 0;
    //! The map of a map view; the focus map of the page layout.
    virtual std::shared_ptr<IMap> FocusMap() const = 0;
    virtual std::shared_ptr<IScreenDisplay> ScreenDisplay() const = 0;

    // Additions of this platform: the record of redraw requests.
    virtual const std::vector<ViewRefresh>& Refreshes() const = 0;
    virtual void ClearRefreshes() = 0;
    //! Called at each request, after it is recorded (a host repaints from it); empty to remove.
    virtual void RefreshListener(std::function<void(const ViewRefresh&)> listener) = 0;
};

namespace detail {

//! What the map and the page layout share as views.
class ActiveViewBase : public IActiveView {
public:
    std::shared_ptr<IEnvelope> Extent() const override;
    void Extent(const std::shared_ptr<IEnvelope>& extent) override;
    std::shared_ptr<IEnvelope> FullExtent() const override;
    void FullExtent(const std::shared_ptr<IEnvelope>& extent) override;
    void Refresh() override;
    void PartialRefresh(std::int32_t phase, const Variant& data, const std::shared_ptr<IEnvelope>& envelope) override;
    std::shared_ptr<IScreenDisplay> ScreenDisplay() const override { return display_; }
    const std::vector<ViewRefresh>& Refreshes() const override { return refreshes_; }
    void ClearRefreshes() override { refreshes_.clear(); }
    void RefreshListener(std::function<void(const ViewRefresh&)> listener) override {
        listener_ = std::move(listener);
    }
    //! Whether an extent was set (otherwise Extent answers the full extent).
    bool ExtentIsSet() const { return extent_ != nullptr; }

protected:
    ActiveViewBase();
    //! The full extent when none is set: the view's content.
    virtual std::shared_ptr<IEnvelope> ComputeFullExtent() const = 0;

private:
    void Record(ViewRefresh request);

    std::shared_ptr<IEnvelope> extent_;
    std::shared_ptr<IEnvelope> fullExtent_;
    std::shared_ptr<IScreenDisplay> display_;
    std::vector<ViewRefresh> refreshes_;
    std::function<void(const ViewRefresh&)> listener_;
};

} // namespace detail

} // namespace tess
