#pragma once
// The page layout: a sheet of paper with the maps' frames and graphics of its
// own, in page units (inches).

#include <memory>

#include "platform/carto/ActiveView.h"
#include "platform/carto/GraphicsContainer.h"

namespace tess {

class IMap;
class MapFrame;

class IPageLayout {
public:
    virtual ~IPageLayout() = default;
    //! Size of the sheet in inches.
    virtual double PageWidth() const = 0;
    virtual double PageHeight() const = 0;
    virtual void PageSize(double width, double height) = 0;
};

//! Make it with std::make_shared. A new layout is a letter sheet (8.5 by 11 inches) with no
//! frame; AddMapFrame places a frame one inch inside the edges. Its full extent is the sheet.
class PageLayout final : public IPageLayout,
                         public detail::ActiveViewBase,
                         public GraphicsContainerBase,
                         public std::enable_shared_from_this<PageLayout> {
public:
    PageLayout();

    double PageWidth() const override { return width_; }
    double PageHeight() const override { return height_; }
    //! Sizes must be above 0 (InvalidCall Fault).
    void PageSize(double width, double height) override;

    std::shared_ptr<IGraphicsContainer> GraphicsContainer() override;
    //! The map set as focus, else the map of the first map frame, else null.
    std::shared_ptr<IMap> FocusMap() const override;
    void FocusMap(const std::shared_ptr<IMap>& map) { focus_ = map; }

    //! Adds a frame for the map on top of the layout's elements and returns it.
    std::shared_ptr<MapFrame> AddMapFrame(const std::shared_ptr<IMap>& map);

protected:
    std::shared_ptr<IEnvelope> ComputeFullExtent() const override;

private:
    double width_;
    double height_;
    std::weak_ptr<IMap> focus_;
};

} // namespace tess
