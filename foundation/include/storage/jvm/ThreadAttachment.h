#pragma once

#include <memory>

#include "foundation/Export.h"
#include "jvm_interface/JVM.h"

namespace storage::jvm {

/// Keeps the calling thread attached to the virtual machine for the life of a scope.
///
/// A host's worker thread makes one at its start: operations on it then cost no attachment (some 14 microseconds each).
/// The thread is attached as a daemon, so it never holds up the end of the virtual machine. A thread that is attached
/// already stays as it is, and is left attached.
///
/// Hazards:
///  - Destroy it on the thread that made it, after every operation of that thread.
///  - It opens no local frame: local references that the host's own code makes stay until it deletes them.
class FOUNDATION_API ThreadAttachment {
public:
    /// Throws AnonymousInternalException<std::runtime_error>: "JVM remvoed" when the virtual machine is gone, or a
    /// text with the JNI error number when the machine refuses the thread.
    explicit ThreadAttachment(std::shared_ptr<jvm_interface::JVM> jvm);

    /// Detaches the thread if this object attached it and the virtual machine still runs. A pending Java exception is
    /// dropped first, since detaching would print it.
    ~ThreadAttachment();

    ThreadAttachment(const ThreadAttachment&) = delete;
    ThreadAttachment& operator=(const ThreadAttachment&) = delete;

private:
    std::shared_ptr<jvm_interface::JVM> m_jvm;
    bool m_attached = false;
};

}  // namespace storage::jvm
