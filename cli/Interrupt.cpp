#include "Interrupt.h"

#include <atomic>
#include <csignal>

namespace tess::cli {
namespace {

// Lock-free, so that the handler may touch it.
std::atomic<bool> g_pending{false};
static_assert(std::atomic<bool>::is_always_lock_free);

int g_depth = 0;
struct sigaction g_previous {};

extern "C" void OnInterrupt(int signal) {
    if (g_pending.exchange(true)) {
        // Nobody took the first one: the user means it, end the process as Ctrl-C would.
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

void Install(int flags, struct sigaction* previous) {
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = flags;
    sigaction(SIGINT, &action, previous);
}

} // namespace

InterruptGuard::InterruptGuard() {
    if (g_depth++ > 0)
        return;
    g_pending = false;
    Install(SA_RESTART, &g_previous); // reads and writes go on; the flag is polled
}

InterruptGuard::~InterruptGuard() {
    if (--g_depth > 0)
        return;
    sigaction(SIGINT, &g_previous, nullptr);
    g_pending = false;
}

InterruptibleReads::InterruptibleReads() {
    if (g_depth > 0)
        Install(0, nullptr); // a read in progress fails with EINTR
}

InterruptibleReads::~InterruptibleReads() {
    if (g_depth > 0)
        Install(SA_RESTART, nullptr);
}

bool TakeInterrupt() { return g_pending.exchange(false); }

bool InterruptPending() { return g_pending.load(); }

void RequestInterrupt() { g_pending = true; }

} // namespace tess::cli
