#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace jstore {

/// What a progress line shows.
struct ProgressView {
    std::string name;  ///< what is being worked on; may be anything, and empty
    std::string unit;  ///< what the items are, such as "files"; empty when items are not counted
    std::uint64_t items = 0;
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> totalBytes;  ///< when it is known, there is a percentage and a bar
    std::optional<int> namePercent;           ///< how much of the named file is done
    std::optional<double> rate;               ///< bytes in a second
    std::optional<std::chrono::seconds> left;
    std::chrono::seconds elapsed{0};
};

/// The view as one line of at most that many columns, without a newline. Leaves out what matters least if it does not
/// fit; empty if nothing fits.
///
///     video.mkv   39% [======>         ]  1.2G/3.0G  35.1M/s  0:48 left
///     1204 files  5.3G  35.1M/s  1:12  video.mkv 40%
[[nodiscard]] std::string progressLine(const ProgressView& view, std::size_t columns);

/// "0:48", "12:05" or "1:02:30".
[[nodiscard]] std::string clockText(std::chrono::seconds time);

}  // namespace jstore
