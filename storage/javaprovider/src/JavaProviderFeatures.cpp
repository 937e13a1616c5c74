// Features and configuration: the operations without a location.
#include <boost/property_tree/ptree.hpp>

#include <new>

#include "JNIUtilsException.h"
#include "JNIUtilsLog.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsText.h"
#include "JavaProvider.h"
#include "TraceSites.h"
#include "fl/i18n/text.h"
#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::javaprovider {

using foundation::core::except::detail::AnonymousInternalException;
using foundation::storage::provider::ExtendedFeature;

namespace {

constexpr const char* ContentCacheSetting = "gds.enableContentCache";
constexpr const char16_t* ContentCacheKey = u"gds.enableContentCache";

/// The constant of Java's ExtendedFeature; null for a feature that Java knows nothing of.
const char* javaFeatureName(ExtendedFeature feature) {
    switch (feature) {
        case ExtendedFeature::RecursiveFolderRemoval:
            return "RecursiveFolderRemoval";
        case ExtendedFeature::RecursiveChangeEvents:
            return "RecursiveChangeEvents";
        case ExtendedFeature::AllowsMovesAndDeletesWhenOpen:
            return "AllowsMovesAndDeletesWhenOpen";
        case ExtendedFeature::AllowsMovesAndDeletesWhenOpenReadOnly:
            return "AllowsMovesAndDeletesWhenOpenReadOnly";
        default:
            return nullptr;
    }
}

/// What Java gave of java.util.HashMap. Every machine has all of it, so what is missing is memory; JNI calls on a null
/// would end the process.
template <class Handle>
Handle required(const JNIEnvPtr& env, Handle handle) {
    if (handle == nullptr) {
        throwIfOutOfMemory(env);
        throw AnonymousInternalException<std::bad_alloc>(std::bad_alloc());
    }
    return handle;
}

/// A new, empty java.util.HashMap.
jobject createSettingsMap(const JNIEnvPtr& env, jclass mapClass) {
    jmethodID constructor = required(env, env->GetMethodID(mapClass, "<init>", "()V"));
    return required(env, env->NewObject(mapClass, constructor));
}

}  // namespace

jobject JavaProvider::createFeatureConstant(const JNIEnvPtr& env, const ExtendedFeature& feature) const {
    const char* name = javaFeatureName(feature);
    if (name == nullptr) {
        return nullptr;
    }
    requireUsable();
    requireClass(m_extendedFeatureClass);
    // A contract without the constant would end the process here: the contract that a process loads has all four.
    jfieldID field =
        env->GetStaticFieldID(m_extendedFeatureClass, name, "Lcom/corvallen/storage/provider/ExtendedFeature;");
    return env->GetStaticObjectField(m_extendedFeatureClass, field);
}

bool JavaProvider::doHasFeature(const ExtendedFeature& feature) const {
    const TraceScope trace(JAVAPROVIDER_TRACE_SITE(JavaProviderSource));
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> constant(env, createFeatureConstant(env, feature));
    if (!constant) {
        return false;
    }
    // No look at a pending exception: the answer is what the call gave, and a Java exception stays on the thread.
    return env->CallBooleanMethod(m_provider, method("hasFeature"), constant.get()) != JNI_FALSE;
}

void JavaProvider::doConfigure(const boost::property_tree::ptree& settings) {
    const auto setting = settings.get_child_optional(ContentCacheSetting);
    if (!setting) {
        return;
    }
    const std::string text = setting->data();
    const JNIEnvPtr env(m_jvm);
    requireUsable();
    // The class is left to the local frame.
    jclass mapClass = required(env, env->FindClass("java/util/HashMap"));
    LocalRef<jobject> map(env, createSettingsMap(env, mapClass));
    jmethodID put =
        required(env, env->GetMethodID(mapClass, "put", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;"));
    const LocalRef<jstring> key(env, ustringToJString(env, ContentCacheKey));
    const LocalRef<jstring> value(env, ustringToJString(env, fl::i18n::to_ustring(text)));
    env->CallObjectMethod(map.get(), put, key.get(), value.get());
    rethrowJavaException(env);
    env->CallVoidMethod(m_provider, method("configure"), map.get());
    map.reset();
    rethrowJavaException(env);
}

}  // namespace storage::javaprovider
