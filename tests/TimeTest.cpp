// What the properties of properties/Times.cpp leave open: zones of every kind, and what was decided.
#include "Tarn/time/Time.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <limits>
#include <set>
#include <sstream>

#include "Tarn/text/ValueText.h"
#include "tests/Growth.h"
#include "tests/TimeZones.h"

namespace {

using namespace Tarn;

static_assert(noexcept(std::declval<Time&>() == std::declval<Time&>()));
static_assert(noexcept(std::declval<Time&>() <=> std::declval<Time&>()));

Time at(auto seconds) {
  Time time;
  time.setTime(seconds);
  return time;
}

Time local(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int millisecond = 0) {
  Time time;
  time.setTime(year, month, day, hour, minute, second, millisecond);
  return time;
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
  EXPECT_EQ(Time::compare(at(1729989600), second), 1);  // 02:40 is earlier, but shows more.
  EXPECT_EQ(Time::compare(first, at(1729992600.001)), -1);
  const TimeZone twoHours("Antarctica/Troll");
  EXPECT_EQ(Time::compare(at(1729990500), at(1729995000)), 1);  // 02:55 and, 75 minutes later, 02:10.
}

std::string byRuntime(const std::tm& fields, const char* layout) {
  char text[200];
  return {text, std::strftime(text, sizeof text, layout, &fields)};
}

// What every zone must keep.
void expectAllComesBack(std::time_t seconds) {
  const Time time = at(static_cast<double>(seconds) + 0.043);
  const std::tm fields = *std::localtime(&seconds);
  EXPECT_EQ(time.getTimeStr8(), byRuntime(fields, "%Y-%m-%d %H:%M:%S"));
  EXPECT_EQ(time.getTimeStr9(), byRuntime(*std::gmtime(&seconds), "%Y-%m-%dT%H:%M:%SZ"));
  const std::string offset = byRuntime(fields, "%z");
  EXPECT_EQ(time.getIsoTimeStr().substr(19), offset == "+0000" ? "Z" : offset.substr(0, 3) + ':' + offset.substr(3));
  EXPECT_NEAR(parseTime(isoText(time)).value_or(Time()).getLastTime(), time.getLastTime(), 1e-4) << isoText(time);
  if (fields.tm_year < 71 || fields.tm_year > 1099 || fields.tm_sec > 59) return;
  EXPECT_EQ(
      local(time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMin(), time.getSec()).getTimeStr8(),
      time.getTimeStr8());
  EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr()).getTimeStr8(), time.getTimeStr8());
}

// How far its clocks are ahead, within a week.
std::int64_t offsetAt(std::time_t seconds) {
  const std::tm f = *std::localtime(&seconds);
  const std::int64_t shown = ((f.tm_wday * 24 + f.tm_hour) * 60 + f.tm_min) * 60 + f.tm_sec;
  return ((shown - seconds) % 604800 + 604800) % 604800;
}

// Looks at every change of the zone's clocks, and a while before and behind. Gives the number of leap seconds.
int expectZoneKeepsTimes(const std::string& name) {
  SCOPED_TRACE(name);
  const TimeZone zone(name);
  constexpr std::time_t kStep = 16 * 86400;
  int leaps = 0;
  for (std::time_t at = 86400 * 400; at < 86400LL * 366 * 70; at += kStep) {
    const std::int64_t offset = offsetAt(at);
    if (offsetAt(at + kStep) == offset) continue;
    std::time_t change = at;  // The last second before.
    for (std::time_t step = kStep / 2; step > 0; step /= 2) {
      while (change + step < at + kStep && offsetAt(change + step) == offset) change += step;
    }
    leaps += offset - offsetAt(change + 1) == 1 ? 1 : 0;
    for (const int near : {-100000, -3600, -1800, -1, 0, 1, 2, 3600, 100000}) expectAllComesBack(change + near);
  }
  for (int year = 1; year < 1029; year += 9) expectAllComesBack(year * 31556952LL + 86400 * 37);
  return leaps;
}

// Every zone of the time-zone database, with leap seconds too, and zones in POSIX form that have surprised somebody.
TEST(Time, KeepsTimesInEveryZone) {
  for (const char* name : {"right/UTC", "right/Europe/Berlin"}) {
    ASSERT_EQ(expectZoneKeepsTimes(name), 27) << name << ": the runtime does not know the zone";
  }
  std::set<std::string> known;  // Many zones have several names.
  const std::filesystem::path folder(TARN_TEST_ZONES);
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
    if (!file.is_regular_file()) continue;
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string rules{std::istreambuf_iterator<char>(stream), {}};
    if (!rules.starts_with("TZif") || !known.insert(rules).second) continue;
    expectZoneKeepsTimes(file.path().lexically_relative(folder).string());
    if (HasFailure()) break;
  }
  EXPECT_GT(known.size(), 300U);
  for (const char* name : {"<-00>0<+01>-1,0/0,J365/23", "EST5EDT,0/0,J365/25", "ABC0:00:30", "ABC-0:00:30",
                           "CET-1CEST,M3.5.0,M10.5.0/3", "<+14>-14", "<-12>12"}) {
    expectZoneKeepsTimes(name);
  }
}

TEST(Time, AZoneOfSecondsBehindUtcHasAMinus) {
  const TimeZone zone("ABC0:00:30");
  EXPECT_EQ(at(86400).getIsoTimeStr(), "1970-01-01T23:59:30-00:00");
  EXPECT_EQ(isoText(at(86400)), "1970-01-02T00:00:00.000Z");
}

TEST(Time, ALeapSecondIsItselfWhereTheZoneKnowsIt) {
  const TimeZone zone("right/UTC");
  EXPECT_EQ(parseTime("2016-12-31T23:59:60Z").value().getTimeStr9(), "2016-12-31T23:59:60Z");
}
#endif

TEST(Time, SettingFieldsIsGuarded) {
  const TimeZone zone("UTC");
  EXPECT_EQ(local(1970, 1, 1, 12, 59, 59, 250).getLastTime(), 0.25);
  EXPECT_EQ(local(1970, 1, 1, 13).getLastTime(), 46800);
  EXPECT_EQ(parseTime("1970-01-01T00:00:01").value_or(at(7)), at(1));  // Reading ISO texts is not.
  EXPECT_EQ(local(1969, 13, 1, 0, 0, 0, -1500).getLastTime(), -1.5);   // As the fields say before they carry.
  EXPECT_EQ(local(3000, 12, 30, 48, -1, 59).getLastTime(), 32535215999);
  EXPECT_EQ(local(3000, 12, 30, 48).getLastTime() + local(3000, 12, 31, -24).getLastTime(), 0);
  EXPECT_EQ(local(2000, -4 - 12 * 40000, 1 + 14609700).getLastTime(), 933465600);  // 400 years have 146097 days.
}

TEST(Time, SetsEveryKindOfNumber) {
  const auto sets = [](auto... numbers) {
    return ((at(numbers).getLastTime() == static_cast<double>(numbers)) && ...);
  };
  using Long = std::numeric_limits<long>;
  EXPECT_TRUE(sets('d', static_cast<signed char>(-100), static_cast<unsigned char>(200), short{-30000},
                   static_cast<unsigned short>(60000), -2000000000, 4000000000U, Long::max() / 3, Long::min() / 3,
                   std::numeric_limits<unsigned long>::max() / 2, -5000000000LL, 18000000000000000000ULL, 12.5F,
                   -12.5));
  EXPECT_EQ(Time().getLastTime(), 0.0);
  EXPECT_EQ(at(12.5).getAbsLastTime(), 12.5);
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
  EXPECT_TRUE(none != none && !(none < none) && !(none >= none) && !none.isTimeOut(-1e300));
}

TEST(Time, StreamsKeepTheirFlags) {
  std::stringstream stream;
  const Time time = local(2024, 3, 5, 14, 7, 9, 42);
  stream << std::hex << std::showbase << std::setfill('*') << std::setw(5) << time << ' ';
  EXPECT_EQ(stream.str(), "**0x5.0x3.0x7e8 0xe:0x7:0x9:0x2a ");
  Time read;
  stream.ignore(2) >> read;
  EXPECT_EQ(read, time);
  stream.str("5.3.7e8 e:7:9:2a ");
  stream >> std::noskipws >> read;
  EXPECT_TRUE(stream.fail());  // The space before the hour.
}

TEST(Time, TheFirstLineThatIsOneIsFoundInLinearTime) {
  const TimeZone zone("UTC");
  const std::string good = "2024-03-05T14:07:09Z";
  for (const std::string lines : {"\n", "x\n", "2024-03-05T14:07:09Z\r\n", "2024-03-05T14:07:0\n9Z\n"}) {
    const auto make = [&](std::size_t count) {
      std::string text;
      while (text.size() < count) text += lines;
      return text + good + "\n2025-01-01T00:00:00-08:00";
    };
    expectLinear("lines", 50000, make, [&](const std::string& text) {
      EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(text).getTimeStr9(), good);
    });
  }
}

}  // namespace
