#include "linux/corrections/propertylist/Calendar.h"

#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

constexpr std::int64_t kSecondsADay = 86400;
constexpr std::int64_t kYearsAnEra = 400;
constexpr std::int64_t kDaysAnEra = 146097;
constexpr double kFarthest = 1e15;

/// Days from 1 March of year 0, where a cycle of 400 years starts with leap days at its years'
/// ends.
std::int64_t DayNumber(std::int64_t year, int month, int day) {
    const std::int64_t marchYear = month > 2 ? year : year - 1;
    const std::int64_t era =
        (marchYear >= 0 ? marchYear : marchYear - (kYearsAnEra - 1)) / kYearsAnEra;
    const std::int64_t yearOfEra = marchYear - era * kYearsAnEra;
    const int marchMonth = (month + 9) % 12;
    const std::int64_t dayOfYear = (153 * marchMonth + 2) / 5 + day - 1;
    return era * kDaysAnEra + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
}

const std::int64_t kReferenceDay = DayNumber(2001, 1, 1);

struct Date {
    std::int64_t year;
    int month;
    int day;
};

/// The inverse of DayNumber.
Date DateOfDay(std::int64_t number) {
    const std::int64_t era = (number >= 0 ? number : number - (kDaysAnEra - 1)) / kDaysAnEra;
    const std::int64_t dayOfEra = number - era * kDaysAnEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (kDaysAnEra - 1)) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int marchMonth = static_cast<int>((5 * dayOfYear + 2) / 153);
    const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
    const int day = static_cast<int>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    return {era * kYearsAnEra + yearOfEra + (month <= 2 ? 1 : 0), month, day};
}

int DaysInMonth(std::int64_t year, int month) {
    const bool last = month == 12;
    return static_cast<int>(DayNumber(last ? year + 1 : year, last ? 1 : month + 1, 1) -
                            DayNumber(year, month, 1));
}

/// Takes two digits, after `before` unless that is NUL.
bool TakeTwoDigits(std::string_view& text, char before, int& value) {
    if (before != '\0') {
        if (text.empty() || text[0] != before) {
            return false;
        }
        text.remove_prefix(1);
    }
    if (text.size() < 2 || std::isdigit(static_cast<unsigned char>(text[0])) == 0 ||
        std::isdigit(static_cast<unsigned char>(text[1])) == 0) {
        return false;
    }
    value = (text[0] - '0') * 10 + (text[1] - '0');
    text.remove_prefix(2);
    return true;
}

bool TakeYear(std::string_view& text, std::int64_t& year) {
    constexpr std::size_t kMostDigits = 8;
    const bool negative = !text.empty() && text[0] == '-';
    if (negative) {
        text.remove_prefix(1);
    }
    std::size_t digits = 0;
    year = 0;
    while (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits])) != 0) {
        if (digits == kMostDigits) {
            return false;
        }
        year = year * 10 + (text[digits++] - '0');
    }
    text.remove_prefix(digits);
    year = negative ? -year : year;
    return digits > 0;
}

}  // namespace

bool MomentFromText(std::string_view text, double& seconds) {
    std::int64_t year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!TakeYear(text, year) || !TakeTwoDigits(text, '-', month) ||
        !TakeTwoDigits(text, '-', day) || !TakeTwoDigits(text, 'T', hour) ||
        !TakeTwoDigits(text, ':', minute) || !TakeTwoDigits(text, ':', second) || text != "Z") {
        return false;
    }
    if (month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month) || hour > 23 ||
        minute > 59 || second > 59) {
        return false;
    }
    const std::int64_t days = DayNumber(year, month, day) - kReferenceDay;
    seconds = static_cast<double>(days * kSecondsADay + hour * 3600 + minute * 60 + second);
    return true;
}

bool AppendMoment(double seconds, std::string& text) {
    if (!(std::fabs(seconds) < kFarthest)) {
        return false;
    }
    const std::int64_t whole = static_cast<std::int64_t>(std::floor(seconds));
    std::int64_t days = whole / kSecondsADay;
    std::int64_t rest = whole % kSecondsADay;
    if (rest < 0) {
        rest += kSecondsADay;
        --days;
    }
    const Date date = DateOfDay(days + kReferenceDay);
    const bool negative = date.year < 0;
    char line[64];
    std::snprintf(line, sizeof line, "%s%04lld-%02d-%02dT%02d:%02d:%02dZ", negative ? "-" : "",
                  static_cast<long long>(negative ? -date.year : date.year), date.month, date.day,
                  static_cast<int>(rest / 3600), static_cast<int>(rest / 60 % 60),
                  static_cast<int>(rest % 60));
    text += line;
    return true;
}
