#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

namespace jstore::test {

/// How a run of jstore ended and what it wrote.
struct Outcome {
    int exitCode = -1;  ///< -1 when a signal ended it
    int signal = 0;     ///< 0 unless a signal ended it
    std::string out;
    std::string err;
    long peakKiB = 0;  ///< the most memory it held at a time, in units of 1024 bytes

    /// Standard error's or output's lines, without their newlines; a last line without one counts too.
    [[nodiscard]] std::vector<std::string> errLines() const;
    [[nodiscard]] std::vector<std::string> outLines() const;
};

/// For failure messages.
void PrintTo(const Outcome& outcome, std::ostream* out);

/// A run of the real program as a child process. Not for use from several threads.
class Jstore {
public:
    enum class Output { Captured, Closed, ReaderGone, SocketReaderGone, Full };

    explicit Jstore(std::vector<std::string> arguments);
    /// Ends the process if it still runs.
    ~Jstore();

    Jstore(const Jstore&) = delete;
    Jstore& operator=(const Jstore&) = delete;

    /// Sets an environment variable; the rest is this process's, without what would change jstore's behaviour.
    Jstore& with(const std::string& name, const std::string& value);
    Jstore& in(std::filesystem::path folder);
    Jstore& outputTo(Output output);
    /// How long wait() waits; two minutes by default.
    Jstore& within(std::chrono::seconds limit);
    /// Runs jstore through another program: the words go before the name of jstore.
    Jstore& through(std::vector<std::string> wrapper);

    void start();
    [[nodiscard]] pid_t pid() const noexcept { return m_pid; }
    /// Reads what jstore writes until the condition holds for all that it has written so far. False when jstore ends
    /// before, and after the time given.
    [[nodiscard]] bool readUntil(const std::function<bool(const Outcome&)>& condition,
                                 std::chrono::milliseconds atMost = std::chrono::minutes(1));
    /// What was read so far.
    [[nodiscard]] const Outcome& soFar() const noexcept { return m_outcome; }
    /// Waits for the end, but not for ever: beyond the limit the test fails and the process is killed.
    [[nodiscard]] Outcome wait();
    /// start() and wait().
    [[nodiscard]] Outcome run();

private:
    [[nodiscard]] bool isOpen() const noexcept { return m_out >= 0 || m_err >= 0; }
    void readAll();
    [[nodiscard]] bool readSome(std::chrono::steady_clock::time_point deadline);

    std::vector<std::string> m_arguments;
    std::vector<std::string> m_environment;
    std::filesystem::path m_folder;
    std::vector<std::string> m_wrapper;
    Output m_output = Output::Captured;
    std::chrono::seconds m_limit = std::chrono::minutes(2);
    Outcome m_outcome;
    pid_t m_pid = -1;
    int m_out = -1;
    int m_err = -1;
};

/// The program that the tests run: that of this build, or the one that the variable JSTORE_UNDER_TEST names.
[[nodiscard]] std::string programUnderTest();

/// Runs `jstore ARGUMENTS…`.
[[nodiscard]] Outcome jstore(std::vector<std::string> arguments);

}  // namespace jstore::test
