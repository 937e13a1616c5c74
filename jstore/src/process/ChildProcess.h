#pragma once

#include <functional>
#include <string>

namespace jstore::doctor {

/// How a child process ended.
struct ChildEnd {
    bool well = false;  ///< it did its work
    std::string words;  ///< what it wrote to its standard streams, the text of its exception last
};

/// Does work in a copy of this process and waits for its end: for work that may end the process it is done in. To be
/// called before Java runs in this process, and while it has one thread. The child ends with this process, and SIGINT,
/// SIGTERM and SIGHUP end it at once. Throws std::system_error when there can be no child.
[[nodiscard]] ChildEnd runInChild(const std::function<void()>& work);

}  // namespace jstore::doctor
