#include "support/LogCapture.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions/message.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/smart_ptr/make_shared.hpp>

#include <mutex>
#include <ostream>
#include <utility>

#include "foundation/log/SeverityMask.h"

namespace storage::javaprovider::test {

using foundation::log::Severity;

void PrintTo(const LogRecord& record, std::ostream* out) {
    *out << std::string(2 * static_cast<std::size_t>(record.indent), ' ') << "["
         << static_cast<std::uint32_t>(record.severity) << "] " << record.text;
}

/// Keeps the records of one channel.
class LogCapture::Backend final
    : public boost::log::sinks::basic_sink_backend<
          boost::log::sinks::combine_requirements<boost::log::sinks::concurrent_feeding>::type> {
public:
    explicit Backend(std::string channel) : m_channel(std::move(channel)) {}

    void consume(const boost::log::record_view& view) {
        const auto channel = boost::log::extract<std::string>("Channel", view);
        if (!channel || *channel != m_channel) {
            return;
        }
        LogRecord record;
        record.severity = boost::log::extract_or_default<Severity>("Severity", view, Severity{});
        record.text = boost::log::extract_or_default<std::string>("Message", view, std::string());
        record.indent = boost::log::extract_or_default<unsigned>("Indent", view, 0U);
        const std::lock_guard lock(m_mutex);
        m_records.push_back(std::move(record));
    }

    [[nodiscard]] std::vector<LogRecord> records() const {
        const std::lock_guard lock(m_mutex);
        return m_records;
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        m_records.clear();
    }

private:
    std::string m_channel;
    mutable std::mutex m_mutex;
    std::vector<LogRecord> m_records;
};

LogCapture::LogCapture(std::uint32_t mask, std::string channel)
    : m_channel(std::move(channel)),
      m_oldMask(foundation::log::severityMask(m_channel)),
      m_backend(boost::make_shared<Backend>(m_channel)),
      m_sink(boost::make_shared<Sink>(m_backend)) {
    boost::log::core::get()->add_sink(m_sink);
    foundation::log::setSeverityMask(m_channel, mask);
}

LogCapture::~LogCapture() {
    foundation::log::setSeverityMask(m_channel, m_oldMask);
    boost::log::core::get()->remove_sink(m_sink);
}

std::vector<LogRecord> LogCapture::records() const { return m_backend->records(); }

std::vector<std::string> LogCapture::texts() const {
    std::vector<std::string> texts;
    for (const LogRecord& record : records()) {
        texts.push_back(record.text);
    }
    return texts;
}

std::vector<std::string> LogCapture::texts(Severity severity) const {
    std::vector<std::string> texts;
    for (const LogRecord& record : records()) {
        if (record.severity == severity) {
            texts.push_back(record.text);
        }
    }
    return texts;
}

void LogCapture::clear() { m_backend->clear(); }

}  // namespace storage::javaprovider::test
