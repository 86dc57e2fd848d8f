#include "Tarn/time/Time.h"

#include <cstdio>
#include <ctime>

#include "Tarn/text/ValueText.h"
#include "bench/Bench.h"

#if WITH_ABSL
#include <absl/time/time.h>
#endif
#if WITH_FMT
#include <fmt/chrono.h>
#endif

namespace {

using Tarn::Time;

constexpr std::time_t kSeconds = 1709647629;  // 2024-03-05 14:07:09 UTC.

struct Input {
  Time time;
  Time other;
  std::time_t seconds = kSeconds;
  std::tm broken{};
#if WITH_ABSL
  absl::Time abslTime = absl::FromTimeT(kSeconds) + absl::Milliseconds(42);
  absl::TimeZone zone = absl::LocalTimeZone();
#endif
};

Input input() {
  Input input;
  input.time.setTime(kSeconds + 0.042);
  input.other.setTime(kSeconds + 0.043);
  localtime_r(&input.seconds, &input.broken);
  return input;
}

std::tm local(const Input& input) {
  std::tm broken;
  localtime_r(&input.seconds, &broken);
  return broken;
}

std::pair<std::tm, std::tm> localTwice(const Input& input) { return {local(input), local(input)}; }

int year(const Input& input) { return input.time.getYear(); }

// A text as our function, strftime, {fmt} and Abseil make it of layouts in strftime's letters.
struct Layout {
  const char* name;
  std::string (Time::*ours)() const;
  const char* layout;
  const char* fmtLayout;
  const char* abslLayout;
};
constexpr Layout kLayouts[] = {
    {"2", &Time::getTimeStr2, "%d.%m.%Y at %H:%M:%S", "{:%d.%m.%Y at %H:%M:%S}", "%d.%m.%Y at %H:%M:%S"},
    {"4", &Time::getTimeStr4, "%H:%M:%S:042", "{:%H:%M:%S:042}", "%H:%M:%S:042"},
    {"5", &Time::getTimeStr5, "%d.%m.%Y", "{:%d.%m.%Y}", "%d.%m.%Y"},
    {"6", &Time::getTimeStr6, "%y%m%d", "{:%y%m%d}", "%y%m%d"},
    {"7", &Time::getTimeStr7, "%y%m%d_%H%M%S", "{:%y%m%d_%H%M%S}", "%y%m%d_%H%M%S"},
    {"8", &Time::getTimeStr8, "%Y-%m-%d %H:%M:%S", "{:%Y-%m-%d %H:%M:%S}", "%Y-%m-%d %H:%M:%S"},
    {"ISO", &Time::getIsoTimeStr, "%Y-%m-%dT%H:%M:%S+01:00", "{:%Y-%m-%dT%H:%M:%S+01:00}", "%Y-%m-%dT%H:%M:%S%Ez"},
};

std::string strftimeText(const char* layout, const std::tm& broken) {
  std::array<char, 64> text;
  return {text.data(), std::strftime(text.data(), text.size(), layout, &broken)};
}

void registerLayouts() {
  for (const Layout& layout : kLayouts) {
    auto text = bench::compare(std::string("time layout ") + layout.name, input(),
                               [ours = layout.ours](const Input& input) { return (input.time.*ours)(); });
    text.beyond("localtime_r", local);
    text.peer("strftime", [layout](const Input& input) { return strftimeText(layout.layout, input.broken); });
#if WITH_FMT
    text.peer("fmt::format",
              [layout](const Input& input) { return fmt::format(fmt::runtime(layout.fmtLayout), input.broken); });
#endif
#if WITH_ABSL
    text.peer("absl::FormatTime",
              [layout](const Input& input) { return absl::FormatTime(layout.abslLayout, input.abslTime, input.zone); });
#endif
  }
  auto utc = bench::compare("time layout 9", input(), [](const Input& input) { return input.time.getTimeStr9(); });
  utc.beyond("gmtime_r", [](const Input& input) {
    std::tm broken;
    gmtime_r(&input.seconds, &broken);
    return broken;
  });
  utc.peer("strftime", [broken = *std::gmtime(&kSeconds)](const Input& /*input*/) {
    return strftimeText("%Y-%m-%dT%H:%M:%SZ", broken);
  });
#if WITH_FMT
  utc.peer("fmt::format", [broken = *std::gmtime(&kSeconds)](const Input& /*input*/) {
    return fmt::format("{:%Y-%m-%dT%H:%M:%SZ}", broken);
  });
#endif
#if WITH_ABSL
  utc.peer("absl::FormatTime", [](const Input& input) {
    return absl::FormatTime("%Y-%m-%dT%H:%M:%SZ", input.abslTime, absl::UTCTimeZone());
  });
#endif
}

void registerOperators() {
  using namespace Tarn;
  auto write = bench::compare("time to a buffer", input(), [](const Input& input) {
    std::string buffer;
    buffer << input.time;
    return buffer;
  });
  write.beyond("localtime_r", local);
  write.peer("snprintf", [](const Input& input) {
    const std::tm& broken = input.broken;
    std::array<char, 64> text;
    const int size = std::snprintf(text.data(), text.size(), "%d.%d.%d %d:%d:%d:%d", broken.tm_mday, broken.tm_mon + 1,
                                   broken.tm_year + 1900, broken.tm_hour, broken.tm_min, broken.tm_sec, 42);
    return std::string(text.data(), static_cast<std::size_t>(size));
  });
#if WITH_FMT
  write.peer("fmt::format", [](const Input& input) {
    const std::tm& broken = input.broken;
    return fmt::format("{}.{}.{} {}:{}:{}:{}", broken.tm_mday, broken.tm_mon + 1, broken.tm_year + 1900, broken.tm_hour,
                       broken.tm_min, broken.tm_sec, 42);
  });
#endif
  bench::compare("time from a text", std::string("5.3.2024 15:7:9:0"), [](const std::string& text) {
    ValueReader reader(text);
    Time time;
    reader >> time;
    return time.getLastTime();
  }).peer("sscanf and mktime", [](const std::string& text) {
    std::tm broken{};
    int millisecond = 0;
    std::sscanf(text.c_str(), "%d.%d.%d %d:%d:%d:%d", &broken.tm_mday, &broken.tm_mon, &broken.tm_year, &broken.tm_hour,
                &broken.tm_min, &broken.tm_sec, &millisecond);
    broken.tm_mon -= 1;
    broken.tm_year -= 1900;
    broken.tm_isdst = -1;
    return static_cast<double>(std::mktime(&broken)) + millisecond / 1000.0;
  });
}

void registerFields() {
  bench::compare("Time::compare", input(), [](const Input& input) {
    return Time::compare(input.time, input.other);
  }).limit("two localtime_r", localTwice);
  bench::compare("time getter", input(), year).limit("localtime_r", local);
}

// What a call costs in each of two threads that make it at once.
template <class Call>
void registerThreads(const std::string& name, Call call) {
  bench::compare(name + ", two threads", input(), call)
      .threads(2)
      .peer("one thread", call)
      .threads(1)
      .limit("localtime_r", local)
      .threads(2);
}

void registerThreads() {
  registerThreads("time getter", year);
  registerThreads("time layout 8", [](const Input& input) { return input.time.getTimeStr8(); });
  registerThreads("localtime_r", [](const Input& input) { return local(input).tm_year; });
}

}  // namespace

void bench::registerCases() {
  registerLayouts();
  registerOperators();
  registerFields();
  registerThreads();
}
