#pragma once

#include <boost/log/sources/severity_channel_logger.hpp>

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "foundation/log/Severity.h"
#include "foundation/log/SeverityMask.h"
#include "foundation/log/indent_attribute.h"
#include "foundation/log/record_writer.h"

namespace foundation::log {

/// A named source of diagnostic records, built on Boost.Log.
///
/// Records have the attributes "Channel" (std::string), "Severity" (Severity) and "Indent" (unsigned). All loggers of
/// one name share one severity mask, which the host sets with setSeverityMask(); the host also adds the sinks. Safe to
/// use from any thread: the logger's own lock serialises the opening of records. Write with FOUNDATION_LOG.
///
/// Logging never changes the result of an operation: what a filter, a sink or the output of a value throws is dropped,
/// and the record, or that value in it, is lost. A host that needs to know sets an exception handler on the Boost.Log
/// core or on the sink; what the handler throws is dropped too.
template <class Char>
class basic_diagnostic_logger {
public:
    using char_type = Char;

    explicit basic_diagnostic_logger(const std::string& channel)
        : m_mask(detail::maskOf(channel)), m_source(boost::log::keywords::channel = channel) {
        m_source.add_attribute("Indent", m_indent);
    }

    basic_diagnostic_logger(const basic_diagnostic_logger&) = delete;
    basic_diagnostic_logger& operator=(const basic_diagnostic_logger&) = delete;

    /// Whether the channel's mask has the severity's bit. It costs one load.
    [[nodiscard]] bool accepts(Severity severity) const noexcept {
        // Relaxed: the mask orders nothing else, and one record more or less while it changes is harmless.
        return (m_mask.load(std::memory_order_relaxed) & static_cast<std::uint32_t>(severity)) != 0;
    }

    /// Opens a record; it is empty if the mask, the logging core or every sink refuses it, or a filter throws.
    [[nodiscard]] boost::log::record open_record(Severity severity) noexcept {
        if (!accepts(severity)) {
            return {};
        }
        try {
            return m_source.open_record(boost::log::keywords::severity = severity);
        } catch (...) {
            return {};  // one record is lost, and the caller's work continues
        }
    }

    /// Passes a finished record to the sinks. What a sink throws is dropped.
    void push_record(boost::log::record&& record) noexcept {
        try {
            m_source.push_record(std::move(record));
        } catch (...) {
            // The host's exception handler, if there is one, has seen it; the caller could do nothing about it.
        }
    }

    /// The indentation, which traced functions increase at entry and decrease at exit.
    [[nodiscard]] detail::indent_attribute& indent() noexcept { return m_indent; }

private:
    const std::atomic<std::uint32_t>& m_mask;
    detail::indent_attribute m_indent;
    boost::log::sources::severity_channel_logger_mt<Severity, std::string> m_source;
};

}  // namespace foundation::log

/// Writes one record: `FOUNDATION_LOG(logger, Severity::Progress) << "Loaded " << name;`
///
/// If the record is refused, nothing after the macro is evaluated. An exception thrown while a value is computed,
/// before it is written, reaches the caller, and there is no record.
#define FOUNDATION_LOG(logger, severity) \
    FOUNDATION_LOG_WITH(BOOST_LOG_UNIQUE_IDENTIFIER_NAME(foundation_log_writer_), logger, severity)
// A name cannot stand in parentheses. NOLINTBEGIN(bugprone-macro-parentheses)
#define FOUNDATION_LOG_WITH(writer, logger, severity)                                                            \
    for (::foundation::log::detail::record_writer writer((logger), (severity)); writer.is_open(); writer.push()) \
    writer
// NOLINTEND(bugprone-macro-parentheses)
