#include "JNIUtilsLog.h"

#include <boost/log/attributes/attribute_value_impl.hpp>

#include <exception>
#include <string>
#include <utility>

namespace storage::javaprovider {

namespace {

DiagnosticLogger s_logger{std::string(ChannelName)};

}  // namespace

DiagnosticLogger& logger() noexcept { return s_logger; }

TraceScope::TraceScope(const TraceSite& site)
    : m_logger(logger()),
      m_enabled(m_logger.accepts(Severity::Enter)),
      m_signature(site.signature),
      m_file(site.file),
      m_line(site.line),
      m_uncaught(std::uncaught_exceptions()) {
    if (m_enabled) {
        write(Severity::Enter, "");
        m_logger.indent().increase();
    }
}

TraceScope::~TraceScope() {
    if (!m_enabled) {
        return;
    }
    m_logger.indent().decrease();
    try {
        write(Severity::Exit, std::uncaught_exceptions() > m_uncaught ? " [throw]" : "");
    } catch (...) {
        // A sink that fails costs one trace record; thrown from here it would end the process.
    }
}

void TraceScope::write(Severity severity, const char* suffix) const {
    auto record = m_logger.open_record(severity);
    if (!record) {
        return;
    }
    using boost::log::attributes::make_attribute_value;
    record.attribute_values().insert("File", make_attribute_value(std::string(m_file)));
    record.attribute_values().insert("Line", make_attribute_value(m_line));
    boost::log::record_ostream stream(record);
    stream << m_signature << suffix;
    stream.detach_from_record();
    m_logger.push_record(std::move(record));
}

}  // namespace storage::javaprovider
