#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace test {

/// An empty folder that goes with all its contents at the end of the scope.
class TemporaryFolder final {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "jvm-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        m_path = std::filesystem::canonical(name);
    }
    ~TemporaryFolder() {
        std::error_code ignored;  // a folder left behind is no reason to end the test program
        std::filesystem::remove_all(m_path, ignored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace test
