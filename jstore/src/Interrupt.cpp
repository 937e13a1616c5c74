#include "Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace jstore {

namespace {

// A signal handler can reach nothing but a global. Relaxed: the flag orders nothing else.
std::atomic<bool> interruptArrived = false;
static_assert(std::atomic<bool>::is_always_lock_free, "only lock-free atomics may be touched in a signal handler");

void onInterrupt(int /*signal*/) { interruptArrived.store(true, std::memory_order_relaxed); }

}  // namespace

void watchInterrupt() {
    struct sigaction present = {};
    if (::sigaction(SIGINT, nullptr, &present) != 0 || present.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    // SA_RESTART: a read or write that Java is in continues; SA_RESETHAND: the second signal has its default effect.
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
}

bool interrupted() noexcept { return interruptArrived.load(std::memory_order_relaxed); }

void stopIfInterrupted() {
    if (interrupted()) {
        throw Interruption();
    }
}

void endByBrokenPipe() {
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t pipe;
    ::sigemptyset(&pipe);
    ::sigaddset(&pipe, SIGPIPE);
    ::sigprocmask(SIG_UNBLOCK, &pipe, nullptr);
    std::raise(SIGPIPE);
    std::_Exit(128 + SIGPIPE);
}

}  // namespace jstore
