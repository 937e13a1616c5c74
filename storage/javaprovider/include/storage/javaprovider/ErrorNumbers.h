#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "foundation/storage/provider/ErrorCode.h"

namespace storage::javaprovider {

/// The error code with that number in the Java contract, as `getErrorCodeNumber()` returns it; empty for a number that
/// the contract does not have. The contract has no Cancelled, so from 7 on its numbers differ from ErrorCode's.
[[nodiscard]] constexpr std::optional<foundation::storage::provider::ErrorCode> errorCodeOf(
    std::int32_t number) noexcept {
    using foundation::storage::provider::ErrorCode;
    constexpr std::array codes = {ErrorCode::Unknown,        ErrorCode::NotFound,     ErrorCode::AlreadyExists,
                                  ErrorCode::AccessDenied,   ErrorCode::NotAFile,     ErrorCode::NotAFolder,
                                  ErrorCode::FolderNotEmpty, ErrorCode::NotSupported, ErrorCode::InvalidLocation,
                                  ErrorCode::StorageFull,    ErrorCode::InUse,        ErrorCode::Unavailable};
    const auto index = static_cast<std::size_t>(number);
    if (number < 0 || index >= codes.size()) {
        return std::nullopt;
    }
    return codes[index];
}

}  // namespace storage::javaprovider
