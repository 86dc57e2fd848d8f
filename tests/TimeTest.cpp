#include "Tarn/time/Time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <limits>
#include <set>
#include <sstream>
#include <tuple>

#include "Tarn/text/ValueReader.h"
#include "Tarn/text/ValueText.h"
#include "tests/Generate.h"
#include "tests/TimeZones.h"

namespace {

using namespace Tarn;

constexpr std::int64_t kLast = 32535215999;

Time at(double seconds) {
  Time time;
  time.setTime(seconds);
  return time;
}

Time local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int millisecond = 0) {
  Time time;
  time.setTime(year, month, day, hour, minute, second, millisecond);
  return time;
}

std::array<int, 7> fieldsOf(const Time& time) {
  return {time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMin(), time.getSec(), time.getMSec()};
}

std::string byRuntime(const std::tm& fields, const char* layout) {
  char text[200];
  return {text, std::strftime(text, sizeof text, layout, &fields)};
}

// Seconds since 1970-01-01 of a clock without a zone.
std::time_t toPlain(const std::tm& fields) {
  const std::chrono::year_month_day date{std::chrono::year(fields.tm_year + 1900),
                                         std::chrono::month(static_cast<unsigned>(fields.tm_mon + 1)),
                                         std::chrono::day(static_cast<unsigned>(fields.tm_mday))};
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  return static_cast<std::time_t>(((days * 24 + fields.tm_hour) * 60 + fields.tm_min) * 60 + fields.tm_sec);
}

class TimeInZones : public testing::TestWithParam<const char*> {
 protected:
  TimeZone zone_{GetParam()};
};
std::string nameOfZone(const testing::TestParamInfo<const char*>& zone) {
  std::string name = zone.param;
  std::erase_if(name, [](char c) { return c == '/' || c == '_'; });
  return name;
}
INSTANTIATE_TEST_SUITE_P(Zones, TimeInZones, testing::ValuesIn(kZones), nameOfZone);

// Seconds all over the calendar, many of them where clocks change.
std::vector<std::time_t> someSeconds() {
  Generate generate(30);
  std::vector<std::time_t> seconds = {0, 1, 46799, 46800, 86399, kLast - 86400, kLast};
  for (int i = 0; i < 1500; ++i) {
    seconds.push_back(static_cast<std::time_t>(generate.below(kLast)));
    seconds.push_back(1711846800 + static_cast<std::time_t>(generate.below(10000)) - 5000);  // March 2024
    seconds.push_back(1729990800 + static_cast<std::time_t>(generate.below(10000)) - 5000);  // October 2024
  }
  return seconds;
}

TEST_P(TimeInZones, FieldsAndLayoutsAreTheRuntimes) {
  for (const std::time_t seconds : someSeconds()) {
    const Time time = at(static_cast<double>(seconds) + 0.042);
    const std::tm fields = *std::localtime(&seconds);
    EXPECT_EQ(fieldsOf(time), (std::array{fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                                          fields.tm_min, fields.tm_sec, 42}));
    EXPECT_EQ(time.getTimeStruct().tm_yday, fields.tm_yday);
    EXPECT_EQ(time.getTimeStruct().tm_isdst, fields.tm_isdst);
    EXPECT_EQ(time.getTimeStr(), byRuntime(fields, "%c"));
    EXPECT_EQ(time.getTimeStr2(), byRuntime(fields, "%d.%m.%Y at %H:%M:%S"));
    EXPECT_EQ(time.getTimeStr3(), byRuntime(fields, "%A, %B %d, %Y at %H:%M:%S"));
    EXPECT_EQ(time.getTimeStr4(), byRuntime(fields, "%H:%M:%S:042"));
    EXPECT_EQ(time.getTimeStr5(), byRuntime(fields, "%d.%m.%Y"));
    EXPECT_EQ(time.getTimeStr6(), byRuntime(fields, "%y%m%d"));
    EXPECT_EQ(time.getTimeStr7(), byRuntime(fields, "%y%m%d_%H%M%S"));
    EXPECT_EQ(time.getTimeStr8(), byRuntime(fields, "%Y-%m-%d %H:%M:%S"));
    EXPECT_EQ(time.getTimeStr9(), byRuntime(*std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%SZ"));
    const std::string iso = time.getIsoTimeStr();
    EXPECT_EQ(iso.substr(0, 19), byRuntime(fields, "%Y-%m-%dT%H:%M:%S"));
    EXPECT_EQ(isoText(time), iso.substr(0, 19) + ".042" + iso.substr(19));
    EXPECT_EQ(parseTime(iso), at(static_cast<double>(seconds)));  // Local time minus its offset is UTC.
    if (HasFailure()) FAIL() << seconds;
  }
}

TEST_P(TimeInZones, SettingFieldsIsTheRuntimes) {
  Generate generate(31);
  const auto number = [&generate](int most) {
    return static_cast<int>(generate.below(2U * static_cast<unsigned>(most) + 1)) - most;
  };
  for (int i = 0; i < 3000; ++i) {
    const std::array carry = {number(3000), number(100000), number(3000000), number(100000000)};
    std::tm fields{};
    fields.tm_year = 100 + static_cast<int>(generate.below(800));
    fields.tm_mon = static_cast<int>(generate.below(12));
    fields.tm_mday = 1 + static_cast<int>(generate.below(28));
    fields.tm_hour = static_cast<int>(generate.below(24));
    fields.tm_min = static_cast<int>(generate.below(60));
    const std::tm ordinary = fields;
    // The same by fields that carry over: what is added to the smaller ones is taken from the date first.
    const std::int64_t carried = carry[0] * 86400LL + carry[1] * 3600LL + carry[2] * 60LL + carry[3];
    const std::time_t origin = toPlain(fields) - static_cast<std::time_t>(carried);
    const std::tm from = *std::gmtime(&origin);
    const Time time =
        local(ordinary.tm_year + 1900, ordinary.tm_mon + 1, ordinary.tm_mday, ordinary.tm_hour, ordinary.tm_min, 0, 5);
    fields = ordinary;
    fields.tm_isdst = -1;
    EXPECT_NEAR(time.getLastTime(), static_cast<double>(std::mktime(&fields)) + 0.005, 1e-5);
    EXPECT_EQ(local(from.tm_year + 1900, from.tm_mon + 1, from.tm_mday + carry[0], from.tm_hour + carry[1],
                    from.tm_min + carry[2], from.tm_sec + carry[3], 5),
              time);
  }
}

TEST_P(TimeInZones, OutsideTheCalendarAllIsZero) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double seconds : {-1.0, -0.9999999e300, static_cast<double>(kLast) + 1, 9.3e11, 922337203685.47758, 1e300,
                               kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()}) {
    const Time time = at(seconds);
    EXPECT_EQ(fieldsOf(time), (std::array<int, 7>{}));
    EXPECT_EQ(time.getTimeStruct().tm_year, 0);
    EXPECT_EQ(time.getTimeStr() + time.getTimeStr3(), "");
    EXPECT_EQ(time.getTimeStr2(), "00.00.0000 at 00:00:00");
    EXPECT_EQ(time.getTimeStr4(), "00:00:00:000");
    EXPECT_EQ(time.getTimeStr5() + '|' + time.getTimeStr6() + '|' + time.getTimeStr7(), "00.00.0|000000|000000_000000");
    EXPECT_EQ(time.getTimeStr8(), "0000-00-00 00:00:00");
    EXPECT_EQ(time.getTimeStr9() + time.getIsoTimeStr(), "0000-00-00T00:00:00Z0000-00-00T00:00:00Z");
    std::string buffer;
    EXPECT_EQ(buffer << time, "0.0.0 0:0:0:0");
  }
  EXPECT_EQ(at(-0.5).getTimeStr4(), byRuntime(at(0).getTimeStruct(), "%H:%M:%S:00-500"));
}

#ifdef TARN_TEST_ZONES
TEST(Time, ClocksChange) {
  const TimeZone zone("Europe/Berlin");
  // An hour twice: both show the same fields, and compare equal.
  const Time first = at(1729989000);
  const Time second = at(1729992600);
  EXPECT_EQ(first.getIsoTimeStr(), "2024-10-27T02:30:00+02:00");
  EXPECT_EQ(second.getIsoTimeStr(), "2024-10-27T02:30:00+01:00");
  EXPECT_EQ(Time::compare(first, second), 0);
  const double chosen = local(2024, 10, 27, 2, 30).getLastTime();
  EXPECT_TRUE(chosen == first.getLastTime() || chosen == second.getLastTime());
  // An hour that is missing: an hour before or behind it.
  const Time missing = local(2024, 3, 31, 2, 30);
  EXPECT_TRUE(missing.getHour() == 1 || missing.getHour() == 3) << missing.getIsoTimeStr();
}

// What each zone of the system's data must keep, where its clocks change and a while before and behind.
void expectAllComesBack(std::time_t seconds) {
  const Time time = at(static_cast<double>(seconds) + 0.043);
  const std::tm fields = time.getTimeStruct();
  if (fields.tm_year < 71 || fields.tm_year > 1099 || fields.tm_sec > 59) return;
  const Time set =
      local(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec, 43);
  EXPECT_EQ(fieldsOf(set), fieldsOf(time)) << seconds;
  EXPECT_EQ(parseTime(isoText(set)), set) << seconds << ' ' << isoText(time);
  EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr()).getTimeStr8(), time.getTimeStr8()) << seconds;
  const std::string offset = byRuntime(fields, "%z");
  EXPECT_EQ(time.getIsoTimeStr().substr(19), offset == "+0000" ? "Z" : offset.substr(0, 3) + ':' + offset.substr(3));
  EXPECT_EQ(time.getTimeStr9(), byRuntime(*std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%SZ"));
}

void expectZoneKeepsTimes(const std::string& name) {
  const TimeZone zone(name);
  const auto offsetAt = [](std::time_t seconds) { return toPlain(*std::localtime(&seconds)) - seconds; };
  constexpr std::time_t kStep = 16 * 86400;
  std::time_t offset = offsetAt(86400 * 400);
  for (std::time_t at = 86400 * 400; at < 86400LL * 366 * 70; at += kStep) {
    const std::time_t next = offsetAt(at + kStep);
    if (next == offset) continue;
    std::time_t change = at;  // The last second before.
    for (std::time_t step = kStep / 2; step > 0; step /= 2) {
      while (change + step < at + kStep && offsetAt(change + step) == offset) change += step;
    }
    for (const int near : {-100000, -3600, -1800, -1, 0, 1, 2, 3600, 100000}) expectAllComesBack(change + near);
    offset = next;
  }
  for (int year = 1; year < 1029; year += 9) expectAllComesBack(year * 31556952LL + 86400 * 37);
}

// Every zone of the time-zone database, with leap seconds too, and zones in POSIX form that have surprised somebody.
TEST(Time, KeepsTimesInEveryZone) {
  std::set<std::string> known;  // Many zones have several names.
  const std::filesystem::path folder(TARN_TEST_ZONES);
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
    if (!file.is_regular_file()) continue;
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string rules{std::istreambuf_iterator<char>(stream), {}};
    if (!rules.starts_with("TZif") || !known.insert(rules).second) continue;
    const std::string name = file.path().lexically_relative(folder).string();
    SCOPED_TRACE(name);
    expectZoneKeepsTimes(name);
    if (HasFailure()) break;
  }
  EXPECT_GT(known.size(), 300U);
  for (const char* name : {"<-00>0<+01>-1,0/0,J365/23", "EST5EDT,0/0,J365/25", "ABC0:00:30", "ABC-0:00:30",
                           "CET-1CEST,M3.5.0,M10.5.0/3", "<+14>-14", "<-12>12"}) {
    SCOPED_TRACE(name);
    expectZoneKeepsTimes(name);
  }
}

TEST(Time, AZoneOfSecondsBehindUtcHasAMinus) {
  const TimeZone zone("ABC0:00:30");
  EXPECT_EQ(at(86400).getIsoTimeStr(), "1970-01-01T23:59:30-00:00");
  EXPECT_EQ(isoText(at(86400)), "1970-01-02T00:00:00.000Z");
}
#endif

struct Guard {
  int line;
  std::array<int, 7> fields;
  double seconds;
};
constexpr int kMin = INT_MIN;
constexpr int kMax = INT_MAX;
constexpr Guard kGuards[] = {
    {__LINE__, {1970, 1, 1, 12, 59, 59, 0}, 0},
    {__LINE__, {1970, 1, 1, 13, 0, 0, 0}, 46800},
    {__LINE__, {1970, 1, 2, 0, 0, 0, 0}, 86400},
    {__LINE__, {1969, 13, 1, 0, 0, 0, 7}, 0.007},
    {__LINE__, {1970, 0, 1, 13, 0, 0, 0}, 0},
    {__LINE__, {1970, 1, 1, 13, -781, 0, 250}, 0.25},
    {__LINE__, {1960, 5, 5, 10, 0, 0, 250}, 0.25},
    {__LINE__, {1960, 5, 5, 10, 0, 0, -1500}, -1.5},
    {__LINE__, {3000, 12, 30, 23, 59, 59, 0}, 32535129599},
    {__LINE__, {3000, 12, 31, 0, 0, 0, 0}, 0},
    {__LINE__, {3000, 12, 30, 48, -1, 59, 0}, 32535215999},
    {__LINE__, {3000, 12, 30, 48, 0, 0, 0}, 0},
    {__LINE__, {3001, 1, 1, 0, 0, 0, 0}, 0},
    {__LINE__, {2024, 13, 0, 0, 0, 60, 1500}, 1735603261.5},
    {__LINE__, {2000, kMin, kMin, kMin, kMin, kMin, kMin}, -2147483.648},
    {__LINE__, {2000, kMax, kMax, kMax, kMax, kMax, kMax}, 2147483.647},
    {__LINE__, {kMax, 1, 1, 0, 0, 0, 0}, 0},
    {__LINE__, {kMin, 1, 1, 0, 0, 0, 0}, 0},
    {__LINE__, {2000, 1, 1, 0, 0, kMax, 0}, 3094168447},
    {__LINE__, {2000, 1, 1, 0, kMin, 0, 0}, 0},
    {__LINE__, {2000, 1 + 12 * 400, 1 - 146097, 0, 0, 0, 0}, 946684800},
    {__LINE__, {2000, 1 - 12 * 40000, 1 + 14609700, 0, 0, 0, 0}, 946684800},
};

TEST(Time, SettingFieldsIsGuarded) {
  const TimeZone zone("UTC");
  for (const Guard& row : kGuards) {
    testing::ScopedTrace trace(__FILE__, row.line, "");
    const auto& [year, month, day, hour, minute, second, millisecond] = row.fields;
    EXPECT_DOUBLE_EQ(local(year, month, day, hour, minute, second, millisecond).getLastTime(), row.seconds);
  }
}

// One field at an extreme or anywhere, the others ordinary: seconds are linear in each from the day on.
TEST(Time, SettingCarriesAnyNumber) {
  const TimeZone zone("UTC");
  constexpr std::array kUsual = {2000, 6, 15, 12, 30, 30, 0};
  constexpr std::int64_t kUsualSeconds = 961072230;
  constexpr std::int64_t kUnits[] = {0, 0, 86400, 3600, 60, 1};
  Generate generate(33);
  for (int i = 0; i < 20000 && !HasFailure(); ++i) {
    const auto size = static_cast<std::int64_t>(generate.below(std::uint64_t{1} << 31) >> generate.below(31));
    const std::size_t field = 2 + generate.below(4);
    const int number = i % 100 == 0 ? kMin : i % 100 == 1 ? kMax : static_cast<int>(i % 2 == 0 ? size : -size);
    std::array fields = kUsual;
    fields[field] = number;
    const std::int64_t seconds = kUsualSeconds + (std::int64_t{number} - kUsual[field]) * kUnits[field];
    const auto& [year, month, day, hour, minute, second, millisecond] = fields;
    EXPECT_EQ(local(year, month, day, hour, minute, second, millisecond).getLastTime(),
              seconds < 0 || seconds > kLast ? 0.0 : static_cast<double>(seconds))
        << "field " << field << " is " << number;
  }
  EXPECT_EQ(local(2000, kMin, 1).getLastTime() + local(2000, kMax, 1).getLastTime(), 0.0);
}

TEST(Time, Milliseconds) {
  const std::pair<double, int> rows[] = {{10.9996, 999}, {10.0004, 0}, {10.0005001, 1},
                                         {-0.25, -250},  {-5.0, 0},    {-0.9999, -1000}};
  for (const auto& [seconds, milliseconds] : rows) EXPECT_EQ(at(seconds).getMSec(), milliseconds) << seconds;
  EXPECT_EQ(at(10.9996).getSec(), 10);
  Generate generate(34);
  for (int i = 0; i < 20000; ++i) {  // Halves of milliseconds, and what is next to them.
    double fraction = static_cast<double>(generate.below(2001)) / 2000.0;
    fraction = i % 3 == 0 ? fraction : std::nextafter(fraction, i % 3 == 1 ? 2.0 : -1.0);
    const double sign = i % 2 == 0 ? 1.0 : -1.0;
    const double seconds = sign * (static_cast<double>(generate.below(i % 4 < 2 ? 2 : 2000000000)) + fraction);
    const double whole = std::trunc(std::trunc(seconds * 1e7) / 1e7);
    EXPECT_EQ(at(seconds).getMSec(), std::min(static_cast<int>(std::round((seconds - whole) * 1000.0)), 999));
  }
}

template <class Integer>
void expectSets(Integer number) {
  Time time;
  time.setTime(number);
  EXPECT_EQ(time.getLastTime(), static_cast<double>(number));
}

TEST(Time, SetsEveryKindOfNumber) {
  expectSets('d');
  expectSets(static_cast<signed char>(-100));
  expectSets(static_cast<unsigned char>(200));
  expectSets(static_cast<short>(-30000));
  expectSets(static_cast<unsigned short>(60000));
  expectSets(-2000000000);
  expectSets(4000000000U);
  expectSets(std::numeric_limits<long>::max() / 3);
  expectSets(std::numeric_limits<unsigned long>::max() / 2);
  expectSets(-5000000000LL);
  expectSets(18000000000000000000ULL);
  expectSets(std::int64_t{32535215999});
  expectSets(12.5F);
  expectSets(-12.5);
  EXPECT_EQ(Time().getLastTime(), 0.0);
  EXPECT_EQ(at(12.5).getAbsLastTime(), 12.5);
}

// Each way to set a time sets the reading of the steady clock with it.
TEST(Time, SettersSetBothHalves) {
  const TimeZone zone("UTC");
  const Time now = Time::now();
  for (const int hours : {-1, 0, 1}) {
    const double seconds = now.getLastTime() + hours * 3600;
    const Time whole = at(std::floor(seconds));
    const std::tm fields = whole.getTimeStruct();
    std::string text;
    text << whole;
    Time byNumber;
    byNumber.setTime(static_cast<long long>(seconds));
    Time byBuffer;
    Time byStream;
    std::istringstream(text) >> byStream;
    text >> byBuffer;
    const Time byFields = local(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                                fields.tm_sec, 0);
    const auto point =
        std::chrono::system_clock::time_point() + std::chrono::seconds(static_cast<std::int64_t>(whole.getLastTime()));
    for (const Time& time : {whole, byNumber, byBuffer, byStream, byFields, Time(point), *parseTime(isoText(whole)),
                             Time::fromIsoTimeStrIgnoringTimeZone(whole.getIsoTimeStr())}) {
      EXPECT_EQ(time, whole);
      EXPECT_TRUE(time.isTimeOut(-hours * 3600 - 600));
      EXPECT_FALSE(time.isTimeOut(-hours * 3600 + 600));
    }
  }
  Time current = at(0);
  EXPECT_GE(current.getCurrentTime(), now.getLastTime());
  EXPECT_FALSE(current.isTimeOut(600));
  EXPECT_FALSE(Time::now().isTimeOut(600));
  EXPECT_FALSE(at(std::numeric_limits<double>::quiet_NaN()).isTimeOut(-1e300));
}

TEST(Time, MeetsTheSystemClock) {
  using Clock = std::chrono::system_clock;
  for (const std::int64_t milliseconds : {0LL, 1LL, -1LL, 1709647629042LL, -62135596800000LL / 100, 4102444800999LL}) {
    const Clock::time_point point{std::chrono::milliseconds(milliseconds)};
    const Time time(point);
    EXPECT_NEAR(time.getLastTime(), static_cast<double>(milliseconds) / 1000, 1e-6);
    EXPECT_LE(std::chrono::abs(time.toTimePoint() - point), std::chrono::microseconds(1));
  }
  EXPECT_EQ(at(1709647629.5).toTimePoint(), Clock::time_point(std::chrono::milliseconds(1709647629500)));
  EXPECT_EQ(at(1e300).toTimePoint(), Clock::time_point::max());
  for (const long long last : {9223372036, -9223372036}) {  // Whole seconds in 64 bits of nanoseconds.
    if (Clock::period::den != 1'000'000'000) break;
    EXPECT_EQ(at(static_cast<double>(last)).toTimePoint(), Clock::time_point(std::chrono::seconds(last)));
  }
  EXPECT_EQ(at(-std::numeric_limits<double>::infinity()).toTimePoint(), Clock::time_point::min());
  EXPECT_EQ(at(std::numeric_limits<double>::quiet_NaN()).toTimePoint(), Clock::time_point());
}

TEST(Time, IsOrderedByTheInstant) {
  EXPECT_TRUE(at(1) < at(1.0001) && at(1) == at(1) && at(2) > at(1) && at(1) != at(1.0001));
  EXPECT_EQ(Time::compare(at(1), at(1.0001)), 0);
  const Time none = at(std::numeric_limits<double>::quiet_NaN());
  EXPECT_TRUE(none != none && !(none < none) && !(none >= none));
}

// Texts that are times, with their instants and how they are written again.
TEST(Time, ParsesIsoTimes) {
  const TimeZone zone("Europe/Berlin");
  const std::tuple<std::string, double, std::string> rows[] = {
      {"2024-03-05T14:07:09Z", 1709647629, "2024-03-05T15:07:09.000+01:00"},
      {"2024-03-05t14:07:09.042z", 1709647629.042, "2024-03-05T15:07:09.042+01:00"},
      {"2024-03-05 14:07:09.0420000000000000000000000001+01:00", 1709644029.042, "2024-03-05T14:07:09.042+01:00"},
      {"2024-07-05T14:07:09", 1720181229, "2024-07-05T14:07:09.000+02:00"},
      {"2024-02-29T23:59:59.9999-23:59", 1709337539.9999, "2024-03-02T00:58:59.999+01:00"},
      {"2000-02-29T00:00:00+00:00", 951782400, "2000-02-29T01:00:00.000+01:00"},
      {"1970-01-01T00:00:00Z", 0, "1970-01-01T01:00:00.000+01:00"},
      {"2016-12-31T23:59:60Z", 1483228800, "2017-01-01T01:00:00.000+01:00"},
      {"2017-01-01T00:59:60.5+01:00", 1483228800.5, "2017-01-01T01:00:00.500+01:00"},
      {"1969-12-31T23:59:59Z", -1, "0000-00-00T00:00:00.000Z"},
      {"0000-01-01T00:00:00Z", -62167219200, "0000-00-00T00:00:00.000Z"},
      {"9999-12-31T23:59:59Z", 253402300799, "0000-00-00T00:00:00.000Z"},
  };
  for (const auto& [text, seconds, written] : rows) {
    const std::optional<Time> time = parseTime(text);
    ASSERT_TRUE(time) << text;
    EXPECT_NEAR(time->getLastTime(), seconds, 1e-6) << text;
    EXPECT_EQ(isoText(*time), written);
    EXPECT_FALSE(parseTime(text + ' ') || parseTime(' ' + text) || parseTime(text + '\n') || parseTime(text + '0'))
        << text;
  }
  for (const char* text : {"",
                           "2024-03-05",
                           "2024-03-05T14:07",
                           "2024-03-05T14:07:09.",
                           "2024-03-05T14:07:09.Z",
                           "2024-03-05x14:07:09Z",
                           "2024-02-30T00:00:00Z",
                           "2023-02-29T00:00:00Z",
                           "1900-02-29T00:00:00Z",
                           "2024-13-01T00:00:00Z",
                           "2024-00-01T00:00:00Z",
                           "2024-01-00T00:00:00Z",
                           "2024-01-01T24:00:00Z",
                           "2024-01-01T00:60:00Z",
                           "2024-01-01T00:00:61Z",
                           "2024-01-01T00:00:60Z",
                           "2024-01-01T23:59:60+01:00",
                           "2024-01-01T23:59:60",
                           "2024-01-01T00:00:00+24:00",
                           "2024-01-01T00:00:00+00:60",
                           "2024-01-01T00:00:00+0100",
                           "2024-01-01T00:00:00+01",
                           "24-01-01T00:00:00Z",
                           "+2024-01-01T00:00:00Z",
                           "1969-12-31T00:00:00",
                           "3001-01-01T12:00:00"}) {
    EXPECT_FALSE(parseTime(text)) << text;
  }
}

struct Text {
  int line;
  std::string text, read, rest, error;
  std::string streamed;  // What a stream reads that fails; empty where it reads the same time and does not.
};

TEST(Time, ReadsItsText) {
  const TimeZone zone("UTC");
  const std::string before = "2001-09-09 01:46:40";
  const std::string epoch = "1970-01-01 00:00:00";
  const std::string noValue = "invalid string position";
  const Text rows[] = {
      {__LINE__, "5.3.2024 14:7:9:42, rest", "2024-03-05 14:07:09", ", rest", "", ""},
      {__LINE__, "05/03/2024 14-07-09-042", "2024-03-05 14:07:09", "", "", ""},
      {__LINE__, " ,5 \n.\t3.2024,,14:7:9:1500", "2024-03-05 14:07:10", "", "", epoch},
      {__LINE__, "1.1.1960 0:0:0:0x", epoch, "x", "", ""},
      {__LINE__, "5.3.2024", "2024-03-05 00:00:00", "", "", "2024-03-05 00:00:00"},
      {__LINE__, "5.3.2024 14:7:9:", "2024-03-05 14:07:09", "", "", "2024-03-05 14:07:09"},
      {__LINE__, "", epoch, "", "", epoch},
      {__LINE__, "5.3.2024 14:7:9:99999999999", "2024-03-05 14:07:09", "", "", "2024-03-05 14:07:09"},
      {__LINE__, "5.3.2024 14:7:9:0000000042,", "2024-03-05 14:07:09", ",", "", ""},
      {__LINE__, "5.3.2024 14:7:9:-1500", "2024-03-05 14:07:07", "", "", ""},
      {__LINE__, "5.x.2024 1:2:3:4", before, "x.2024 1:2:3:4", noValue, epoch},
      {__LINE__, "5.3.2024 14:7:x9:42", before, "x9:42", noValue, "2024-03-05 14:07:00"},
      {__LINE__, "5.3.2024 14:7:99999999999:1", before, "99999999999:1", noValue, "2024-03-05 14:07:00"},
  };
  for (const Text& row : rows) {
    testing::ScopedTrace trace(__FILE__, row.line, row.text);
    Time time = at(1000000000);
    std::string buffer = row.text;
    std::string error;
    try {
      buffer >> time;
    } catch (const std::out_of_range& thrown) {
      error = thrown.what();
    }
    EXPECT_EQ(error, row.error);
    EXPECT_EQ(time.getTimeStr8(), row.read);
    EXPECT_EQ(buffer, row.rest);
    Time byReader = at(1000000000);
    ValueReader reader(row.text);
    if (error.empty()) {
      reader >> byReader;
    } else {
      EXPECT_THAT([&] { reader >> byReader; }, testing::ThrowsMessage<std::out_of_range>(error));
    }
    EXPECT_EQ(byReader.getLastTime(), time.getLastTime());
    EXPECT_EQ(reader.rest(), row.rest);
    std::istringstream stream(row.text);
    Time streamed = at(1000000000);
    stream >> streamed;
    EXPECT_EQ(stream.fail(), !row.streamed.empty());
    if (row.streamed.empty()) {
      EXPECT_EQ(streamed.getLastTime(), time.getLastTime());
    } else {
      EXPECT_EQ(streamed.getTimeStr8(), row.streamed);
    }
  }
}

TEST(Time, StreamsKeepTheirFlags) {
  std::stringstream stream;
  const Time time = local(2024, 3, 5, 14, 7, 9, 42);
  stream << std::hex << std::showbase << std::setfill('*') << std::setw(5) << time << ' ';
  EXPECT_EQ(stream.str(), "**0x5.0x3.0x7e8 0xe:0x7:0x9:0x2a ");
  stream.str("5.3.7e8 e:7:9:2a ");
  Time read;
  stream >> read;
  EXPECT_EQ(read.getLastTime(), time.getLastTime());
  stream.str("5.3.7e8 e:7:9:2a ");
  stream >> std::noskipws >> read;
  EXPECT_TRUE(stream.fail());  // The space before the hour.
}

}  // namespace
