#pragma once

#include <jni.h>

#include <string>
#include <string_view>

#include "Machine.h"

namespace bench {

/// What every floor knows beforehand: the back end's object, the classes and the method IDs that may be kept, and the
/// steps that all of them share. Used on one thread, the one whose environment it has.
class FloorJava {
public:
    /// Makes a back end of its own. `env` is the calling thread's.
    explicit FloorJava(JNIEnv* env);

    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }
    [[nodiscard]] jobject provider() const noexcept { return m_provider; }

    /// A method of the back end.
    [[nodiscard]] jmethodID method(const char* name, const char* signature) const;

    /// The location as a new Java object; its constructor is looked up on every call, as the library has to.
    [[nodiscard]] jobject newUri(std::u16string_view text) const;

    /// Throws std::runtime_error when a Java exception is pending, having cleared it.
    void check() const;

    /// A copy of the Java text up to its first zero.
    [[nodiscard]] std::u16string text(jstring value) const { return textOf(m_env, value); }
    [[nodiscard]] static std::u16string textOf(JNIEnv* env, jstring value);

    /// A getter without arguments that the object's own class is asked for on every call.
    [[nodiscard]] jlong readLong(jobject object, const char* getter) const;
    [[nodiscard]] bool readBoolean(jobject object, const char* getter) const;

private:
    [[nodiscard]] jclass hold(const char* name) const;

    JNIEnv* m_env;
    jclass m_uriClass;
    jclass m_providerClass;
    jobject m_provider;
};

}  // namespace bench
