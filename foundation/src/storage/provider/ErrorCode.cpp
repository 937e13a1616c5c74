#include "foundation/storage/provider/ErrorCode.h"

#include <array>
#include <cstddef>

namespace foundation::storage::provider {

std::string_view toString(ErrorCode code) noexcept {
    static constexpr std::array<std::string_view, 13> Names = {
        "Unknown",   "NotFound",     "AlreadyExists",   "AccessDenied", "NotAFile", "NotAFolder", "FolderNotEmpty",
        "Cancelled", "NotSupported", "InvalidLocation", "StorageFull",  "InUse",    "Unavailable"};
    const auto index = static_cast<std::size_t>(code);
    return index < Names.size() ? Names[index] : Names[0];
}

}  // namespace foundation::storage::provider
