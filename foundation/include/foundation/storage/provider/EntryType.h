#pragma once

namespace foundation::storage::provider {

/// What a name in a folder stands for.
enum class EntryType : int { File = 0, Folder = 1 };

}  // namespace foundation::storage::provider
