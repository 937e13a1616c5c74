#include "sweep/SweepOutcome.h"

#include <new>
#include <stdexcept>
#include <typeinfo>

#include "provider/ThrownErrors.h"

namespace storage::javaprovider::test {

namespace {

SweepOutcome outcomeOfError(const std::exception& error) {
    if (const auto* provider = dynamic_cast<const ProviderError*>(&error)) {
        const std::u16string& location = provider->location().text();
        return {Ending::ProviderError, std::to_string(static_cast<int>(provider->code())) + " " +
                                           std::string(location.begin(), location.end())};
    }
    const auto is = [&error](const std::type_info& type) { return typeid(error) == type; };
    const Ending ending = is(typeid(InternalError))        ? Ending::InternalError
                          : is(typeid(InternalBadAlloc))   ? Ending::InternalBadAlloc
                          : is(typeid(std::bad_alloc))     ? Ending::BadAlloc
                          : is(typeid(std::runtime_error)) ? Ending::RuntimeError
                                                           : Ending::Other;
    return {ending, error.what()};
}

}  // namespace

const char* nameOf(Ending ending) noexcept {
    switch (ending) {
        case Ending::Returns:
            return "returns";
        case Ending::ProviderError:
            return "provider error";
        case Ending::InternalError:
            return "internal error";
        case Ending::InternalBadAlloc:
            return "internal error for want of memory";
        case Ending::BadAlloc:
            return "std::bad_alloc";
        case Ending::RuntimeError:
            return "std::runtime_error";
        case Ending::Other:
            break;
    }
    return "something else";
}

SweepOutcome outcomeOf(const std::function<std::string()>& operation) {
    try {
        return {Ending::Returns, operation()};
    } catch (const std::exception& error) {
        return outcomeOfError(error);
    }
}

}  // namespace storage::javaprovider::test
