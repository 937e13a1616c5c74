#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "storage/jvm/EmbeddedJVM.h"

namespace test {

/// A fixture over the one virtual machine of the test program. Its heap is small, so that what is not released shows.
///
/// Each test begins and ends on a thread that is not attached.
class SharedMachine : public testing::Test {
protected:
    static constexpr std::size_t HeapMiB = 64;

    static void SetUpTestSuite();
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] static JavaVM* vm() { return s_jvm->getJavaVM(); }
    [[nodiscard]] static const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm() { return s_jvm; }

private:
    static std::shared_ptr<storage::jvm::EmbeddedJVM> s_jvm;
};

/// The calling thread, attached by the host's own hands for the life of a scope.
class HostAttachment final {
public:
    explicit HostAttachment(JavaVM* vm);
    ~HostAttachment();

    HostAttachment(const HostAttachment&) = delete;
    HostAttachment& operator=(const HostAttachment&) = delete;

    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }

private:
    JavaVM* m_vm;
    JNIEnv* m_env;
};

}  // namespace test
