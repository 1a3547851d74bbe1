#include "linux/corrections/propertylist/Calendar.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numeric>

namespace propertylist {

namespace {

constexpr double kReference = 978307200;  // seconds from the start of 1970 to that of 2001
constexpr double kFarthest = 1e15;
constexpr std::int32_t kYearsACycle = 400;
constexpr double kSecondsACycle = 146097 * 86400.0;

}  // namespace

double MomentFromText(std::string_view text) {
    constexpr std::string_view kPattern = "-00-00T00:00:00Z";  // 0 stands for any digit
    const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
    const bool isBeforeChrist = text.substr(0, 1) == "-";
    std::string_view years = text.substr(isBeforeChrist ? 1 : 0);
    const std::string_view rest =
        years.substr(years.size() - std::min(years.size(), kPattern.size()));
    years.remove_suffix(rest.size());
    if (!std::all_of(years.begin(), years.end(), isDigit) ||
        !std::equal(rest.begin(), rest.end(), kPattern.begin(), kPattern.end(),
                    [&](char character, char expected) {
                        return expected == '0' ? isDigit(character) : character == expected;
                    })) {
        @throw @"The XML property list has a damaged date.";
    }
    const auto number = [](std::string_view digits) {
        return std::accumulate(digits.begin(), digits.end(), 0U, [](unsigned sum, char digit) {
            return sum * 10 + static_cast<unsigned>(digit - '0');
        });
    };
    const auto part = [&](std::size_t at) { return static_cast<int>(number(rest.substr(at, 2))); };
    const auto year = static_cast<std::int32_t>(isBeforeChrist ? 0 - number(years) : number(years));
    // A year that timegm is sure to take; the calendar repeats itself after a cycle.
    std::tm time = {};
    time.tm_year = year % kYearsACycle + 2000 - 1900;
    time.tm_mon = std::max(part(1), 1) - 1;
    time.tm_mday = part(4);
    time.tm_hour = part(7);
    time.tm_min = part(10);
    time.tm_sec = part(13);
    const int cycles = year / kYearsACycle - 2000 / kYearsACycle;
    return static_cast<double>(timegm(&time)) - kReference + cycles * kSecondsACycle;
}

std::string TextFromMoment(double seconds) {
    if (!(std::fabs(seconds) < kFarthest)) {
        @throw @"A date of the property list is beyond any calendar.";
    }
    const auto whole = static_cast<std::time_t>(std::floor(seconds + kReference));
    std::tm time = {};
    gmtime_r(&whole, &time);
    const int year = time.tm_year + 1900;
    char line[64];
    std::snprintf(line, sizeof line, "%s%04d-%02d-%02dT%02d:%02d:%02dZ", year < 0 ? "-" : "",
                  std::abs(year), time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                  time.tm_sec);
    return line;
}

}  // namespace propertylist
