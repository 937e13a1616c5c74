#pragma once

#include <jni.h>

#include "foundation/Export.h"

namespace jvm_interface {

/// The host's handle to the Java virtual machine of the process, shared by everything that calls Java.
///
/// getJavaVM() is the first virtual function; libraries that are built separately rely on its slot.
class FOUNDATION_API JVM {
public:
    /// Returns the running virtual machine, or null once it is gone. The answer does not change while the machine runs.
    /// Safe to call from any thread; does not call Java.
    [[nodiscard]] virtual JavaVM* getJavaVM() = 0;

    virtual ~JVM();

protected:
    JVM() = default;
    JVM(const JVM&) = default;
    JVM& operator=(const JVM&) = default;
};

}  // namespace jvm_interface
