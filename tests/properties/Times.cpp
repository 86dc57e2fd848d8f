// Times as numbers, as fields and as text, against the runtime and the standard library. Input: a zone, the bytes of a
// time, of another's choice and of seven fields, then a text.
#include <climits>
#include <cmath>
#include <iterator>

#include "tests/Plain.h"
#include "tests/TimeZones.h"
#include "tests/properties/Properties.h"

namespace {

using namespace Tarn;
using Fields = std::array<int, 7>;

constexpr std::int64_t kLast = 32535215999;

// Seconds since 1970-01-01 of a clock without a zone. The calendar repeats itself every 400 years.
std::int64_t plainSeconds(const Fields& f) {
  const std::int64_t month = f[0] * std::int64_t{12} + f[1] - 1;
  const std::int64_t ofEra = (month % 4800 + 4800) % 4800;
  const std::chrono::sys_days first(std::chrono::year(static_cast<int>(ofEra / 12)) / static_cast<int>(ofEra % 12 + 1) /
                                    1);
  const std::int64_t days = first.time_since_epoch().count() + (month - ofEra) / 4800 * 146097 + f[2] - 1;
  return ((days * 24 + f[3]) * 60 + f[4]) * 60 + f[5];
}

Fields fieldsOf(const std::tm& f, int millisecond) {
  return {f.tm_year + 1900, f.tm_mon + 1, f.tm_mday, f.tm_hour, f.tm_min, f.tm_sec, millisecond};
}

// What the runtime makes of local clocks that show a plain second; nothing outside the calendar.
std::optional<std::time_t> runtimeSeconds(std::int64_t plain, std::tm& fields) {
  if (plain < -172800 || plain > kLast + 172800) return std::nullopt;
  const auto second = static_cast<int>((plain + 172800) % 86400);
  fields = {};
  fields.tm_year = 70;
  fields.tm_mday = static_cast<int>((plain - second) / 86400) + 1;
  fields.tm_hour = second / 3600;
  fields.tm_min = second / 60 % 60;
  fields.tm_sec = second % 60;
  fields.tm_isdst = -1;
  const std::time_t seconds = std::mktime(&fields);
  return seconds >= 0 && seconds <= kLast ? std::optional(seconds) : std::nullopt;
}

// Whether local clocks show the plain second then. Where the runtime's choice shows another, that or a neighbour.
bool isLocal(std::int64_t plain, double then) {
  std::tm asked;
  const std::optional<std::time_t> chosen = runtimeSeconds(plain, asked);
  const auto seconds = static_cast<std::time_t>(std::floor(then));
  if (!chosen || seconds < 0 || seconds > kLast) return false;
  const auto shows = [plain](std::time_t at) { return plainSeconds(fieldsOf(*std::localtime(&at), 0)) == plain; };
  return shows(seconds) || seconds == *chosen || (!shows(*chosen) && std::abs(seconds - *chosen) <= 7200);
}

void requireSet(const Fields& f) {
  Time time;
  time.setTime(f[0], f[1], f[2], f[3], f[4], f[5], f[6]);
  const double whole = std::round(time.getLastTime() - f[6] / 1000.0);
  require(std::abs(time.getLastTime() - f[6] / 1000.0 - whole) < 2e-5, "milliseconds are added");
  const bool isEarly = f[0] < 1970 || (f[0] == 1970 && f[1] == 1 && f[2] == 1 && f[3] <= 12);
  const bool isLate = f[0] > 3000 || (f[0] == 3000 && f[1] == 12 && f[2] == 31);
  std::tm asked;
  const bool isSet = !isEarly && !isLate && runtimeSeconds(plainSeconds(f), asked);
  reached("fields outside the calendar", !isSet && !isEarly && !isLate);
  require(isSet ? isLocal(plainSeconds(f), whole) : whole == 0, "local clocks show what was set");
}

std::string printed(const char* format, auto... numbers) {
  char text[100];
  return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, numbers...))};
}

struct Layout {
  std::string (Time::*text)() const;
  const char *format, *zeros;
};
constexpr Layout kLayouts[] = {
    {&Time::getTimeStr, "%c", ""},
    {&Time::getTimeStr2, "%d.%m.%Y at %H:%M:%S", "00.00.0000 at 00:00:00"},
    {&Time::getTimeStr3, "%A, %B %d, %Y at %H:%M:%S", ""},
    {&Time::getTimeStr5, "%d.%m.%Y", "00.00.0"},
    {&Time::getTimeStr6, "%y%m%d", "000000"},
    {&Time::getTimeStr7, "%y%m%d_%H%M%S", "000000_000000"},
    {&Time::getTimeStr8, "%Y-%m-%d %H:%M:%S", "0000-00-00 00:00:00"},
};

// Every layout of a time and its fields. Outside the calendar all are zero.
void requireTexts(double number) {
  Time time;
  time.setTime(number);
  const double ticks = number * 1e7;
  const bool isCounted = ticks >= -0x1p63 && ticks < 0x1p63;
  const std::time_t seconds = isCounted ? static_cast<std::int64_t>(ticks) / 10000000 : -1;
  const double fraction = number - static_cast<double>(seconds);
  const int millisecond = isCounted ? std::min(static_cast<int>(std::round(fraction * 1000)), 999) : 0;
  const bool isShown = seconds >= 0 && seconds <= kLast;
  const std::tm local = isShown ? *std::localtime(&seconds) : std::tm{};
  const Fields f = isShown ? fieldsOf(local, millisecond) : Fields{0, 0, 0, 0, 0, 0, millisecond};
  require(Fields{time.getYear(), time.getMonth(), time.getDay(), time.getHour(), time.getMin(), time.getSec(),
                 time.getMSec()} == f,
          "getters give the fields");
  const std::tm all = time.getTimeStruct();
  require(fieldsOf(all, 0) == fieldsOf(local, 0) && all.tm_yday == local.tm_yday && all.tm_isdst == local.tm_isdst,
          "the fields are the runtime's");
  for (const auto& [text, format, zeros] : kLayouts) {
    char expected[200] = "";
    if (isShown) std::strftime(expected, sizeof expected, format, &local);
    require((time.*text)() == (isShown ? expected : zeros), format);
  }
  require(time.getTimeStr4() ==
              printed(millisecond < 0 ? "%02d:%02d:%02d:00%d" : "%02d:%02d:%02d:%03d", f[3], f[4], f[5], millisecond),
          "the time of day has its milliseconds");
  const auto isoOf = [](const Fields& g) {
    return printed("%04d-%02d-%02dT%02d:%02d:%02d", g[0], g[1], g[2], g[3], g[4], g[5]);
  };
  require(time.getTimeStr9() == isoOf(isShown ? fieldsOf(*std::gmtime(&seconds), 0) : Fields{}) + 'Z', "UTC");
  const int offset = isShown ? static_cast<int>(plainSeconds(f) - seconds) / 60 : 0;  // In kZones, of whole minutes.
  const std::string zone =
      offset == 0 ? "Z" : printed("%c%02d:%02d", offset < 0 ? '-' : '+', std::abs(offset) / 60, std::abs(offset) % 60);
  require(time.getIsoTimeStr() == isoOf(f) + zone, "local time has its offset");
  require(isoText(time) == isoOf(f) + printed(".%03d", isShown ? std::max(millisecond, 0) : 0) + zone,
          "so it has with "
          "milliseconds");
  require(written(time) == printed("%d.%d.%d %d:%d:%d:%d", f[2], f[1], f[0], f[3], f[4], f[5], f[6]),
          "a buffer's form");
  std::ostringstream stream;
  stream << time;
  require(stream.str() == written(time), "a stream's form");
  reached("a time before the epoch that is shown", isShown && number < 0);
}

// Text that is written reads back: the instant with an offset, otherwise the fields, where setting does not guard them.
void requireBack(double number) {
  Time time;
  time.setTime(number);
  if (time.getYear() == 0 || number < 0) return;
  const std::optional<Time> iso = parseTime(isoText(time));
  require(iso && std::abs(iso->getLastTime() - number) < 0.00101, "an ISO time comes back to the millisecond");
  if (time.getYear() < 1971 || time.getYear() > 2999) return;
  Time back;
  std::string buffer = written(time);
  buffer >> back;
  require(Time::compare(back, time) == 0 && buffer.empty(), "a time comes back");
  const Time local = Time::fromIsoTimeStrIgnoringTimeZone(time.getIsoTimeStr());
  require(local.getTimeStr8() == time.getTimeStr8(), "an ISO time comes back");
}

bool isSame(const Time& a, const Time& b) { return a.getLastTime() == b.getLastTime(); }

void requireParsed(const std::string& text) {
  require(isSame(Time::fromIsoTimeStrIgnoringTimeZone(text), byPattern(text)), "the ISO reader is its pattern");
  static const std::regex kForm(
      R"((\d{4})-(\d{2})-(\d{2})[Tt ](\d{2}):(\d{2}):(\d{2})(\.\d+)?([Zz]|([+-])(\d{2}):(\d{2}))?)");
  const std::optional<Time> time = parseTime(text);
  std::smatch match;
  if (text.size() > 200 || !std::regex_match(text, match, kForm)) return require(!time || text.size() > 200, "no form");
  const auto field = [&match](std::size_t group) { return match[group].matched ? std::stoi(match[group]) : 0; };
  const Fields f = {field(1), field(2), field(3), field(4), field(5), field(6), 0};
  const std::chrono::year_month_day date{std::chrono::year(f[0]), std::chrono::month(static_cast<unsigned>(f[1])),
                                         std::chrono::day(static_cast<unsigned>(f[2]))};
  bool isTime = date.ok() && f[3] <= 23 && f[4] <= 59 && f[5] <= 60 && field(10) <= 23 && field(11) <= 59;
  const bool isLeap = isTime && f[5] == 60;
  const double fraction = std::stod('0' + match[7].str());
  std::int64_t plain = plainSeconds(f);
  if (match[8].matched) {
    plain -= (match[9] == "-" ? -60 : 60) * (field(10) * 60 + field(11));
    isTime = isTime && (!isLeap || plain % 86400 == 0);
    const double expected = static_cast<double>(plain) + fraction;
    require(!time || std::abs(time->getLastTime() - expected) <= 1.5e-7 + std::abs(expected) * 0x1p-52, "its instant");
  } else {
    std::tm asked;
    isTime = isTime && !isLeap && f[0] >= 1970 && f[0] <= 3000 && runtimeSeconds(plain, asked);
    require(!time || isLocal(plain, std::round(time->getLastTime() - fraction)), "its local time");
  }
  require(time.has_value() == isTime, "what a time is");
  reached("a leap second", isLeap && isTime);
  reached("a fraction of a second", isTime && match[7].matched);
}

// Mostly times; each part may be another, now and then one that no time has.
std::string anyIsoText(Input& input) {
  const std::vector<const char*> parts[] = {
      {"2024-03-05", "1970-01-01", "3000-12-31", "2024-02-29", "2023-02-29",  "1900-02-29", "2000-02-29",
       "2024-04-31", "1969-12-31", "3001-01-01", "0000-01-01", "9999-12-31",  "2024-13-01", "2024-00-05",
       "2024-12-00", "2024-12-32", "2024-03-31", "24-03-05",   "+2024-03-05", "2024/03-05"},
      {"T", "t", " ", "x", ""},
      {"14:07:09", "23:59:60", "00:59:60", "00:00:00", "23:59:59", "24:00:00", "14:60:00", "14:07:61", "4:07:09"},
      {"", ".5", ".0420000000000000000000000001", ".9999", ".1234567", ".99999999", ".", ","},
      {"Z", "", "z", "+01:00", "-23:59", "+00:00", "+24:00", "+00:60", "+0100", "+01", "-00:01"}};
  std::string text;
  for (const auto& part : parts) {
    const std::size_t choice = input.below(2 * part.size());
    text += part[choice < part.size() ? choice : 0];
  }
  return text;
}

// The twelve reads of a stream, where what could not be read counts as 0.
void requireStreamed(const std::string& text) {
  std::istringstream plain(text);
  Fields f{};
  char separator = '\0';
  for (std::size_t i = 0; i < f.size(); ++i) {
    if (i != 0 && i != 3) plain >> separator;
    if (!(plain >> f[i])) f[i] = 0;
  }
  Time expected;
  expected.setTime(f[2], f[1], f[0], f[3], f[4], f[5], f[6]);
  std::istringstream stream(text);
  Time time;
  stream >> time;
  require(isSame(time, expected) && stream.fail() == plain.fail(), "a stream reads twelve values");
}

// Where something changes: clocks, the calendar's ends, halves of milliseconds, a 64-bit count of 100 ns.
double anyTime(std::uint64_t choice) {
  const std::uint64_t number = choice / 16;
  const auto near = static_cast<double>(number % 20001) - 10000;
  const double half = near / 2000 + static_cast<double>(number / 20001 % 2000000000);
  const double times[] = {1711846800 + near,
                          1729990800 + near,
                          near / 2000,
                          static_cast<double>(kLast) + near / 2000,
                          std::nextafter(half, number % 2 == 0 ? 1e10 : -1e10),
                          std::copysign(std::nextafter(922337203685.4775808, 1e12 * double(number % 3)), near)};
  return choice % 16 < std::size(times) ? times[choice % 16] : static_cast<double>(number % (kLast * 1000)) / 1000;
}

// One or two numbers of any size beside ordinary ones, or those at which setting is guarded.
Fields anyFields(const Fields& numbers, Input& choices) {
  Fields fields = numbers;
  if (choices.below(8) == 0) return fields;
  constexpr Fields kUsual[] = {{2000, 6, 15, 12, 30, 30, 42}, {2024, 3, 31, 2, 30, 0, 0}, {1970, 1, 1, 12, 59, 59, 5},
                               {3000, 12, 30, 23, 59, 59, 0}, {1970, 1, 2, -24, 0, 0, 0}, {3000, 12, 30, 48, 0, 0, 0}};
  fields = kUsual[choices.below(std::size(kUsual))];
  for (std::size_t i = 0; i < 2; ++i) {
    const std::size_t at = choices.below(7);
    const std::int64_t sum = fields[at] + std::int64_t{numbers[i] >> choices.below(32)};
    fields[at] = static_cast<int>(std::clamp<std::int64_t>(sum, INT_MIN, INT_MAX));
  }
  return fields;
}

}  // namespace

void checkTimes(Input input) {
  const TimeZone zone(kZones[input.below(std::size(kZones))]);
  for (const double seconds : {input.number<double>(), anyTime(input.number<std::uint64_t>())}) {
    requireTexts(seconds);
    requireBack(seconds);
  }
  const auto bytes = input.number<std::array<char, 28>>();
  Fields numbers;
  std::memcpy(numbers.data(), bytes.data(), bytes.size());
  Input choices(std::string_view(bytes.data(), bytes.size()));
  requireSet(anyFields(numbers, choices));
  std::string text = anyIsoText(choices);
  requireParsed(text);
  requireParsed(text.replace(choices.below(text.size()), choices.below(2), choices.below(2), choices.number<char>()));
  text = input.rest();
  requireParsed(text);
  requireStreamed(text);
}
