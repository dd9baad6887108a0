#include "ProgressLine.h"

#include <ostream>
#include <regex>

#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

// A terminal redraws happily several times a second; a log wants no more than a line a second.
constexpr std::chrono::milliseconds kRewriteInterval{100};
constexpr std::chrono::milliseconds kPlainInterval{1000};
// What a label shows before the first step.
constexpr const char* kNoValue = "-----";

std::string Label(const Form& window, const char* name) {
    if (!window.HasControl(name))
        return {};
    const std::string& caption = window.Ctl(name).Caption;
    return caption == kNoValue ? std::string() : caption;
}

//! "(45.2%)" -> "45.2%".
std::string Percent(const std::string& label) {
    static const std::regex kPattern(R"(\(([^)]*%)\))");
    std::smatch match;
    return std::regex_search(label, match, kPattern) ? match[1].str() : std::string();
}

//! "Performing Calculations...4,520 of 10,000..." -> "record 4,520 of 10,000".
std::string Record(const std::string& label) {
    // Thousands separators of any locale, but the counts end in a digit (the label adds "...").
    static const std::regex kPattern(R"(([0-9](?:[0-9,.']*[0-9])?) of ([0-9](?:[0-9,.']*[0-9])?))");
    std::smatch match;
    return std::regex_search(label, match, kPattern) ? "record " + match[1].str() + " of " + match[2].str()
                                                      : std::string();
}

//! "Estimated time remaining:  0:01:02" -> "time left 0:01:02"; the dashes of the start give nothing.
std::string TimeLeft(const std::string& label) {
    static const std::regex kPattern(R"((-?[0-9]+:[0-9]{2}:[0-9]{2})\s*$)");
    std::smatch match;
    return std::regex_search(label, match, kPattern) ? "time left " + match[1].str() : std::string();
}

} // namespace

std::string ProgressLine::Text(const Form& window) {
    std::string text;
    auto add = [&text](const std::string& part) {
        if (part.empty())
            return;
        if (!text.empty())
            text += "  ";
        text += part;
    };
    add(Label(window, "lblIndex"));
    add(Percent(Label(window, "lblPercentDone")));
    add(Record(Label(window, "lblRecordNumber")));
    add(TimeLeft(Label(window, "lblTimeLeft")));
    return text;
}

void ProgressLine::Update(const Form& window) {
    const std::string text = Text(window);
    // Until the first record is counted the window shows only its initial texts.
    if (text.empty() || text == shown_ || Record(Label(window, "lblRecordNumber")).empty())
        return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < (rewrite_ ? kRewriteInterval : kPlainInterval))
        return;
    last_ = now;
    Write(text);
}

void ProgressLine::Finish(const Form& window) {
    const std::string text = Text(window);
    if (!text.empty() && text != shown_ && !Record(Label(window, "lblRecordNumber")).empty())
        Write(text);
    if (open_)
        err_ << '\n';
    err_.flush();
    // The text stays known: a window that stays open is not shown again unless it changes.
    open_ = false;
    shownWidth_ = 0;
}

void ProgressLine::Write(const std::string& text) {
    if (rewrite_) {
        // Blanks wipe what a longer line before left behind.
        const std::size_t pad = shownWidth_ > text.size() ? shownWidth_ - text.size() : 0;
        err_ << '\r' << text << std::string(pad, ' ');
        open_ = true;
    } else {
        err_ << text << '\n';
    }
    err_.flush();
    shown_ = text;
    shownWidth_ = text.size();
}

} // namespace tess::cli
