#include "base/ExitCode.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace jstore {

using foundation::storage::provider::ErrorCode;

ExitCode exitCodeOf(ErrorCode code) noexcept {
    switch (code) {
        case ErrorCode::NotFound:
            return ExitCode::NotFound;
        case ErrorCode::AlreadyExists:
            return ExitCode::AlreadyExists;
        case ErrorCode::AccessDenied:
            return ExitCode::Denied;
        case ErrorCode::NotSupported:
            return ExitCode::NotSupported;
        default:
            return ExitCode::Failed;
    }
}

ExitCode combine(const std::vector<ExitCode>& codes) noexcept {
    if (codes.empty()) {
        return ExitCode::Done;
    }
    const auto same = [&](ExitCode code) { return code == codes.front(); };
    return std::all_of(codes.begin(), codes.end(), same) ? codes.front() : ExitCode::SomeFailed;
}

std::string exitCodeTable() {
    constexpr std::array<std::pair<ExitCode, std::string_view>, 12> rows{{
        {ExitCode::Done, "done"},
        {ExitCode::Failed, "failed"},
        {ExitCode::Usage, "wrong command line; nothing was done"},
        {ExitCode::NotFound, "nothing is there"},
        {ExitCode::AlreadyExists, "something is there already"},
        {ExitCode::Denied, "access denied"},
        {ExitCode::SomeFailed, "some of several locations failed, or they failed for different reasons"},
        {ExitCode::NoJava, "no usable Java was found"},
        {ExitCode::NotSupported, "not supported by the back end"},
        {ExitCode::HungUp, "stopped by SIGHUP"},
        {ExitCode::Interrupted, "stopped by SIGINT (Ctrl-C)"},
        {ExitCode::Terminated, "stopped by SIGTERM"},
    }};
    std::string table = "Exit codes:";
    for (const auto& [code, meaning] : rows) {
        table += fmt::format("\n  {:>3}  {}", static_cast<int>(code), meaning);
    }
    return table;
}

}  // namespace jstore
