#include "ProviderChannelByteStream.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "JNIUtilsClass.h"
#include "JNIUtilsException.h"
#include "JNIUtilsRef.h"
#include "JNIUtilsThrow.h"

namespace storage::javaprovider {

namespace {

struct ChannelMethod {
    const char* prefix;  ///< makes the names of the two overloads of "position" differ in the table
    const char* name;
    const char* signature;
};

constexpr ChannelMethod ChannelMethods[] = {
    {"", "read", "(Ljava/nio/ByteBuffer;)I"},
    {"", "write", "(Ljava/nio/ByteBuffer;)I"},
    {"get_", "position", "()J"},
    {"set_", "position", "(J)V"},
    {"", "size", "()J"},
    {"", "close", "()V"},
};

/// The largest capacity of a Java buffer.
constexpr std::streamsize MaxCapacity = 0x7fffffff;

}  // namespace

ProviderChannelByteStream::ProviderChannelByteStream(std::shared_ptr<jvm_interface::JVM> jvm, jobject channel)
    : m_jvm(std::move(jvm)) {
    const JNIEnvPtr env(m_jvm);
    const LocalRef<jclass> cls(env, env->GetObjectClass(channel));
    for (const auto& [prefix, name, signature] : ChannelMethods) {
        m_methods[std::string(prefix) + name] = getMethodID(env, cls.get(), name, signature);
    }
    m_channel = env->NewGlobalRef(channel);
    if (m_channel == nullptr) {
        throwIfOutOfMemory(env);
    }
}

ProviderChannelByteStream::~ProviderChannelByteStream() {
    try {
        const JNIEnvPtr env(m_jvm);
        env->DeleteGlobalRef(m_channel);
    } catch (...) {
        // Without its virtual machine the reference is gone anyway, and a destructor can report it to nobody.
    }
}

jobject ProviderChannelByteStream::channel() const {
    if (m_channel == nullptr) {
        throwInternalError("The stream has no channel");
    }
    return m_channel;
}

std::streamsize ProviderChannelByteStream::read(char* destination, std::streamsize count) {
    return transfer("read", destination, count);
}

std::streamsize ProviderChannelByteStream::write(const char* source, std::streamsize count) {
    // JNI knows no read-only direct buffer; a channel's write only reads from it.
    return transfer("write", const_cast<char*>(source), count);
}

std::streamsize ProviderChannelByteStream::transfer(const std::string& key, void* memory, std::streamsize count) const {
    const JNIEnvPtr env(m_jvm);
    jobject target = channel();
    // Not LocalRef: only success deletes the reference, a failure leaves it to the local frame.
    jobject buffer = env->NewDirectByteBuffer(memory, std::min(count, MaxCapacity));
    if (buffer == nullptr) {
        throwIfOutOfMemory(env);
    }
    const jint transferred = env->CallIntMethod(target, method(key), buffer);
    rethrowJavaException(env);
    if (buffer != nullptr) {
        env->DeleteLocalRef(buffer);
    }
    return transferred;
}

std::streampos ProviderChannelByteStream::seek(std::streamoff offset, std::ios_base::seekdir way) {
    const JNIEnvPtr env(m_jvm);
    jlong base = 0;
    if (way == std::ios_base::cur) {
        base = position(env);
    } else if (way == std::ios_base::end) {
        base = size(env);
    }
    // Unsigned, so that a sum beyond 64 bits wraps, as Java's would, instead of being undefined.
    const auto target = static_cast<jlong>(static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(offset));
    setPosition(env, target);
    return {target};
}

void ProviderChannelByteStream::close() {
    const JNIEnvPtr env(m_jvm);
    env->CallVoidMethod(channel(), method("close"));
    rethrowJavaException(env);
}

jlong ProviderChannelByteStream::position(const JNIEnvPtr& env) const {
    const jlong result = env->CallLongMethod(channel(), method("get_position"));
    rethrowJavaException(env);
    return result;
}

jlong ProviderChannelByteStream::size(const JNIEnvPtr& env) const {
    const jlong result = env->CallLongMethod(channel(), method("size"));
    rethrowJavaException(env);
    return result;
}

void ProviderChannelByteStream::setPosition(const JNIEnvPtr& env, jlong position) const {
    env->CallVoidMethod(channel(), method("set_position"), position);
    rethrowJavaException(env);
}

}  // namespace storage::javaprovider
