#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "base/Location.h"
#include "base/Problem.h"

namespace jstore {

/// Standard output could not be written.
class OutputError final : public std::runtime_error {
public:
    explicit OutputError(int error);
    /// The errno of the failed write.
    [[nodiscard]] int error() const noexcept { return m_error; }

private:
    int m_error;
};

/// Writes what a verb has to say: results to standard output, one line for each problem to standard error.
///
/// Without JSON success is silent. With JSON every operation is one object on a line of its own, written at once. Used
/// only by the main thread. Functions that write to standard output throw OutputError.
class Reporter {
public:
    /// Fields of one object, in the order in which they appear.
    using Fields = nlohmann::ordered_json;

    explicit Reporter(bool json) : m_json(json) {}

    /// Called before each line; the lock that it returns is released once the line is written.
    void setPause(std::function<std::unique_lock<std::mutex>()> pause) { m_pause = std::move(pause); }

    /// The verb that the objects name.
    void setVerb(std::string_view verb) { m_verb = verb; }

    /// An operation on the location was done. `more` goes into its object.
    void done(const Location& location, const Fields& more = Fields::object());
    /// An operation on the location failed: an object, and the error line in any case.
    void failed(const Location& location, const Problem& problem, const Fields& more = Fields::object());
    /// The same without an error line, for a verb that was asked whether something is so.
    void denied(const Location& location, const Problem& problem);
    /// The command as a whole failed: an object without a location, and the error line.
    void failed(const Problem& problem);

    /// A line for people on standard error that reports no failure; not written with JSON.
    void note(std::string_view text);
    /// A line for people; not written with JSON.
    void line(std::string_view text);
    /// An object of the verb's own; written only with JSON. "verb" goes before the fields.
    void object(const Fields& fields);

    [[nodiscard]] bool json() const noexcept { return m_json; }

private:
    [[nodiscard]] std::unique_lock<std::mutex> pause() const;
    void write(std::string_view text) const;
    void writeError(const Problem& problem) const;

    bool m_json;
    std::string m_verb;
    std::function<std::unique_lock<std::mutex>()> m_pause;
};

/// Writes text to standard output at once. Throws OutputError, and Interruption when a signal has arrived and nobody
/// takes the text.
void writeOutput(std::string_view text);

/// Writes a problem's line to standard error. A standard error that is closed is no error of its own.
void writeErrorLine(const Problem& problem);

}  // namespace jstore
