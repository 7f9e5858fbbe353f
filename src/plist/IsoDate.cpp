#include "plist/IsoDate.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace kelvane::plist {

namespace {
constexpr std::int64_t kSecondsPerDay = 86'400;
// Days from 1970-01-01 to 2001-01-01, the property-list reference date.
constexpr std::int64_t kReferenceDay = 11'323;

// Howard Hinnant's days_from_civil: proleptic Gregorian date to days since 1970.
std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day) {
    year -= month <= 2 ? 1 : 0;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146'097 + static_cast<std::int64_t>(dayOfEra) - 719'468;
}

struct Civil {
    std::int64_t year;
    unsigned month;
    unsigned day;
};

Civil civilFromDays(std::int64_t days) {
    days += 719'468;
    const std::int64_t era = (days >= 0 ? days : days - 146'096) / 146'097;
    const auto dayOfEra = static_cast<unsigned>(days - era * 146'097);
    const unsigned yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned monthIndex = (5 * dayOfYear + 2) / 153;
    const unsigned day = dayOfYear - (153 * monthIndex + 2) / 5 + 1;
    const unsigned month = monthIndex < 10 ? monthIndex + 3 : monthIndex - 9;
    return {static_cast<std::int64_t>(yearOfEra) + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

bool isLeap(std::int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

// Exactly `digits` decimal digits at `at`.
std::optional<unsigned> number(std::string_view text, std::size_t at, std::size_t digits) {
    if (at + digits > text.size()) {
        return std::nullopt;
    }
    unsigned value = 0;
    const char* first = text.data() + at;
    const auto [end, error] = std::from_chars(first, first + digits, value);
    if (error != std::errc() || end != first + digits) {
        return std::nullopt;
    }
    return value;
}
} // namespace

std::optional<Date> parseIsoDate(std::string_view text) {
    // YYYY-MM-DDTHH:MM:SS[.fff]Z
    if (text.size() < 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
        text[13] != ':' || text[16] != ':' || text.back() != 'Z') {
        return std::nullopt;
    }
    const auto year = number(text, 0, 4);
    const auto month = number(text, 5, 2);
    const auto day = number(text, 8, 2);
    const auto hour = number(text, 11, 2);
    const auto minute = number(text, 14, 2);
    const auto second = number(text, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) {
        return std::nullopt;
    }
    static constexpr unsigned kDaysInMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (*month < 1 || *month > 12 || *day < 1 || *hour > 23 || *minute > 59 || *second > 60) {
        return std::nullopt;
    }
    const unsigned monthDays = kDaysInMonth[*month - 1] + (*month == 2 && isLeap(*year) ? 1 : 0);
    if (*day > monthDays) {
        return std::nullopt;
    }
    double fraction = 0;
    const std::string_view rest = text.substr(19, text.size() - 20);
    if (!rest.empty()) {
        if (rest[0] != '.' || rest.size() < 2) {
            return std::nullopt;
        }
        double scale = 0.1;
        for (char c : rest.substr(1)) {
            if (c < '0' || c > '9') {
                return std::nullopt;
            }
            fraction += (c - '0') * scale;
            scale /= 10;
        }
    }
    const std::int64_t days = daysFromCivil(*year, *month, *day) - kReferenceDay;
    const std::int64_t seconds = days * kSecondsPerDay + *hour * 3600 + *minute * 60 + *second;
    return Date{static_cast<double>(seconds) + fraction};
}

std::string formatIsoDate(Date date) {
    const auto total = static_cast<std::int64_t>(std::floor(date.secondsSince2001));
    std::int64_t days = total / kSecondsPerDay;
    std::int64_t seconds = total % kSecondsPerDay;
    if (seconds < 0) {
        seconds += kSecondsPerDay;
        --days;
    }
    const Civil civil = civilFromDays(days + kReferenceDay);
    char text[64];
    std::snprintf(text, sizeof text, "%04lld-%02u-%02uT%02lld:%02lld:%02lldZ",
                  static_cast<long long>(civil.year), civil.month, civil.day,
                  static_cast<long long>(seconds / 3600), static_cast<long long>(seconds / 60 % 60),
                  static_cast<long long>(seconds % 60));
    return text;
}

} // namespace kelvane::plist
