#include "floor/FloorStream.h"

namespace bench {

jmethodID readOnlyChannelMethod(const FloorJava& java) {
    return java.method("getReadOnlyChannel",
                       "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ProviderChannel;");
}

FloorStream::FloorStream(const FloorJava& java, jmethodID getReadOnlyChannel, std::u16string_view location)
    : m_java(java) {
    JNIEnv* env = java.env();
    jobject uri = java.newUri(location);
    jobject channel = env->CallObjectMethod(java.provider(), getReadOnlyChannel, uri);
    java.check();
    jclass cls = env->GetObjectClass(channel);
    m_read = env->GetMethodID(cls, "read", "(Ljava/nio/ByteBuffer;)I");
    m_write = env->GetMethodID(cls, "write", "(Ljava/nio/ByteBuffer;)I");
    m_getPosition = env->GetMethodID(cls, "position", "()J");
    m_setPosition = env->GetMethodID(cls, "position", "(J)V");
    m_size = env->GetMethodID(cls, "size", "()J");
    m_close = env->GetMethodID(cls, "close", "()V");
    m_channel = env->NewGlobalRef(channel);
    env->DeleteLocalRef(cls);
    env->DeleteLocalRef(channel);
    env->DeleteLocalRef(uri);
}

FloorStream::~FloorStream() { m_java.env()->DeleteGlobalRef(m_channel); }

std::int64_t FloorStream::read(char* destination, std::int64_t count) const {
    return transfer(m_read, destination, count);
}

std::int64_t FloorStream::write(const char* source, std::int64_t count) const {
    // JNI knows no read-only direct buffer; the channel only reads from this one.
    return transfer(m_write, const_cast<char*>(source), count);
}

std::int64_t FloorStream::transfer(jmethodID method, void* memory, std::int64_t count) const {
    JNIEnv* env = m_java.env();
    jobject buffer = env->NewDirectByteBuffer(memory, count);
    const jint transferred = env->CallIntMethod(m_channel, method, buffer);
    m_java.check();
    env->DeleteLocalRef(buffer);
    return transferred;
}

void FloorStream::close() const {
    m_java.env()->CallVoidMethod(m_channel, m_close);
    m_java.check();
}

}  // namespace bench
