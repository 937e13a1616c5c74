#pragma once

#include <string>

namespace test {

/// Everything that the process writes to its file descriptors 1 and 2, by whatever means, for the life of a scope.
class CapturedOutput final {
public:
    CapturedOutput();
    ~CapturedOutput();

    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// What has been written so far.
    [[nodiscard]] std::string text() const;

private:
    int m_file;
    int m_stdout;
    int m_stderr;
};

}  // namespace test
