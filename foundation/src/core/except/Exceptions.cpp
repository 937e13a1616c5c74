#include "foundation/core/except/AnonymousInternalException.h"

namespace foundation::core::except {

IException::~IException() = default;
IInternalException::~IInternalException() = default;

template class Exception<IInternalException, std::runtime_error, void>;
template class Exception<IInternalException, std::bad_alloc, void>;
template class detail::AnonymousInternalException<std::runtime_error>;
template class detail::AnonymousInternalException<std::bad_alloc>;

}  // namespace foundation::core::except
