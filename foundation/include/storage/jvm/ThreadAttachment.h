#pragma once

#include <memory>

#include "foundation/Export.h"
#include "jvm_interface/JVM.h"

namespace storage::jvm {

/// Keeps the calling thread attached to the virtual machine for the duration of a scope.
///
/// A worker thread of a host creates one when it starts: its operations then need no attachment, which takes about 14
/// microseconds each. The thread is attached as a daemon, so it never delays the end of the virtual machine. A thread
/// that is already attached is left unchanged, and stays attached.
///
/// Hazards:
///  - Destroy it on the thread that created it, after all operations of that thread.
///  - It opens no local frame: local references that the host's own code creates stay until that code deletes them.
class FOUNDATION_API ThreadAttachment {
public:
    /// Throws AnonymousInternalException<std::runtime_error>: "JVM remvoed" if the virtual machine is gone, or a text
    /// with the JNI error number if the machine refuses the thread.
    explicit ThreadAttachment(std::shared_ptr<jvm_interface::JVM> jvm);

    /// Detaches the thread if this object attached it and the virtual machine still runs. Drops a pending Java
    /// exception first, because detaching would print it.
    ~ThreadAttachment();

    ThreadAttachment(const ThreadAttachment&) = delete;
    ThreadAttachment& operator=(const ThreadAttachment&) = delete;

private:
    std::shared_ptr<jvm_interface::JVM> m_jvm;
    bool m_attached = false;
};

}  // namespace storage::jvm
