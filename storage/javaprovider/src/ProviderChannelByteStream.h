#pragma once

#include <jni.h>

#include <memory>
#include <string>

#include "JNIUtilsClass.h"
#include "JNIUtilsEnv.h"
#include "foundation/storage/provider/ByteStream.h"

namespace storage::javaprovider {

/// A byte stream over a Java ProviderChannel.
///
/// Keeps no buffer and no position: each operation is one call on the channel (a seek one or two), and Java reads from
/// or writes into the caller's own memory. Any thread may use it, one operation at a time. It holds its own share of
/// the virtual-machine handle and outlives the provider that opened it.
///
/// Hazards:
///  - Destroying it does not close the channel: call close(). What was not closed stays open on the Java side until
///    Java frees it.
///  - The Java side must not keep the buffer beyond the call: the memory is the caller's.
///  - After close() operations still go to Java, which decides what they do.
///
/// Every operation throws foundation::storage::provider::Exception for the Java side's ProviderException,
/// AnonymousInternalException<std::runtime_error> for any other Java exception or when the virtual machine is gone
/// ("JVM remvoed"), and blocks in Java. read() and write() also throw AnonymousInternalException<std::bad_alloc> when
/// Java makes no buffer: for lack of memory, or for a negative count.
class ProviderChannelByteStream final : public foundation::storage::provider::ByteStream {
public:
    /// Takes its own reference to the channel; `channel` stays the caller's. Throws the method-not-found error for a
    /// channel without one of the six methods, AnonymousInternalException<std::bad_alloc> when it cannot be held.
    ProviderChannelByteStream(std::shared_ptr<jvm_interface::JVM> jvm, jobject channel);

    /// Releases the channel, unless the virtual machine is gone. Never throws, never closes.
    ~ProviderChannelByteStream() override;

    /// What Java answered: a count (at most 2147483647 bytes are asked for at once), or -1 at the end.
    std::streamsize read(char* destination, std::streamsize count) override;

    /// What Java answered: a count, possibly short of what was given (at most 2147483647 bytes at once).
    std::streamsize write(const char* source, std::streamsize count) override;

    /// Sets the position to `offset` from the base that `way` names; an unknown one counts as the beginning. The result
    /// is not checked: Java decides about positions before the beginning or past the end.
    std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) override;

    void close() override;

private:
    [[nodiscard]] jmethodID method(const std::string& key) const { return methodIn(m_methods, key); }
    /// The channel. Throws AnonymousInternalException<std::runtime_error> when construction could not hold it and Java
    /// gave no reason.
    [[nodiscard]] jobject channel() const;
    std::streamsize transfer(const std::string& key, void* memory, std::streamsize count) const;
    [[nodiscard]] jlong position(const JNIEnvPtr& env) const;
    [[nodiscard]] jlong size(const JNIEnvPtr& env) const;
    void setPosition(const JNIEnvPtr& env, jlong position) const;

    std::shared_ptr<jvm_interface::JVM> m_jvm;
    jobject m_channel = nullptr;
    MethodTable m_methods;
};

}  // namespace storage::javaprovider
