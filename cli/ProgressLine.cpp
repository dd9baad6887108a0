#include "ProgressLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <regex>
#include <vector>

#include "platform/ui/Form.h"
#include "support/TextCoding.h"

namespace tess::cli {
namespace {

using Seconds = std::chrono::duration<double>;

// A terminal redraws happily several times a second; a log wants no more than a line a second.
constexpr std::chrono::milliseconds kRewriteInterval{100};
constexpr std::chrono::milliseconds kPlainInterval{1000};
// What a label shows before the first step.
constexpr const char* kNoValue = "-----";
constexpr const char* kGap = "  ";

// The estimate. No time left is shown before the run has gone this long since its first count:
// the first records often include opening files and filling caches, and a rate over a fraction
// of a second says little. Samples closer than kSampleInterval are not taken, and the rate
// follows the recent speed with this time constant, so a run that slows down or speeds up is
// followed within seconds without the figure jumping at every record.
constexpr Seconds kWarmUp{3.0};
constexpr Seconds kSampleInterval{0.5};
constexpr Seconds kSmoothing{10.0};

constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;

// A terminal that does not tell its width is taken to be as wide as terminals have always been.
constexpr std::size_t kDefaultColumns = 80;
// The label is shortened to no fewer columns than this; below that it is left out.
constexpr std::size_t kMinLabelColumns = 10;
constexpr const char* kEllipsis = "...";

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

//! The digits of a count written with thousands separators of any locale.
std::int64_t Count(const std::string& text) {
    std::int64_t value = 0;
    for (const char c : text)
        if (c >= '0' && c <= '9')
            value = value * 10 + (c - '0');
    return value;
}

std::string HoursMinutesSeconds(std::int64_t seconds) {
    const std::int64_t hours = seconds / kSecondsPerHour;
    const std::int64_t minutes = seconds % kSecondsPerHour / kSecondsPerMinute;
    const std::int64_t rest = seconds % kSecondsPerMinute;
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%lld:%02lld:%02lld", static_cast<long long>(hours),
                  static_cast<long long>(minutes), static_cast<long long>(rest));
    return buffer;
}

std::size_t Columns(char32_t c) {
    struct Range {
        char32_t first, last;
    };
    // Combining marks, zero-width characters and controls take no column.
    static constexpr Range kNone[] = {{0x0000, 0x001F}, {0x007F, 0x009F}, {0x0300, 0x036F}, {0x1AB0, 0x1AFF},
                                      {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0x2060, 0x2064},
                                      {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}};
    // East Asian wide and full-width characters, and the emoji blocks, take two.
    static constexpr Range kTwo[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},
                                     {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},
                                     {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE4F},
                                     {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                                     {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
    for (const Range& r : kNone)
        if (c >= r.first && c <= r.last)
            return 0;
    for (const Range& r : kTwo)
        if (c >= r.first && c <= r.last)
            return 2;
    return 1;
}

//! Calls visit(character, bytes) for each character of UTF-8 text; a byte that is none counts as one.
template <class F>
void ForEachCharacter(std::string_view text, F&& visit) {
    for (std::size_t i = 0; i < text.size();) {
        char32_t c = 0;
        std::size_t length = coding::DecodeUtf8(text, i, c);
        if (length == 0) {
            c = coding::kReplacementCharacter;
            length = 1;
        }
        if (!visit(c, text.substr(i, length)))
            return;
        i += length;
    }
}

//! The longest start of the text that takes no more than `columns`, cut between characters.
std::string Truncated(std::string_view text, std::size_t columns) {
    std::string out;
    std::size_t used = 0;
    ForEachCharacter(text, [&](char32_t c, std::string_view bytes) {
        const std::size_t width = Columns(c);
        if (used + width > columns)
            return false;
        used += width;
        out += bytes;
        return true;
    });
    return out;
}

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        if (part.empty())
            continue;
        if (!text.empty())
            text += kGap;
        text += part;
    }
    return text;
}

//! The line in `budget` columns. `figures` are the same figures ever shorter, the whole first.
//! The label and the whole figures when they fit, else the label cut short; without the label,
//! the longest form of the figures that fits, and at the last the shortest cut off.
std::string Fitted(const std::string& label, const std::vector<std::string>& figures, std::size_t budget) {
    const std::string whole = Joined({label, figures.front()});
    if (ProgressLine::DisplayWidth(whole) <= budget)
        return whole;
    const std::size_t used = ProgressLine::DisplayWidth(figures.front()) + std::string_view(kGap).size();
    const std::size_t room = budget > used ? budget - used : 0;
    if (!label.empty() && room >= kMinLabelColumns)
        return Joined({Truncated(label, room - std::string_view(kEllipsis).size()) + kEllipsis, figures.front()});
    for (const std::string& form : figures)
        if (ProgressLine::DisplayWidth(form) <= budget)
            return form;
    return Truncated(figures.back(), budget);
}

} // namespace

ProgressLine::ProgressLine(std::ostream& err, bool rewrite)
    : ProgressLine(err, rewrite, [] { return std::chrono::steady_clock::now(); },
                   [] { return TerminalWidth(STDERR_FILENO); }) {}

ProgressLine::ProgressLine(std::ostream& err, bool rewrite, Clock clock, Width width)
    : err_(err), rewrite_(rewrite), clock_(std::move(clock)), width_(std::move(width)) {}

std::size_t ProgressLine::TerminalWidth(int fd) {
    winsize size{};
    if (ioctl(fd, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    if (const char* columns = std::getenv("COLUMNS")) {
        char* end = nullptr;
        const long value = std::strtol(columns, &end, 10);
        if (end != columns && *end == '\0' && value > 0)
            return static_cast<std::size_t>(value);
    }
    return 0;
}

std::size_t ProgressLine::DisplayWidth(std::string_view text) {
    std::size_t columns = 0;
    ForEachCharacter(text, [&columns](char32_t c, std::string_view) {
        columns += Columns(c);
        return true;
    });
    return columns;
}

std::optional<ProgressLine::Reading> ProgressLine::Read(const Form& window) {
    // "Performing Calculations...4,520 of 10,000...": thousands separators of any locale, but the
    // counts end in a digit (the label adds "...").
    static const std::regex kRecord(R"(([0-9](?:[0-9,.']*[0-9])?) of ([0-9](?:[0-9,.']*[0-9])?))");
    const std::string counter = Label(window, "lblRecordNumber");
    std::smatch match;
    // Until the first record is counted the window shows only its initial texts.
    if (!std::regex_search(counter, match, kRecord))
        return std::nullopt;
    Reading reading;
    reading.label = Label(window, "lblIndex");
    reading.percent = Percent(Label(window, "lblPercentDone"));
    reading.doneText = match[1].str();
    reading.totalText = match[2].str();
    reading.done = Count(match[1].str());
    reading.total = Count(match[2].str());
    return reading;
}

void ProgressLine::Observe(std::chrono::steady_clock::time_point now, std::int64_t done, std::int64_t total) {
    if (total <= 0)
        return;
    if (!start_ || done < lastSampleDone_) { // the first count, or the counter of a new run
        start_ = now;
        startDone_ = done;
        lastSample_ = now;
        lastSampleDone_ = done;
        rate_ = 0;
        return;
    }
    const Seconds sinceSample = now - lastSample_;
    if (sinceSample < kSampleInterval)
        return;
    if (rate_ > 0) {
        const double recent = static_cast<double>(done - lastSampleDone_) / sinceSample.count();
        const double weight = 1.0 - std::exp(-sinceSample / kSmoothing);
        rate_ += weight * (recent - rate_);
    } else if (const Seconds running = now - *start_; running >= kWarmUp && done > startDone_) {
        rate_ = static_cast<double>(done - startDone_) / running.count();
    }
    lastSample_ = now;
    lastSampleDone_ = done;
}

std::optional<std::int64_t> ProgressLine::SecondsLeft(std::int64_t done, std::int64_t total) const {
    if (done >= total || !(rate_ > 0))
        return std::nullopt;
    // Rounded up: a run is not said to be done before it is.
    return static_cast<std::int64_t>(std::ceil(static_cast<double>(total - done) / rate_));
}

std::string ProgressLine::Text(const Reading& reading, bool withTimeLeft) const {
    const std::optional<std::int64_t> seconds =
        withTimeLeft ? SecondsLeft(reading.done, reading.total) : std::nullopt;
    const std::string left = seconds ? HoursMinutesSeconds(*seconds) : std::string();
    const std::string whole = Joined({reading.percent, "record " + reading.doneText + " of " + reading.totalText,
                                      left.empty() ? "" : "time left " + left});
    if (!rewrite_)
        return Joined({reading.label, whole});
    const std::string leftShort = left.empty() ? "" : left + " left";
    return Fitted(reading.label,
                  {whole, Joined({reading.percent, reading.doneText + "/" + reading.totalText, leftShort}),
                   Joined({reading.percent, leftShort}), reading.percent},
                  Budget());
}

std::size_t ProgressLine::Budget() const {
    // The last column stays free: some terminals wrap as soon as it is written.
    const std::size_t columns = width_ ? width_() : 0;
    return (columns > 0 ? columns : kDefaultColumns) - 1;
}

void ProgressLine::Update(const Form& window) {
    const std::optional<Reading> reading = Read(window);
    if (!reading)
        return;
    const auto now = clock_();
    Observe(now, reading->done, reading->total);
    if (lastShown_ && now - *lastShown_ < (rewrite_ ? kRewriteInterval : kPlainInterval))
        return;
    const std::string text = Text(*reading, true);
    if (text == shown_)
        return;
    lastShown_ = now;
    Write(text);
}

void ProgressLine::Finish(const Form& window) {
    if (const std::optional<Reading> reading = Read(window)) {
        const std::string text = Text(*reading, false);
        if (text != shown_)
            Write(text);
    }
    if (open_)
        err_ << '\n';
    err_.flush();
    // The text stays known: a window that stays open is not shown again unless it changes.
    open_ = false;
    shownWidth_ = 0;
}

void ProgressLine::Write(const std::string& text) {
    const std::size_t width = DisplayWidth(text);
    if (rewrite_) {
        // Blanks wipe what a longer line before left behind, as far as the terminal is wide now.
        const std::size_t wiped = std::min(shownWidth_, Budget());
        const std::size_t pad = wiped > width ? wiped - width : 0;
        err_ << '\r' << text << std::string(pad, ' ');
        open_ = true;
    } else {
        err_ << text << '\n';
    }
    err_.flush();
    shown_ = text;
    shownWidth_ = width;
}

} // namespace tess::cli
