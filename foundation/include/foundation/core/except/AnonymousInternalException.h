#pragma once

#include <new>
#include <stdexcept>

#include "foundation/core/except/Exception.h"
#include "foundation/core/except/IInternalException.h"

namespace foundation::core::except {

namespace detail {

/// An internal failure that callers need not distinguish from others by its type.
///
/// It can be caught as `Exception<IInternalException, Standard, void>`, `IInternalException`, `IException`, `Standard`,
/// `std::exception` and `boost::exception`.
template <class Standard>
class FOUNDATION_API AnonymousInternalException final : public Exception<IInternalException, Standard, void> {
public:
    using Exception<IInternalException, Standard, void>::Exception;
};

}  // namespace detail

// The instantiations that other libraries throw and catch are emitted once, in libfoundation.
extern template class Exception<IInternalException, std::runtime_error, void>;
extern template class Exception<IInternalException, std::bad_alloc, void>;
extern template class detail::AnonymousInternalException<std::runtime_error>;
extern template class detail::AnonymousInternalException<std::bad_alloc>;

}  // namespace foundation::core::except
