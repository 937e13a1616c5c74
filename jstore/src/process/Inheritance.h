#pragma once

#include <vector>

namespace jstore {

/// Notes which file descriptors the parent process passed on; commands that this program runs inherit them. Call it
/// once, before this program and Java open files of their own.
void noteInheritedDescriptors();

/// The file descriptors beyond the standard streams that were noted, in ascending order.
[[nodiscard]] const std::vector<int>& inheritedDescriptors() noexcept;

/// Makes the system keep the exit status of a child until it is asked for, even if the parent process ignores SIGCHLD
/// and passed that on. Call it before a child is started.
void keepEndsOfChildren() noexcept;

}  // namespace jstore
