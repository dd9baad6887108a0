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

} // namespace

InterruptGuard::InterruptGuard() {
    if (g_depth++ > 0)
        return;
    g_pending = false;
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART; // reads and writes go on; the flag is polled
    sigaction(SIGINT, &action, &g_previous);
}

InterruptGuard::~InterruptGuard() {
    if (--g_depth > 0)
        return;
    sigaction(SIGINT, &g_previous, nullptr);
    g_pending = false;
}

bool TakeInterrupt() { return g_pending.exchange(false); }

bool InterruptPending() { return g_pending.load(); }

void RequestInterrupt() { g_pending = true; }

} // namespace tess::cli
