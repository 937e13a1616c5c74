#pragma once

#include <jni.h>

#include <memory>
#include <string>
#include <string_view>

#include "Machine.h"
#include "floor/FloorMethods.h"

namespace bench {

/// What every floor knows beforehand: the back end's object and the classes, and the steps that all operations share.
/// Used on the thread that made it.
class FloorJava {
public:
    /// The methods of a back end; all of them, so that a search among them is as long as the library's.
    enum Method : std::size_t {
        FileExists,
        FolderExists,
        CreateFile,
        CreateFolder,
        RemoveFile,
        RemoveFolder,
        RemoveFolderRecursively,
        HasFeature,
        MoveFile,
        MoveFolder,
        GetFileAttributes,
        GetFolderAttributes,
        SetLastModified,
        ListFolder,
        GetChannel,
        GetReadOnlyChannel,
        PublishEventsFor,
        StopPublishingEventsFor,
        Dispose,
        GetExtendedAttributes,
        GetProviderStorageInfo,
        Configure,
        MethodCount
    };

    /// Makes a back end of its own. The calling thread is attached.
    FloorJava(std::shared_ptr<jvm_interface::JVM> jvm, Lookups lookups);

    [[nodiscard]] const std::shared_ptr<jvm_interface::JVM>& jvm() const noexcept { return m_jvm; }
    [[nodiscard]] Lookups lookups() const noexcept { return m_lookups; }
    /// The thread's environment, once an operation has its guard.
    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }
    [[nodiscard]] jobject provider() const noexcept { return m_provider; }
    [[nodiscard]] jmethodID method(Method method) const { return m_methods.get(method); }

    /// A method that the class is asked for on every call.
    [[nodiscard]] jmethodID ask(jclass cls, const char* name, const char* signature) const;

    /// The location as a new Java object; its constructor is looked up on every call.
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

    std::shared_ptr<jvm_interface::JVM> m_jvm;
    Lookups m_lookups;
    JNIEnv* m_env;
    jclass m_uriClass;
    jobject m_provider;
    FloorMethods<MethodCount> m_methods;
};

}  // namespace bench
