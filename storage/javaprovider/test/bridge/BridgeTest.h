#pragma once

#include <jni.h>

#include <optional>
#include <string>
#include <vector>

#include "JNIUtilsEnv.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

/// A test of one of the bridge's helpers: a guard of the library stands, and its own calls are forgotten already, so
/// that the recorder shows only the calls of the helper.
///
/// What a helper leaves to the guard's local frame is released before the fixture looks for what is left over.
class BridgeTest : public RecordedJvmTest {
protected:
    void SetUp() override;
    void TearDown() override;

    [[nodiscard]] const JNIEnvPtr& guard() const { return *m_guard; }

    /// An exception of the fixture class Failures; a local reference of the guard's frame that no recorder counts.
    [[nodiscard]] jthrowable failure(const std::string& kind, const std::u16string& text = u"");
    /// Leaves the exception pending, or one that failure() makes.
    void raise(jthrowable exception);
    void raise(const std::string& kind, const std::u16string& text = u"") { raise(failure(kind, text)); }

    /// Whether exactly this exception is pending.
    [[nodiscard]] bool isPending(jthrowable exception) const;
    [[nodiscard]] bool isAnyPending() const;
    /// The pending exception's description, cleared; empty when nothing is pending.
    std::string takePending() const;

    /// Whether two references are to the same object.
    [[nodiscard]] bool same(jobject left, jobject right) const;

    /// The class by its slashed name, as a reference that no recorder counts.
    [[nodiscard]] jclass classNamed(const std::string& name) const;

    /// The objects that the recorded DeleteLocalRef calls released, in order, by the call that had made each reference.
    [[nodiscard]] std::vector<std::string> releases() const;

private:
    std::optional<JNIEnvPtr> m_guard;
};

/// The text of the exception of this type that the action throws; what is thrown otherwise passes through.
template <class Expected, class Action>
std::string messageOf(Action&& action) {
    try {
        action();
    } catch (const Expected& e) {
        return e.what();
    }
    return "(nothing was thrown)";
}

/// Names the cases of a parameterised test after themselves.
inline constexpr auto NameOfCase = [](const auto& test) { return std::string(test.param.name); };

/// Whether the action throws something that can be caught in this form; what cannot passes through.
template <class Form, class Action>
bool throwsAs(Action&& action) {
    try {
        action();
    } catch (const Form&) {
        return true;
    }
    return false;
}

}  // namespace storage::javaprovider::test
