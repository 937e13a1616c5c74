#pragma once

#include <new>
#include <stdexcept>

#include "foundation/core/except/Exception.h"
#include "foundation/core/except/IInternalException.h"

namespace foundation::core::except {

namespace detail {

/// An internal failure that no caller is expected to tell from another by its type.
///
/// Catchable as `Exception<IInternalException, Standard, void>`, `IInternalException`, `IException`, `Standard`,
/// `std::exception` and `boost::exception`.
template <class Standard>
class FOUNDATION_API AnonymousInternalException final : public Exception<IInternalException, Standard, void> {
public:
    using Exception<IInternalException, Standard, void>::Exception;
};

}  // namespace detail

// The two instances that cross library borders are emitted once, in libfoundation.
extern template class Exception<IInternalException, std::runtime_error, void>;
extern template class Exception<IInternalException, std::bad_alloc, void>;
extern template class detail::AnonymousInternalException<std::runtime_error>;
extern template class detail::AnonymousInternalException<std::bad_alloc>;

}  // namespace foundation::core::except
