#pragma once

#include <csignal>

namespace jstore {

/// Keeps signals away from threads that are started in the scope, so that they reach the main thread.
class NoSignals {
public:
    NoSignals() {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~NoSignals() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;

private:
    sigset_t m_before{};
};

}  // namespace jstore
