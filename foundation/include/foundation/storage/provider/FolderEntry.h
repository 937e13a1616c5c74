#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "foundation/storage/provider/EntryType.h"

namespace foundation::storage::provider {

/// How many folders deep a recursive listing goes. No path that Linux accepts (4095 bytes) is that deep. But in a
/// storage where a folder contains itself, a listing would never end.
inline constexpr std::size_t MaxFolderDepth = 2048;

/// One child of a listed folder. In a recursive listing the name is the path below the listed folder, with slashes.
class FolderEntry {
public:
    FolderEntry(std::u16string name, EntryType type) : m_name(std::move(name)), m_type(type) {}

    [[nodiscard]] const std::u16string& name() const noexcept { return m_name; }
    [[nodiscard]] EntryType type() const noexcept { return m_type; }

    [[nodiscard]] bool operator==(const FolderEntry&) const = default;

private:
    std::u16string m_name;
    EntryType m_type;
};

}  // namespace foundation::storage::provider
