#pragma once

#include <stdexcept>

#include "foundation/core/except/Exception.h"
#include "foundation/storage/provider/ErrorCode.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {

/// The error that a storage back end reports about a location.
///
/// what() reads "NotFound: java://mount/name". It can be caught as IException, std::runtime_error, std::exception or
/// boost::exception, but not as IInternalException. It is copyable, so a std::exception_ptr can carry it.
class FOUNDATION_API Exception
    : public core::except::Exception<core::except::IException, std::runtime_error, ErrorCode> {
public:
    Exception(const ErrorCode& code, const StorageIRI& location);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() noexcept override;

    [[nodiscard]] ErrorCode code() const noexcept { return m_code; }
    /// The location concerned; empty if the back end named none.
    [[nodiscard]] const StorageIRI& location() const noexcept { return m_location; }

private:
    ErrorCode m_code;
    StorageIRI m_location;
};

}  // namespace foundation::storage::provider
