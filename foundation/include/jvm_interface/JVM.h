#pragma once

#include <jni.h>

#include "foundation/Export.h"

namespace jvm_interface {

/// The host's handle on the Java virtual machine of the process, shared by everything that calls Java.
///
/// getJavaVM() is the first virtual operation: libraries built apart rely on its place.
class FOUNDATION_API JVM {
public:
    /// The running virtual machine, or null once it has been removed. Gives the same answer while the machine lives;
    /// safe from any thread; does not call Java.
    [[nodiscard]] virtual JavaVM* getJavaVM() = 0;

    virtual ~JVM();

protected:
    JVM() = default;
    JVM(const JVM&) = default;
    JVM& operator=(const JVM&) = default;
};

}  // namespace jvm_interface
