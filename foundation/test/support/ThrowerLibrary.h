#pragma once

#include <functional>
#include <string>
#include <typeinfo>

#include "foundation/storage/provider/StorageIRI.h"

#define THROWER_API __attribute__((visibility("default")))

/// A shared library beside libfoundation that throws and catches the framework's exceptions, as a provider's would.
namespace foundation::test::thrower {

[[noreturn]] THROWER_API void throwInternalFailure(const std::string& text);
[[noreturn]] THROWER_API void throwOutOfMemory();
[[noreturn]] THROWER_API void throwNotFound(const storage::provider::StorageIRI& location);

/// Calls `action` and says which handler of this library took its exception: "internal failure", "out of memory",
/// "provider error", "other" or "none".
THROWER_API std::string handlerFor(const std::function<void()>& action);

/// The type objects as this library sees them.
THROWER_API const std::type_info& internalFailureType();
THROWER_API const std::type_info& outOfMemoryType();
THROWER_API const std::type_info& providerErrorType();

}  // namespace foundation::test::thrower
