#include "Tarn/time/Time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <iomanip>
#include <limits>
#include <sstream>
#include <thread>

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
    // Local time minus its offset is UTC.
    const int sign = iso[19] == '-' ? -1 : 1;
    const int minutes = iso.size() == 20 ? 0 : sign * (std::stoi(iso.substr(20, 2)) * 60 + std::stoi(iso.substr(23)));
    EXPECT_EQ(at(static_cast<double>(seconds) + minutes * 60).getTimeStr9().substr(0, 19),
              seconds + minutes * 60 < 0 || seconds + minutes * 60 > kLast ? "0000-00-00T00:00:00" : iso.substr(0, 19));
    if (HasFailure()) FAIL() << seconds;
  }
}

TEST_P(TimeInZones, SettingFieldsIsTheRuntimes) {
  Generate generate(31);
  for (int i = 0; i < 3000; ++i) {
    std::tm fields{};
    fields.tm_year = 71 + static_cast<int>(generate.below(1028));
    fields.tm_mon = static_cast<int>(generate.below(12));
    fields.tm_mday = 1 + static_cast<int>(generate.below(28));
    fields.tm_hour = static_cast<int>(generate.below(24));
    fields.tm_min = static_cast<int>(generate.below(60));
    fields.tm_isdst = -1;
    const Time time =
        local(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, 7, 5);
    EXPECT_NEAR(time.getLastTime(), static_cast<double>(std::mktime(&fields) + 7) + 0.005, 1e-5);
    // The same wall clock by fields that carry over.
    const Time carried = local(fields.tm_year + 1900 - 1, fields.tm_mon + 1 + 14, fields.tm_mday - 61 + 61,
                               fields.tm_hour - 24, fields.tm_min + 1441, 7 - 60, 5);
    const Time plain =
        local(fields.tm_year + 1900, fields.tm_mon + 1 + 2, fields.tm_mday, fields.tm_hour, fields.tm_min, 7, 5);
    EXPECT_EQ(carried.getLastTime(), plain.getLastTime());
  }
}

TEST_P(TimeInZones, TextComesBack) {
  for (const std::time_t seconds : someSeconds()) {
    const Time time = at(static_cast<double>(seconds) + 0.987);
    if (time.getYear() < 1971 || time.getYear() > 2999) continue;  // Setting guards the ends.
    std::string buffer;
    std::stringstream stream;
    buffer << time << ", rest";
    stream << time << ' ';
    EXPECT_EQ(stream.str(), buffer.substr(0, buffer.size() - 6) + ' ');
    Time fromBuffer;
    Time fromStream;
    buffer >> fromBuffer;
    stream >> fromStream;
    // In the hour that does not exist elsewhere the runtime decides, but it exists here: all fields come back.
    EXPECT_EQ(fieldsOf(fromBuffer), fieldsOf(time));
    EXPECT_EQ(Time::compare(fromStream, time), 0);
    const Time fromIso = Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr());
    EXPECT_NEAR(fromIso.getLastTime() + 0.987, fromBuffer.getLastTime(), 1e-5);
    EXPECT_EQ(buffer, ", rest");
    EXPECT_TRUE(stream.good());
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

TEST(Time, ClocksChange) {
  const TimeZone zone("Europe/Berlin");
  // An hour twice: both show the same fields, and compare equal.
  const Time first = at(1729989000);
  const Time second = at(1729992600);
  if (first.getTimeStruct().tm_isdst == second.getTimeStruct().tm_isdst) GTEST_SKIP() << "the runtime has another rule";
  EXPECT_EQ(first.getIsoTimeStr(), "2024-10-27T02:30:00+02:00");
  EXPECT_EQ(second.getIsoTimeStr(), "2024-10-27T02:30:00+01:00");
  EXPECT_EQ(Time::compare(first, second), 0);
  const double chosen = local(2024, 10, 27, 2, 30).getLastTime();
  EXPECT_TRUE(chosen == first.getLastTime() || chosen == second.getLastTime());
  // An hour that is missing: an hour before or behind it.
  const Time missing = local(2024, 3, 31, 2, 30);
  EXPECT_TRUE(missing.getHour() == 1 || missing.getHour() == 3) << missing.getIsoTimeStr();
}

TEST(Time, AZoneOfSecondsBehindUtcHasAMinus) {
  const TimeZone zone("ABC0:00:30");
  const Time time = at(86400);
  if (time.getSec() != 30) GTEST_SKIP() << "the runtime has no zones of seconds";
  EXPECT_EQ(time.getIsoTimeStr(), "1970-01-01T23:59:30-00:00");
}

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
double setBy() {
  Time time;
  time.setTime(static_cast<Integer>(100));
  return time.getLastTime();
}

TEST(Time, SetsEveryKindOfNumber) {
  for (const double seconds : {setBy<char>(), setBy<signed char>(), setBy<unsigned char>(), setBy<short>(),
                               setBy<unsigned short>(), setBy<unsigned>(), setBy<long>(), setBy<unsigned long>()}) {
    EXPECT_EQ(seconds, 100.0);
  }
  Time time;
  EXPECT_EQ(time.getLastTime(), 0.0);
  time.setTime(12.5F);
  EXPECT_EQ(time.getAbsLastTime(), 12.5);
  time.setTime(5);
  EXPECT_EQ(time.getLastTime(), 5.0);
  time.setTime(86400LL);
  EXPECT_EQ(time.getLastTime(), 86400.0);
  time.setTime(std::numeric_limits<unsigned long long>::max());
  EXPECT_EQ(time.getLastTime(), 18446744073709551616.0);
  time.setTime(static_cast<short>(-3));
  EXPECT_EQ(time.getLastTime(), -3.0);
  time.setTime(std::time(nullptr));
  EXPECT_NEAR(Time::now().getLastTime(), time.getLastTime(), 2.0);
  const double current = time.getCurrentTime();
  EXPECT_EQ(time.getLastTime(), current);
}

// Pairs that are near each other, days apart, and as far apart as the zone can matter; some of them not in the
// calendar.
TEST_P(TimeInZones, ComparesFields) {
  Generate generate(32);
  for (const std::time_t start : someSeconds()) {
    constexpr int kDistances[] = {0, 1, 3599, 3600, 3601, 7200, 86400, 345599, 345600, 345601, 10000000};
    const double sign = generate.below(2) == 0 ? -1.0 : 1.0;
    const double seconds = static_cast<double>(start) + static_cast<double>(generate.below(3000)) / 3e3;
    const Time a = at(seconds);
    const Time b = at(std::floor(seconds) + sign * kDistances[generate.below(std::size(kDistances))] +
                      static_cast<double>(generate.below(3000)) / 3e3);
    const int order = fieldsOf(a) < fieldsOf(b) ? -1 : fieldsOf(b) < fieldsOf(a) ? 1 : 0;
    EXPECT_EQ(Time::compare(a, b), order) << seconds << ' ' << b.getLastTime();
    EXPECT_EQ(Time::compare(b, a), -order);
  }
  EXPECT_EQ(Time::compare(at(100.0001), at(100.0003)), 0);
  EXPECT_EQ(Time::compare(at(-5.0), at(1e300)), 0);
  EXPECT_EQ(Time::compare(at(-0.25), at(-1.25)), 1);  // The first is within the calendar.
}

TEST(Time, TimesOutOnTheSteadyClock) {
  Time time = Time::now();
  EXPECT_FALSE(time.isTimeOut(100.0));
  EXPECT_FALSE(time.isTimeOut(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_TRUE(time.isTimeOut(-1.0));
  while (!time.isTimeOut(0.0)) std::this_thread::yield();
  time.setTime(time.getLastTime() - 50.0);
  EXPECT_TRUE(time.isTimeOut(49.0));
  EXPECT_FALSE(time.isTimeOut(80.0));
  const double now = Time::now().getLastTime();
  EXPECT_TRUE(Time().isTimeOut(now - 0.01));  // The epoch is as long ago as the clock shows.
  EXPECT_FALSE(Time().isTimeOut(now + 100.0));
  EXPECT_FALSE(at(std::numeric_limits<double>::quiet_NaN()).isTimeOut(0.0));
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_FALSE(at(-kInfinity).isTimeOut(kInfinity));  // As long ago as the limit, not longer.
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
