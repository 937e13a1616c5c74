#pragma once

#include "foundation/Export.h"

namespace foundation::core::except {

/// The root of all exceptions that the framework and its providers throw on purpose.
///
/// It does not derive from `std::exception`, so an exception that is both can be caught as either without ambiguity.
/// Exceptions are values: they may be copied to another thread and rethrown there.
class FOUNDATION_API IException {
public:
    virtual ~IException();

protected:
    IException() = default;
    IException(const IException&) = default;
    IException& operator=(const IException&) = default;
};

}  // namespace foundation::core::except
