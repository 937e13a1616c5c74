#include "output/Reporter.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "base/Text.h"
#include "process/Interrupt.h"
#include "process/PatientWrite.h"

namespace jstore {

namespace {

using Fields = Reporter::Fields;

Fields errorFields(const Problem& problem, const std::string& subject) {
    Fields fields = {{"code", problem.code}, {"message", messageOf(problem)}};
    if (!problem.reason.empty()) {
        fields["reason"] = problem.reason;
    }
    if (problem.location != subject) {
        fields["location"] = problem.location;
    }
    return fields;
}

Fields subjectFields(const Location& location, const Fields& more, bool ok) {
    Fields fields = {{"location", location.text()}};
    fields.update(more);
    fields["ok"] = ok;
    return fields;
}

}  // namespace

OutputError::OutputError(int error)
    : std::runtime_error("standard output: " + std::generic_category().message(error)), m_error(error) {}

void Reporter::done(const Location& location, const Fields& more) {
    object(subjectFields(location, more, /*ok=*/true));
}

void Reporter::failed(const Location& location, const Problem& problem, const Fields& more) {
    writeError(problem);
    Fields fields = subjectFields(location, more, /*ok=*/false);
    fields["error"] = errorFields(problem, location.text());
    object(fields);
}

void Reporter::denied(const Location& location, const Problem& problem) {
    Fields fields = subjectFields(location, Fields::object(), /*ok=*/false);
    fields["error"] = errorFields(problem, location.text());
    object(fields);
}

void Reporter::failed(const Problem& problem) {
    writeError(problem);
    object({{"ok", false}, {"error", errorFields(problem, {})}});
}

void Reporter::note(std::string_view text) {
    if (!m_json) {
        writeError({"Note", {}, std::string(text), ExitCode::Done});
    }
}

std::unique_lock<std::mutex> Reporter::pause() const { return m_pause ? m_pause() : std::unique_lock<std::mutex>(); }

void Reporter::write(std::string_view text) const {
    const std::unique_lock<std::mutex> lock = pause();
    writeOutput(text);
}

void Reporter::writeError(const Problem& problem) const {
    const std::unique_lock<std::mutex> lock = pause();
    writeErrorLine(problem);
}

void Reporter::line(std::string_view text) {
    if (!m_json) {
        write(std::string(text) + '\n');
    }
}

void Reporter::object(const Fields& fields) {
    if (!m_json) {
        return;
    }
    Fields object = {{"verb", m_verb}};
    object.update(fields);
    const std::string text = object.dump(-1, ' ', /*ensure_ascii=*/false, Fields::error_handler_t::replace);
    write(printableJson(text) + '\n');
}

void writeOutput(std::string_view text) {
    const int error = writePatiently(STDOUT_FILENO, text);
    if (error == ECANCELED) {
        throw Interruption();
    }
    if (error != 0) {
        throw OutputError(error);
    }
}

void writeErrorLine(const Problem& problem) {
    const std::string line = errorLine(problem) + '\n';
    // In one write, so that lines of several processes do not mix.
    static_cast<void>(writePatiently(STDERR_FILENO, line));
}

}  // namespace jstore
