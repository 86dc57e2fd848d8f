#include "Tarn/time/Time.h"

#include <cstdio>
#include <ctime>

#include "Tarn/text/ValueText.h"
#include "bench/Bench.h"
#include "bench/Clocks.h"

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
#endif
};

using Convert = std::tm* (*)(const std::time_t*, std::tm*);

Input input(Convert convert = localtime_r) {
  Input input;
  input.time.setTime(kSeconds + 0.042);
  input.other.setTime(kSeconds + 0.043);
  convert(&input.seconds, &input.broken);
  return input;
}

auto converted(Convert convert) {
  return [convert](const Input& input) {
    std::tm broken;
    convert(&input.seconds, &broken);
    return broken;
  };
}

const auto local = converted(localtime_r);

std::pair<std::tm, std::tm> localTwice(const Input& input) { return {local(input), local(input)}; }

int year(const Input& input) { return input.time.getYear(); }

// A text that strftime, {fmt} and Abseil make of a layout in strftime's letters.
struct Layout {
  const char* name;
  std::string (Time::*ours)() const;
  std::string letters;
};

void registerLayouts() {
  for (const auto& [name, ours, letters] :
       std::vector<Layout>{{"2", &Time::getTimeStr2, "%d.%m.%Y at %H:%M:%S"},
                           {"4", &Time::getTimeStr4, "%H:%M:%S:042"},
                           {"5", &Time::getTimeStr5, "%d.%m.%Y"},
                           {"6", &Time::getTimeStr6, "%y%m%d"},
                           {"7", &Time::getTimeStr7, "%y%m%d_%H%M%S"},
                           {"8", &Time::getTimeStr8, "%Y-%m-%d %H:%M:%S"},
                           {"9", &Time::getTimeStr9, "%Y-%m-%dT%H:%M:%SZ"},
                           {"ISO", &Time::getIsoTimeStr, "%Y-%m-%dT%H:%M:%S+01:00"}}) {
    const bool isUtc = letters.ends_with('Z');
    auto text = bench::compare(std::string("time layout ") + name, input(isUtc ? gmtime_r : localtime_r),
                               [ours = ours](const Input& input) { return (input.time.*ours)(); });
    text.beyond(isUtc ? "gmtime_r" : "localtime_r", converted(isUtc ? gmtime_r : localtime_r));
    text.peer("strftime", [layout = letters](const Input& input) {
      std::array<char, 64> buffer;
      return std::string(buffer.data(), std::strftime(buffer.data(), buffer.size(), layout.c_str(), &input.broken));
    });
#if WITH_FMT
    text.peer("fmt::format", [layout = "{:" + letters + "}"](const Input& input) {
      return fmt::format(fmt::runtime(layout), input.broken);
    });
#endif
#if WITH_ABSL
    text.peer("absl::FormatTime", [layout = letters, zone = isUtc ? absl::UTCTimeZone() : absl::LocalTimeZone()](
                                      const Input& input) { return absl::FormatTime(layout, input.abslTime, zone); });
#endif
  }
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
  auto read = bench::compare("time from a text", std::string("5.3.2024 15:7:9:0"), [](const std::string& text) {
    return [&text, time = Time()]() mutable {
      ValueReader reader(text);
      reader >> time;
      return time.getLastTime();
    };
  });
  read.limit("clocks and zone", [](const std::string& /*text*/) { return bench::askClocksAndZone(kSeconds); });
  read.peer("sscanf and mktime", [](const std::string& text) {
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
