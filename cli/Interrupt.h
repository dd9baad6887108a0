#pragma once
// Ctrl-C while a command runs: the signal only raises a flag; the terminal's
// event pump (TerminalUI::DoEvents) turns it into a click on Stop of the
// progress window that is showing, which is where the worker looks for it.
// A second Ctrl-C before the first was taken ends the process as usual.

namespace tess::cli {

//! Catches SIGINT until the guard goes; nests (only the outermost guard installs).
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
};

//! While it lives, Ctrl-C also ends a read that waits for the user (a prompt), which then fails
//! with the flag raised; outside it reads go on after the signal. Only inside an InterruptGuard.
class InterruptibleReads {
public:
    InterruptibleReads();
    ~InterruptibleReads();
    InterruptibleReads(const InterruptibleReads&) = delete;
    InterruptibleReads& operator=(const InterruptibleReads&) = delete;
};

//! True once after each Ctrl-C: the flag is cleared by reading it.
bool TakeInterrupt();
//! Whether a Ctrl-C came and has not been taken yet.
bool InterruptPending();
//! Raises the flag as Ctrl-C does (tests, and hosts that learn of a stop by other means).
void RequestInterrupt();

} // namespace tess::cli
