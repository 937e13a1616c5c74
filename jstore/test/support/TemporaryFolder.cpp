#include "support/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

namespace jstore::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    auto name = (fs::canonical(fs::temp_directory_path()) / "jstore-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;  // What cannot be removed stays in the system's folder for temporary files.
    fs::remove_all(m_path, ignored);
}

std::string TemporaryFolder::location(std::string_view name) const {
    return "java://" + m_path.string() + '/' + std::string(name);
}

fs::path TemporaryFolder::file(std::string_view name, std::string_view content) const {
    fs::create_directories((m_path / name).parent_path());
    std::ofstream(m_path / name, std::ios::binary) << content;
    return m_path / name;
}

fs::path TemporaryFolder::folder(std::string_view name) const {
    fs::create_directories(m_path / name);
    return m_path / name;
}

std::string contentOf(const fs::path& file) {
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}

}  // namespace jstore::test
