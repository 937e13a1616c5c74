#pragma once

#include <string>
#include <utility>
#include <vector>

namespace jstore {

/// A shell command that is run again and again. Used only by the main thread.
class Command {
public:
    using Variables = std::vector<std::pair<std::string, std::string>>;

    /// Where the command's standard output goes.
    enum class Output { ToStandardOutput, ToStandardError };

    Command(std::string text, Output output) : m_text(std::move(text)), m_output(output) {}

    /// Runs `/bin/sh -c TEXT` with this process's environment and the variables, and waits for its end. Its standard
    /// input is empty. It inherits the other standard streams and the file descriptors that the parent of this process
    /// passed on. No signal is blocked. What the parent ignores stays ignored, except SIGCHLD and the signals that Java
    /// handles, such as SIGPIPE. The variables are never put into the text: the shell sees them only as values.
    ///
    /// Returns what went wrong ("ended with 3", "was killed by signal 9", "cannot be run: …"); empty when it ended
    /// with 0.
    [[nodiscard]] std::string run(const Variables& variables) const;

private:
    std::string m_text;
    Output m_output;
};

}  // namespace jstore
