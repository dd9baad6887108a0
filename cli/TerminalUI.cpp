#include "TerminalUI.h"

#include <algorithm>
#include <istream>
#include <ostream>

#include "Interrupt.h"
#include "ProgressLine.h"
#include "TextUtil.h"
#include "platform/ui/Form.h"
#include "support/RtfRenderer.h"

namespace tess::cli {
namespace {

constexpr const char* kIndent = "    ";

//! The text with CR LF and lone CR as line ends, each line indented.
std::string Indented(const std::string& text) {
    std::string result = kIndent;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        if (c == '\r' || c == '\n') {
            result += '\n';
            result += kIndent;
        } else {
            result += c;
        }
    }
    return result;
}

const char* ButtonsText(MsgBoxButtons buttons) {
    switch (buttons) {
    case MsgBoxButtons::OK: return "OK";
    case MsgBoxButtons::OKCancel: return "OK/Cancel";
    case MsgBoxButtons::YesNo: return "Yes/No";
    case MsgBoxButtons::YesNoCancel: return "Yes/No/Cancel";
    }
    return "";
}

const char* AnswerText(MsgBoxResult result) {
    switch (result) {
    case MsgBoxResult::OK: return "OK";
    case MsgBoxResult::Cancel: return "Cancel";
    case MsgBoxResult::Yes: return "Yes";
    case MsgBoxResult::No: return "No";
    default: return "?";
    }
}

MsgBoxResult Affirmative(MsgBoxButtons buttons) {
    return buttons == MsgBoxButtons::OKCancel ? MsgBoxResult::OK : MsgBoxResult::Yes;
}

//! The answer that changes nothing: No to a Yes/No question, Cancel where there is one.
MsgBoxResult Safe(MsgBoxButtons buttons) {
    return buttons == MsgBoxButtons::YesNo ? MsgBoxResult::No : MsgBoxResult::Cancel;
}

bool IsProgressWindow(const Form& form) {
    return form.HasControl("lblPercentDone") && form.HasControl("cmdStop");
}

} // namespace

TerminalUI::TerminalUI(Console& console, Answer answer, ProgressStyle progress)
    : console_(console), answer_(answer) {
    if (progress == ProgressStyle::Auto)
        progress = console.errIsTerminal ? ProgressStyle::Line : ProgressStyle::Plain;
    if (progress != ProgressStyle::None)
        progress_ = std::make_unique<ProgressLine>(console.err, progress == ProgressStyle::Line);
}

TerminalUI::~TerminalUI() = default;

void TerminalUI::RegisterDriver(const std::string& formName, FormDriver driver) {
    drivers_[formName] = std::move(driver);
}

void TerminalUI::QueueBrowse(BrowseResult result) { browses_.push_back(std::move(result)); }

void TerminalUI::QueueSpatialReference(std::shared_ptr<ISpatialReference> reference) {
    references_.push_back(std::move(reference));
}

void TerminalUI::UsageProblem(const std::string& text) {
    if (usageProblem_.empty())
        usageProblem_ = text;
}

void TerminalUI::Note(const std::string& text) {
    FinishProgress();
    console_.err << "tessarine: " << text << '\n';
    console_.err.flush();
}

std::optional<bool> TerminalUI::Confirm(const std::string& question) {
    FinishProgress();
    console_.err << "tessarine: " << question << '\n';
    const MsgBoxResult answer = Decide(MsgBoxButtons::YesNo);
    if (cancelled_)
        return std::nullopt;
    return answer == MsgBoxResult::Yes;
}

void TerminalUI::AnswerInAdvance(const std::string& title, MsgBoxResult answer) {
    answeredInAdvance_[title] = answer;
}

MsgBoxResult TerminalUI::MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon,
                                    const std::string& title) {
    if (cancelled_)
        return buttons == MsgBoxButtons::OK ? MsgBoxResult::OK : Safe(buttons);
    if (auto it = answeredInAdvance_.find(title); it != answeredInAdvance_.end() && buttons != MsgBoxButtons::OK) {
        const MsgBoxResult answer = it->second;
        answeredInAdvance_.erase(it);
        return answer;
    }
    FinishProgress();
    console_.err << Trim(title) << '\n' << Indented(text) << '\n';
    if (buttons == MsgBoxButtons::OK) {
        console_.err.flush();
        return MsgBoxResult::OK;
    }
    return Decide(buttons);
}

MsgBoxResult TerminalUI::Decide(MsgBoxButtons buttons) {
    if (cancelled_)
        return Safe(buttons);
    MsgBoxResult result;
    const char* why;
    if (answer_ == Answer::Yes) {
        result = Affirmative(buttons);
        why = "--yes";
    } else if (answer_ == Answer::No) {
        result = Safe(buttons);
        why = "--no";
    } else if (console_.inIsTerminal) {
        return Prompt(buttons);
    } else {
        result = Safe(buttons);
        why = "no terminal to ask; --yes or --no answer";
        ++questionsDefaulted_;
    }
    console_.err << kIndent << '[' << ButtonsText(buttons) << "] " << AnswerText(result) << " (" << why << ")\n";
    console_.err.flush();
    return result;
}

MsgBoxResult TerminalUI::Prompt(MsgBoxButtons buttons) {
    const bool okCancel = buttons == MsgBoxButtons::OKCancel;
    const bool withCancel = buttons == MsgBoxButtons::YesNoCancel;
    for (;;) {
        console_.err << kIndent << (okCancel ? "OK or Cancel? [o/c] " : withCancel ? "Yes, No or Cancel? [y/n/c] "
                                                                                   : "Yes or No? [y/n] ");
        console_.err.flush();
        std::string line;
        bool read = false;
        if (!InterruptPending()) {
            InterruptibleReads interruptible;
            read = static_cast<bool>(std::getline(console_.in, line));
        }
        if (InterruptPending()) {
            // Ctrl-C at a question stops the command, not only the question.
            TakeInterrupt();
            console_.in.clear();
            console_.err << '\n';
            cancelled_ = true;
            return Safe(buttons);
        }
        if (!read) {
            console_.err << '\n';
            return Safe(buttons); // the input ended: nobody is there to say yes
        }
        const std::string word = Trim(line);
        const char c = word.empty() ? '\0' : static_cast<char>(std::tolower(static_cast<unsigned char>(word[0])));
        if (okCancel && c == 'o')
            return MsgBoxResult::OK;
        if (!okCancel && c == 'y')
            return MsgBoxResult::Yes;
        if (!okCancel && c == 'n')
            return MsgBoxResult::No;
        if ((okCancel || withCancel) && c == 'c')
            return MsgBoxResult::Cancel;
    }
}

void TerminalUI::ShowErrorWindow(const std::string& text) {
    FinishProgress();
    errorShown_ = true;
    if (cancelled_)
        return; // what a cancelled command could not finish is no news to the one who cancelled it
    console_.err << text;
    if (text.empty() || text.back() != '\n')
        console_.err << '\n';
    console_.err.flush();
}

void TerminalUI::DoEvents() {
    if (modeless_.empty())
        return;
    if (InterruptPending()) {
        for (auto it = modeless_.rbegin(); it != modeless_.rend(); ++it) {
            Form& window = **it;
            if (!IsProgressWindow(window))
                continue;
            const Control& stop = window.Ctl("cmdStop");
            if (!stop.Enabled || !stop.Visible)
                continue;
            TakeInterrupt();
            stopDelivered_ = true;
            window.Fire("cmdStop", FormEvent::Click);
            break;
        }
    }
    if (progress_ && IsProgressWindow(*modeless_.back()))
        progress_->Update(*modeless_.back());
}

bool TerminalUI::OpenDocument(const std::string& path) {
    console_.err << "Open " << path << " to read it.\n";
    return false;
}

void TerminalUI::ShowModal(Form& form) {
    FinishProgress();
    if (form.Name() == "frmReport_modal") {
        ShowReport(form);
    } else if (form.Name() == "frmMessageBox") {
        AnswerMessageForm(form);
    } else if (auto it = drivers_.find(form.Name()); it != drivers_.end()) {
        it->second(form);
    } else {
        UsageProblem("the dialog " + Quoted(Trim(form.Caption, " :")) + " (" + form.Name() +
                     ") cannot be answered from the command line yet");
    }
    // Nobody is left to press a button: the dialog closes as its close box would.
    if (form.IsLoaded() && form.Visible())
        form.Unload();
}

void TerminalUI::ShowReport(Form& form) {
    if (cancelled_) {
        form.Fire("cmdOK", FormEvent::Click);
        return;
    }
    reportRtf_ = form.Ctl("txtReport").Text;
    ++reportsShown_;
    console_.out << RtfToText(reportRtf_);
    console_.out.flush();
    form.Fire("cmdOK", FormEvent::Click);
}

void TerminalUI::AnswerMessageForm(Form& form) {
    if (cancelled_) {
        form.Fire("cmdNo", FormEvent::Click);
        return;
    }
    console_.err << Trim(form.Caption) << '\n' << Indented(form.Ctl("txtMessage").Text) << '\n';
    const bool yes = Decide(MsgBoxButtons::YesNo) == MsgBoxResult::Yes;
    form.Fire(yes ? "cmdYes" : "cmdNo", FormEvent::Click);
}

void TerminalUI::ShowModeless(Form& form) {
    if (std::find(modeless_.begin(), modeless_.end(), &form) == modeless_.end())
        modeless_.push_back(&form);
    if (progress_ && IsProgressWindow(form))
        progress_->Update(form);
}

void TerminalUI::HideModeless(Form& form) {
    auto it = std::find(modeless_.begin(), modeless_.end(), &form);
    if (it == modeless_.end())
        return;
    if (progress_ && IsProgressWindow(form))
        progress_->Finish(form);
    modeless_.erase(it);
}

void TerminalUI::FinishProgress() {
    if (!progress_)
        return;
    for (Form* window : modeless_)
        if (IsProgressWindow(*window))
            progress_->Finish(*window);
}

std::optional<BrowseResult> TerminalUI::Browse(const BrowseRequest& request) {
    if (!browses_.empty()) {
        BrowseResult result = std::move(browses_.front());
        browses_.pop_front();
        return result;
    }
    if (cancelled_)
        return std::nullopt;
    FinishProgress();
    console_.err << Trim(request.Title) << '\n'
                 << kIndent << "(a place to choose; nothing more was given on the command line: cancelled)\n";
    console_.err.flush();
    return std::nullopt;
}

std::shared_ptr<ISpatialReference> TerminalUI::ChooseSpatialReference(const std::shared_ptr<ISpatialReference>&) {
    // Nothing given on the command line: the dialog is cancelled.
    if (references_.empty())
        return nullptr;
    std::shared_ptr<ISpatialReference> reference = std::move(references_.front());
    references_.pop_front();
    return reference;
}

} // namespace tess::cli
