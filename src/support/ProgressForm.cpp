#include "support/ProgressForm.h"

#include <cmath>

#include "frame/ErrorHandling.h"
#include "platform/ui/UIServices.h"
#include "support/Format.h"
#include "support/ModelessFrame.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

constexpr const char* kFrameCaption = " Current Status:";
constexpr const char* kInitialTimeLeft = "Estimated time remaining: ---:---:---";
constexpr const char* kInitialCompletion = "Estimated completion time: -----------";
constexpr const char* kInitialPercent = "(00.0%)";
constexpr const char* kNoRecord = "-----";
constexpr const char* kShowDetails = "Show Details";
constexpr const char* kMinimize = "Minimize";

constexpr float kPercent = 100.0F;
constexpr double kStepPercent = 0.1;          // the bar moves at most once per this many percent
constexpr double kHundredths = 100.0;         // Round(x, 2)
constexpr int kTimerInterval = 500;           // milliseconds
constexpr std::int64_t kRefreshSeconds = 1;   // time labels change at most this often
constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kDayAndASecond = 86401; // from here the completion time shows its date

// Layout, in pixels.
constexpr double kFormWidth = 420.0;
constexpr double kBarMargin = 4.0; // the bar stays inside its border by this much
constexpr double kBarInset = 2.0;

constexpr ControlSpec kControls[] = {
    {"lblBeginTime", ControlKind::Label, "", 12, 8, 396, 18},
    {"lblCurrentTime", ControlKind::Label, "", 12, 28, 396, 18},
    {"lblIndex", ControlKind::Label, "", 12, 50, 396, 18},
    {"lblRecordNumber", ControlKind::Label, "", 12, 70, 396, 18},
    {"pct_barBorder", ControlKind::Frame, "", 12, 92, 320, 20},
    {"icnProgressLine", ControlKind::PictureBox, "", 12 + kBarInset, 92 + kBarInset, 0, 16},
    {"lblPercentDone", ControlKind::Label, "", 340, 94, 68, 18},
    {"lblTimeLeft", ControlKind::Label, "", 12, 116, 396, 18},
    {"lblEstCompletionTime", ControlKind::Label, "", 12, 134, 396, 18},
    {"cmdDetails", ControlKind::CommandButton, kShowDetails, 12, 152, 110, 24},
    {"chkClose", ControlKind::CheckBox, "Close When Finished...", 130, 154, 170, 20},
    {"cmdStop", ControlKind::CommandButton, "Stop", 308, 152, 100, 24},
    {"txtDetails", ControlKind::RichTextBox, "", 12, 184, 396, 166},
    {"Timer1", ControlKind::Timer, "", 0, 0, 0, 0},
};

float RoundToHundredths(float value) {
    return static_cast<float>(std::nearbyint(static_cast<double>(value) * kHundredths) / kHundredths);
}

} // namespace

ProgressForm::ProgressForm(std::string name, Clock clock) : Form(std::move(name)), clock_(std::move(clock)) {
    if (!clock_)
        clock_ = SystemClock();
    Width = kFormWidth;
    Height = kExpandedHeight;
    AddControls(kControls);
    Ctl("txtDetails").Locked = true;
    Ctl("Timer1").Interval = kTimerInterval;
    Ctl("Timer1").Visible = false;
    On("cmdStop", FormEvent::Click, [this] { cmdStop_Click(); });
    On("cmdDetails", FormEvent::Click, [this] { cmdDetails_Click(); });
    On("Timer1", FormEvent::Timer, [this] { Timer1_Timer(); });
}

ProgressForm::~ProgressForm() = default;

ModelessFrame& ProgressForm::Frame() {
    if (!frame_) {
        frame_ = std::make_unique<ModelessFrame>(*this);
        frame_->Caption(kFrameCaption);
    }
    // Known only once the constructor is done; the first call comes from Form_Load.
    frame_->KeepAlive(weak_from_this());
    return *frame_;
}

void ProgressForm::ProgRecCount(std::int32_t value) {
    recCount_ = value;
    recCountText_ = InsertCommas(Variant(value));
}

void ProgressForm::SetExpanded(bool value) {
    expanded_ = value;
    if (IsLoaded())
        ExpandProgress();
}

void ProgressForm::SetAutoClose(bool value) {
    autoClose_ = value;
    if (IsLoaded())
        Ctl("chkClose").Value = value ? 1 : 0;
}

void ProgressForm::ExpandProgress() {
    TrappedVoid("ExpandProgress ", [&] {
        Ctl("txtDetails").Visible = expanded_;
        Ctl("cmdDetails").Caption = expanded_ ? kMinimize : kShowDetails;
        Height = expanded_ ? kExpandedHeight : kCollapsedHeight; // Left and Top stay
    });
}

void ProgressForm::AppendDetails(const std::string& text) { Ctl("txtDetails").Text += text; }

void ProgressForm::Est_Time_Left(std::int32_t recordNumber, const std::string& indexText,
                                 const std::string& prefixText) {
    TrappedVoid("Est_Time_Left ", [&] {
        float fraction = 0.0F;
        if (recCount_ > 0)
            fraction = static_cast<float>(static_cast<double>(recordNumber) / static_cast<double>(recCount_));
        const float percent = RoundToHundredths(fraction * kPercent);
        if (!(static_cast<double>(nextStep_) + kStepPercent <= static_cast<double>(percent)))
            return;

        UI().DoEvents();
        nextStep_ = static_cast<float>(static_cast<double>(nextStep_) + kStepPercent);
        Ctl("lblIndex").Caption = indexText;
        Ctl("lblRecordNumber").Caption =
            recCount_ != 0 ? prefixText + InsertCommas(Variant(recordNumber)) + " of " + recCountText_ + "..."
                           : prefixText;
        Ctl("icnProgressLine").Width = static_cast<double>(fraction) * (Ctl("pct_barBorder").Width - kBarMargin);
        Ctl("lblPercentDone").Caption = "(" + Variant(percent).ToString() + "%)";

        // The bar only moves with records done, so recordNumber is above 0 here.
        const DateValue now = clock_();
        const std::int64_t elapsed = DateDiffSeconds(begin_, now);
        const auto total = static_cast<std::int64_t>(std::floor(static_cast<double>(recCount_) *
                                                                static_cast<double>(elapsed) /
                                                                static_cast<double>(recordNumber)));
        const std::int64_t left = total - elapsed;
        if (DateDiffSeconds(lastRefresh_, now) < kRefreshSeconds)
            return;
        lastRefresh_ = now;
        const DateValue completion = DateAddSeconds(begin_, total);
        Ctl("lblEstCompletionTime").Caption =
            "Estimated completion time: " + Format(completion, total < kDayAndASecond ? "ttttt" : "ttttt, ddddd");
        const std::int64_t hours = left / kSecondsPerHour; // truncation, as Fix
        const std::int64_t rest = left - hours * kSecondsPerHour;
        const std::int64_t minutes = rest / kSecondsPerMinute;
        const std::int64_t seconds = rest - minutes * kSecondsPerMinute;
        Ctl("lblTimeLeft").Caption = "Estimated time remaining:  " + std::to_string(hours) + ":" +
                                     Format(static_cast<double>(minutes), "00") + ":" +
                                     Format(static_cast<double>(seconds), "00");
    });
}

void ProgressForm::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / 2 - Height / 2;
        Ctl("chkClose").Value = autoClose_ ? 1 : 0;
        Frame();
        ExpandProgress();
        Ctl("lblBeginTime").Caption = "Began Job: " + Format(begin_, "ddddd ttttt");
        Ctl("lblTimeLeft").Caption = kInitialTimeLeft;
        Ctl("lblEstCompletionTime").Caption = kInitialCompletion;
        Ctl("lblPercentDone").Caption = kInitialPercent;
        Ctl("lblRecordNumber").Caption = kNoRecord;
        Ctl("lblIndex").Caption = kNoRecord;
        Ctl("lblCurrentTime").Caption = Format(clock_(), "ttttt");
        Ctl("icnProgressLine").Width = 0;
    });
}

void ProgressForm::Form_Unload() {
    recCountText_.clear();
    if (frame_)
        frame_->Visible(false);
}

void ProgressForm::cmdDetails_Click() {
    expanded_ = !expanded_;
    ExpandProgress();
}

void ProgressForm::Timer1_Timer() {
    TrappedVoid("Timer1_Timer ", [&] {
        const std::string time = Format(clock_(), "ttttt");
        Control& label = Ctl("lblCurrentTime");
        if (label.Caption != time) {
            label.Caption = time;
            UI().DoEvents();
        }
    });
}

} // namespace tess
