#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "foundation/storage/provider/StreamCopy.h"

namespace jstore {

/// Hands the bytes from the present position of a stream to its end to `take`, in portions of at most 128 KiB. Returns
/// the number of bytes.
///
/// Throws as readSome() does, and Interruption between two portions when a signal has arrived. Blocks in Java.
std::uint64_t readAll(foundation::storage::provider::StreamEnd from, const std::function<void(std::string_view)>& take);

}  // namespace jstore
