#pragma once
// The one fault report of the extension. Every procedure traps its own faults and
// hands them to HandleError: a nested procedure adds its line and passes the fault
// up, the top one shows the whole stack, deepest line at the bottom.
//
// Procedures use Trapped (top) or TrappedNested around their body: nothing is
// built or allocated unless a fault actually arrives.

#include <cstdint>
#include <exception>
#include <source_location>
#include <string>
#include <string_view>
#include <utility>

namespace tess {

//! Report forms of HandleError. Every procedure passes ErrorWindow.
namespace report_form {
inline constexpr std::int32_t MessageBox = 1;   //!< a message box with OK
inline constexpr std::int32_t PlainDialog = 2;  //!< the same text, nothing asked
inline constexpr std::int32_t AskToRaise = 3;   //!< Yes raises the fault again
inline constexpr std::int32_t ErrorWindow = 4;  //!< the error window with the call stack
} // namespace report_form

//! Handles a fault trapped in a procedure.
//! \param bTopProcedure true where the fault ends (the report is shown), false where it is
//!        passed on: then this adds the procedure line and throws tess::Fault again.
//! \param sProcedureName the procedure line, as ProcedureLine builds it.
//! \param version report form (report_form); parentHWND and the reserved values are unused.
void HandleError(bool bTopProcedure, const std::string& sProcedureName, std::int32_t lErrNumber,
                 const std::string& sErrSource, const std::string& sErrDescription,
                 std::int32_t version = report_form::ErrorWindow, std::int32_t parentHWND = 0,
                 std::int32_t reserved1 = 0, std::int32_t reserved2 = 0, std::int32_t reserved3 = 0);

//! "Line : " and the number, or "" for 0.
std::string GetErrorLineNumberString(std::int32_t lineNumber);

//! The procedure's line of the stack: its name (which carries a trailing blank), the
//! source file's name, a blank and the line text.
std::string ProcedureLine(std::string_view procedureName, std::string_view sourceFile,
                          std::int32_t lineNumber);

//! Reports the exception being handled; call only inside a catch block. A tess::Fault
//! keeps its number, source and description; another std::exception reports as an
//! invalid call with its what() text. With bTopProcedure false this throws.
void ReportCaughtFault(bool bTopProcedure, const char* procedureName, const std::source_location& where);

//! Runs body as a top procedure: a fault is reported under procedureName (with its
//! trailing blank, e.g. "RadToDeg ") and the result is fallback.
template <class R, class F>
R Trapped(const char* procedureName, R fallback, F&& body,
          const std::source_location where = std::source_location::current()) {
    try {
        return std::forward<F>(body)();
    } catch (const std::exception&) {
        ReportCaughtFault(true, procedureName, where);
    }
    return fallback;
}

//! Trapped for procedures without a result.
template <class F>
void TrappedVoid(const char* procedureName, F&& body,
                 const std::source_location where = std::source_location::current()) {
    try {
        std::forward<F>(body)();
    } catch (const std::exception&) {
        ReportCaughtFault(true, procedureName, where);
    }
}

//! Runs body as a nested procedure: a fault goes on to the caller as a tess::Fault
//! with this procedure's line added.
template <class F>
decltype(auto) TrappedNested(const char* procedureName, F&& body,
                             const std::source_location where = std::source_location::current()) {
    try {
        return std::forward<F>(body)();
    } catch (const std::exception&) {
        ReportCaughtFault(false, procedureName, where);
        throw; // not reached: a nested report always throws
    }
}

} // namespace tess
