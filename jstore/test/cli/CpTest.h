#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>

#include "support/FolderTest.h"

namespace jstore::test {

namespace fs = std::filesystem;

/// Copies of a file "a" in the folder of the test.
class CpTest : public FolderTest {
protected:
    CpTest() { m_folder.file("a", "content of a"); }

    /// How many files and folders are directly in the folder of the test.
    [[nodiscard]] std::ptrdiff_t count() const {
        return std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator());
    }

    /// A time that the system's clock is not near, in whole milliseconds.
    static fs::file_time_type longAgo() {
        return std::chrono::floor<std::chrono::milliseconds>(fs::file_time_type::clock::now()) -
               std::chrono::hours(24 * 365);
    }
};

}  // namespace jstore::test
