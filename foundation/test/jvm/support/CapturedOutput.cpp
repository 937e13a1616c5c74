#include "CapturedOutput.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <stdexcept>

namespace test {

CapturedOutput::CapturedOutput()
    : m_file(memfd_create("output", MFD_CLOEXEC)), m_stdout(dup(STDOUT_FILENO)), m_stderr(dup(STDERR_FILENO)) {
    std::fflush(nullptr);
    if (m_file == -1 || dup2(m_file, STDOUT_FILENO) == -1 || dup2(m_file, STDERR_FILENO) == -1) {
        throw std::runtime_error("the output cannot be captured");
    }
}

CapturedOutput::~CapturedOutput() {
    std::fflush(nullptr);
    dup2(m_stdout, STDOUT_FILENO);
    dup2(m_stderr, STDERR_FILENO);
    close(m_stdout);
    close(m_stderr);
    close(m_file);
}

std::string CapturedOutput::text() const {
    std::fflush(nullptr);
    std::string all;
    std::array<char, 4096> part{};
    for (ssize_t count = 1; count > 0;) {
        count = pread(m_file, part.data(), part.size(), static_cast<off_t>(all.size()));
        all.append(part.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return all;
}

}  // namespace test
