#pragma once

#include <exception>

namespace jstore {

/// Leaves an operation that SIGINT has stopped. Nothing is reported about it; the command ends with Interrupted.
class Interruption final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// Makes the first SIGINT set a flag, so that verbs stop between two operations, or two portions of a long one; a
/// second one ends the process at once, should an operation hang. A SIGINT that the parent process chose to ignore
/// stays ignored.
void watchInterrupt();

/// Whether SIGINT has arrived.
[[nodiscard]] bool interrupted() noexcept;

/// A file descriptor that becomes readable when SIGINT arrives, for those who wait for something else as well; -1 when
/// SIGINT is ignored. Valid until the process ends.
[[nodiscard]] int interruptDescriptor() noexcept;

/// Throws Interruption when SIGINT has arrived.
void stopIfInterrupted();

/// Ends the process the way a program ends whose reader has gone: by SIGPIPE. The virtual machine catches that signal,
/// so this puts the default back first.
[[noreturn]] void endByBrokenPipe();

}  // namespace jstore
