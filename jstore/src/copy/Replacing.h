#pragma once

#include "base/Location.h"
#include "base/Problem.h"
#include "copy/MadeHere.h"
#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// Refuses to replace what is at the target by the source, before anything is changed; the back end's own refusal, when
/// the source takes its place, is what decides.
///
/// Throws CommandError: AlreadyExists when both are the same file or folder, under whatever names, and when this
/// command has put the target there itself; NotSupported when something special is there, such as a pipe or a device.
/// To be asked when there is something at the target. Blocks in Java.
void requireReplaceable(const foundation::storage::provider::IProvider& provider, const Location& source,
                        const Location& target, MadeHere& made);

/// The refusal to replace what this command has put at the target.
[[nodiscard]] CommandError refuseOwn(const Location& target);

}  // namespace jstore
