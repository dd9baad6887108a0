#pragma once
// The test double of IUIServices: answers come from queues, forms are driven by
// scripts registered per form name, and everything shown is recorded so a test
// can check the exact texts and titles.

#include "platform/ui/UIServices.h"

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tess {

class ScriptedUI final : public IUIServices {
public:
    struct Shown {
        std::string kind; //!< "message", "error", "beep", "open", "modal", "modeless", "hide", "browse", "print", "copy"
        std::string text;
        std::string title;
        MsgBoxButtons buttons = MsgBoxButtons::OK;
        MsgBoxIcon icon = MsgBoxIcon::None;
    };
    using FormScript = std::function<void(Form&)>;

    //! Queues the answer to the next question box (YesNo, OKCancel...). An OK-only
    //! box consumes no answer; a question without a queued answer is a Fault.
    void QueueAnswer(MsgBoxResult answer) { answers_.push_back(answer); }
    //! Queues the result of the next browse dialog (nullopt = the user cancelled).
    void QueueBrowse(std::optional<BrowseResult> result) { browses_.push_back(std::move(result)); }
    void QueueSpatialReference(std::shared_ptr<ISpatialReference> sr) { references_.push_back(std::move(sr)); }
    //! Registers what a user does when the named form is shown modally; each showing
    //! takes the next script queued for that name. A form shown without one is unloaded.
    void QueueFormScript(const std::string& formName, FormScript script);

    MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                            const std::string& title) override;
    void ShowErrorWindow(const std::string& text) override;
    void Beep() override;
    void DoEvents() override { ++eventPumps_; }
    bool OpenDocument(const std::string& path) override;
    void ShowModal(Form& form) override;
    void ShowModeless(Form& form) override;
    void HideModeless(Form& form) override;
    std::optional<BrowseResult> Browse(const BrowseRequest& request) override;
    std::shared_ptr<ISpatialReference> ChooseSpatialReference(
        const std::shared_ptr<ISpatialReference>& start) override;
    void SetMousePointer(MousePointer pointer) override { pointer_ = pointer; }
    double ScreenWidth() const override { return 1920; }
    double ScreenHeight() const override { return 1080; }
    void CopyToClipboard(const std::string& rtf, const std::string& html, const std::string& text) override;
    bool PrintReport(const std::string& rtf, const std::string& title) override;

    const std::vector<Shown>& Log() const { return log_; }
    //! Texts of the entries of one kind, oldest first.
    std::vector<std::string> Texts(const std::string& kind) const;
    std::vector<std::string> Errors() const { return Texts("error"); }
    std::vector<std::string> Messages() const { return Texts("message"); }
    const BrowseRequest& LastBrowse() const { return lastBrowse_; }
    std::string Clipboard() const { return clipboardText_; }
    MousePointer Pointer() const { return pointer_; }
    int EventPumps() const { return eventPumps_; }
    void Clear();

private:
    std::deque<MsgBoxResult> answers_;
    std::deque<std::optional<BrowseResult>> browses_;
    std::deque<std::shared_ptr<ISpatialReference>> references_;
    std::map<std::string, std::deque<FormScript>> scripts_;
    std::vector<Shown> log_;
    BrowseRequest lastBrowse_;
    std::string clipboardText_;
    MousePointer pointer_ = MousePointer::Default;
    int eventPumps_ = 0;
};

} // namespace tess
