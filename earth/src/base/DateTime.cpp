#include <osgEarth/DateTime>

#include <cmath>
#include <cstdio>

namespace osgEarth {
namespace {
constexpr long long kDaySeconds = 86400;

/// A day of the proleptic Gregorian calendar; the year starts in March so that leap days come last.
struct Day
{
    long long year;
    int month;
    int day;
};

long long floorDiv(long long a, long long b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

long long daysSinceEpoch(long long year, int month, int day)
{
    const long long y = month <= 2 ? year - 1 : year;
    const long long monthFromMarch = (month + 9) % 12;
    const long long leapDays = floorDiv(y, 4) - floorDiv(y, 100) + floorDiv(y, 400);
    constexpr long long kEpoch = 719468; // days from 0000-03-01 to 1970-01-01
    return 365 * y + leapDays + (153 * monthFromMarch + 2) / 5 + day - 1 - kEpoch;
}

Day dayOf(TimeStamp time)
{
    const long long days = floorDiv(time, kDaySeconds);
    // The mean length of a Gregorian year gives the year with an error of at most one.
    long long year = 1970 + floorDiv(days * 400, 146097);
    while (daysSinceEpoch(year, 1, 1) > days)
        --year;
    while (daysSinceEpoch(year + 1, 1, 1) <= days)
        ++year;
    int month = 12;
    while (daysSinceEpoch(year, month, 1) > days)
        --month;
    return {year, month, static_cast<int>(days - daysSinceEpoch(year, month, 1)) + 1};
}
} // namespace

DateTime::DateTime() : _time(::time(nullptr)) {}

DateTime::DateTime(TimeStamp utc) : _time(utc) {}

DateTime::DateTime(int year, int month, int day, double hours)
    : _time(static_cast<TimeStamp>(daysSinceEpoch(year, month, day) * kDaySeconds +
                                   std::llround((std::isfinite(hours) ? hours : 0.0) * 3600.0)))
{
}

int DateTime::year() const
{
    return static_cast<int>(dayOf(_time).year);
}

int DateTime::month() const
{
    return dayOf(_time).month;
}

int DateTime::day() const
{
    return dayOf(_time).day;
}

double DateTime::hours() const
{
    return static_cast<double>(_time - floorDiv(_time, kDaySeconds) * kDaySeconds) / 3600.0;
}

std::string DateTime::asISO8601() const
{
    const Day date = dayOf(_time);
    const long long second = _time - floorDiv(_time, kDaySeconds) * kDaySeconds;
    char text[64];
    std::snprintf(text, sizeof text, "%04lld-%02d-%02dT%02lld:%02lld:%02lldZ", date.year, date.month,
                  date.day, second / 3600, second / 60 % 60, second % 60);
    return text;
}
} // namespace osgEarth
