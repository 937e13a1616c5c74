#include "foundation/storage/provider/Exception.h"

#include <string>

#include "fl/i18n/text.h"

namespace foundation::storage::provider {

namespace {

std::runtime_error describe(ErrorCode code, const StorageIRI& location) {
    std::string text(toString(code));
    if (!location.empty()) {
        text.append(": ").append(fl::i18n::to_string(location.text()));
    }
    return std::runtime_error(text);
}

}  // namespace

Exception::Exception(const ErrorCode& code, const StorageIRI& location)
    : core::except::Exception<core::except::IException, std::runtime_error, ErrorCode>(describe(code, location)),
      m_code(code),
      m_location(location) {}

Exception::~Exception() noexcept = default;

}  // namespace foundation::storage::provider
