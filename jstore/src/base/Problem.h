#pragma once

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "base/ExitCode.h"
#include "base/Location.h"
#include "foundation/storage/provider/ErrorCode.h"

namespace jstore {

/// One thing that went wrong, in the words that jstore shows.
struct Problem {
    std::string code;      ///< a stable word: the name of an error code, "Internal", "Usage", "NoJava", …
    std::string location;  ///< what it concerns; empty when it concerns the whole command
    std::string text;      ///< an explanation or a hint; may be empty when there is a location
    ExitCode exitCode = ExitCode::Failed;
    std::string reason = {};  ///< why, in the words of the back end; shown where there is no text
};

/// A problem that ends the command before, or instead of, its operations.
class CommandError final : public std::runtime_error {
public:
    explicit CommandError(Problem problem);

    [[nodiscard]] const Problem& problem() const noexcept { return m_problem; }

private:
    Problem m_problem;
};

/// A wrong command line: "Usage" with exit code 2.
[[nodiscard]] CommandError usageError(std::string text);

/// An error for an operation that jstore itself refuses: a back end's error code, and a hint.
[[nodiscard]] CommandError refusal(const Location& location, foundation::storage::provider::ErrorCode code,
                                   std::string hint);

/// The problem as its line on standard error, without the newline: `jstore: NotFound: java:///x`, with the text or the
/// reason after it where there is one; or `jstore: text` when it concerns the whole command.
[[nodiscard]] std::string errorLine(const Problem& problem);

/// Adds the back end's reason as one printable line, shortened if it is long. Ignores a reason that only repeats the
/// code, as "does not exist" repeats NotFound.
void addReason(Problem& problem, std::string_view words);

/// A sentence for people: the problem's text, its reason, or what its code means.
[[nodiscard]] std::string messageOf(const Problem& problem);

/// The error that ended an operation on `subject`, as a problem. Its location is the one that the error names. If that
/// is the subject, or the error names none, it is the subject in the user's spelling.
[[nodiscard]] Problem describe(const std::exception& error, const Location& subject);

}  // namespace jstore
