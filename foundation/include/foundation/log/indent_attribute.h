#pragma once

#include <boost/log/attributes/attribute.hpp>

#include "foundation/Export.h"

namespace foundation::log::detail {

/// The Boost.Log attribute "Indent": the number of traced functions that the calling thread is in, as an `unsigned`.
///
/// A host's formatter reads it to indent records. The depth belongs to the thread, not to the logger, so traces of
/// several channels nest. Any number of threads may use one attribute at once.
class FOUNDATION_API indent_attribute : public boost::log::attribute {
public:
    indent_attribute();

    /// Goes one level down on the calling thread.
    void increase() noexcept;
    /// Goes one level up on the calling thread; does nothing at level zero.
    void decrease() noexcept;
    /// Returns the calling thread's level.
    [[nodiscard]] static unsigned depth() noexcept;
};

}  // namespace foundation::log::detail
