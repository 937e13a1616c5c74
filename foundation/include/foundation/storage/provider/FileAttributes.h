#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <optional>

namespace foundation::storage::provider {

/// The basic metadata of a file. An immutable value.
class FileAttributes {
public:
    FileAttributes(const std::optional<std::uint64_t>& size, const boost::posix_time::ptime& lastModified,
                   bool writable)
        : m_size(size), m_lastModified(lastModified), m_writable(writable) {}

    /// In bytes; empty if the back end does not know. A back end in Java always states it.
    [[nodiscard]] const std::optional<std::uint64_t>& size() const noexcept { return m_size; }
    /// In UTC. A back end in Java reports whole milliseconds.
    [[nodiscard]] const boost::posix_time::ptime& lastModified() const noexcept { return m_lastModified; }
    /// Whether the content may be changed, as far as the storage knows.
    [[nodiscard]] bool writable() const noexcept { return m_writable; }

private:
    std::optional<std::uint64_t> m_size;
    boost::posix_time::ptime m_lastModified;
    bool m_writable;
};

}  // namespace foundation::storage::provider
