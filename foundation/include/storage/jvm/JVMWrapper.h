#pragma once

#include <jni.h>

#include "foundation/Export.h"

namespace storage::jvm {

/// Gives the calling thread its JNI environment for the life of one operation.
///
/// Attaches the thread if it is not attached, and opens a JNI local frame, so that every local reference an operation
/// leaves behind is released when the wrapper goes, also on a thread that stays attached for hours. The destructor
/// undoes just that: it closes the frame and detaches only what this object attached.
///
/// Hazards:
///  - Lives on the stack of one thread; wrappers of a thread are destroyed in reverse order of their making.
///  - A local reference made under a wrapper is dead once the wrapper is gone, also on an attached thread.
///  - A Java exception still pending is left pending on a thread that stays attached; on one that is detached here it
///    is dropped first, since the virtual machine would print it.
///  - Attaching costs some 14 microseconds; see ThreadAttachment for threads that call often.
class FOUNDATION_API JVMWrapper {
public:
    /// Throws AnonymousInternalException<std::runtime_error> when the virtual machine refuses the thread, and
    /// AnonymousInternalException<std::bad_alloc> when no local frame can be had; nothing stays attached then.
    explicit JVMWrapper(JavaVM* vm);

    virtual ~JVMWrapper();

    JVMWrapper(const JVMWrapper&) = delete;
    JVMWrapper& operator=(const JVMWrapper&) = delete;

    /// The calling thread's environment; never null.
    [[nodiscard]] virtual JNIEnv* getEnv();

private:
    JavaVM* m_vm;
    JNIEnv* m_env;
    bool m_attached;
};

}  // namespace storage::jvm
