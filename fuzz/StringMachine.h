#pragma once

#include <jni.h>

#include <string>

#include "jvm_interface/JVM.h"

namespace fuzz {

/// Stands in for a virtual machine that knows nothing but strings: it makes them, and gives their characters ended by a
/// zero unit, as a real one does. It remembers its last string only. One object a process, one thread at a time.
class StringMachine final : public jvm_interface::JVM {
public:
    [[nodiscard]] JavaVM* getJavaVM() override;

    /// How many times characters were given and not taken back.
    [[nodiscard]] static int charactersHeld() noexcept;
};

}  // namespace fuzz
