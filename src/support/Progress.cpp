#include "support/Progress.h"

#include <cmath>
#include <limits>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/Format.h"
#include "support/ModelessFrame.h"
#include "support/ProgressForm.h"
#include "support/ReportTemplates.h"

namespace tess {
namespace {

constexpr const char* kSource = "Progress";
constexpr float kPercent = 100.0F;
constexpr double kHundredths = 100.0;
constexpr std::int32_t kSecondsPerHour = 3600;
constexpr std::int32_t kSecondsPerMinute = 60;
constexpr int kChecked = 1;
constexpr const char* kLineBreak = "\r\n";
constexpr const char* kCancelRule = "---------------------------------------------------------";

[[noreturn]] void Overflow() { throw Fault(fault::Overflow, kSource, "Overflow"); }

std::int32_t ToLong(std::int64_t value) {
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        Overflow();
    return static_cast<std::int32_t>(value);
}

} // namespace

std::string CalcTimeLeft(const std::string& Prefix, DateValue StartTime, std::int32_t Done, std::int32_t Total,
                         const Clock& clock) {
    return TrappedNested("CalcTimeLeft ", [&] {
        float fraction = 0.0F;
        if (Total > 0)
            fraction = static_cast<float>(static_cast<double>(Done) / static_cast<double>(Total));
        const auto percent =
            static_cast<float>(std::nearbyint(static_cast<double>(fraction * kPercent) * kHundredths) / kHundredths);
        const std::int32_t elapsed = ToLong(DateDiffSeconds(StartTime, clock()));
        std::int32_t product = 0;
        if (__builtin_mul_overflow(Total, elapsed, &product))
            Overflow();
        if (Done == 0)
            throw Fault(fault::DivisionByZero, kSource, "Division by zero");
        // Rounded to the nearest whole second, ties to even, as the host's CLng.
        const std::int32_t estimate =
            ToLong(static_cast<std::int64_t>(std::nearbyint(static_cast<double>(product) / static_cast<double>(Done))));
        const std::int64_t left = static_cast<std::int64_t>(estimate) - elapsed;
        const std::int64_t hours = left / kSecondsPerHour;
        const std::int64_t rest = left - hours * kSecondsPerHour;
        const std::int64_t minutes = rest / kSecondsPerMinute;
        const std::int64_t seconds = rest - minutes * kSecondsPerMinute;
        return Prefix + ".....[record #" + std::to_string(Done) + " of " + std::to_string(Total) + "  ---  " +
               Variant(percent).ToString() + "%]....." + "Est. Time Left = " + std::to_string(hours) + ":" +
               Format(static_cast<double>(minutes), "00") + ":" + Format(static_cast<double>(seconds), "00") + "...";
    });
}

bool BailOutOfProgress(const std::shared_ptr<Form>& form, const std::shared_ptr<IApplication>& application) {
    return Trapped("BailOutOfProgress ", false, [&] {
        if (!application)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        const std::shared_ptr<clsExtension> extension = FindTessExtension(*application);
        const auto progress = std::dynamic_pointer_cast<ProgressForm>(form);
        if (!progress)
            return false;
        if (!extension)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");

        const bool closeWhenFinished = progress->Ctl("chkClose").Value == kChecked;
        extension->ProgressDialogAutoClose(closeWhenFinished);
        extension->ProgressDialogSetExpanded(progress->SetExpanded());
        if (progress->ShouldContinue())
            return false;

        UI().SetMousePointer(MousePointer::Default);
        const DateValue now = progress->Now();
        const std::string stamp = Format(now, "long date") + ";  " + Format(now, "long time");
        progress->AppendDetails(std::string(kLineBreak) + "Operation cancelled prematurely at " + stamp + kLineBreak +
                                kCancelRule + kLineBreak + ReturnTimeElapsed(progress->ProgBeginTime(), now));
        if (closeWhenFinished)
            progress->Frame().Visible(false);
        return true;
    });
}

} // namespace tess
