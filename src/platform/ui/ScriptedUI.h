#pragma once
// The test double of IUIServices: answers come from a queue, and everything shown
// is recorded so a test can check the exact texts and titles.

#include "platform/ui/UIServices.h"

#include <deque>
#include <string>
#include <vector>

namespace tess {

class ScriptedUI final : public IUIServices {
public:
    struct Shown {
        std::string kind; //!< "message", "error", "beep", "open"
        std::string text;
        std::string title;
        MsgBoxButtons buttons = MsgBoxButtons::OK;
        MsgBoxIcon icon = MsgBoxIcon::None;
    };

    //! Queues the answer to the next question box (YesNo, OKCancel...). An OK-only
    //! box consumes no answer.
    void QueueAnswer(MsgBoxResult answer) { answers_.push_back(answer); }

    MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                            const std::string& title) override;
    void ShowErrorWindow(const std::string& text) override;
    void Beep() override;
    void DoEvents() override { ++eventPumps_; }
    bool OpenDocument(const std::string& path) override;

    const std::vector<Shown>& Log() const { return log_; }
    //! Texts of the error windows shown, oldest first.
    std::vector<std::string> Errors() const;
    //! Texts of the message boxes shown, oldest first.
    std::vector<std::string> Messages() const;
    int EventPumps() const { return eventPumps_; }
    void Clear();

private:
    std::deque<MsgBoxResult> answers_;
    std::vector<Shown> log_;
    int eventPumps_ = 0;
};

} // namespace tess
