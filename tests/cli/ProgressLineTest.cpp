// The terminal's view of a progress window: what it reads from the window, its
// own estimate of the time left, and the fit of the line to the terminal's width,
// on a clock and a width that the tests set.

#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <regex>
#include <sstream>

#include "ProgressLine.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

using namespace std::chrono_literals;
using TimePoint = std::chrono::steady_clock::time_point;

class FakeProgressWindow final : public Form {
public:
    FakeProgressWindow() : Form("frmFakeProgress") {
        for (const char* name : {"lblIndex", "lblPercentDone", "lblRecordNumber", "lblTimeLeft"})
            AddControl(name, ControlKind::Label).Caption = "-----";
        AddControl("cmdStop", ControlKind::CommandButton).Caption = "Stop";
    }
};

std::string WithCommas(long long value) {
    std::string digits = std::to_string(value);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3)
        digits.insert(static_cast<std::size_t>(at), ",");
    return digits;
}

//! A run shown through a ProgressLine whose clock and terminal width the test moves.
struct ShownRun {
    explicit ShownRun(bool rewrite, std::size_t columns = 200)
        : width(columns), line(err, rewrite, [this] { return now; }, [this] { return width; }) {}

    //! The window as the progress form leaves it after counting `done` of `total`; its own
    //! time-left label says something silly, as it may early in a run.
    void Step(long long done, long long total, const std::string& label = "Extracting Vertices...") {
        window.Ctl("lblIndex").Caption = label;
        char percent[16];
        std::snprintf(percent, sizeof percent, "(%.1f%%)", 100.0 * static_cast<double>(done) / total);
        window.Ctl("lblPercentDone").Caption = percent;
        window.Ctl("lblRecordNumber").Caption =
            "Performing Calculations..." + WithCommas(done) + " of " + WithCommas(total) + "...";
        window.Ctl("lblTimeLeft").Caption = "Estimated time remaining:  0:14:38";
        line.Update(window);
    }

    //! What is on screen now: the text after the last carriage return or line feed.
    std::string Shown() const {
        const std::string text = err.str();
        const auto last = text.find_last_of("\r\n", text.size() - 2);
        std::string shown = text.substr(last == std::string::npos ? 0 : last + 1);
        while (!shown.empty() && (shown.back() == ' ' || shown.back() == '\n'))
            shown.pop_back();
        return shown;
    }

    //! The time left on screen in seconds, or -1 when none is shown.
    long long ShownSecondsLeft() const {
        static const std::regex kLeft(R"(time left ([0-9]+):([0-9]{2}):([0-9]{2}))");
        std::smatch match;
        const std::string shown = Shown();
        if (!std::regex_search(shown, match, kLeft))
            return -1;
        return std::stoll(match[1]) * 3600 + std::stoll(match[2]) * 60 + std::stoll(match[3]);
    }

    TimePoint now{};
    std::size_t width;
    std::ostringstream err;
    FakeProgressWindow window;
    ProgressLine line;
};

TEST(ProgressLine, ReadsTheWindowsLabelsButNotItsTimeLeft) {
    ShownRun run(false);
    run.line.Update(run.window);
    EXPECT_EQ(run.err.str(), ""); // nothing before the first count
    run.Step(4520, 10000);
    EXPECT_EQ(run.err.str(), "Extracting Vertices...  45.2%  record 4,520 of 10,000\n");
}

TEST(ProgressLine, NoEstimateUntilTheRunHasGoneAWhileThenOneThatHolds) {
    // 11 seconds: a second of preparation before the first count, then 1,000 records a second.
    ShownRun run(true);
    run.now += 1s;
    run.Step(1, 10000);
    long long first = -1;
    double firstAt = 0;
    for (int tenth = 1; tenth <= 100; ++tenth) {
        run.now += 100ms;
        const long long done = 1 + 100LL * tenth;
        run.Step(std::min(done, 10000LL), 10000);
        const long long left = run.ShownSecondsLeft();
        const double trueLeft = (10000.0 - std::min(done, 10000LL)) / 1000.0;
        if (tenth < 30) {
            EXPECT_EQ(left, -1) << "no estimate after " << tenth / 10.0 << " s: " << run.Shown();
            continue;
        }
        if (left >= 0 && first < 0) {
            first = left;
            firstAt = tenth / 10.0;
        }
        // Shown whole seconds, rounded up, of a steady run: never more than a second off.
        if (done < 10000) {
            EXPECT_NEAR(static_cast<double>(left), trueLeft, 1.0) << "after " << tenth / 10.0 << " s";
        }
    }
    EXPECT_NEAR(static_cast<double>(first), 7.0, 1.0);
    EXPECT_LE(firstAt, 3.5);
}

TEST(ProgressLine, TheEstimateFollowsAChangeOfSpeedSmoothly) {
    ShownRun run(true);
    run.Step(0, 100000);
    long long done = 0;
    for (int tenth = 1; tenth <= 200; ++tenth) { // 20 s at 1,000 a second
        run.now += 100ms;
        done += 100;
        run.Step(done, 100000);
    }
    EXPECT_NEAR(static_cast<double>(run.ShownSecondsLeft()), 80.0, 1.0);
    long long previous = run.ShownSecondsLeft();
    for (int tenth = 1; tenth <= 300; ++tenth) { // 30 s at 500 a second
        run.now += 100ms;
        done += 50;
        run.Step(done, 100000);
        const long long left = run.ShownSecondsLeft();
        // No jumps: within half a second of running the figure moves by a few seconds at most.
        EXPECT_LE(std::llabs(left - previous), 6) << "after " << tenth / 10.0 << " s at the new speed";
        previous = left;
    }
    // 65,000 left at 500 a second: 130 s. After three time constants the estimate is close.
    EXPECT_NEAR(static_cast<double>(run.ShownSecondsLeft()), 130.0, 15.0);
}

TEST(ProgressLine, NothingLeftWhenComplete) {
    ShownRun run(true);
    run.Step(1, 1000);
    for (int second = 1; second <= 5; ++second) {
        run.now += 1s;
        run.Step(200 * second, 1000);
    }
    EXPECT_EQ(run.Shown(), "Extracting Vertices...  100.0%  record 1,000 of 1,000");
    run.line.Finish(run.window);
    const std::string text = run.err.str();
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);

    // A run stopped halfway ends its line without a time left either.
    ShownRun stopped(true);
    stopped.Step(1, 1000);
    stopped.now += 5s;
    stopped.Step(500, 1000);
    ASSERT_NE(stopped.ShownSecondsLeft(), -1);
    stopped.line.Finish(stopped.window);
    EXPECT_EQ(stopped.Shown(), "Extracting Vertices...  50.0%  record 500 of 1,000");
}

TEST(ProgressLine, ALineOnANarrowTerminalNeverWraps) {
    const std::string label = "\xE6\x9D\xB1\xE4\xBA\xAC Vertices of parcels..."; // two wide characters
    const std::string figures = "50.0%  record 500,000 of 1,000,000  time left 0:00:05";
    struct Case {
        std::size_t columns;
        std::string shown;
    };
    const Case cases[] = {
        {200, label + "  " + figures},
        {75, "\xE6\x9D\xB1\xE4\xBA\xAC Vertices of...  " + figures}, // the label cut short
        {60, figures},
        {40, "50.0%  500,000/1,000,000  0:00:05 left"},
        {20, "50.0%  0:00:05 left"},
        {8, "50.0%"},
        {4, "50."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.columns);
        ShownRun run(true, c.columns);
        run.Step(0, 1000000, label);
        for (int second = 1; second <= 5; ++second) {
            run.now += 1s;
            run.Step(100000 * second, 1000000, label);
        }
        EXPECT_EQ(run.Shown(), c.shown);
        // Every rewrite, blanks included, stays off the last column.
        const std::string text = run.err.str();
        EXPECT_EQ(text.find('\n'), std::string::npos);
        std::istringstream writes(text);
        for (std::string shown; std::getline(writes, shown, '\r');)
            EXPECT_LE(ProgressLine::DisplayWidth(shown), c.columns - 1) << shown;
    }
}

TEST(ProgressLine, AShorterLineWipesTheLongerOneBeforeIt) {
    ShownRun run(true, 80);
    run.Step(1, 1000, "A rather long description of the work...");
    run.now += 1s;
    run.Step(2, 1000, "Short...");
    const std::string text = run.err.str();
    const std::string second = text.substr(text.rfind('\r') + 1);
    const std::string first = text.substr(1, text.rfind('\r') - 1);
    EXPECT_EQ(second.size(), first.size());
    EXPECT_EQ(second.find_last_not_of(' ') + 1, std::string("Short...  0.2%  record 2 of 1,000").size());

    // The terminal grew narrower meanwhile: the wiping blanks stop at its width.
    run.width = 20;
    run.now += 1s;
    run.Step(3, 1000, "Short...");
    const std::string narrow = run.err.str().substr(run.err.str().rfind('\r') + 1);
    EXPECT_EQ(narrow.size(), 19u);
}

TEST(ProgressLine, PlainLinesAtMostOnceASecondAndWhole) {
    ShownRun run(false, 20);
    run.Step(1, 1000, "A description wider than the terminal...");
    for (int tenth = 1; tenth <= 25; ++tenth) {
        run.now += 100ms;
        run.Step(1 + tenth, 1000, "A description wider than the terminal...");
    }
    const std::string text = run.err.str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3); // at 0, 1 and 2 seconds
    EXPECT_EQ(text.find('\r'), std::string::npos);
    EXPECT_EQ(text.rfind("A description wider than the terminal...  0.1%  record 1 of 1,000\n", 0), 0u) << text;
}

TEST(ProgressLine, TerminalWidthFromTheTerminalOrColumns) {
    // A pipe is no terminal: the width comes from COLUMNS when that is a number.
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const char* saved = getenv("COLUMNS");
    const std::string restore = saved ? saved : "";
    setenv("COLUMNS", "57", 1);
    EXPECT_EQ(ProgressLine::TerminalWidth(fds[0]), 57u);
    setenv("COLUMNS", "wide", 1);
    EXPECT_EQ(ProgressLine::TerminalWidth(fds[0]), 0u);
    unsetenv("COLUMNS");
    EXPECT_EQ(ProgressLine::TerminalWidth(fds[0]), 0u);
    if (saved)
        setenv("COLUMNS", restore.c_str(), 1);
    close(fds[0]);
    close(fds[1]);

    EXPECT_EQ(ProgressLine::DisplayWidth("Zu\xCC\x88rich"), 6u);              // a combining mark
    EXPECT_EQ(ProgressLine::DisplayWidth("\xE6\x9D\xB1\xE4\xBA\xAC"), 4u);     // two wide characters
    EXPECT_EQ(ProgressLine::DisplayWidth("\xF0\x9F\x98\x80 ok"), 5u);           // an emoji
}

} // namespace
} // namespace tess::cli
