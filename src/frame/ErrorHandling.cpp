#include "frame/ErrorHandling.h"

#include "frame/Version.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"

namespace tess {
namespace {

constexpr const char* kLineBreak = "\r\n";
constexpr const char* kUnexpectedTitle = "Unexpected Program Error";

// True while a fault climbs through nested procedures and its header is built.
bool entered = false;

std::string StackHeaderForTop(std::int32_t number, const std::string& description) {
    return std::string(kLineBreak) + "Tessarine Tools v. " + std::to_string(version::Major) + "." +
           std::to_string(version::Minor) + "." + std::to_string(version::Revision) +
           ":  Error Number " + kLineBreak + "\t" + std::to_string(number) + kLineBreak + "Description" +
           kLineBreak + "\t" + description + kLineBreak + kLineBreak;
}

std::string StackHeaderForNested(std::int32_t number, const std::string& description) {
    return std::string("Error Number ") + kLineBreak + "\t" + std::to_string(number) + kLineBreak +
           "Description" + kLineBreak + "\t" + description + kLineBreak + kLineBreak;
}

std::string MessageText(const std::string& procedureLine, const std::string& description) {
    return std::string("An error has occured in the application.   Record the call stack sequence") +
           kLineBreak + "and the description of the error." + kLineBreak + kLineBreak +
           "Error Call Stack Sequence " + kLineBreak + "\t" + procedureLine + kLineBreak + description;
}

void Report(std::int32_t form, std::int32_t number, const std::string& source, const std::string& procedureLine,
            const std::string& description) {
    switch (form) {
    case report_form::ErrorWindow:
        UI().ShowErrorWindow(std::string("Record Call Stack Sequence - Bottom line is error line.") + kLineBreak +
                             kLineBreak + "\t" + procedureLine + kLineBreak + description);
        return;
    case report_form::PlainDialog:
        UI().MessageBox(MessageText(procedureLine, description), MsgBoxButtons::OK, MsgBoxIcon::Exclamation,
                        kUnexpectedTitle);
        return;
    case report_form::AskToRaise:
        if (UI().MessageBox(MessageText(procedureLine, description), MsgBoxButtons::YesNo,
                            MsgBoxIcon::Exclamation, kUnexpectedTitle) == MsgBoxResult::Yes)
            throw Fault(number, source, "\t" + procedureLine + kLineBreak + description);
        return;
    default: // form 1 and anything unknown
        UI().MessageBox(MessageText(procedureLine, description), MsgBoxButtons::OK, MsgBoxIcon::Exclamation,
                        kUnexpectedTitle);
        return;
    }
}

std::string_view BaseName(std::string_view path) {
    const auto slash = path.find_last_of("/\\");
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

} // namespace

void HandleError(bool bTopProcedure, const std::string& sProcedureName, std::int32_t lErrNumber,
                 const std::string& sErrSource, const std::string& sErrDescription, std::int32_t version,
                 std::int32_t /*parentHWND*/, std::int32_t /*reserved1*/, std::int32_t /*reserved2*/,
                 std::int32_t /*reserved3*/) {
    const std::string procedureLine = sProcedureName;
    const std::int32_t number = lErrNumber;
    const std::string source = sErrSource;
    std::string description = sErrDescription;

    if (bTopProcedure) {
        if (!entered)
            description = StackHeaderForTop(number, description);
        entered = false;
        Report(version, number, source, procedureLine, description);
        return;
    }
    if (!entered)
        description = StackHeaderForNested(number, description);
    entered = true;
    description = "\t" + procedureLine + kLineBreak + description;
    throw Fault(number, source, description);
}

std::string GetErrorLineNumberString(std::int32_t lineNumber) {
    if (lineNumber == 0)
        return {};
    return "Line : " + std::to_string(lineNumber);
}

std::string ProcedureLine(std::string_view procedureName, std::string_view sourceFile, std::int32_t lineNumber) {
    std::string line(procedureName);
    line += sourceFile;
    line += ' ';
    line += GetErrorLineNumberString(lineNumber);
    return line;
}

void ReportCaughtFault(bool bTopProcedure, const char* procedureName, const std::source_location& where) {
    const std::string line =
        ProcedureLine(procedureName, BaseName(where.file_name()), static_cast<std::int32_t>(where.line()));
    try {
        throw;
    } catch (const Fault& f) {
        HandleError(bTopProcedure, line, f.Number(), f.Source(), f.Description());
    } catch (const std::exception& e) {
        HandleError(bTopProcedure, line, fault::InvalidCall, std::string(BaseName(where.file_name())), e.what());
    }
}

} // namespace tess
