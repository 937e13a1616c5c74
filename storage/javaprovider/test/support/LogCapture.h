#pragma once

#include <boost/log/sinks/sync_frontend.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/log/Severity.h"

namespace storage::javaprovider::test {

/// One captured log record.
struct LogRecord {
    foundation::log::Severity severity{};
    std::string text;
    unsigned indent = 0;

    friend bool operator==(const LogRecord&, const LogRecord&) = default;
};

/// Prints the record in failed expectations.
void PrintTo(const LogRecord& record, std::ostream* out);

/// Captures what is written on one log channel while it lives.
///
/// Sets the channel's severity mask and puts the old one back. Safe to use from any thread.
class LogCapture {
public:
    explicit LogCapture(std::uint32_t mask = foundation::log::AllSeverities,
                        std::string channel = "storage::javaprovider");
    ~LogCapture();

    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// What was written so far, oldest first.
    [[nodiscard]] std::vector<LogRecord> records() const;
    /// The texts of all records, or of those of one severity.
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] std::vector<std::string> texts(foundation::log::Severity severity) const;
    /// Forgets what was written so far.
    void clear();

private:
    class Backend;
    using Sink = boost::log::sinks::synchronous_sink<Backend>;

    std::string m_channel;
    std::uint32_t m_oldMask;
    boost::shared_ptr<Backend> m_backend;
    boost::shared_ptr<Sink> m_sink;
};

}  // namespace storage::javaprovider::test
