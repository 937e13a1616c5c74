#include <new>
#include <string>

#include "JNIUtilsLog.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsText.h"
#include "JNIUtilsThrow.h"
#include "JavaProvider.h"
#include "TraceSites.h"

namespace storage::javaprovider {

namespace {

[[noreturn]] void throwIncomplete() {
    throwInternalError("The provider has no Java object, or classes of its contract are missing");
}

void logNoString() { FOUNDATION_LOG(logger(), Severity::Failure) << "Failed to create String for IRI."; }

/// The text as a Java string; a failure is logged before it is thrown, so that a trace of it stays when it is caught.
jstring createIriString(const JNIEnvPtr& env, const std::u16string& text) {
    try {
        return ustringToJString(env, text);
    } catch (const std::bad_alloc&) {
        logNoString();
        throw;
    }
}

}  // namespace

void JavaProvider::requireUsable() const {
    if (m_provider == nullptr) {
        throwIncomplete();
    }
    requireClass(m_storageUriClass);
}

void JavaProvider::requireClass(jclass held) {
    if (held == nullptr) {
        throwIncomplete();
    }
}

jobject JavaProvider::createStorageUri(const JNIEnvPtr& env, const StorageIRI& location) const {
    const TraceScope trace(JAVAPROVIDER_TRACE_SITE(JavaProviderSource));
    requireUsable();
    jmethodID constructor = env->GetMethodID(m_storageUriClass, "<init>", "(Ljava/lang/String;)V");
    if (constructor == nullptr) {
        throwMethodNotFound(env, "constructor");
    }
    const std::u16string ascii = location.toIRI().toAsciiString(/*strict=*/true);
    const LocalRef<jstring> text(env, createIriString(env, ascii));
    if (!text) {
        logNoString();
        throwIfOutOfMemory(env);
    }
    // NewObject must not see a null constructor; without one there is no object.
    jobject uri = constructor != nullptr ? env->NewObject(m_storageUriClass, constructor, text.get()) : nullptr;
    if (uri == nullptr) {
        FOUNDATION_LOG(logger(), Severity::Failure) << "Failed to construct StorageURI for IRI.";
        throwIfOutOfMemory(env);
    }
    return uri;
}

}  // namespace storage::javaprovider
