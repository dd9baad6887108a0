#include "platform/ui/ScriptedUI.h"

#include "platform/system/Fault.h"
#include "platform/ui/Form.h"

namespace tess {

void ScriptedUI::QueueFormScript(const std::string& formName, FormScript script) {
    scripts_[formName].push_back(std::move(script));
}

MsgBoxResult ScriptedUI::MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                                    const std::string& title) {
    log_.push_back({"message", text, title, buttons, icon});
    if (buttons == MsgBoxButtons::OK)
        return MsgBoxResult::OK;
    if (answers_.empty())
        throw Fault(fault::InvalidCall, "ScriptedUI", "no scripted answer for the question: " + text);
    MsgBoxResult answer = answers_.front();
    answers_.pop_front();
    return answer;
}

void ScriptedUI::ShowErrorWindow(const std::string& text) { log_.push_back({"error", text, {}, {}, {}}); }

void ScriptedUI::Beep() { log_.push_back({"beep", {}, {}, {}, {}}); }

bool ScriptedUI::OpenDocument(const std::string& path) {
    log_.push_back({"open", path, {}, {}, {}});
    return true;
}

void ScriptedUI::ShowModal(Form& form) {
    log_.push_back({"modal", form.Name(), form.Caption, {}, {}});
    auto it = scripts_.find(form.Name());
    if (it == scripts_.end() || it->second.empty()) {
        form.Unload();
        return;
    }
    FormScript script = std::move(it->second.front());
    it->second.pop_front();
    script(form);
    // A user who walks away from a modal dialog closes it; scripts that forget to
    // press a button must not leave the form half open.
    if (form.IsLoaded() && form.Visible())
        form.Unload();
}

void ScriptedUI::ShowModeless(Form& form) { log_.push_back({"modeless", form.Name(), form.Caption, {}, {}}); }

void ScriptedUI::HideModeless(Form& form) { log_.push_back({"hide", form.Name(), form.Caption, {}, {}}); }

std::optional<BrowseResult> ScriptedUI::Browse(const BrowseRequest& request) {
    lastBrowse_ = request;
    log_.push_back({"browse", request.Name, request.Title, {}, {}});
    if (browses_.empty())
        return std::nullopt;
    auto result = std::move(browses_.front());
    browses_.pop_front();
    return result;
}

std::shared_ptr<ISpatialReference> ScriptedUI::ChooseSpatialReference(const std::shared_ptr<ISpatialReference>&) {
    if (references_.empty())
        return nullptr;
    auto sr = std::move(references_.front());
    references_.pop_front();
    return sr;
}

void ScriptedUI::CopyToClipboard(const std::string& rtf, const std::string&, const std::string& text) {
    log_.push_back({"copy", rtf, {}, {}, {}});
    clipboardText_ = text;
}

bool ScriptedUI::PrintReport(const std::string& rtf, const std::string& title) {
    log_.push_back({"print", rtf, title, {}, {}});
    return true;
}

std::vector<std::string> ScriptedUI::Texts(const std::string& kind) const {
    std::vector<std::string> out;
    for (const auto& s : log_)
        if (s.kind == kind)
            out.push_back(s.text);
    return out;
}

void ScriptedUI::Clear() {
    answers_.clear();
    browses_.clear();
    references_.clear();
    scripts_.clear();
    log_.clear();
    clipboardText_.clear();
    pointer_ = MousePointer::Default;
    eventPumps_ = 0;
}

} // namespace tess
