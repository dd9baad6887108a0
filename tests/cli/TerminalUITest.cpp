// The terminal's UI services: how questions are answered and how Ctrl-C reaches
// the Stop button (the progress line itself: ProgressLineTest.cpp).

#include <gtest/gtest.h>

#include <sstream>

#include "Interrupt.h"
#include "TerminalUI.h"
#include "platform/ui/Form.h"

namespace tess::cli {
namespace {

class FakeProgressWindow final : public Form {
public:
    FakeProgressWindow() : Form("frmFakeProgress") {
        for (const char* name : {"lblIndex", "lblPercentDone", "lblRecordNumber", "lblTimeLeft"})
            AddControl(name, ControlKind::Label).Caption = "-----";
        AddControl("cmdStop", ControlKind::CommandButton).Caption = "Stop";
        On("cmdStop", FormEvent::Click, [this] { ++stops; });
    }
    void Step(const std::string& percent, const std::string& record, const std::string& left) {
        Ctl("lblIndex").Caption = "Extracting Vertices...";
        Ctl("lblPercentDone").Caption = "(" + percent + "%)";
        Ctl("lblRecordNumber").Caption = "Performing Calculations..." + record + "...";
        Ctl("lblTimeLeft").Caption = "Estimated time remaining:  " + left;
    }
    int stops = 0;
};

struct Terminal {
    explicit Terminal(const std::string& input = "", bool inIsTerminal = false)
        : in(input), console{in, out, err, inIsTerminal, false} {}
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    Console console;
};

struct AnswerCase {
    const char* name;
    Answer answer;
    bool terminal;
    const char* typed;
    MsgBoxButtons buttons;
    MsgBoxResult expected;
};

void PrintTo(const AnswerCase& c, std::ostream* os) { *os << c.name; }

class Questions : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(Questions, AreAnsweredByOptionPromptOrSafeDefault) {
    const AnswerCase& c = GetParam();
    Terminal terminal(c.typed, c.terminal);
    TerminalUI ui(terminal.console, c.answer, ProgressStyle::None);
    EXPECT_EQ(ui.MessageBox("Overwrite it?\r\nIt is there.", c.buttons, MsgBoxIcon::Question, "File Exists:"),
              c.expected);
    // The message is shown whatever the answer, title first, each line of the text indented.
    EXPECT_EQ(terminal.err.str().rfind("File Exists:\n    Overwrite it?\n    It is there.\n", 0), 0u)
        << terminal.err.str();
}

INSTANTIATE_TEST_SUITE_P(
    TerminalUI, Questions,
    ::testing::Values(
        AnswerCase{"YesOption", Answer::Yes, false, "", MsgBoxButtons::YesNo, MsgBoxResult::Yes},
        AnswerCase{"YesOptionOnOKCancel", Answer::Yes, false, "", MsgBoxButtons::OKCancel, MsgBoxResult::OK},
        AnswerCase{"NoOption", Answer::No, true, "y\n", MsgBoxButtons::YesNo, MsgBoxResult::No},
        AnswerCase{"NoTerminalIsNo", Answer::Ask, false, "y\n", MsgBoxButtons::YesNo, MsgBoxResult::No},
        AnswerCase{"NoTerminalIsCancel", Answer::Ask, false, "", MsgBoxButtons::YesNoCancel, MsgBoxResult::Cancel},
        AnswerCase{"PromptTakesYes", Answer::Ask, true, "yes\n", MsgBoxButtons::YesNo, MsgBoxResult::Yes},
        AnswerCase{"PromptAsksAgain", Answer::Ask, true, "maybe\nn\n", MsgBoxButtons::YesNo, MsgBoxResult::No},
        AnswerCase{"PromptOK", Answer::Ask, true, "o\n", MsgBoxButtons::OKCancel, MsgBoxResult::OK},
        AnswerCase{"PromptAtEndOfInputIsSafe", Answer::Ask, true, "", MsgBoxButtons::OKCancel,
                   MsgBoxResult::Cancel},
        AnswerCase{"OKNeedsNoAnswer", Answer::No, false, "", MsgBoxButtons::OK, MsgBoxResult::OK}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TerminalUI, CtrlCIsAClickOnStopAtTheNextEventPump) {
    Terminal terminal;
    TerminalUI ui(terminal.console, Answer::Ask, ProgressStyle::Plain);
    FakeProgressWindow window;
    InterruptGuard guard;
    ui.DoEvents(); // no window yet: nothing to stop
    ui.ShowModeless(window);
    ui.DoEvents();
    EXPECT_EQ(window.stops, 0);

    RequestInterrupt();
    window.Ctl("cmdStop").Enabled = false; // a Stop that cannot be pressed waits
    ui.DoEvents();
    EXPECT_EQ(window.stops, 0);
    EXPECT_TRUE(InterruptPending());

    window.Ctl("cmdStop").Enabled = true;
    ui.DoEvents();
    EXPECT_EQ(window.stops, 1);
    EXPECT_TRUE(ui.StopDelivered());
    EXPECT_FALSE(InterruptPending());
    ui.DoEvents();
    EXPECT_EQ(window.stops, 1); // one Ctrl-C, one click
    ui.HideModeless(window);
}

TEST(TerminalUI, CtrlCAtAQuestionCancelsTheCommand) {
    Terminal terminal("y\ny\n", true);
    TerminalUI ui(terminal.console, Answer::Ask, ProgressStyle::None);
    InterruptGuard guard;
    RequestInterrupt(); // Ctrl-C while the prompt waits
    EXPECT_EQ(ui.MessageBox("Overwrite it?", MsgBoxButtons::YesNo, MsgBoxIcon::Question, "File Exists:"),
              MsgBoxResult::No);
    EXPECT_TRUE(ui.Cancelled());
    EXPECT_FALSE(InterruptPending()) << "taken here: it is no Stop for a progress window later";
    // What follows from the cancel takes the safe answer unseen, and its fault report is not shown;
    // the "y" typed ahead is never read as an answer.
    const std::string shown = terminal.err.str();
    EXPECT_EQ(ui.MessageBox("Again?", MsgBoxButtons::YesNo, MsgBoxIcon::Question, "Again:"), MsgBoxResult::No);
    ui.ShowErrorWindow("Error 91: Object variable or With block variable not set");
    EXPECT_EQ(terminal.err.str(), shown);
    EXPECT_EQ(ui.Confirm("Replace it?"), std::nullopt);
}

TEST(TerminalUI, AnAnswerGivenBeforeTheRunAnswersItsQuestionOnce) {
    Terminal terminal; // no terminal: a question would take No
    TerminalUI ui(terminal.console, Answer::Ask, ProgressStyle::None);
    ui.AnswerInAdvance("Feature Class Already Exists:", MsgBoxResult::Yes);
    EXPECT_EQ(ui.MessageBox("Other?", MsgBoxButtons::YesNo, MsgBoxIcon::Question, "Other:"), MsgBoxResult::No);
    const std::string shown = terminal.err.str();
    EXPECT_EQ(ui.MessageBox("The Feature Class 'a.shp' already exists!", MsgBoxButtons::YesNo,
                            MsgBoxIcon::Question, "Feature Class Already Exists:"),
              MsgBoxResult::Yes);
    EXPECT_EQ(terminal.err.str(), shown) << "not shown again";
    EXPECT_EQ(ui.MessageBox("The Feature Class 'a.shp' already exists!", MsgBoxButtons::YesNo,
                            MsgBoxIcon::Question, "Feature Class Already Exists:"),
              MsgBoxResult::No);
    EXPECT_EQ(ui.QuestionsDefaulted(), 2);
}

TEST(TerminalUI, DialogsWithoutDriverCloseAsCancelledAndSaySo) {
    Terminal terminal;
    auto ui = std::make_shared<TerminalUI>(terminal.console, Answer::Yes, ProgressStyle::None);
    const auto previous = SetUI(ui);
    Form form("frmSomething");
    form.Caption = " Something:";
    form.ShowModal();
    SetUI(previous);
    EXPECT_FALSE(form.IsLoaded());
    EXPECT_NE(ui->UsageProblemText().find("\"Something\" (frmSomething)"), std::string::npos)
        << ui->UsageProblemText();
}

} // namespace
} // namespace tess::cli
