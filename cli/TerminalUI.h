#pragma once
// The UI services of the headless host. Message boxes become text on the error
// stream, answered from --yes/--no, a prompt on a terminal, or the safe answer.
// Modal forms are handed to a driver registered for their name, which sets
// controls and clicks as a user would; a form without a driver is cancelled.
// Progress windows become a progress line, and Ctrl-C becomes a click on their
// Stop button at the next event pump. The report window prints the report as
// plain text and keeps its rich text.

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CliOptions.h"
#include "platform/ui/UIServices.h"

namespace tess::cli {

class ProgressLine;

class TerminalUI final : public IUIServices {
public:
    //! Sets the controls of a modal form and clicks; must leave the form unloaded or hidden.
    using FormDriver = std::function<void(Form&)>;

    TerminalUI(Console& console, Answer answer, ProgressStyle progress);
    ~TerminalUI() override;

    void RegisterDriver(const std::string& formName, FormDriver driver);
    //! The answer the next catalog browse dialog gets.
    void QueueBrowse(BrowseResult result);
    //! The answer the next spatial reference dialog gets.
    void QueueSpatialReference(std::shared_ptr<ISpatialReference> reference);

    //! A driver's verdict that the options do not fit the dialog; the run ends with exit code 2.
    void UsageProblem(const std::string& text);
    //! A word to the user on the error stream, as "tessarine: text".
    void Note(const std::string& text);
    //! A question of the command line's own, asked before the run: Yes or No from --yes/--no, a
    //! prompt on a terminal, else the safe No. Nothing when Ctrl-C cancelled the prompt.
    std::optional<bool> Confirm(const std::string& question);
    //! The answer that the next question titled `title` gets without being shown again: the user
    //! gave it before the run.
    void AnswerInAdvance(const std::string& title, MsgBoxResult answer);
    //! Whether Ctrl-C came at a prompt: the command is cancelled. Later questions take the safe
    //! answer unseen and fault reports that follow from it are not shown.
    bool Cancelled() const { return cancelled_; }
    const std::string& UsageProblemText() const { return usageProblem_; }
    //! Whether a fault report was shown.
    bool ErrorShown() const { return errorShown_; }
    //! Whether Stop was clicked on a progress window for Ctrl-C.
    bool StopDelivered() const { return stopDelivered_; }
    //! The rich text of the last report shown; empty when none was.
    const std::string& ReportRtf() const { return reportRtf_; }
    int ReportsShown() const { return reportsShown_; }
    //! Questions that took the safe answer because nobody could be asked.
    int QuestionsDefaulted() const { return questionsDefaulted_; }
    //! Ends the progress line of any window still showing (the run is over).
    void FinishProgress();

    // IUIServices
    MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                            const std::string& title) override;
    void ShowErrorWindow(const std::string& text) override;
    void Beep() override {}
    void DoEvents() override;
    bool OpenDocument(const std::string& path) override;
    void ShowModal(Form& form) override;
    void ShowModeless(Form& form) override;
    void HideModeless(Form& form) override;
    std::optional<BrowseResult> Browse(const BrowseRequest& request) override;
    std::shared_ptr<ISpatialReference> ChooseSpatialReference(
        const std::shared_ptr<ISpatialReference>& start) override;
    void SetMousePointer(MousePointer) override {}
    double ScreenWidth() const override { return kScreenWidth; }
    double ScreenHeight() const override { return kScreenHeight; }
    void CopyToClipboard(const std::string&, const std::string&, const std::string&) override {}
    bool PrintReport(const std::string&, const std::string&) override { return false; }

private:
    // The forms centre themselves on this screen; nothing is drawn, so any size serves.
    static constexpr double kScreenWidth = 1920;  // pixels
    static constexpr double kScreenHeight = 1080; // pixels

    MsgBoxResult Decide(MsgBoxButtons buttons);
    //! The answer typed at a terminal; the safe one when the input ends or Ctrl-C cancels.
    MsgBoxResult Prompt(MsgBoxButtons buttons);
    void ShowReport(Form& form);
    void AnswerMessageForm(Form& form);

    Console& console_;
    Answer answer_;
    std::map<std::string, FormDriver> drivers_;
    std::deque<BrowseResult> browses_;
    std::deque<std::shared_ptr<ISpatialReference>> references_;
    std::vector<Form*> modeless_; // progress windows on show, oldest first
    std::unique_ptr<ProgressLine> progress_;
    std::map<std::string, MsgBoxResult> answeredInAdvance_; // by the question's title
    std::string usageProblem_;
    bool cancelled_ = false;
    bool errorShown_ = false;
    bool stopDelivered_ = false;
    std::string reportRtf_;
    int reportsShown_ = 0;
    int questionsDefaulted_ = 0;
};

} // namespace tess::cli
