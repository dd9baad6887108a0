#pragma once
// The progress window of a long run, as one line on the error stream: what the
// run does, its percent, the record counter and the time left, all read from the
// window's own labels. On a terminal the line is rewritten in place; elsewhere
// (a pipe, a log file) a new line is written at most once a second.

#include <chrono>
#include <iosfwd>
#include <string>

namespace tess {
class Form;
}

namespace tess::cli {

class ProgressLine {
public:
    //! rewrite: true for one line rewritten with a carriage return, false for whole lines.
    ProgressLine(std::ostream& err, bool rewrite) : err_(err), rewrite_(rewrite) {}

    //! Shows the window's state when it changed and the last showing is old enough.
    void Update(const Form& window);
    //! Shows the final state, unless it was shown already, and ends the line.
    void Finish(const Form& window);

    //! The text of the line for a window's labels, e.g.
    //! "Extracting Vertices...  45.2%  record 4,520 of 10,000  time left 0:00:12".
    static std::string Text(const Form& window);

private:
    void Write(const std::string& text);

    std::ostream& err_;
    bool rewrite_;
    bool open_ = false; // a rewritten line is on screen without its end
    std::string shown_;
    std::size_t shownWidth_ = 0;
    std::chrono::steady_clock::time_point last_{};
};

} // namespace tess::cli
