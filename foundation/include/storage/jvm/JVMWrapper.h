#pragma once

#include <jni.h>

#include "foundation/Export.h"

namespace storage::jvm {

/// Provides the calling thread's JNI environment for the duration of one operation.
///
/// The constructor attaches the thread if necessary and opens a JNI local frame. The destructor closes the frame, which
/// releases every local reference that the operation left, even on a thread that stays attached for hours. It detaches
/// the thread only if this object attached it.
///
/// Hazards:
///  - It lives on the stack of one thread. Destroy the wrappers of a thread in reverse order of construction.
///  - A local reference created under a wrapper is invalid once the wrapper is destroyed, even on an attached thread.
///  - A pending Java exception stays pending on a thread that stays attached. If the thread is detached here, the
///    exception is dropped first, because the virtual machine would print it.
///  - Attaching takes about 14 microseconds; use a ThreadAttachment on threads that call often.
class FOUNDATION_API JVMWrapper {
public:
    /// Throws AnonymousInternalException<std::runtime_error> ("JVM remvoed" if `vm` is null, or a text with the JNI
    /// error number if the virtual machine refuses the thread), and AnonymousInternalException<std::bad_alloc> if no
    /// local frame can be opened. The thread is then as it was before.
    explicit JVMWrapper(JavaVM* vm);

    virtual ~JVMWrapper();

    JVMWrapper(const JVMWrapper&) = delete;
    JVMWrapper& operator=(const JVMWrapper&) = delete;

    /// Returns the calling thread's environment; never null.
    [[nodiscard]] virtual JNIEnv* getEnv();

private:
    JavaVM* m_vm;
    JNIEnv* m_env = nullptr;
    bool m_attached = false;
};

}  // namespace storage::jvm
