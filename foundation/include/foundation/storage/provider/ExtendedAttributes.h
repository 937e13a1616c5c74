#pragma once

#include <boost/any.hpp>

#include <map>
#include <string>
#include <utility>

namespace foundation::storage::provider {

/// Named metadata beyond the basic attributes. An immutable value.
///
/// Names are UTF-8. A value holds whatever type the back end chose; the values of every back end in Java are
/// `std::string` in UTF-8. Read one with `boost::any_cast<std::string>(&value)`, which returns null for another type.
///
/// The name `basic:isSymbolicLink` with the `std::string` "true" means that the location itself is a symbolic link.
class ExtendedAttributes {
public:
    ExtendedAttributes() = default;
    explicit ExtendedAttributes(std::map<std::string, boost::any> attributes) : m_attributes(std::move(attributes)) {}

    [[nodiscard]] const std::map<std::string, boost::any>& all() const noexcept { return m_attributes; }

    /// The text of that name; null if there is none, or if the value is not text.
    [[nodiscard]] const std::string* text(const std::string& name) const {
        const auto found = m_attributes.find(name);
        return found == m_attributes.end() ? nullptr : boost::any_cast<std::string>(&found->second);
    }

    /// Whether the location itself is a symbolic link: `basic:isSymbolicLink` is "true". False where the back end does
    /// not say.
    [[nodiscard]] bool isSymbolicLink() const {
        const std::string* const value = text("basic:isSymbolicLink");
        return value != nullptr && *value == "true";
    }

private:
    std::map<std::string, boost::any> m_attributes;
};

}  // namespace foundation::storage::provider
