// Times as numbers, as fields and as text. Input: a zone, the bytes of a time and of seven fields, then a text.
#include <cmath>
#include <iterator>

#include "tests/Plain.h"
#include "tests/TimeZones.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;

// Every layout of it, and its fields: nothing here may be undefined, whatever the time.
void requireTexts(const Time& time) {
  const std::tm fields = time.getTimeStruct();
  const bool isShown = fields.tm_mday != 0;
  require(time.getYear() == (isShown ? fields.tm_year + 1900 : 0) &&
              time.getMonth() == (isShown ? fields.tm_mon + 1 : 0) && time.getDay() == fields.tm_mday &&
              time.getHour() == fields.tm_hour && time.getMin() == fields.tm_min && time.getSec() == fields.tm_sec,
          "getters give the fields");
  require(std::abs(time.getMSec()) <= 1000, "milliseconds lie within a second");
  const std::string day = time.getTimeStr8().substr(0, 10);
  require(time.getTimeStr().empty() != isShown && time.getTimeStr3().empty() != isShown, "words are only for dates");
  require(time.getTimeStr2().substr(0, 10) == day.substr(8, 2) + '.' + day.substr(5, 2) + '.' + day.substr(0, 4),
          "layouts agree on the day");
  require(time.getTimeStr7() == time.getTimeStr6() + '_' + time.getTimeStr8().substr(11, 2) +
                                    time.getTimeStr8().substr(14, 2) + time.getTimeStr8().substr(17),
          "layouts agree on the time");
  require(time.getTimeStr4().substr(0, 9) == time.getTimeStr8().substr(11) + ':', "layouts agree on the second");
  require(time.getTimeStr9().size() == 20 && time.getTimeStr9().back() == 'Z', "UTC has its form");
  require(!time.getTimeStr5().empty(), "a short date is a text");
}

// Text that is written reads back, where setting does not guard it.
void requireBack(const Time& time) {
  std::string buffer;
  std::ostringstream stream;
  buffer << time;
  stream << time;
  require(buffer == stream.str(), "buffer and stream write the same");
  if (time.getYear() < 1971 || time.getYear() > 2999) return;
  Time back;
  buffer >> back;
  require(Time::compare(back, time) == 0 && buffer.empty(), "a time comes back");
  const Time iso = Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr());
  require(iso.getTimeStr8() == time.getTimeStr8(), "an ISO time comes back");
}

bool isSame(const Time& a, const Time& b) { return a.getLastTime() == b.getLastTime(); }

// The twelve reads of a stream are those of the C library, but for numbers that an int cannot hold and for NULs.
void requireStreamed(const std::string& text) {
  const auto isDigit = [](char c, char) { return c >= '0' && c <= '9'; };
  if (text.find('\0') != std::string::npos) return;
  if (std::search_n(text.begin(), text.end(), 10, '0', isDigit) != text.end()) return;
  std::array<int, 7> f{};
  std::array<char, 5> c{};
  std::sscanf(text.c_str(), "%d %c%d %c%d %d %c%d %c%d %c%d", &f[0], &c[0], &f[1], &c[1], &f[2], &f[3], &c[2], &f[4],
              &c[3], &f[5], &c[4], &f[6]);
  Time expected;
  expected.setTime(f[2], f[1], f[0], f[3], f[4], f[5], f[6]);
  std::istringstream stream(text);
  Time time;
  stream >> time;
  require(isSame(time, expected), "a stream reads what scanf reads");
}

}  // namespace

void checkTimes(Input input) {
  const TimeZone zone(kZones[input.below(std::size(kZones))]);
  Time time;
  for (const double seconds :
       {input.number<double>(), static_cast<double>(input.number<std::uint64_t>() % 32535216000000) / 1000}) {
    time.setTime(seconds);
    requireTexts(time);
    requireBack(time);
  }
  const auto fields = input.number<std::array<int, 7>>();
  const auto& [year, month, day, hour, minute, second, millisecond] = fields;
  time.setTime(year, month, day, hour, minute, second, millisecond);
  requireTexts(time);
  requireBack(time);
  const std::string text = input.rest();
  require(isSame(Time::fromIsoTimeStrIgnoringTimeZone(text), byPattern(text)), "the ISO reader is its pattern");
  requireStreamed(text);
}
