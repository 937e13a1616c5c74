#include "base/Format.h"

#include <fmt/format.h>

#include <chrono>
#include <ctime>
#include <limits>
#include <regex>

namespace jstore {

namespace {

using boost::posix_time::ptime;
using boost::posix_time::time_duration;
using namespace std::chrono;

using Match = std::match_results<std::string_view::const_iterator>;

/// The groups of the pattern below.
enum Part : std::size_t { Year = 1, Month, Day, Hour, Minute, Second, Fraction, Zone };

const ptime& epoch() {
    static const ptime start(boost::gregorian::date(1970, 1, 1), time_duration(0, 0, 0));
    return start;
}

ptime toPtime(std::int64_t millis) { return epoch() + boost::posix_time::milliseconds(millis); }

int number(const Match& match, std::size_t part) {
    return match[part].matched && match[part].length() > 0 ? std::stoi(match[part].str()) : 0;
}

/// The first three digits of a fraction, as milliseconds.
int fractionMillis(const Match& match) {
    std::string digits = match[Fraction].str();
    digits.resize(3, '0');
    return std::stoi(digits);
}

/// Seconds east of Greenwich: of `Z`, `+HH:MM` or `-HHMM`.
std::optional<int> offsetSeconds(const std::string& zone) {
    if (zone == "Z") {
        return 0;
    }
    const int hours = std::stoi(zone.substr(1, 2));
    const int minutes = std::stoi(zone.substr(zone.size() - 2));
    if (hours > 23 || minutes > 59) {
        return std::nullopt;
    }
    return (zone.front() == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
}

/// The seconds since 1970 of a time that this machine's clocks show.
std::optional<std::int64_t> localSeconds(const Match& match) {
    std::tm fields{};
    fields.tm_year = number(match, Year) - 1900;
    fields.tm_mon = number(match, Month) - 1;
    fields.tm_mday = number(match, Day);
    fields.tm_hour = number(match, Hour);
    fields.tm_min = number(match, Minute);
    fields.tm_sec = number(match, Second);
    fields.tm_isdst = -1;
    fields.tm_wday = -1;
    const std::time_t seconds = std::mktime(&fields);
    // -1 is a time as well; the day of the week is set only when there was no error.
    return fields.tm_wday == -1 ? std::nullopt : std::optional<std::int64_t>(seconds);
}

std::optional<ptime> fromDate(const Match& match) {
    const year_month_day date = year(number(match, Year)) / number(match, Month) / number(match, Day);
    if (!date.ok() || number(match, Hour) > 23 || number(match, Minute) > 59 || number(match, Second) > 59) {
        return std::nullopt;
    }
    std::optional<std::int64_t> secondsSince;
    if (match[Zone].matched) {
        const std::optional<int> offset = offsetSeconds(match[Zone].str());
        if (!offset) {
            return std::nullopt;
        }
        const std::chrono::seconds clock =
            hours(number(match, Hour)) + minutes(number(match, Minute)) + seconds(number(match, Second));
        secondsSince = (sys_days(date).time_since_epoch() + clock).count() - *offset;
    } else {
        secondsSince = localSeconds(match);
    }
    if (!secondsSince) {
        return std::nullopt;
    }
    return toPtime(*secondsSince * 1000 + fractionMillis(match));
}

}  // namespace

std::string timeText(const ptime& time) {
    if (time.is_special()) {
        return "-";
    }
    const sys_time<milliseconds> point{milliseconds((time - epoch()).total_milliseconds())};
    const sys_days day = floor<days>(point);
    constexpr sys_days first = year(0) / 1 / 1;
    constexpr sys_days last = year(9999) / 12 / 31;
    if (day < first || day > last) {
        return fmt::format("@{}", point.time_since_epoch().count());
    }
    const year_month_day date(day);
    const hh_mm_ss clock(point - day);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), clock.hours().count(),
                       clock.minutes().count(), clock.seconds().count(), clock.subseconds().count());
}

std::optional<ptime> parseTime(std::string_view text) {
    static const std::regex calendar(R"((\d{4})-(\d\d)-(\d\d)(?:[T ](\d\d):(\d\d)(?::(\d\d)(?:\.(\d{1,9}))?)?)?)"
                                     R"((Z|[+-]\d\d:?\d\d)?)");
    static const std::regex counted(R"(@(-?\d{1,12}))");
    Match match;
    if (text == "now") {
        return toPtime(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
    }
    if (std::regex_match(text.begin(), text.end(), match, counted)) {
        return toPtime(std::stoll(match[1].str()) * 1000);
    }
    if (std::regex_match(text.begin(), text.end(), match, calendar)) {
        return fromDate(match);
    }
    return std::nullopt;
}

std::string sizeText(const std::optional<std::uint64_t>& bytes, bool human) {
    if (!bytes) {
        return "-";
    }
    if (!human || *bytes < 1024) {
        return fmt::format("{}", *bytes);
    }
    auto amount = static_cast<double>(*bytes);
    std::size_t unit = 0;
    constexpr std::string_view units = "BKMGTPE";
    // 1023.95 and more would be shown as "1024.0".
    while (amount >= 1023.95 && unit + 1 < units.size()) {
        amount /= 1024;
        ++unit;
    }
    return fmt::format("{:.1f}{}", amount, units[unit]);
}

}  // namespace jstore
