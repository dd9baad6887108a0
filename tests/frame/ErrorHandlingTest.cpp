#include "frame/ErrorHandling.h"

#include "platform/system/Fault.h"
#include "platform/ui/ScriptedUI.h"

#include <gtest/gtest.h>

#include <memory>

namespace tess {
namespace {

constexpr const char* kHeaderTop = "\r\nTessarine Tools v. 0.1.0:  Error Number \r\n\t";

class ErrorHandlingTest : public ::testing::Test {
protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }
    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();
    std::shared_ptr<IUIServices> previous_;
};

TEST(GetErrorLineNumberString, ZeroGivesEmptyText) {
    EXPECT_EQ(GetErrorLineNumberString(0), "");
    EXPECT_EQ(GetErrorLineNumberString(42), "Line : 42");
    EXPECT_EQ(ProcedureLine("IPersistVariant_Save ", "clsExtension.cpp", 0), "IPersistVariant_Save clsExtension.cpp ");
}

TEST_F(ErrorHandlingTest, TopProcedureShowsVersionHeaderAndOneStackLine) {
    HandleError(true, "Outer mod.cpp Line : 7", 11, "src", "Division by zero");
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_EQ(ui_->Errors()[0], std::string("Record Call Stack Sequence - Bottom line is error line.\r\n\r\n"
                                            "\tOuter mod.cpp Line : 7\r\n") +
                                    kHeaderTop + "11\r\nDescription\r\n\tDivision by zero\r\n\r\n");
}

TEST_F(ErrorHandlingTest, NestedFaultShowsOuterLineFirstAndNumberOnce) {
    try {
        try {
            HandleError(false, "Inner b.cpp Line : 3", 6, "src", "Overflow");
        } catch (const Fault& f) {
            EXPECT_EQ(f.Number(), 6);
            EXPECT_EQ(f.Source(), "src");
            HandleError(false, "Middle b.cpp Line : 9", f.Number(), f.Source(), f.Description());
        }
    } catch (const Fault& f) {
        HandleError(true, "Outer a.cpp Line : 1", f.Number(), f.Source(), f.Description());
    }
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_EQ(ui_->Errors()[0], "Record Call Stack Sequence - Bottom line is error line.\r\n\r\n"
                                "\tOuter a.cpp Line : 1\r\n"
                                "\tMiddle b.cpp Line : 9\r\n"
                                "\tInner b.cpp Line : 3\r\n"
                                "Error Number \r\n\t6\r\nDescription\r\n\tOverflow\r\n\r\n");
}

TEST_F(ErrorHandlingTest, SecondFaultAfterReportStartsWithFreshHeader) {
    try {
        HandleError(false, "Inner x ", 5, "s", "first");
    } catch (const Fault& f) {
        HandleError(true, "Outer x ", f.Number(), f.Source(), f.Description());
    }
    HandleError(true, "Next x ", 9, "s", "second");
    ASSERT_EQ(ui_->Errors().size(), 2u);
    EXPECT_NE(ui_->Errors()[1].find(kHeaderTop), std::string::npos);
    EXPECT_NE(ui_->Errors()[1].find("second"), std::string::npos);
}

TEST_F(ErrorHandlingTest, OtherFormsUseMessageBoxes) {
    const std::string body = "An error has occured in the application.   Record the call stack sequence\r\n"
                             "and the description of the error.\r\n\r\nError Call Stack Sequence \r\n\tP f ";
    HandleError(true, "P f ", 1, "s", "d", report_form::MessageBox);
    ui_->QueueAnswer(MsgBoxResult::No);
    HandleError(true, "P f ", 1, "s", "d", report_form::AskToRaise);
    ui_->QueueAnswer(MsgBoxResult::Yes);
    EXPECT_THROW(HandleError(true, "P f ", 1, "s", "d", report_form::AskToRaise), Fault);
    ASSERT_EQ(ui_->Log().size(), 3u);
    for (const auto& shown : ui_->Log()) {
        EXPECT_EQ(shown.title, "Unexpected Program Error");
        EXPECT_EQ(shown.icon, MsgBoxIcon::Exclamation);
        EXPECT_EQ(shown.text.rfind(body, 0), 0u) << shown.text;
    }
    EXPECT_EQ(ui_->Log()[0].buttons, MsgBoxButtons::OK);
    EXPECT_EQ(ui_->Log()[1].buttons, MsgBoxButtons::YesNo);
    EXPECT_TRUE(ui_->Errors().empty());
}

double InnerThrows() {
    return TrappedNested("InnerThrows ", []() -> double { throw Fault(11, "math", "Division by zero"); });
}

TEST_F(ErrorHandlingTest, TrapHelpersBuildLinesFromNameFileAndLine) {
    const double result = Trapped("OuterRoutine ", -1.0, [] { return InnerThrows() + 1.0; });
    EXPECT_EQ(result, -1.0);
    ASSERT_EQ(ui_->Errors().size(), 1u);
    const std::string text = ui_->Errors()[0];
    const auto outer = text.find("\tOuterRoutine ErrorHandlingTest.cpp Line : ");
    const auto inner = text.find("\tInnerThrows ErrorHandlingTest.cpp Line : ");
    const auto number = text.find("Error Number \r\n\t11\r\nDescription\r\n\tDivision by zero");
    ASSERT_NE(outer, std::string::npos) << text;
    ASSERT_NE(inner, std::string::npos) << text;
    ASSERT_NE(number, std::string::npos) << text;
    EXPECT_LT(outer, inner);
    EXPECT_LT(inner, number);
}

TEST_F(ErrorHandlingTest, TrapPassesResultThroughWhenNothingFails) {
    EXPECT_EQ(Trapped("Fine ", 0, [] { return 3; }), 3);
    TrappedVoid("StdFault ", [] { throw std::out_of_range("index"); });
    ASSERT_EQ(ui_->Errors().size(), 1u);
    EXPECT_NE(ui_->Errors()[0].find("\t5\r\nDescription\r\n\tindex"), std::string::npos);
}

} // namespace
} // namespace tess
