#include "verbs/Duration.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace jstore {

using std::chrono::milliseconds;

namespace {

constexpr std::array<std::pair<std::string_view, std::int64_t>, 4> Units{
    {{"ms", 1}, {"s", 1000}, {"m", 60'000}, {"h", 3'600'000}}};

constexpr std::int64_t Longest = std::chrono::duration_cast<milliseconds>(std::chrono::years(1)).count();

}  // namespace

std::optional<milliseconds> parseDuration(std::string_view text) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || number > static_cast<std::uint64_t>(Longest)) {
        return std::nullopt;
    }
    const std::string_view unit(read.ptr, static_cast<std::size_t>(end - read.ptr));
    for (const auto& [name, length] : Units) {
        const auto count = static_cast<std::int64_t>(number);
        if (unit == name && count <= Longest / length) {
            return milliseconds(count * length);
        }
    }
    return std::nullopt;
}

}  // namespace jstore
