#pragma once
// The progress window of a long run, as one line on the error stream: what the
// run does, its percent, the record counter and the time left. The first three
// are the window's own labels. The time left is this line's own estimate: the
// window's counts whole seconds from the start of the job and is far off early in
// a run and at its end. On a terminal the line is rewritten in place and fitted to
// the terminal's width, so that it never wraps; elsewhere (a pipe, a log file) a
// new line is written at most once a second.

#include <chrono>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

namespace tess {
class Form;
}

namespace tess::cli {

class ProgressLine {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;
    //! The columns of the terminal; 0 when unknown.
    using Width = std::function<std::size_t()>;

    //! rewrite: true for one line rewritten with a carriage return (a terminal on stderr), false
    //! for whole lines.
    ProgressLine(std::ostream& err, bool rewrite);
    //! With a clock and a terminal width of one's own.
    ProgressLine(std::ostream& err, bool rewrite, Clock clock, Width width);

    //! Shows the window's state when it changed and the last showing is old enough.
    void Update(const Form& window);
    //! Shows the final state, unless it was shown already, and ends the line. The run is over (or
    //! interrupted by a message), so no time left is shown.
    void Finish(const Form& window);

    //! Columns of the terminal on the file descriptor (TIOCGWINSZ), else of the COLUMNS variable,
    //! else 0.
    static std::size_t TerminalWidth(int fd);
    //! Columns that UTF-8 text takes on a terminal: two for wide East Asian characters and most
    //! emoji, none for combining marks and controls, one for the rest.
    static std::size_t DisplayWidth(std::string_view text);

private:
    //! What the window's labels say.
    struct Reading {
        std::string label;   //!< what the run does
        std::string percent; //!< "45.2%"
        std::string doneText;  //!< "4,520", as the window writes it
        std::string totalText; //!< "10,000"
        std::int64_t done = 0;
        std::int64_t total = 0;
    };
    static std::optional<Reading> Read(const Form& window);

    void Observe(std::chrono::steady_clock::time_point now, std::int64_t done, std::int64_t total);
    //! Seconds left, or nothing before the estimate is trustworthy and once the run is complete.
    std::optional<std::int64_t> SecondsLeft(std::int64_t done, std::int64_t total) const;
    std::string Text(const Reading& reading, bool withTimeLeft) const;
    //! Columns a rewritten line may take.
    std::size_t Budget() const;
    void Write(const std::string& text);

    std::ostream& err_;
    bool rewrite_;
    Clock clock_;
    Width width_;
    bool open_ = false; // a rewritten line is on screen without its end
    std::string shown_;
    std::size_t shownWidth_ = 0;
    std::optional<std::chrono::steady_clock::time_point> lastShown_;

    // The estimate: records per second, measured from the first count this line saw (so that
    // the run's preparation does not count), then smoothed over the last few seconds.
    std::optional<std::chrono::steady_clock::time_point> start_;
    std::int64_t startDone_ = 0;
    std::chrono::steady_clock::time_point lastSample_{};
    std::int64_t lastSampleDone_ = 0;
    double rate_ = 0; // records per second; 0 until measured
};

} // namespace tess::cli
