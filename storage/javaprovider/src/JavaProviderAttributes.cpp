// The basic attributes of files and folders.
#include <cstdint>
#include <optional>
#include <string>

#include "JNIUtilsClass.h"
#include "JNIUtilsException.h"
#include "JNIUtilsLog.h"
#include "JNIUtilsRef.h"
#include "JavaProvider.h"
#include "JavaProviderTime.h"
#include "TraceSites.h"

namespace storage::javaprovider {

using foundation::storage::provider::FileAttributes;
using foundation::storage::provider::FolderAttributes;

namespace {

// The getters are looked up on the object's own class, so any Java class that has them serves. No look at a pending
// exception after them: the contract says that they never throw.

jlong readLong(const JNIEnvPtr& env, jobject attributes, const std::string& getter) {
    const LocalRef<jclass> cls(env, env->GetObjectClass(attributes));
    jmethodID method = getMethodID(env, cls.get(), getter, "()J");
    return env->CallLongMethod(attributes, method);
}

jlong readSize(const JNIEnvPtr& env, jobject attributes) { return readLong(env, attributes, "getSize"); }

boost::posix_time::ptime readLastModified(const JNIEnvPtr& env, jobject attributes) {
    return millisToPtime(readLong(env, attributes, "getLastModified"));
}

bool readWritable(const JNIEnvPtr& env, jobject attributes) {
    const LocalRef<jclass> cls(env, env->GetObjectClass(attributes));
    jmethodID method = getMethodID(env, cls.get(), "isWritable", "()Z");
    return env->CallBooleanMethod(attributes, method) != JNI_FALSE;
}

}  // namespace

FileAttributes JavaProvider::doGetFileAttributes(const StorageIRI& location) const {
    const TraceScope trace(GetFileAttributesSite);
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const LocalRef<jobject> attributes(env, env->CallObjectMethod(m_provider, method("getFileAttributes"), uri.get()));
    rethrowJavaException(env);
    const bool writable = readWritable(env, attributes.get());
    const boost::posix_time::ptime lastModified = readLastModified(env, attributes.get());
    const auto size = static_cast<std::uint64_t>(readSize(env, attributes.get()));
    return {std::optional<std::uint64_t>(size), lastModified, writable};
}

FolderAttributes JavaProvider::doGetFolderAttributes(const StorageIRI& location) const {
    const TraceScope trace(GetFolderAttributesSite);
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const LocalRef<jobject> attributes(env,
                                       env->CallObjectMethod(m_provider, method("getFolderAttributes"), uri.get()));
    rethrowJavaException(env);
    const bool writable = readWritable(env, attributes.get());
    return {readLastModified(env, attributes.get()), writable};
}

void JavaProvider::doSetLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const {
    const TraceScope trace(JAVAPROVIDER_TRACE_SITE_AT(JavaProviderSource, SetLastModifiedLine));
    FOUNDATION_LOG(logger(), Severity::Arguments)
        << " iri=" << location << " lastModified=" << LoggedTime{lastModified};
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const jlong millis = ptimeToMillis(lastModified);
    env->CallVoidMethod(m_provider, method("setLastModified"), uri.get(), millis);
    rethrowJavaException(env);
}

}  // namespace storage::javaprovider
