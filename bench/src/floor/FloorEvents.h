#pragma once

#include <boost/property_tree/ptree.hpp>

#include <functional>
#include <string>

#include "Machine.h"

namespace bench {

/// The way of an event from Java to a callback, by hand: five texts, and one call with what the framework's callback
/// gets, though in plain types. Used on one thread.
class FloorEvents {
public:
    /// Kind and entry type as numbers.
    using Callback = std::function<void(int kind, const std::u16string& watched, const std::u16string& changed,
                                        int entryType, boost::property_tree::ptree details)>;

    /// Registers the native method and makes the publisher, which keeps the address of this object.
    FloorEvents(const Machine& machine, Callback callback);

    FloorEvents(const FloorEvents&) = delete;
    FloorEvents& operator=(const FloorEvents&) = delete;

    [[nodiscard]] jobject publisher() const noexcept { return m_publisher; }
    [[nodiscard]] const Callback& callback() const noexcept { return m_callback; }

private:
    Callback m_callback;
    jobject m_publisher;
};

}  // namespace bench
