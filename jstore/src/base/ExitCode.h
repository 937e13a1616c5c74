#pragma once

#include <string>
#include <vector>

#include "foundation/storage/provider/ErrorCode.h"

namespace jstore {

/// jstore's exit codes. Scripts rely on the numbers; they are listed in --help and never change.
enum class ExitCode : int {
    Done = 0,           ///< everything was done
    Failed = 1,         ///< failed, for a reason without a number of its own
    Usage = 2,          ///< the command line is wrong; nothing was done
    NotFound = 3,       ///< nothing is at the location
    AlreadyExists = 4,  ///< something is at the location already
    Denied = 5,         ///< the back end refuses
    SomeFailed = 6,     ///< of several locations some failed, or they failed for different reasons
    NoJava = 7,         ///< no usable Java virtual machine was found
    NotSupported = 8,   ///< the back end cannot do this
    HungUp = 129,       ///< stopped by SIGHUP
    Interrupted = 130,  ///< stopped by SIGINT
    Terminated = 143,   ///< stopped by SIGTERM
};

/// The exit code for one operation that a back end failed with `code`.
[[nodiscard]] ExitCode exitCodeOf(foundation::storage::provider::ErrorCode code) noexcept;

/// The exit code for several operations: the common one when all ended alike, else SomeFailed; Done for none.
[[nodiscard]] ExitCode combine(const std::vector<ExitCode>& codes) noexcept;

/// The table of exit codes as --help shows it, one line each, without a final newline.
[[nodiscard]] std::string exitCodeTable();

}  // namespace jstore
