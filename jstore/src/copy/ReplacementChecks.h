#pragma once

#include "base/Location.h"
#include "base/Problem.h"
#include "copy/WrittenTargets.h"
#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// Checks, before anything is changed, whether the source may replace what is at the target. Later, when the source
/// takes its place, the back end may still refuse.
///
/// Throws CommandError: AlreadyExists if both are the same file or folder, under whatever names, or if this command has
/// put the target there itself; NotSupported if something special is there, such as a pipe or a device. Call it only if
/// there is something at the target. Blocks in Java.
void requireReplaceable(const foundation::storage::provider::IProvider& provider, const Location& source,
                        const Location& target, WrittenTargets& written);

/// The error for a target that this command has put in place itself.
[[nodiscard]] CommandError refuseOwn(const Location& target);

}  // namespace jstore
