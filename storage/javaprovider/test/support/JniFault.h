#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace storage::javaprovider::test {

/// What a call that fails on purpose leaves pending, beside null (or a negative number, where the function gives one).
struct JniFailure {
    std::string exceptionClass;  ///< the exception left pending, with slashes; empty: nothing is pending

    /// An OutOfMemoryError pending, as the machine does it.
    [[nodiscard]] static JniFailure outOfMemory() { return {"java/lang/OutOfMemoryError"}; }
    /// Nothing pending.
    [[nodiscard]] static JniFailure silent() { return {""}; }
    /// An exception of the given class pending; the class needs a constructor that takes a String.
    [[nodiscard]] static JniFailure exception(std::string className) { return {std::move(className)}; }
};

/// One call that is to fail, once; made for designated initializers:
/// `recorder.fail({.call = "NewString", .occurrence = 2, .failure = JniFailure::silent()})`.
struct JniFault {
    std::string call = {};       ///< a pattern as JniCall::matches() takes it; empty: any call that may always fail
    std::size_t occurrence = 1;  ///< the how-manieth matching call from now on, the first being 1
    JniFailure failure = JniFailure::outOfMemory();
    bool anyThread = false;  ///< calls of every thread count; by default only those of the thread that asked
};

}  // namespace storage::javaprovider::test
