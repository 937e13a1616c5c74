#include "jvm/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace storage::jvm::detail {

namespace {

std::string describeError() { return errno == ENOENT ? "no such file" : std::generic_category().message(errno); }

}  // namespace

RegularFile::RegularFile(const std::filesystem::path& path) {
    struct stat status {};
    // Checked before the open: opening a device may move it.
    if (::stat(path.c_str(), &status) != 0) {
        m_problem = describeError();
        return;
    }
    if (!S_ISREG(status.st_mode)) {
        m_problem = "not a file";
        return;
    }
    m_descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (m_descriptor < 0 || ::fstat(m_descriptor, &status) != 0) {
        m_problem = describeError();
    } else if (!S_ISREG(status.st_mode)) {
        m_problem = "not a file";
    } else {
        m_size = static_cast<std::uint64_t>(status.st_size);
    }
}

RegularFile::~RegularFile() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

std::string RegularFile::read(std::uint64_t offset, std::size_t atMost) const {
    std::string bytes(atMost, '\0');
    std::size_t filled = 0;
    while (m_problem.empty() && filled < atMost) {
        const auto at = static_cast<off_t>(offset + filled);
        const ssize_t count = ::pread(m_descriptor, bytes.data() + filled, atMost - filled, at);
        if (count > 0) {
            filled += static_cast<std::size_t>(count);
        } else if (count == 0 || errno != EINTR) {
            break;
        }
    }
    bytes.resize(filled);
    return bytes;
}

}  // namespace storage::jvm::detail
