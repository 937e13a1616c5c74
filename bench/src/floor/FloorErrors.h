#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "floor/FloorGuard.h"

namespace bench {

/// What the floor makes of a Java exception: for a ProviderException its number and location, else number -1 and a
/// text.
class FloorError : public std::runtime_error {
public:
    FloorError(int number, std::u16string location, const std::string& text)
        : std::runtime_error(text), m_number(number), m_location(std::move(location)) {}

    [[nodiscard]] int number() const noexcept { return m_number; }
    [[nodiscard]] const std::u16string& location() const noexcept { return m_location; }

private:
    int m_number;
    std::u16string m_location;
};

/// Operations that fail in Java: the search for the exception's class, the reading of the exception, and one throw.
/// Used on one thread.
class FloorErrors {
public:
    explicit FloorErrors(const FloorJava& java);

    /// Throws FloorError for the back end's ProviderException.
    void removeFolder(std::u16string_view location) const { call(FloorJava::RemoveFolder, location); }
    /// Throws FloorError for the back end's IllegalStateException.
    void removeFolderRecursive(std::u16string_view location) const {
        call(FloorJava::RemoveFolderRecursively, location);
    }

private:
    void call(FloorJava::Method method, std::u16string_view location) const;
    [[nodiscard]] FloorError take() const;
    [[nodiscard]] bool isProviderException(jthrowable error) const;
    [[nodiscard]] jobject loaderOf(jclass cls) const;
    [[nodiscard]] jclass loadProviderException(jobject loader) const;
    [[nodiscard]] FloorError readProviderException(jthrowable error) const;
    [[nodiscard]] FloorError readOtherException(jthrowable error) const;

    const FloorJava& m_java;
    jmethodID m_getLocationString;
    jmethodID m_getErrorCodeNumber;
};

}  // namespace bench
