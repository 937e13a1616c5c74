#include "JNIUtilsLog.h"

#include <boost/log/attributes/attribute_value_impl.hpp>

#include <exception>
#include <string>
#include <utility>

namespace storage::javaprovider {

DiagnosticLogger detail::libraryLogger{std::string(ChannelName)};

void TraceScope::enter() noexcept {
    m_uncaught = std::uncaught_exceptions();
    write(Severity::Enter, "");
    logger().indent().increase();
}

void TraceScope::leave() const noexcept {
    logger().indent().decrease();
    write(Severity::Exit, std::uncaught_exceptions() > m_uncaught ? " [throw]" : "");
}

void TraceScope::write(Severity severity, const char* suffix) const noexcept {
    try {
        writeRecord(severity, suffix);
    } catch (...) {
        // A trace record that cannot be written, or a host's logger that throws, changes no result of the function.
    }
}

void TraceScope::writeRecord(Severity severity, const char* suffix) const {
    auto record = logger().open_record(severity);
    if (!record) {
        return;
    }
    using boost::log::attributes::make_attribute_value;
    record.attribute_values().insert("File", make_attribute_value(std::string(m_site.file)));
    record.attribute_values().insert("Line", make_attribute_value(m_site.line));
    boost::log::record_ostream stream(record);
    stream << m_site.signature << suffix;
    stream.detach_from_record();
    logger().push_record(std::move(record));
}

}  // namespace storage::javaprovider
