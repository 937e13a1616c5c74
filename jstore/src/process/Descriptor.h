#pragma once

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace jstore {

/// An open file descriptor, closed at the end of the scope.
class Descriptor {
public:
    /// Takes the result of a system call. Throws std::system_error naming the subject if the call failed.
    Descriptor(int descriptor, const std::string& subject) : m_descriptor(descriptor) {
        if (descriptor < 0) {
            throw std::system_error(errno, std::generic_category(), subject);
        }
    }
    ~Descriptor() { ::close(m_descriptor); }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int get() const noexcept { return m_descriptor; }

private:
    int m_descriptor;
};

}  // namespace jstore
