#include "linux/corrections/propertylist/Calendar.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr double kReference = 978307200;  // seconds from the start of 1970 to that of 2001
constexpr double kFarthest = 1e15;
constexpr std::int32_t kYearsACycle = 400;
constexpr double kSecondsACycle = 146097 * 86400.0;

/// Takes two digits and the character behind them.
bool TakeTwoDigits(std::string_view& text, char end, int& value) {
    const auto isDigit = [&](std::size_t at) {
        return std::isdigit(static_cast<unsigned char>(text[at])) != 0;
    };
    if (text.size() < 3 || !isDigit(0) || !isDigit(1) || text[2] != end) {
        return false;
    }
    value = (text[0] - '0') * 10 + (text[1] - '0');
    text.remove_prefix(3);
    return true;
}

/// Takes the year and the hyphen behind it; a year may have no digits.
bool TakeYear(std::string_view& text, std::int32_t& year) {
    const bool negative = text.substr(0, 1) == "-";
    text.remove_prefix(negative ? 1 : 0);
    std::uint32_t number = 0;
    while (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0])) != 0) {
        number = number * 10 + static_cast<std::uint32_t>(text[0] - '0');
        text.remove_prefix(1);
    }
    year = static_cast<std::int32_t>(negative ? 0 - number : number);
    const bool ends = text.substr(0, 1) == "-";
    text.remove_prefix(ends ? 1 : 0);
    return ends;
}

}  // namespace

bool MomentFromText(std::string_view text, double& seconds) {
    std::int32_t year = 0;
    int month = 0;
    int day = 0;
    std::tm time = {};
    if (!TakeYear(text, year) || !TakeTwoDigits(text, '-', month) ||
        !TakeTwoDigits(text, 'T', day) || !TakeTwoDigits(text, ':', time.tm_hour) ||
        !TakeTwoDigits(text, ':', time.tm_min) || !TakeTwoDigits(text, 'Z', time.tm_sec) ||
        !text.empty()) {
        return false;
    }
    // A year that timegm is sure to take; the calendar repeats itself after a cycle.
    time.tm_year = year % kYearsACycle + 2000 - 1900;
    time.tm_mon = std::max(month, 1) - 1;
    time.tm_mday = day;
    const double cycles = year / kYearsACycle - 2000 / kYearsACycle;
    seconds = static_cast<double>(timegm(&time)) - kReference + cycles * kSecondsACycle;
    return true;
}

bool AppendMoment(double seconds, std::string& text) {
    if (!(std::fabs(seconds) < kFarthest)) {
        return false;
    }
    const auto whole = static_cast<std::time_t>(std::floor(seconds + kReference));
    std::tm time = {};
    gmtime_r(&whole, &time);
    const int year = time.tm_year + 1900;
    char line[64];
    std::snprintf(line, sizeof line, "%s%04d-%02d-%02dT%02d:%02d:%02dZ", year < 0 ? "-" : "",
                  std::abs(year), time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                  time.tm_sec);
    text += line;
    return true;
}
