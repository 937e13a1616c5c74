#include "Interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "EventFile.h"

namespace jstore {

namespace {

// A signal handler can reach nothing but a global. Relaxed: the flag orders nothing else.
std::atomic<bool> interruptArrived = false;
static_assert(std::atomic<bool>::is_always_lock_free, "only lock-free atomics may be touched in a signal handler");

// Never deleted: the handler may run until the process has ended.
const EventFile* interruptEvent = nullptr;

void onInterrupt(int /*signal*/) {
    interruptArrived.store(true, std::memory_order_relaxed);
    interruptEvent->signal();
}

}  // namespace

void watchInterrupt() {
    struct sigaction present = {};
    if (::sigaction(SIGINT, nullptr, &present) != 0 || present.sa_handler == SIG_IGN) {
        return;
    }
    if (interruptEvent == nullptr) {
        interruptEvent = new EventFile;
    }
    struct sigaction action = {};
    action.sa_handler = onInterrupt;
    // SA_RESTART: a read or write that Java is in continues; SA_RESETHAND: the second signal has its default effect.
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
}

bool interrupted() noexcept { return interruptArrived.load(std::memory_order_relaxed); }

int interruptDescriptor() noexcept { return interruptEvent == nullptr ? -1 : interruptEvent->descriptor(); }

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
