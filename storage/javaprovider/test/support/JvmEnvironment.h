#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "jvm_interface/JVM.h"

namespace storage::javaprovider::test {

/// Starts the one virtual machine of a test program before its first test, and leaves it running.
///
/// The environment variable TEST_JVM_OPTIONS adds options, separated by blanks ("-Xcheck:jni -Xint").
class JvmEnvironment final : public ::testing::Environment {
public:
    /// `classPath`: jars and folders, separated by colons.
    explicit JvmEnvironment(const std::string& classPath);

    void SetUp() override;

    /// The handle on the machine; std::logic_error before SetUp() or when the machine did not start.
    [[nodiscard]] static const std::shared_ptr<jvm_interface::JVM>& jvm();
    /// The class path that the machine was given.
    [[nodiscard]] const std::vector<std::filesystem::path>& classPath() const noexcept { return m_classPath; }

private:
    std::vector<std::filesystem::path> m_classPath;
};

}  // namespace storage::javaprovider::test
