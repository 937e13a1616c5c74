#pragma once

namespace foundation::storage::provider {

/// Whether names that differ only in letter case name different files.
enum class FilenameSensitivity : int { CaseSensitive = 0, CaseInsensitive = 1 };

}  // namespace foundation::storage::provider
