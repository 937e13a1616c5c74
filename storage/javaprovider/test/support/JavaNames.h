#pragma once

#include <jni.h>
#include <jvmti.h>

#include <mutex>
#include <string>
#include <unordered_map>

namespace storage::javaprovider::test {

/// Names and descriptors of classes, methods and fields, asked of the machine without running Java.
///
/// Safe to use from any attached thread, also while an exception is pending.
class JavaNames {
public:
    struct Method {
        std::string name;
        std::string signature;
    };

    explicit JavaNames(jvmtiEnv* jvmti) : m_jvmti(jvmti) {}

    /// "java/lang/String"; "[I" for arrays, "(null)" for null, "(not a class)" for other objects.
    [[nodiscard]] std::string ofClass(jclass clazz) const;
    /// Name and descriptor; "(null)" without a descriptor for null. The reference stays good.
    [[nodiscard]] const Method& ofMethod(jmethodID method) const;
    [[nodiscard]] std::string ofField(jclass clazz, jfieldID field) const;

private:
    jvmtiEnv* m_jvmti;
    mutable std::mutex m_mutex;
    // A method ID that the machine has given never means another method, so nothing is ever dropped.
    mutable std::unordered_map<jmethodID, Method> m_methods;
};

}  // namespace storage::javaprovider::test
