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
/// `.` and empty names drop out. What stands before a `..` is resolved through the file system, since a symbolic link
/// there leads elsewhere than its spelling says. Where nothing has a name that holds characters which stand for bytes,
/// as lists show names that are not UTF-8, the name that is shown like this is meant. Throws CommandError with NotFound
/// if that part is missing, Internal if the working folder is not known.
[[nodiscard]] std::vector<std::string> localPathNames(std::string_view path);

/// The local path as a URI that other programs understand: `file:///…`, absolute and in ASCII. Throws like
/// localPathNames().
[[nodiscard]] std::string fileUri(std::string_view path);

}  // namespace jstore
