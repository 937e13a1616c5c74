#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace jstore {

/// The scheme that the text begins with ("java" of "java:///x"), without its colon; empty if it begins with none.
[[nodiscard]] std::string_view schemeOf(std::string_view text) noexcept;

/// The names along a local path from the root, as the bytes that they are, the working folder's first when the path is
/// relative.
///
/// `.` and empty names drop out. The part before a `..` is resolved through the file system, since a symbolic link
/// there leads elsewhere than its spelling says. A name may also be given as lists show names that are not UTF-8,
/// unless something has exactly the given name. Throws CommandError with NotFound if the part before a `..` or the
/// working folder is missing.
[[nodiscard]] std::vector<std::string> localPathNames(std::string_view path);

/// The local path as a URI that other programs understand: `file:///…`, absolute and in ASCII. Throws like
/// localPathNames().
[[nodiscard]] std::string fileUri(std::string_view path);

}  // namespace jstore
