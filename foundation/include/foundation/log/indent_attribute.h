#pragma once

#include <boost/log/attributes/attribute.hpp>

#include "foundation/Export.h"

namespace foundation::log::detail {

/// The Boost.Log attribute "Indent": how many traced functions the calling thread is inside, as an `unsigned`.
///
/// A host's formatter reads it to indent records. The depth belongs to the thread, not to the logger, so that the
/// traces of several channels nest; any number of threads may use one attribute at once.
class FOUNDATION_API indent_attribute : public boost::log::attribute {
public:
    indent_attribute();

    /// Goes one level deeper on the calling thread.
    void increase() noexcept;
    /// Comes one level up on the calling thread; at level zero it stays there.
    void decrease() noexcept;
    /// The calling thread's level.
    [[nodiscard]] static unsigned depth() noexcept;
};

}  // namespace foundation::log::detail
