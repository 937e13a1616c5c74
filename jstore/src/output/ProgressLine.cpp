#include "output/ProgressLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/DisplayText.h"
#include "base/Format.h"

namespace jstore {

namespace {

constexpr std::size_t Gap = 2;
constexpr std::size_t ShortestName = 8;
constexpr std::size_t LongestName = 32;
constexpr std::size_t ShortestBar = 10;
constexpr std::size_t LongestBar = 40;

/// A part of a line that has one width; the greatest rank is left out first.
struct Part {
    int rank;
    std::string text;
};

using Parts = std::vector<Part>;

std::size_t widthOf(const Parts& parts) {
    std::size_t width = 0;
    for (const Part& part : parts) {
        width += part.text.size() + (width == 0 ? 0 : Gap);
    }
    return width;
}

/// Leaves out parts until the rest fits.
Parts fitting(Parts parts, std::size_t columns) {
    std::erase_if(parts, [](const Part& part) { return part.text.empty(); });
    while (widthOf(parts) > columns) {
        parts.erase(std::max_element(parts.begin(), parts.end(),
                                     [](const Part& left, const Part& right) { return left.rank < right.rank; }));
    }
    return parts;
}

std::string joined(const Parts& parts) {
    std::string line;
    for (const Part& part : parts) {
        line += (line.empty() ? "" : std::string(Gap, ' ')) + part.text;
    }
    return line;
}

std::string rateText(const ProgressView& view) {
    return view.rate ? sizeText(static_cast<std::uint64_t>(*view.rate), /*human=*/true) + "/s" : "";
}

/// 99 until the last byte: "100%" is what people take for done.
int percentOf(std::uint64_t done, std::uint64_t total) {
    if (done >= total) {
        return 100;
    }
    return static_cast<int>(std::min(99.0, static_cast<double>(done) * 100 / static_cast<double>(total)));
}

std::string bar(int percent, std::size_t columns) {
    const std::size_t inner = columns - 2;
    const std::size_t filled = inner * static_cast<std::size_t>(percent) / 100;
    std::string text(filled, '=');
    if (filled < inner) {
        text += '>';
    }
    text.resize(inner, ' ');
    return '[' + text + ']';
}

std::string named(const std::string& name, std::size_t room) {
    return room < ShortestName ? "" : shortened(name, std::min(room, LongestName));
}

std::string knownTotal(const ProgressView& view, std::size_t columns) {
    const int percent = percentOf(view.bytes, *view.totalBytes);
    const Parts parts = fitting({{0, fmt::format("{:>3}%", percent)},
                                 {3, sizeText(view.bytes, true) + '/' + sizeText(view.totalBytes, true)},
                                 {2, rateText(view)},
                                 {1, view.left ? clockText(*view.left) + " left" : ""}},
                                columns);
    std::string line = joined(parts);
    const std::size_t room = columns - line.size();
    // A short name takes precedence over a bar. Beyond that they share the room.
    const std::string name = room < Gap ? "" : named(view.name, std::max(room / 2, std::min(room - Gap, ShortestName)));
    const std::size_t nameColumns = name.empty() ? 0 : displayWidth(name) + Gap;
    if (room >= nameColumns + 1 + ShortestBar && !parts.empty()) {
        const std::size_t end = parts.front().text.size();
        line.insert(end, ' ' + bar(percent, std::min(room - nameColumns - 1, LongestBar)));
    }
    return name.empty() ? line : name + std::string(Gap, ' ') + line;
}

std::string unknownTotal(const ProgressView& view, std::size_t columns) {
    const bool moves = view.bytes > 0;
    std::string line = joined(fitting({{0, view.unit.empty() ? "" : fmt::format("{} {}", view.items, view.unit)},
                                       {1, moves ? sizeText(view.bytes, true) : ""},
                                       {2, moves ? rateText(view) : ""},
                                       {3, clockText(view.elapsed)}},
                                      columns));
    const std::string percent = view.namePercent ? fmt::format(" {}%", *view.namePercent) : "";
    const std::size_t taken = line.size() + Gap + percent.size();
    const std::string name = columns < taken ? "" : named(view.name, columns - taken);
    return name.empty() ? line : line + std::string(Gap, ' ') + name + percent;
}

}  // namespace

std::string clockText(std::chrono::seconds time) {
    const std::int64_t seconds = time.count();
    if (seconds < 3600) {
        return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
    }
    return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::string progressLine(const ProgressView& view, std::size_t columns) {
    return view.totalBytes && *view.totalBytes > 0 ? knownTotal(view, columns) : unknownTotal(view, columns);
}

}  // namespace jstore
