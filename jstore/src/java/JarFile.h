#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_set>

namespace jstore {

/// The table of contents of a jar, read to report a broken file before Java silently passes over it. Archives with
/// other bytes before or after them count, as they do for Java.
///
/// An immutable value. The members' bytes are not read or checked.
class JarFile {
public:
    /// Reads the table of contents. Throws std::runtime_error with the reason: it cannot be opened or read, it is no
    /// zip archive, its table of contents is damaged.
    explicit JarFile(const std::filesystem::path& path);

    /// Whether the jar holds a member of that name, for example "com/example/Provider.class".
    [[nodiscard]] bool contains(const std::string& member) const { return m_members.count(member) != 0; }

private:
    std::unordered_set<std::string> m_members;
};

}  // namespace jstore
