#pragma once

#include <cstdint>

#include "base/Location.h"
#include "copy/WrittenTargets.h"
#include "foundation/storage/provider/IProvider.h"
#include "output/Progress.h"

namespace jstore {

/// Where a copy goes, and what is known of the place.
struct CopyTarget {
    Location location;
    bool replace = false;      ///< whether a file that is there may be replaced
    bool inNewFolder = false;  ///< the folder was created for this copy, so it holds nothing yet
    bool inOwnFolder = false;  ///< an earlier copy of this command created the folder: nothing in it is replaced

    /// Whether a file that is there is really replaced.
    [[nodiscard]] bool mayReplace() const noexcept { return replace && !inNewFolder && !inOwnFolder; }
};

/// Copies a file's bytes and time of modification. At any time the target holds its old content or the whole new one:
/// until the copy is complete it has a hidden name beside the target. Returns the number of bytes; the progress counts
/// them as they are written.
///
/// Throws Exception as the provider does: NotFound, NotAFile, StorageFull and so on; AlreadyExists if something is at
/// the target and is not to be replaced. Throws CommandError: NotAFile if a folder is there, what requireReplaceable()
/// throws, "Unavailable" if the number of bytes is not what the back end says. Throws Interruption when a signal
/// arrives. After any of them the target is as it was. A file that may have replaced another is added to `written`.
/// Blocks in Java.
std::uint64_t copyOneFile(const foundation::storage::provider::IProvider& provider, const Location& source,
                          const CopyTarget& target, Progress& progress, WrittenTargets& written);

/// Sets the time of modification of a file or folder, or leaves it where the back end cannot set it.
void keepTime(const foundation::storage::provider::IProvider& provider,
              const foundation::storage::provider::StorageIRI& location, const boost::posix_time::ptime& time);

}  // namespace jstore
