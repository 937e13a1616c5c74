#pragma once

#include "foundation/Export.h"

namespace foundation::core::except {

/// The root of every exception that the framework and its providers throw on purpose.
///
/// It is an interface beside `std::exception`, not below it, so that one exception object can be caught as either
/// without ambiguity. Exceptions are values: safe to copy to, and to rethrow on, another thread.
class FOUNDATION_API IException {
public:
    virtual ~IException();

protected:
    IException() = default;
    IException(const IException&) = default;
    IException& operator=(const IException&) = default;
};

}  // namespace foundation::core::except
