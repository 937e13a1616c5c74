// Extended attributes and storage information.
#include <boost/any.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "JNIUtilsClass.h"
#include "JNIUtilsException.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsText.h"
#include "JavaProvider.h"
#include "TraceSites.h"
#include "fl/i18n/text.h"

namespace storage::javaprovider {

using foundation::storage::provider::ExtendedAttributes;
using foundation::storage::provider::ProviderStorageInfo;

namespace {

jstring callString(const JNIEnvPtr& env, jobject object, jmethodID method) {
    return static_cast<jstring>(env->CallObjectMethod(object, method));
}

/// Name and value of one Java attribute; null text is empty. A Java exception from either stays pending.
std::pair<std::string, std::string> readAttributePair(const JNIEnvPtr& env, jobject attribute,
                                                      const jmethodID& nameMethod, const jmethodID& valueMethod) {
    const LocalRef<jstring> name(env, callString(env, attribute, nameMethod));
    const LocalRef<jstring> value(env, callString(env, attribute, valueMethod));
    const std::u16string nameText = jstringToUString(env, name.get());
    const std::u16string valueText = jstringToUString(env, value.get());
    return {fl::i18n::to_string(nameText), fl::i18n::to_string(valueText)};
}

std::map<std::string, boost::any> buildExtendedAttributeMap(const JNIEnvPtr& env, jobject extendedAttributes) {
    const LocalRef<jclass> cls(env, env->GetObjectClass(extendedAttributes));
    jmethodID getAll =
        getMethodID(env, cls.get(), "getAllAttributes", "()[Lcom/corvallen/storage/provider/ExtendedAttribute;");
    // Left to the local frame, and not tested: the contract that made the attributes has the class.
    jclass attributeClass = env->FindClass("com/corvallen/storage/provider/ExtendedAttribute");
    jmethodID getName = getMethodID(env, attributeClass, "getName", "()Ljava/lang/String;");
    jmethodID getValue = getMethodID(env, attributeClass, "getValue", "()Ljava/lang/String;");
    const LocalRef<jobject> array(env, env->CallObjectMethod(extendedAttributes, getAll));
    auto* attributes = static_cast<jobjectArray>(array.get());
    const jsize length = env->GetArrayLength(attributes);
    std::map<std::string, boost::any> result;
    for (jsize index = 0; index < length; ++index) {
        const LocalRef<jobject> attribute(env, env->GetObjectArrayElement(attributes, index));
        auto [name, value] = readAttributePair(env, attribute.get(), getName, getValue);
        rethrowJavaException(env);
        // The first attribute of a name wins.
        result.try_emplace(std::move(name), std::move(value));
    }
    return result;
}

ProviderStorageInfo buildProviderStorageInfo(const JNIEnvPtr& env, jobject storageInfo) {
    const TraceScope trace(BuildProviderStorageInfoSite);
    const LocalRef<jclass> cls(env, env->GetObjectClass(storageInfo));
    jmethodID getCapacity = getMethodID(env, cls.get(), "getStorageCapacity", "()J");
    jmethodID getOccupied = getMethodID(env, cls.get(), "getSpaceOccupied", "()J");
    // No look at a pending exception: the contract says that getters never throw.
    const auto capacity = static_cast<std::uint64_t>(env->CallLongMethod(storageInfo, getCapacity));
    const auto occupied = static_cast<std::uint64_t>(env->CallLongMethod(storageInfo, getOccupied));
    return ProviderStorageInfo().withStorageCapacity(capacity).withSpaceOccupied(occupied);
}

}  // namespace

ExtendedAttributes JavaProvider::doGetExtendedAttributes(const StorageIRI& location) const {
    const TraceScope trace(GetExtendedAttributesSite);
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const LocalRef<jobject> attributes(env,
                                       env->CallObjectMethod(m_provider, method("getExtendedAttributes"), uri.get()));
    rethrowJavaException(env);
    return ExtendedAttributes(buildExtendedAttributeMap(env, attributes.get()));
}

ProviderStorageInfo JavaProvider::doGetProviderStorageInfo(const StorageIRI& location) const {
    const TraceScope trace(GetProviderStorageInfoSite);
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const LocalRef<jobject> info(env, env->CallObjectMethod(m_provider, method("getProviderStorageInfo"), uri.get()));
    rethrowJavaException(env);
    return buildProviderStorageInfo(env, info.get());
}

}  // namespace storage::javaprovider
