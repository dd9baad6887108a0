#include "platform/ui/ScriptedUI.h"

#include "platform/system/Fault.h"

namespace tess {

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

std::vector<std::string> ScriptedUI::Errors() const {
    std::vector<std::string> out;
    for (const auto& s : log_)
        if (s.kind == "error")
            out.push_back(s.text);
    return out;
}

std::vector<std::string> ScriptedUI::Messages() const {
    std::vector<std::string> out;
    for (const auto& s : log_)
        if (s.kind == "message")
            out.push_back(s.text);
    return out;
}

void ScriptedUI::Clear() {
    answers_.clear();
    log_.clear();
    eventPumps_ = 0;
}

} // namespace tess
