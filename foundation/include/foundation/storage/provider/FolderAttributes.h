#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace foundation::storage::provider {

/// The basic metadata of a folder. An immutable value.
class FolderAttributes {
public:
    FolderAttributes(const boost::posix_time::ptime& lastModified, bool writable)
        : m_lastModified(lastModified), m_writable(writable) {}

    /// In UTC. A back end in Java reports whole milliseconds.
    [[nodiscard]] const boost::posix_time::ptime& lastModified() const noexcept { return m_lastModified; }
    /// Whether entries may be added and removed, as far as the storage knows.
    [[nodiscard]] bool writable() const noexcept { return m_writable; }

private:
    boost::posix_time::ptime m_lastModified;
    bool m_writable;
};

}  // namespace foundation::storage::provider
