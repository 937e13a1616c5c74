#include "floor/FloorStream.h"

namespace bench {

std::unique_ptr<FloorStream> openReadOnly(const FloorJava& java, std::u16string_view location) {
    const FloorGuard env(java);
    jobject uri = java.newUri(location);
    jobject channel = env->CallObjectMethod(java.provider(), java.method(FloorJava::GetReadOnlyChannel), uri);
    java.check();
    auto stream = std::make_unique<FloorStream>(java, channel);
    env->DeleteLocalRef(channel);
    env->DeleteLocalRef(uri);
    return stream;
}

const FloorMethods<FloorStream::MethodCount>::Names FloorStream::Names = {"read",         "write", "get_position",
                                                                          "set_position", "size",  "close"};

FloorStream::FloorStream(const FloorJava& java, jobject channel)
    : m_java(java), m_channel(nullptr), m_methods(java.lookups(), Names) {
    const FloorGuard env(java);
    jclass cls = env->GetObjectClass(channel);
    m_methods.set(Read, java.ask(cls, "read", "(Ljava/nio/ByteBuffer;)I"));
    m_methods.set(Write, java.ask(cls, "write", "(Ljava/nio/ByteBuffer;)I"));
    m_methods.set(GetPosition, java.ask(cls, "position", "()J"));
    m_methods.set(SetPosition, java.ask(cls, "position", "(J)V"));
    m_methods.set(Size, java.ask(cls, "size", "()J"));
    m_methods.set(Close, java.ask(cls, "close", "()V"));
    m_channel = env->NewGlobalRef(channel);
    env->DeleteLocalRef(cls);
}

FloorStream::~FloorStream() {
    const FloorGuard env(m_java);
    env->DeleteGlobalRef(m_channel);
}

std::int64_t FloorStream::read(char* destination, std::int64_t count) const {
    return transfer(Read, destination, count);
}

std::int64_t FloorStream::write(const char* source, std::int64_t count) const {
    // JNI knows no read-only direct buffer; the channel only reads from this one.
    return transfer(Write, const_cast<char*>(source), count);
}

std::int64_t FloorStream::transfer(Method method, void* memory, std::int64_t count) const {
    const FloorGuard env(m_java);
    jobject buffer = env->NewDirectByteBuffer(memory, count);
    const jint transferred = env->CallIntMethod(m_channel, m_methods.get(method), buffer);
    m_java.check();
    env->DeleteLocalRef(buffer);
    return transferred;
}

void FloorStream::close() const {
    const FloorGuard env(m_java);
    env->CallVoidMethod(m_channel, m_methods.get(Close));
    m_java.check();
}

}  // namespace bench
