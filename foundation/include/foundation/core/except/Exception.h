#pragma once

#include <boost/exception/exception.hpp>

#include <utility>

#include "foundation/core/except/IException.h"

namespace foundation::core::except {

/// An exception that is at once a framework interface, a standard exception and a Boost exception.
///
/// `Interface` is IException or an interface derived from it, `Standard` a standard exception that carries the text,
/// and `Tag` tells apart exceptions that share both (void where nothing needs telling apart).
template <class Interface, class Standard, class Tag>
class FOUNDATION_API Exception : public Interface, public Standard, public boost::exception {
public:
    explicit Exception(Standard standard) : Standard(std::move(standard)) {}
    ~Exception() noexcept override = default;

    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
};

}  // namespace foundation::core::except
