#pragma once

namespace foundation::storage::provider {

/// What an entry in a folder is. Everything that is not a folder counts as a file.
enum class EntryType : int { File = 0, Folder = 1 };

}  // namespace foundation::storage::provider
