#pragma once

namespace jstore {

/// Makes sure that file descriptors 0, 1 and 2 are in use, so that no file that Java opens becomes "standard output".
///
/// A stream that the parent process closed is opened the wrong way round: reading or writing it fails as it would have.
void occupyStandardStreams() noexcept;

}  // namespace jstore
