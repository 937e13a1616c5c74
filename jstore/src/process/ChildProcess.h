#pragma once

#include <functional>
#include <string>

namespace jstore::doctor {

/// How a child process ended.
struct ChildEnd {
    bool well = false;  ///< it did its work
    std::string words;  ///< what it wrote to its standard streams, the text of its exception last
};

/// Does work that may end its process, in a copy of this process, and waits for the copy's end. Call it before Java
/// runs in this process, and while it has one thread. The child ends with this process; SIGINT, SIGTERM and SIGHUP end
/// it at once. Throws std::system_error if no child can be started.
[[nodiscard]] ChildEnd runInChild(const std::function<void()>& work);

}  // namespace jstore::doctor
