#include "support/ModelessFrame.h"

#include <vector>

#include "platform/ui/Form.h"
#include "platform/ui/UIServices.h"

namespace tess {
namespace {

// Owners of hidden frames wait here until the next show or hide, so that a form
// that hides its own frame is never destroyed inside its own call.
std::vector<std::shared_ptr<void>>& Released() {
    static std::vector<std::shared_ptr<void>> released;
    return released;
}

void ReleaseWaiting() {
    std::vector<std::shared_ptr<void>> waiting;
    waiting.swap(Released());
}

} // namespace

ModelessFrame::~ModelessFrame() {
    if (visible_)
        UI().HideModeless(*form_);
}

const std::string& ModelessFrame::Caption() const { return form_->Caption; }

void ModelessFrame::Caption(const std::string& caption) { form_->Caption = caption; }

void ModelessFrame::Visible(bool visible) {
    ReleaseWaiting();
    if (visible == visible_)
        return;
    visible_ = visible;
    form_->SetVisible(visible);
    if (visible) {
        held_ = owner_.lock();
        UI().ShowModeless(*form_);
    } else {
        UI().HideModeless(*form_);
        if (held_)
            Released().push_back(std::move(held_));
    }
}

} // namespace tess
