#pragma once

namespace jstore {

/// Makes sure that file descriptors 0, 1 and 2 are in use, so that no file that Java opens becomes "standard output".
///
/// A stream that the parent process closed is opened for the opposite direction, so using it fails as before.
void occupyStandardStreams() noexcept;

}  // namespace jstore
