#include "process/Interrupt.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>

#include "process/EventFile.h"

namespace jstore {

namespace {

constexpr std::array Signals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler can reach nothing but globals. Relaxed: they order nothing else.
std::atomic<int> arrivedSignal = 0;
std::array<std::atomic<bool>, Signals.size()> watchedSignals{};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free,
              "only lock-free atomics may be touched in a signal handler");

// Never deleted: the handler may run until the process has ended.
const EventFile* interruptEvent = nullptr;

void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    // Lets a read or write in Java continue.
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    for (const int other : Signals) {
        ::sigaddset(&action.sa_mask, other);
    }
    ::sigaction(signal, &action, nullptr);
}

/// Gives all the signals their default effect, so that the second one ends the process.
void onInterrupt(int signal) {
    for (std::size_t index = 0; index < Signals.size(); ++index) {
        if (watchedSignals[index].load(std::memory_order_relaxed)) {
            handle(Signals[index], SIG_DFL);
        }
    }
    arrivedSignal.store(signal, std::memory_order_relaxed);
    interruptEvent->signal();
}

bool isIgnored(int signal) {
    struct sigaction present = {};
    return ::sigaction(signal, nullptr, &present) != 0 || present.sa_handler == SIG_IGN;
}

}  // namespace

void watchInterrupt() {
    for (std::size_t index = 0; index < Signals.size(); ++index) {
        const bool watched = !isIgnored(Signals[index]);
        watchedSignals[index].store(watched, std::memory_order_relaxed);
        if (watched && interruptEvent == nullptr) {
            interruptEvent = new EventFile;
        }
    }
    for (std::size_t index = 0; index < Signals.size(); ++index) {
        if (watchedSignals[index].load(std::memory_order_relaxed)) {
            handle(Signals[index], onInterrupt);
        }
    }
}

bool interrupted() noexcept { return arrivedSignal.load(std::memory_order_relaxed) != 0; }

ExitCode interruptionCode() noexcept {
    switch (arrivedSignal.load(std::memory_order_relaxed)) {
        case SIGTERM:
            return ExitCode::Terminated;
        case SIGHUP:
            return ExitCode::HungUp;
        default:
            return ExitCode::Interrupted;
    }
}

bool isInterruption(ExitCode code) noexcept {
    return code == ExitCode::Interrupted || code == ExitCode::Terminated || code == ExitCode::HungUp;
}

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
