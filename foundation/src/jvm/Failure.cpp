#include "jvm/Failure.h"

#include <array>

#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::jvm::detail {

using foundation::core::except::detail::AnonymousInternalException;

void fail(const std::string& text) { throw AnonymousInternalException<std::runtime_error>(std::runtime_error(text)); }

void failOutOfMemory() { throw AnonymousInternalException<std::bad_alloc>(std::bad_alloc()); }

std::string describeJniError(jint error) {
    static constexpr std::array names{"JNI_OK",     "JNI_ERR",    "JNI_EDETACHED", "JNI_EVERSION",
                                      "JNI_ENOMEM", "JNI_EEXIST", "JNI_EINVAL"};
    const auto index = -static_cast<long>(error);
    const bool known = index >= 0 && index < static_cast<long>(names.size());
    return (known ? names[static_cast<std::size_t>(index)] : "JNI error") + (" (" + std::to_string(error) + ")");
}

}  // namespace storage::jvm::detail
