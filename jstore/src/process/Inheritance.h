#pragma once

#include <vector>

namespace jstore {

/// Notes which file descriptors the parent process passed on. To be called once, before this program and Java open
/// files of their own: what is noted is passed on to the commands that this program runs.
void noteInheritedDescriptors();

/// The file descriptors beyond the standard streams that were noted, in ascending order.
[[nodiscard]] const std::vector<int>& inheritedDescriptors() noexcept;

/// Makes the system keep the end of a child until it is asked for, even if the parent process ignores SIGCHLD and so
/// passed that on. To be called before a child is made.
void keepEndsOfChildren() noexcept;

}  // namespace jstore
