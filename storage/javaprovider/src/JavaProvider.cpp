#include "JavaProvider.h"

#include <exception>
#include <new>
#include <utility>

#include "ContractMethods.h"
#include "JNIUtilsClass.h"
#include "JNIUtilsLog.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsThrow.h"
#include "JavaOrder.h"
#include "TraceSites.h"

namespace storage::javaprovider {

namespace {

/// A contract class as a global reference.
jclass holdClass(const JNIEnvPtr& env, jobject classLoader, const std::string& name) {
    jclass cls = loadClass(env, classLoader, name);
    if (cls == nullptr) {
        throwPendingJavaException(env, "");
    } else if (env->ExceptionCheck() != JNI_FALSE) {
        // What one loader threw does not matter when the next one knows the class. The caller's thread stays clean.
        env->ExceptionClear();
    }
    auto* held = static_cast<jclass>(env->NewGlobalRef(cls));
    if (held == nullptr) {
        // Construction goes on without the class, and a caller that gets its provider finds no exception beside it.
        env->ExceptionClear();
    }
    return held;
}

template <class T>
void releaseGlobal(const JNIEnvPtr& env, T& reference) {
    env->DeleteGlobalRef(reference);
    reference = nullptr;
}

void logCaught(const char* message) noexcept {
    try {
        FOUNDATION_LOG(logger(), Severity::Caught) << "Exception caught: " << message;
    } catch (...) {
        // A host's logger may throw; a destructor can report it to nobody.
    }
}

}  // namespace

JavaProvider::JavaProvider(std::shared_ptr<jvm_interface::JVM> jvm, jobject provider) : m_jvm(std::move(jvm)) {
    const JNIEnvPtr env(m_jvm);
    // JNI leaves GetObjectClass of null undefined, so the null is not shown to it.
    const LocalRef<jclass> providerClass(env, provider != nullptr ? env->GetObjectClass(provider) : nullptr);
    if (!providerClass) {
        return;
    }
    resolveMethods(env, providerClass.get());
    holdProvider(env, provider);
    holdClasses(env, providerClass.get());
}

void JavaProvider::resolveMethods(const JNIEnvPtr& env, jclass providerClass) {
    for (const ContractMethod& wanted : ContractMethods) {
        m_methods[wanted.name] = getMethodID(env, providerClass, wanted.name, wanted.signature);
    }
}

void JavaProvider::holdProvider(const JNIEnvPtr& env, jobject provider) {
    m_provider = env->NewGlobalRef(provider);
    if (m_provider == nullptr) {
        FOUNDATION_LOG(logger(), Severity::Failure) << "Failed to get global ref to Provider";
        // What Java may say about it must not outlive the C++ exception that stands for it.
        env->ExceptionClear();
        throw std::bad_alloc();
    }
}

void JavaProvider::holdClasses(const JNIEnvPtr& env, jclass providerClass) {
    jobject classLoader = getClassLoader(env, providerClass);
    m_storageUriClass = holdClass(env, classLoader, "com.corvallen.storage.provider.StorageURI");
    m_folderListEntryClass = holdClass(env, classLoader, "com.corvallen.storage.provider.FolderListEntry");
    m_nativePublisherClass = holdClass(env, classLoader, "com.corvallen.storage.provider.NativePublisher");
    m_extendedFeatureClass = holdClass(env, classLoader, "com.corvallen.storage.provider.ExtendedFeature");
}

JavaProvider::~JavaProvider() {
    try {
        const TraceScope trace(JAVAPROVIDER_TRACE_SITE(JavaProviderSource));
        dispose();
    } catch (const std::exception& exception) {
        logCaught(exception.what());
    } catch (...) {
        logCaught("unknown exception");
    }
    m_jvm.reset();
}

void JavaProvider::dispose() {
    const JNIEnvPtr env(m_jvm);
    FOUNDATION_LOG(logger(), Severity::Progress) << "Disposing of Java Provider";
    if (m_provider == nullptr) {
        return;
    }
    env->CallVoidMethod(m_provider, method("dispose"));
    afterJava(JavaOrder::DeliveryToDisposal, m_publisherCallback.get());
    releaseGlobal(env, m_provider);
    releaseGlobal(env, m_storageUriClass);
    releaseGlobal(env, m_folderListEntryClass);
    releaseGlobal(env, m_nativePublisherClass);
    if (m_publisherWeak != nullptr) {
        env->DeleteWeakGlobalRef(m_publisherWeak);
    }
}

}  // namespace storage::javaprovider
