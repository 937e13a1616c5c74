#pragma once

#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>

#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"

namespace storage::javaprovider::test {

using ProviderError = foundation::storage::provider::Exception;
using InternalError = foundation::core::except::detail::AnonymousInternalException<std::runtime_error>;
using InternalBadAlloc = foundation::core::except::detail::AnonymousInternalException<std::bad_alloc>;

/// What the action throws, if its type is exactly `Error`; anything else, or nothing, fails the test.
template <class Error, class Action>
[[nodiscard]] std::optional<Error> thrownBy(Action&& action) {
    try {
        std::forward<Action>(action)();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Error& error) {
        if (typeid(error) == typeid(Error)) {
            return error;
        }
        ADD_FAILURE() << "a derived type was thrown: " << typeid(error).name();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "another type was thrown: " << typeid(error).name() << ": " << error.what();
    }
    return std::nullopt;
}

/// The text of the error that the action throws.
template <class Error, class Action>
[[nodiscard]] std::string textThrownBy(Action&& action) {
    const auto error = thrownBy<Error>(std::forward<Action>(action));
    return error ? error->what() : "";
}

/// The text of the internal error that the action throws.
template <class Action>
[[nodiscard]] std::string internalErrorOf(Action&& action) {
    return textThrownBy<InternalError>(std::forward<Action>(action));
}

/// Whether the action throws exactly `Error`.
template <class Error, class Action>
[[nodiscard]] bool throwsExactly(Action&& action) {
    return thrownBy<Error>(std::forward<Action>(action)).has_value();
}

}  // namespace storage::javaprovider::test
