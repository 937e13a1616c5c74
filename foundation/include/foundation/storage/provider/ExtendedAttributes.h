#pragma once

#include <boost/any.hpp>

#include <map>
#include <string>
#include <utility>

namespace foundation::storage::provider {

/// Named metadata beyond the basic attributes. An immutable value; names and text values are UTF-8.
class ExtendedAttributes {
public:
    ExtendedAttributes() = default;
    explicit ExtendedAttributes(std::map<std::string, boost::any> attributes) : m_attributes(std::move(attributes)) {}

    [[nodiscard]] const std::map<std::string, boost::any>& all() const noexcept { return m_attributes; }

private:
    std::map<std::string, boost::any> m_attributes;
};

}  // namespace foundation::storage::provider
