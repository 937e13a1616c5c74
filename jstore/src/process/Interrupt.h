#pragma once

#include <exception>

#include "base/ExitCode.h"

namespace jstore {

/// Thrown to leave an operation that a signal has stopped. It is not reported as a failure; the command ends with
/// interruptionCode().
class Interruption final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// Makes the first SIGINT, SIGTERM or SIGHUP set a flag, so that verbs stop between two operations, or two portions of
/// a long one; a second one, whichever it is, ends the process at once, should an operation hang. A signal that the
/// parent process chose to ignore stays ignored.
void watchInterrupt();

/// Whether one of the signals has arrived.
[[nodiscard]] bool interrupted() noexcept;

/// The exit code of a command that a signal has stopped: Interrupted, Terminated or HungUp. Interrupted if no signal
/// has arrived.
[[nodiscard]] ExitCode interruptionCode() noexcept;

/// Whether the exit code is one of those.
[[nodiscard]] bool isInterruption(ExitCode code) noexcept;

/// A file descriptor that becomes readable when one of the signals arrives, for code that also waits for something
/// else. -1 if all are ignored. Valid until the process ends.
[[nodiscard]] int interruptDescriptor() noexcept;

/// Throws Interruption when one of the signals has arrived.
void stopIfInterrupted();

/// Ends the process by SIGPIPE, as other programs end when nobody reads their output any more. The virtual machine
/// catches that signal, so this restores the default first.
[[noreturn]] void endByBrokenPipe();

}  // namespace jstore
