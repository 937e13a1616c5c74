#pragma once

#include <gtest/gtest.h>
#include <jni.h>

#include <memory>

#include "jvm_interface/JVM.h"
#include "support/JniRecorder.h"

namespace storage::javaprovider::test {

/// A test that calls Java: its thread is attached while it runs, and has a local frame for what the test leaves.
///
/// A test also fails if it ends with a Java exception pending, with its thread detached, or with local references of
/// its thread that a running recorder counts as kept.
class JvmTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// The handle on the machine of this test program.
    [[nodiscard]] static const std::shared_ptr<jvm_interface::JVM>& jvm();
    [[nodiscard]] static JavaVM* vm();
    /// The environment of the test's thread.
    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }

private:
    JNIEnv* m_env = nullptr;
    bool m_attached = false;
};

/// A JvmTest under a recorder, which starts when the test is made and is checked when it ends.
class RecordedJvmTest : public JvmTest {
protected:
    void TearDown() override;

    JniRecorder recorder{vm()};
};

}  // namespace storage::javaprovider::test
