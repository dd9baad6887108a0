#include "extension/GraphicsSelectionCommands.h"

#include "frame/ErrorHandling.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/Display.h"
#include "platform/carto/EnumElement.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/framework/Document.h"
#include "platform/geometry/Envelope.h"
#include "platform/system/Fault.h"
#include "platform/system/Variant.h"

namespace tess {
namespace {

// Geography, graphics and the graphics' selection: what a change of graphic elements repaints.
constexpr std::int32_t kGraphicsRepaintPhases = esriViewGeography | esriViewGraphics | esriViewGraphicSelection;

[[noreturn]] void NotSet(const char* what) {
    throw Fault(fault::ObjectNotSet, what, "Object variable or With block variable not set");
}

//! The focus map's graphics and the view on screen.
struct FocusGraphics {
    std::shared_ptr<IGraphicsContainer> container;
    std::shared_ptr<IGraphicsContainerSelect> selection;
    std::shared_ptr<IActiveView> view;
};

FocusGraphics FindFocusGraphics(const std::shared_ptr<IMxDocument>& document) {
    if (!document)
        NotSet("IMxDocument");
    FocusGraphics found;
    std::shared_ptr<IMap> map = document->FocusMap();
    found.container = std::dynamic_pointer_cast<IGraphicsContainer>(map);
    found.selection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(map);
    found.view = document->ActiveView();
    if (!found.container || !found.selection || !found.view)
        NotSet("IGraphicsContainer");
    return found;
}

//! The box around the elements of a walk, as the view's display measures them. The first
//! element's bounds start the box; the others are measured into one scratch envelope and added.
class BoundsWalk {
public:
    explicit BoundsWalk(IActiveView& view) : view_(view) {}

    void Step(const IElement& element) {
        std::shared_ptr<IDisplay> display = view_.ScreenDisplay();
        if (!bounds_) {
            bounds_ = std::make_shared<Envelope>();
            element.QueryBounds(display, *bounds_);
        } else {
            element.QueryBounds(display, *scratch_);
            bounds_->Union(*scratch_);
        }
    }

    void Walk(IEnumElement& elements) {
        elements.Reset();
        for (auto element = elements.Next(); element; element = elements.Next())
            Step(*element);
    }

    void Walk(IGraphicsContainer& container) {
        container.Reset();
        for (auto element = container.Next(); element; element = container.Next())
            Step(*element);
    }

    //! Null when the walk met no element.
    const std::shared_ptr<IEnvelope>& Bounds() const { return bounds_; }

private:
    IActiveView& view_;
    std::shared_ptr<IEnvelope> bounds_;
    std::shared_ptr<Envelope> scratch_ = std::make_shared<Envelope>();
};

void RepaintGraphics(IActiveView& view, const std::shared_ptr<IEnvelope>& bounds) {
    view.PartialRefresh(kGraphicsRepaintPhases, Variant::Nothing(), bounds);
}

} // namespace

void clsSelAllElements::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        FocusGraphics graphics = FindFocusGraphics(document_);
        graphics.selection->SelectAllElements();
        BoundsWalk walk(*graphics.view);
        walk.Walk(*graphics.container);
        if (!walk.Bounds())
            return;
        RepaintGraphics(*graphics.view, walk.Bounds());
        MarkDocumentDirty();
    });
}

void clsUnselElements::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        FocusGraphics graphics = FindFocusGraphics(document_);
        // Measured first: afterwards the elements are no longer selected.
        std::shared_ptr<IEnumElement> selected = graphics.selection->SelectedElements();
        BoundsWalk walk(*graphics.view);
        if (selected)
            walk.Walk(*selected);
        graphics.selection->UnselectAllElements();
        if (!walk.Bounds())
            return;
        walk.Bounds()->Expand(kRepaintExpandRatio, kRepaintExpandRatio, true);
        RepaintGraphics(*graphics.view, walk.Bounds());
        MarkDocumentDirty();
    });
}

void clsFlipGraphicSel::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        FocusGraphics graphics = FindFocusGraphics(document_);
        BoundsWalk walk(*graphics.view);
        graphics.container->Reset();
        for (auto element = graphics.container->Next(); element; element = graphics.container->Next()) {
            if (graphics.selection->ElementSelected(element))
                graphics.selection->UnselectElement(element);
            else
                graphics.selection->SelectElement(element);
            walk.Step(*element);
        }
        if (!walk.Bounds())
            return;
        walk.Bounds()->Expand(kRepaintExpandRatio, kRepaintExpandRatio, true);
        RepaintGraphics(*graphics.view, walk.Bounds());
        MarkDocumentDirty();
    });
}

void clsZoomToSelected::OnClick() {
    TrappedVoid("ICommand_OnClick ", [&] {
        FocusGraphics graphics = FindFocusGraphics(document_);
        std::shared_ptr<IEnumElement> selected = graphics.selection->SelectedElements();
        BoundsWalk walk(*graphics.view);
        if (selected)
            walk.Walk(*selected);
        if (!walk.Bounds())
            return;
        walk.Bounds()->Expand(kZoomExpandRatio, kZoomExpandRatio, true);
        graphics.view->Extent(walk.Bounds());
        graphics.view->Refresh();
        // The document counts as changed, though only the view is.
        MarkDocumentDirty();
    });
}

} // namespace tess
