#include "support/Progress.h"

#include <gtest/gtest.h>

#include "platform/system/Fault.h"
#include "support/ModelessFrame.h"
#include "support/frmOrlProgressMeter.h"
#include "support/frmOrlProgressPercent.h"
#include "TestSupport.h"

namespace tess {
namespace {

using test::FakeClock;
using test::MorningOfMarch5;

class ProgressFormTest : public test::ScriptedUITest {
protected:
    // A run of `count` records that began at the fake clock's present time.
    std::shared_ptr<frmOrlProgressPercent> StartRun(std::int32_t count) {
        auto form = std::make_shared<frmOrlProgressPercent>(clock_.AsClock());
        form->ShouldContinue(true);
        form->ProgBeginTime(clock_.Now());
        form->ProgRecCount(count);
        return form;
    }
    std::string Caption(Form& form, const char* control) { return form.Ctl(control).Caption; }

    FakeClock clock_{MorningOfMarch5()};
};

TEST_F(ProgressFormTest, LoadsWithInitialTexts) {
    frmOrlProgressMeter form(clock_.AsClock());
    EXPECT_TRUE(form.IsLoaded());
    const std::pair<const char*, const char*> labels[] = {
        {"lblTimeLeft", "Estimated time remaining: ---:---:---"},
        {"lblEstCompletionTime", "Estimated completion time: -----------"},
        {"lblPercentDone", "(00.0%)"}, {"lblRecordNumber", "-----"}, {"lblIndex", "-----"},
        {"lblCurrentTime", "10:00:00"}, {"chkClose", "Close When Finished..."}};
    for (const auto& [control, text] : labels)
        EXPECT_EQ(Caption(form, control), text) << control;
    EXPECT_EQ(form.Frame().Caption(), " Current Status:");
    EXPECT_FALSE(form.Frame().Visible());
    EXPECT_DOUBLE_EQ(form.Left, 1920 / 2 - form.Width / 2); // centred on the scripted screen
}

TEST_F(ProgressFormTest, NoCountOrRecordZeroKeepsInitialTexts) {
    for (const auto& [count, record] : {std::pair{0, 3}, std::pair{100, 0}}) {
        auto form = StartRun(count);
        clock_.Advance(5);
        form->Est_Time_Left(record, "Job", "Record "); // record 0: no division by zero
        EXPECT_EQ(Caption(*form, "lblPercentDone"), "(00.0%)");
        EXPECT_EQ(Caption(*form, "lblRecordNumber"), "-----");
    }
    EXPECT_EQ(ui_->EventPumps(), 0);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(ProgressFormTest, StepShowsCountsPercentAndTimeLeft) {
    auto form = StartRun(1000);
    clock_.Advance(10);
    form->Est_Time_Left(100, "Converting roads", "Working on Feature ");
    EXPECT_EQ(Caption(*form, "lblIndex"), "Converting roads");
    EXPECT_EQ(Caption(*form, "lblRecordNumber"), "Working on Feature 100 of 1,000...");
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(10%)");
    // 10 s for 100 of 1000 records: 100 s in all, 90 s left, done at 10:01:40.
    EXPECT_EQ(Caption(*form, "lblTimeLeft"), "Estimated time remaining:  0:01:30");
    EXPECT_EQ(Caption(*form, "lblEstCompletionTime"), "Estimated completion time: 10:01:40");
    // Bar: 10 % of the border less its 4 px margin. The fraction is single precision,
    // so the width may be off by a few millionths of a pixel.
    EXPECT_NEAR(form->Ctl("icnProgressLine").Width, 0.1 * (form->Ctl("pct_barBorder").Width - 4.0), 1e-4);
    EXPECT_EQ(ui_->EventPumps(), 1);
}

TEST_F(ProgressFormTest, TimeLabelsChangeAtMostOnceASecond) {
    auto form = StartRun(1000);
    clock_.Advance(10);
    form->Est_Time_Left(100, "Job", "Record ");
    form->Est_Time_Left(500, "Job", "Record ");
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(50%)");
    EXPECT_EQ(Caption(*form, "lblTimeLeft"), "Estimated time remaining:  0:01:30"); // as a second ago
    clock_.Advance(1);
    form->Est_Time_Left(550, "Job", "Record ");
    // 11 s for 550 records: Int(1000 x 11 / 550) = 20 s in all, 9 s left.
    EXPECT_EQ(Caption(*form, "lblTimeLeft"), "Estimated time remaining:  0:00:09");
}

TEST_F(ProgressFormTest, DisplayMovesOncePerTenthOfAPercent) {
    auto form = StartRun(10000);
    form->Est_Time_Left(5, "Job", "Record ");   // 0.05 %
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(00.0%)");
    form->Est_Time_Left(10, "Job", "Record ");  // 0.1 %
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(0.1%)");
    form->Est_Time_Left(15, "Job", "Record ");  // 0.15 %: below the next step of 0.2
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(0.1%)");
    form->Est_Time_Left(5000, "Job", "Record "); // a jump moves the display once
    EXPECT_EQ(Caption(*form, "lblPercentDone"), "(50%)");
    EXPECT_EQ(ui_->EventPumps(), 2);
}

TEST_F(ProgressFormTest, JobOverADayShowsTheDate) {
    auto form = StartRun(100);
    clock_.Advance(1000);
    form->Est_Time_Left(1, "Job", "Record ");
    // 1000 s per record: 100000 s in all, past one day.
    EXPECT_EQ(Caption(*form, "lblEstCompletionTime"), "Estimated completion time: 13:46:40, 03/06/24");
    EXPECT_EQ(Caption(*form, "lblTimeLeft"), "Estimated time remaining:  27:30:00");
}

TEST_F(ProgressFormTest, StopDiffersBetweenTheForms) {
    frmOrlProgressMeter meter(clock_.AsClock());
    meter.ShouldContinue(true);
    meter.Fire("cmdStop", FormEvent::Click);
    EXPECT_FALSE(meter.ShouldContinue());
    EXPECT_TRUE(meter.IsLoaded());
    meter.Ctl("cmdStop").Caption = "Close"; // a finished worker renames the button
    meter.Fire("cmdStop", FormEvent::Click);
    EXPECT_FALSE(meter.IsLoaded());

    frmOrlProgressPercent percent(clock_.AsClock());
    percent.ShouldContinue(true);
    percent.Ctl("cmdStop").Caption = "Close";
    percent.Fire("cmdStop", FormEvent::Click);
    EXPECT_FALSE(percent.ShouldContinue());
    EXPECT_TRUE(percent.IsLoaded());
}

TEST_F(ProgressFormTest, DetailsButtonFlipsTheLog) {
    auto form = StartRun(10);
    form->SetExpanded(true);
    EXPECT_TRUE(form->Ctl("txtDetails").Visible);
    EXPECT_EQ(Caption(*form, "cmdDetails"), "Minimize");
    form->Fire("cmdDetails", FormEvent::Click);
    EXPECT_FALSE(form->SetExpanded());
    EXPECT_FALSE(form->Ctl("txtDetails").Visible);
    EXPECT_EQ(Caption(*form, "cmdDetails"), "Show Details");
    EXPECT_DOUBLE_EQ(form->Height, ProgressForm::kCollapsedHeight);
}

TEST_F(ProgressFormTest, TimerWritesTheClockOnlyWhenItChanged) {
    auto form = StartRun(10);
    form->Fire("Timer1", FormEvent::Timer);
    EXPECT_EQ(ui_->EventPumps(), 0);
    clock_.Advance(1);
    form->Fire("Timer1", FormEvent::Timer);
    EXPECT_EQ(Caption(*form, "lblCurrentTime"), "10:00:01");
    EXPECT_EQ(ui_->EventPumps(), 1);
}

TEST_F(ProgressFormTest, ShownWindowOutlivesTheWorkerUntilHidden) {
    auto form = StartRun(10);
    form->Frame().Visible(true);
    ASSERT_EQ(ui_->Texts("modeless").size(), 1u);
    EXPECT_EQ(ui_->Log().back().title, " Current Status:");
    std::weak_ptr<frmOrlProgressPercent> watch = form;
    form.reset(); // the worker is done; the user still reads the window
    ASSERT_FALSE(watch.expired());
    watch.lock()->Fire("cmdStop", FormEvent::Click); // the window still answers
    watch.lock()->Unload();                          // the user closes it
    EXPECT_EQ(ui_->Texts("hide").size(), 1u);
    // Released at the next show or hide of any frame, not inside its own call.
    frmOrlProgressMeter other(clock_.AsClock());
    other.Frame().Visible(true);
    EXPECT_TRUE(watch.expired());
}

class BailOutTest : public test::ExtensionUITest {
protected:
    std::shared_ptr<frmOrlProgressMeter> StartRun() {
        auto form = std::make_shared<frmOrlProgressMeter>(clock_.AsClock());
        form->SetExpanded(true);
        form->SetAutoClose(extension_->ProgressDialogAutoClose());
        form->ShouldContinue(true);
        form->ProgBeginTime(clock_.Now());
        form->ProgRecCount(1000);
        form->AppendDetails("Job");
        form->Frame().Visible(true);
        return form;
    }
    FakeClock clock_{MorningOfMarch5()};
};

TEST_F(BailOutTest, RunningJobGoesOnAndHandsOverTheSettings) {
    auto form = StartRun();
    form->Ctl("chkClose").Value = 1;
    EXPECT_FALSE(BailOutOfProgress(form, app_));
    EXPECT_TRUE(extension_->ProgressDialogAutoClose());
    EXPECT_TRUE(extension_->ProgressDialogSetExpanded());
    EXPECT_EQ(form->Ctl("txtDetails").Text, "Job");
    form->Ctl("chkClose").Value = 0;
    form->SetExpanded(false);
    EXPECT_FALSE(BailOutOfProgress(form, app_));
    EXPECT_FALSE(extension_->ProgressDialogAutoClose());
    EXPECT_FALSE(extension_->ProgressDialogSetExpanded());
}

TEST_F(BailOutTest, StopLeavesWindowWithCancellationLine) {
    auto form = StartRun();
    ui_->SetMousePointer(MousePointer::Hourglass);
    clock_.Advance(42);
    form->Fire("cmdStop", FormEvent::Click);
    EXPECT_TRUE(BailOutOfProgress(form, app_));
    EXPECT_EQ(form->Ctl("txtDetails").Text,
              "Job\r\nOperation cancelled prematurely at Tuesday, March 05, 2024;  10:00:42\r\n"
              "---------------------------------------------------------\r\n"
              "Analysis Began: Tuesday, March 05, 2024;  10:00:00\r\n"
              "Analysis Complete: Tuesday, March 05, 2024;  10:00:42\r\n"
              "Time Elapsed: 42 seconds...");
    EXPECT_TRUE(form->Frame().Visible());
    EXPECT_EQ(ui_->Pointer(), MousePointer::Default);
}

TEST_F(BailOutTest, StopWithCloseWhenFinishedHidesTheWindowAndTheNextOpensSo) {
    auto first = StartRun();
    first->Ctl("chkClose").Value = 1;
    first->Fire("cmdStop", FormEvent::Click);
    EXPECT_TRUE(BailOutOfProgress(first, app_));
    EXPECT_FALSE(first->Frame().Visible());
    EXPECT_EQ(ui_->Texts("hide").size(), 1u);
    auto next = StartRun();
    EXPECT_EQ(next->Ctl("chkClose").Value, 1);
    EXPECT_TRUE(next->Ctl("txtDetails").Visible);
}

TEST_F(BailOutTest, OtherFormsAreNeverStopped) {
    auto other = std::make_shared<Form>("frmOther");
    extension_->ProgressDialogAutoClose(true);
    EXPECT_FALSE(BailOutOfProgress(other, app_));
    EXPECT_FALSE(BailOutOfProgress(nullptr, app_));
    EXPECT_TRUE(extension_->ProgressDialogAutoClose());
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST(CalcTimeLeft, StatusTextWithPercentAndTimeLeft) {
    FakeClock clock(MorningOfMarch5());
    const DateValue start = clock.Now();
    clock.Advance(30);
    EXPECT_EQ(CalcTimeLeft("Converting roads", start, 50, 200, clock.AsClock()),
              "Converting roads.....[record #50 of 200  ---  25%].....Est. Time Left = 0:01:30...");
    EXPECT_EQ(CalcTimeLeft("P", start, 1, 3, clock.AsClock()),
              "P.....[record #1 of 3  ---  33.33%].....Est. Time Left = 0:01:00...");
    clock.Advance(3600 - 30);
    EXPECT_EQ(CalcTimeLeft("P", start, 1, 4, clock.AsClock()),
              "P.....[record #1 of 4  ---  25%].....Est. Time Left = 3:00:00...");
}

TEST(CalcTimeLeft, ProductOverflowIsPassedOn) {
    FakeClock clock(MorningOfMarch5());
    const DateValue start = clock.Now();
    clock.Advance(30);
    // 100,000,000 records x 30 s passes 2^31 - 1.
    try {
        CalcTimeLeft("P", start, 10, 100000000, clock.AsClock());
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.Number(), fault::Overflow);
        EXPECT_NE(f.Description().find("CalcTimeLeft "), std::string::npos);
    }
    EXPECT_THROW(CalcTimeLeft("P", start, 0, 10, clock.AsClock()), Fault);
}

} // namespace
} // namespace tess
