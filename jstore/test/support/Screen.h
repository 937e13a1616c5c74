#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace jstore::test {

/// A program on a pseudo-terminal, and what a person would see there: lines, and the line the cursor is in. Knows
/// carriage return, line feed, backspace and "erase to the end of the line". Not for use from several threads.
class Screen {
public:
    struct Setup {
        unsigned short columns = 80;
        std::string terminal = "xterm";  ///< the value of TERM
        bool outputToPipe = false;       ///< standard output is a pipe then, which is not read
    };

    explicit Screen(std::vector<std::string> command) : Screen(std::move(command), Setup()) {}
    Screen(std::vector<std::string> command, const Setup& setup);
    /// Ends the program if it still runs.
    ~Screen();

    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// Reads until the cursor's line holds the text; false when that takes a minute or the program ends before.
    [[nodiscard]] bool waitFor(const std::string& text);
    /// Reads until the program ends, and returns its exit code; -1 after a signal or a minute.
    [[nodiscard]] int finish();

    void resize(unsigned short columns) const;
    void type(const std::string& keys) const;
    /// Stops the terminal's output, as Ctrl-S does.
    void stop() const;
    [[nodiscard]] pid_t pid() const noexcept { return m_pid; }
    /// Whether the program has a thread of that name.
    [[nodiscard]] bool hasThread(const std::string& name) const;

    [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return m_lines; }
    [[nodiscard]] const std::string& cursorLine() const noexcept { return m_line; }
    /// Everything that was written, as it was.
    [[nodiscard]] const std::string& raw() const noexcept { return m_raw; }

private:
    /// Reads once; false at the end or after the deadline.
    bool read(int timeoutMs);
    void show(const std::string& bytes);

    int m_terminal = -1;
    int m_pipe = -1;
    pid_t m_pid = -1;
    std::string m_raw;
    std::string m_pending;  ///< the beginning of an escape sequence
    std::vector<std::string> m_lines;
    std::string m_line;
    std::size_t m_column = 0;
};

}  // namespace jstore::test
