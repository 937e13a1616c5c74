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

    /// Bytes; empty when the back end does not know.
    [[nodiscard]] const std::optional<std::uint64_t>& size() const noexcept { return m_size; }
    /// UTC.
    [[nodiscard]] const boost::posix_time::ptime& lastModified() const noexcept { return m_lastModified; }
    [[nodiscard]] bool writable() const noexcept { return m_writable; }

private:
    std::optional<std::uint64_t> m_size;
    boost::posix_time::ptime m_lastModified;
    bool m_writable;
};

}  // namespace foundation::storage::provider
