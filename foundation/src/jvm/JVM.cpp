#include "jvm_interface/JVM.h"

namespace jvm_interface {

JVM::~JVM() = default;

}  // namespace jvm_interface
