#pragma once

#include <functional>
#include <string>

namespace storage::javaprovider::test {

/// How an operation can end.
enum class Ending {
    Returns,           ///< the text is its result
    ProviderError,     ///< foundation::storage::provider::Exception; the text is its code's number and location
    InternalError,     ///< AnonymousInternalException<std::runtime_error>
    InternalBadAlloc,  ///< AnonymousInternalException<std::bad_alloc>
    BadAlloc,          ///< exactly std::bad_alloc
    RuntimeError,      ///< exactly std::runtime_error
    Other,             ///< what no operation may end in
};

[[nodiscard]] const char* nameOf(Ending ending) noexcept;

/// How an operation ended: the text is its result, or what the exception says.
struct SweepOutcome {
    Ending ending = Ending::Other;
    std::string text;

    [[nodiscard]] std::string toString() const { return std::string(nameOf(ending)) + " \"" + text + "\""; }
};

/// Runs the operation.
[[nodiscard]] SweepOutcome outcomeOf(const std::function<std::string()>& operation);

}  // namespace storage::javaprovider::test
