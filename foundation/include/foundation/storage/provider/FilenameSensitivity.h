#pragma once

namespace foundation::storage::provider {

/// Whether names that differ in letter case alone name different things.
enum class FilenameSensitivity : int { CaseSensitive = 0, CaseInsensitive = 1 };

}  // namespace foundation::storage::provider
