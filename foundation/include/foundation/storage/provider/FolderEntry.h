#pragma once

#include <string>
#include <utility>

#include "foundation/storage/provider/EntryType.h"

namespace foundation::storage::provider {

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
