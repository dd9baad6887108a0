#pragma once
// The modeless status window of a long run: a bar, a record counter, an
// estimate of the time left, a log the worker appends to, and Stop. The worker
// runs on the interface thread and drives the window itself (Est_Time_Left,
// then BailOutOfProgress); the window answers only when the worker yields.
//
// Two forms share this presenter: frmOrlProgressMeter and frmOrlProgressPercent.
// They differ in what Stop does.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/system/Variant.h" // DateValue
#include "platform/ui/Form.h"
#include "support/HostTime.h"

namespace tess {

class ModelessFrame;

class ProgressForm : public Form, public std::enable_shared_from_this<ProgressForm> {
public:
    ~ProgressForm() override;

    //! The host frame that carries the window, made on first use with the caption
    //! " Current Status:"; hidden until the worker shows it. While it shows, it keeps a form
    //! made by std::make_shared alive, so the window may outlast the worker.
    ModelessFrame& Frame();

    //! One step of the display for record `recordNumber` of ProgRecCount. The window changes at
    //! most once per tenth of a percent, and the time labels at most once a second, so a worker
    //! may call this for every record. A fault here is reported and the worker goes on.
    void Est_Time_Left(std::int32_t recordNumber, const std::string& indexText, const std::string& prefixText);

    //! True while the run may go on; Stop sets it false.
    bool ShouldContinue() const { return shouldContinue_; }
    void ShouldContinue(bool value) { shouldContinue_ = value; }
    DateValue ProgBeginTime() const { return begin_; }
    void ProgBeginTime(DateValue value) { begin_ = value; }
    //! The records of the run; its text with thousands separators is kept for the counter.
    std::int32_t ProgRecCount() const { return recCount_; }
    void ProgRecCount(std::int32_t value);
    //! True when the details log shows; writing it shows or hides the log at once.
    bool SetExpanded() const { return expanded_; }
    void SetExpanded(bool value);
    //! True when the window closes by itself at the end of the run; writing it sets the
    //! "Close When Finished..." box, so a window opens as the last one was left.
    bool SetAutoClose() const { return autoClose_; }
    void SetAutoClose(bool value);
    //! Shows or hides the log by SetExpanded, and sizes the window to match.
    void ExpandProgress();

    //! The present time by this window's clock; workers take their time stamps from it.
    DateValue Now() const { return clock_(); }
    //! Appends text to the log; the hosts keep the end of the log in view.
    void AppendDetails(const std::string& text);

    //! Window heights with and without the log, in the forms' units (pixels).
    static constexpr double kExpandedHeight = 360.0;
    static constexpr double kCollapsedHeight = 178.0;

protected:
    //! Builds the controls and loads the window, as the host loads a form on first use.
    ProgressForm(std::string name, Clock clock);
    //! What Stop does on this form.
    virtual void cmdStop_Click() = 0;

    void Form_Load() override;
    void Form_Unload() override;

private:
    void cmdDetails_Click();
    void Timer1_Timer();

    Clock clock_;
    std::unique_ptr<ModelessFrame> frame_;
    bool shouldContinue_ = false;
    DateValue begin_{};
    std::int32_t recCount_ = 0;
    std::string recCountText_;
    DateValue lastRefresh_{};
    float nextStep_ = 0.0F; // percent reached at the last move of the bar
    bool expanded_ = false;
    bool autoClose_ = false;
};

} // namespace tess
