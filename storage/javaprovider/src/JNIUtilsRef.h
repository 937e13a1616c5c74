#pragma once

#include <jni.h>

#include "JNIUtilsEnv.h"

namespace storage::javaprovider {

/// Owns one JNI local reference (`jobject`, `jclass`, `jstring`, `jthrowable`) and deletes it on destruction unless it
/// is null.
///
/// Hazards:
///  - Declared after the guard it was made with, so that it goes first.
///  - Holders of one scope release in reverse order of their making; operations rely on that order.
template <class T>
class LocalRef {
public:
    LocalRef(const JNIEnvPtr& env, T reference) noexcept : m_env(env), m_reference(reference) {}
    ~LocalRef() { reset(); }

    LocalRef(const LocalRef&) = delete;
    LocalRef& operator=(const LocalRef&) = delete;

    /// Deletes the reference now.
    void reset() noexcept {
        if (m_reference != nullptr) {
            m_env->DeleteLocalRef(m_reference);
            m_reference = nullptr;
        }
    }

    [[nodiscard]] T get() const noexcept { return m_reference; }
    [[nodiscard]] const JNIEnvPtr& env() const noexcept { return m_env; }
    [[nodiscard]] explicit operator bool() const noexcept { return m_reference != nullptr; }

private:
    const JNIEnvPtr& m_env;
    T m_reference;
};

}  // namespace storage::javaprovider
