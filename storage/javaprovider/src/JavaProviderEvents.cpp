#include "JavaProviderEvents.h"

#include <boost/property_tree/ptree.hpp>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "JNIUtilsException.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsText.h"
#include "JNIUtilsThrow.h"
#include "JavaOrder.h"
#include "JavaProvider.h"
#include "fl/i18n/converter.h"

namespace storage::javaprovider {

using foundation::storage::events::Kind;
using foundation::storage::provider::EntryType;
using foundation::storage::provider::StorageIRI;

namespace {

constexpr std::int32_t OnBehalfOfChild = 1;

EntryType toEntryType(std::u16string_view word) {
    if (word == u"File") {
        return EntryType::File;
    }
    if (word == u"Folder") {
        return EntryType::Folder;
    }
    throw std::runtime_error("Java provider: Unknown entry type.");
}

Kind toKind(std::u16string_view word) {
    static constexpr struct {
        std::u16string_view word;
        Kind kind;
    } Kinds[] = {
        {u"ChildAdded", Kind::ChildAdded},     {u"ChildModified", Kind::ChildModified},
        {u"ChildRemoved", Kind::ChildRemoved}, {u"SelfModified", Kind::SelfModified},
        {u"SelfRemoved", Kind::SelfRemoved},
    };
    for (const auto& row : Kinds) {
        if (row.word == word) {
            return row.kind;
        }
    }
    throw std::runtime_error("Java provider: Unknown kind.");
}

boost::property_tree::ptree eventDetails(const std::u16string& originId) {
    static const fl::i18n::codecvt_ustring_to_string toUtf8("UTF-8", /*substitute=*/true);
    boost::property_tree::ptree details;
    // Not put(), which would take the name for a path and look for what is there.
    details.push_back({"originId", boost::property_tree::ptree(toUtf8.convert(originId))});
    return details;
}

}  // namespace

void JNICALL nativePublishImpl(JNIEnv* env, jobject /*self*/, jlong handle, jstring kind, jstring first, jstring second,
                               jstring entryType, jstring originId) {
    const std::u16string kindWord = jstringToUString(env, kind);
    std::u16string firstText = jstringToUString(env, first);
    std::u16string secondText = jstringToUString(env, second);
    const std::u16string typeWord = jstringToUString(env, entryType);
    const std::u16string origin = jstringToUString(env, originId);
    if (handle == 0) {
        return;
    }
    const boost::property_tree::ptree details = eventDetails(origin);
    const EntryType type = toEntryType(typeWord);
    const StorageIRI secondLocation(std::move(secondText));
    const StorageIRI firstLocation(std::move(firstText));
    const Kind change = toKind(kindWord);
    // Java keeps the address as a number. NOLINTNEXTLINE(performance-no-int-to-ptr)
    const auto& callback = *reinterpret_cast<const JavaProvider::ChangeCallback*>(handle);
    afterJava(JavaOrder::HandOverToDelivery, &callback);
    callback(change, firstLocation, secondLocation, type, details);
    beforeJava(JavaOrder::DeliveryToDisposal, &callback);
}

void JavaProvider::setUpPublisher(const JNIEnvPtr& env, const ChangeCallback& callback) const {
    requireClass(m_nativePublisherClass);
    // JNI's table wants mutable text that it does not change.
    const JNINativeMethod publish = {
        const_cast<char*>("nativePublish"),
        const_cast<char*>(
            "(JLjava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;Ljava/lang/String;)V"),
        reinterpret_cast<void*>(&nativePublishImpl)};
    if (env->RegisterNatives(m_nativePublisherClass, &publish, 1) < 0) {
        // The Java error says no more than the message, and nothing after this throw would clear it.
        env->ExceptionClear();
        throw std::runtime_error("Problem registering native method");
    }
    m_publisherCallback = std::make_unique<ChangeCallback>(callback);
    createPublisher(env);
}

void JavaProvider::createPublisher(const JNIEnvPtr& env) const {
    m_publisherHandle = nullptr;
    jmethodID constructor = env->GetMethodID(m_nativePublisherClass, "<init>", "(J)V");
    if (constructor == nullptr) {
        throwMethodNotFound(env, "NativePublisher constructor");
        // Lacking without a reason: Java gets no publisher, since NewObject without a constructor ends the process.
        return;
    }
    const auto handle = reinterpret_cast<jlong>(m_publisherCallback.get());
    beforeJava(JavaOrder::HandOverToDelivery, m_publisherCallback.get());
    m_publisherHandle = env->NewObject(m_nativePublisherClass, constructor, handle);
    if (m_publisherWeak != nullptr) {
        env->DeleteWeakGlobalRef(m_publisherWeak);
        m_publisherWeak = nullptr;
    }
    if (m_publisherHandle != nullptr) {
        m_publisherWeak = env->NewWeakGlobalRef(m_publisherHandle);
        if (m_publisherWeak == nullptr) {
            // The next request makes a publisher of its own then; that is no reason for this one to fail.
            env->ExceptionClear();
        }
    }
}

jobject JavaProvider::freshPublisher(const JNIEnvPtr& env) const {
    const std::lock_guard lock(m_publisherMutex);
    if (jobject publisher = env->NewLocalRef(m_publisherWeak)) {
        return publisher;
    }
    createPublisher(env);
    // The caller deletes what it gets; the member keeps its own for as long as the frame lives.
    return m_publisherHandle == nullptr ? nullptr : env->NewLocalRef(m_publisherHandle);
}

void JavaProvider::doStartChangeNotification(const StorageIRI& location, const ChangeCallback& callback,
                                             const void* /*context*/, std::int32_t /*onParent*/) const {
    const JNIEnvPtr env(m_jvm);
    // Not LocalRef: when a step fails, both references are left to the local frame, and only success releases them.
    jobject uri = createStorageUri(env, location);
    jobject publisher = nullptr;
    bool setUpHere = false;
    m_registerNativesOnce.run([&] {
        setUpPublisher(env, callback);
        setUpHere = true;
        publisher = m_publisherHandle;
    });
    if (!setUpHere) {
        publisher = freshPublisher(env);
    }
    env->CallVoidMethod(m_provider, method("publishEventsFor"), uri, publisher);
    rethrowJavaException(env);
    if (!setUpHere && publisher != nullptr) {
        env->DeleteLocalRef(publisher);
    }
    if (uri != nullptr) {
        env->DeleteLocalRef(uri);
    }
}

void JavaProvider::doStartChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                                     const void* context) const {
    doStartChangeNotification(location.getParent(), callback, context, OnBehalfOfChild);
}

void JavaProvider::doStopChangeNotification(const StorageIRI& location) const {
    const JNIEnvPtr env(m_jvm);
    // Left to the local frame when Java refuses, as the reference of a start request is.
    jobject uri = createStorageUri(env, location);
    env->CallVoidMethod(m_provider, method("stopPublishingEventsFor"), uri);
    rethrowJavaException(env);
    if (uri != nullptr) {
        env->DeleteLocalRef(uri);
    }
}

}  // namespace storage::javaprovider
