#pragma once

#include <boost/exception/exception.hpp>

#include <utility>

#include "foundation/core/except/IException.h"

namespace foundation::core::except {

/// An exception that is a framework interface, a standard exception and a Boost exception at once.
///
/// `Interface` is IException or derived from it. `Standard` is the standard exception that holds the text. `Tag`
/// distinguishes exceptions that share both; it is void where that is not needed.
template <class Interface, class Standard, class Tag>
class FOUNDATION_API Exception : public Interface, public Standard, public boost::exception {
public:
    explicit Exception(Standard standard) : Standard(std::move(standard)) {}
    ~Exception() noexcept override = default;

    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
};

}  // namespace foundation::core::except
