#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/TemporaryFolder.h"

namespace jstore::test {

/// A test in a folder of its own.
class FolderTest : public ::testing::Test {
protected:
    /// The location of something in the folder.
    [[nodiscard]] std::string at(std::string_view name) const { return m_folder.location(name); }

    TemporaryFolder m_folder;
};

}  // namespace jstore::test
