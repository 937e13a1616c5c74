#pragma once

#include <string>

#include "Location.h"
#include "Problem.h"
#include "foundation/storage/provider/ErrorCode.h"

namespace jstore {

/// An operation that jstore itself refuses, in the words of a back end's error with a hint.
[[nodiscard]] CommandError refusal(const Location& location, foundation::storage::provider::ErrorCode code,
                                   std::string hint);

}  // namespace jstore
