#include "ThrowerLibrary.h"

#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"

namespace foundation::test::thrower {

using core::except::IInternalException;
using InternalFailure = core::except::detail::AnonymousInternalException<std::runtime_error>;
using OutOfMemory = core::except::detail::AnonymousInternalException<std::bad_alloc>;
using storage::provider::ErrorCode;
using ProviderError = storage::provider::Exception;

void throwInternalFailure(const std::string& text) { throw InternalFailure(std::runtime_error(text)); }
void throwOutOfMemory() { throw OutOfMemory(std::bad_alloc()); }
void throwNotFound(const storage::provider::StorageIRI& location) {
    throw ProviderError(ErrorCode::NotFound, location);
}

std::string handlerFor(const std::function<void()>& action) {
    try {
        action();
    } catch (const core::except::Exception<IInternalException, std::runtime_error, void>&) {
        return "internal failure";
    } catch (const core::except::Exception<IInternalException, std::bad_alloc, void>&) {
        return "out of memory";
    } catch (const ProviderError&) {
        return "provider error";
    } catch (...) {
        return "other";
    }
    return "none";
}

const std::type_info& internalFailureType() { return typeid(InternalFailure); }
const std::type_info& outOfMemoryType() { return typeid(OutOfMemory); }
const std::type_info& providerErrorType() { return typeid(ProviderError); }

}  // namespace foundation::test::thrower
