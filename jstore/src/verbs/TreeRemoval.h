#pragma once

#include "Context.h"
#include "ExitCode.h"
#include "Location.h"

namespace jstore {

/// Removes a folder with all it holds, one by one and children first, for back ends that cannot do it at once.
///
/// Symbolic links to folders are removed and not entered, as far as the back end tells what is a link. What cannot be
/// removed is reported as its own failure, and the folders above it stay; the rest goes. The depth of the tree is
/// limited by memory alone: at a time the listings along one path are held. Returns Done, or SomeFailed when something
/// stays. Throws what listing or removing the folder itself fails with, and Interruption when SIGINT arrives. Blocks in
/// Java.
[[nodiscard]] ExitCode removeOneByOne(Context& context, const Location& folder);

}  // namespace jstore
