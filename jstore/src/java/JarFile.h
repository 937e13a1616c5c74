#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_set>

namespace jstore {

/// The table of contents of a jar. Reading it reports a broken file, which Java would silently ignore. As in Java, an
/// archive may have other bytes before and after it.
///
/// An immutable value. The members' bytes are not read or checked.
class JarFile {
public:
    /// Reads the table of contents. Throws std::runtime_error with the reason: the file cannot be opened or read, is no
    /// zip archive, or its table of contents is damaged.
    explicit JarFile(const std::filesystem::path& path);

    /// Whether the jar holds a member of that name, for example "com/example/Provider.class".
    [[nodiscard]] bool contains(const std::string& member) const { return m_members.count(member) != 0; }

private:
    std::unordered_set<std::string> m_members;
};

}  // namespace jstore
