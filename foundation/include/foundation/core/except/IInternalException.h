#pragma once

#include "foundation/core/except/IException.h"

namespace foundation::core::except {

/// Marks failures of the machinery (the virtual machine is gone, a class or method is missing, memory is exhausted), in
/// contrast to errors that a storage back end reports about a location.
class FOUNDATION_API IInternalException : public IException {
public:
    ~IInternalException() override;

protected:
    IInternalException() = default;
    IInternalException(const IInternalException&) = default;
    IInternalException& operator=(const IInternalException&) = default;
};

}  // namespace foundation::core::except
