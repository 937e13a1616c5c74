#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <vector>

#include "changes/Change.h"

namespace jstore::test {

/// Something that watches a folder and all that is below it, from its construction to its end.
class Watcher {
public:
    virtual ~Watcher() = default;

    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// The changes reported since the last call, in order; waits for one if there is none. Empty after the time given.
    [[nodiscard]] virtual std::vector<Change> take(std::chrono::milliseconds atMost) = 0;

    /// Keeps the back end's thread in its next delivery until release() is called.
    virtual void hold() = 0;
    virtual void release() = 0;

protected:
    Watcher() = default;
};

/// A host of the library that watches through NioProvider; the virtual machine is this process's.
[[nodiscard]] std::unique_ptr<Watcher> watchByLibrary(const std::filesystem::path& folder);

/// `jstore --json watch -r`, a process of its own. hold() stops the process, its back end included.
[[nodiscard]] std::unique_ptr<Watcher> watchByJstore(const std::filesystem::path& folder);

}  // namespace jstore::test
