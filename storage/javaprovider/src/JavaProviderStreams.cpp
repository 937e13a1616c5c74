// Opening the bytes of a file.
#include "JNIUtilsException.h"
#include "JNIUtilsRef.h"
#include "JavaProvider.h"
#include "ProviderChannelByteStream.h"

namespace storage::javaprovider {

using foundation::storage::provider::ByteStream;
using foundation::storage::provider::ByteStreamOpenOptions;

namespace {

/// An option is on when its field holds zero, whatever the other values mean.
template <class Option>
jboolean isOn(Option option) {
    return static_cast<std::int32_t>(option) == 0 ? JNI_TRUE : JNI_FALSE;
}

}  // namespace

std::unique_ptr<ByteStream> JavaProvider::doOpenByteStream(const StorageIRI& location,
                                                           const ByteStreamOpenOptions& options) const {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const jboolean create = isOn(options.creation);
    const jboolean truncate = isOn(options.content);
    const jboolean exclusive = isOn(options.sharing);
    const LocalRef<jobject> channel(
        env, env->CallObjectMethod(m_provider, method("getChannel"), uri.get(), create, truncate, exclusive));
    rethrowJavaException(env);
    return std::make_unique<ProviderChannelByteStream>(m_jvm, channel.get());
}

std::unique_ptr<ByteStream> JavaProvider::doOpenReadOnlyByteStream(const StorageIRI& location) const {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jobject> uri(env, createStorageUri(env, location));
    const LocalRef<jobject> channel(env, env->CallObjectMethod(m_provider, method("getReadOnlyChannel"), uri.get()));
    rethrowJavaException(env);
    return std::make_unique<ProviderChannelByteStream>(m_jvm, channel.get());
}

}  // namespace storage::javaprovider
