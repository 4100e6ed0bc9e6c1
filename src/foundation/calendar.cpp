// Days of the calendar. They are counted as dates, never as spans of 24 hours: where clocks change, a day has 23 or 25.
#include <stdio.h>
#include <time.h>

#include <optional>

#include "foundation/answer.h"
#include "foundation/failure.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

struct Date {
    int year;
    int month;
    int day;
};

constexpr int kLastYear = 9999;

bool is_leap_year(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int days_in_month(const Date& date) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return date.month == 2 && is_leap_year(date.year) ? 29 : kDays[date.month - 1];
}

Date day_after(Date date) {
    if (++date.day > days_in_month(date)) {
        date.day = 1;
        date.month++;
    }
    if (date.month > 12) {
        date.month = 1;
        date.year++;
    }
    return date;
}

// Exactly "YYYY-MM-DD", and a day that there is.
std::optional<Date> read_date(const char* text) {
    constexpr char kForm[] = "dddd-dd-dd";
    for (size_t i = 0; i < sizeof kForm; i++) {
        if (kForm[i] == 'd' ? !is_digit(text[i]) : text[i] != kForm[i]) return {};
    }
    auto digits = [text](int at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); };
    const Date date = {digits(0) * 100 + digits(2), digits(5), digits(8)};
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > days_in_month(date)) return {};
    return date;
}

[[nodiscard]] int write_date(const Date& date, char* dst, size_t size) {
    if (date.year > kLastYear) return fail(ERANGE);
    Text<sizeof "YYYY-MM-DD"> text("%04d-%02d-%02d", date.year, date.month, date.day);
    if (text.cut || text.length >= size) return fail(ERANGE);
    copy_text(dst, size, text.c_str());
    answer(dst);
    return 0;
}

}  // namespace

int LibQuorvelBin_DayAfter(const char* date, char* dst, size_t size) {
    if (date == nullptr || dst == nullptr) return fail(EINVAL);
    const auto day = read_date(date);
    return day ? write_date(day_after(*day), dst, size) : fail(EINVAL);
}

int LibQuorvelBin_Tomorrow(char* dst, size_t size) {
    time_t now = time(nullptr);
    struct tm local;
    tzset();  // localtime_r alone may keep a zone that was changed since
    if (dst == nullptr) return fail(EINVAL);
    if (localtime_r(&now, &local) == nullptr) return -1;
    return write_date(day_after({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday}), dst, size);
}
