#include "Tarn/time/Time.h"

#include <algorithm>
#include <array>
#include <compare>
#include <string_view>

#include "bench/Bench.h"
#include "bench/Texts.h"
#include "bench/TimePeers.h"

namespace {

using bench::comparePool;
using Tarn::Time;

struct Input {
  Time time;
  std::time_t seconds;
  int millisecond;
};

std::vector<Input> pool() {
  std::vector<Input> pool;
  for (const std::time_t seconds : bench::someSeconds()) {
    Input& input = pool.emplace_back();
    input.seconds = seconds;
    input.millisecond = static_cast<int>(pool.size() * 389 % 1000);
    input.time.setTime(static_cast<double>(seconds) + input.millisecond / 1000.0);
  }
  return pool;
}

using Convert = std::tm (*)(const Input& input);

std::tm local(const Input& input) {
  std::tm fields;
  localtime_r(&input.seconds, &fields);
  return fields;
}

std::tm utc(const Input& input) {
  std::tm fields;
  gmtime_r(&input.seconds, &fields);
  return fields;
}

// What cctz gives of the fields that texts are made of.
std::tm localByCctz(const Input& input) {
  const auto found = bench::localZone().lookup(std::chrono::system_clock::from_time_t(input.seconds));
  std::tm fields{};
  fields.tm_year = static_cast<int>(found.cs.year()) - 1900;
  fields.tm_mon = found.cs.month() - 1;
  fields.tm_mday = found.cs.day();
  fields.tm_hour = found.cs.hour();
  fields.tm_min = found.cs.minute();
  fields.tm_sec = found.cs.second();
  fields.tm_gmtoff = found.offset;
  return fields;
}

// A layout in the letters of strftime, as an argument of templates. The zone's offset, %z, has a colon here, and %L is
// the millisecond.
template <std::size_t kSize>
struct Layout {
  consteval Layout(const char (&text)[kSize]) { std::copy_n(text, kSize, letters); }
  char letters[kSize];
};

char* putTwo(char* to, int number) {
  to[0] = static_cast<char>('0' + number / 10);
  to[1] = static_cast<char>('0' + number % 10);
  return to + 2;
}

char* putOffset(char* to, long offset) {
  *to = '+';
  to = putTwo(to + 1, static_cast<int>(offset / 3600));
  *to = ':';
  return putTwo(to + 1, static_cast<int>(offset / 60 % 60));
}

// What a letter stands for; without its leading zeros if it has a minus.
template <char kLetter, bool kHasMinus>
char* putField(char* to, const std::tm& t, int millisecond) {
  if (kLetter == 'z') return putOffset(to, t.tm_gmtoff);
  if (kLetter == 'L') {
    if (!kHasMinus || millisecond > 99) *to++ = static_cast<char>('0' + millisecond / 100);
    if (!kHasMinus || millisecond > 9) return putTwo(to, millisecond % 100);
    *to = static_cast<char>('0' + millisecond);
    return to + 1;
  }
  if (kLetter == 'Y') return putTwo(putTwo(to, t.tm_year / 100 + 19), t.tm_year % 100);
  const int number = kLetter == 'd'   ? t.tm_mday
                     : kLetter == 'm' ? t.tm_mon + 1
                     : kLetter == 'y' ? t.tm_year % 100
                     : kLetter == 'H' ? t.tm_hour
                     : kLetter == 'M' ? t.tm_min
                                      : t.tm_sec;
  if (!kHasMinus || number > 9) return putTwo(to, number);
  *to = static_cast<char>('0' + number);
  return to + 1;
}

// Digits by hand: what one writes who knows the layout when compiling.
template <Layout kLayout, std::size_t kAt = 0>
char* put(char* to, const std::tm& t, int millisecond) {
  constexpr const char* kNext = kLayout.letters + kAt;
  if constexpr (*kNext == '\0') {
    return to;
  } else if constexpr (*kNext == '%') {
    constexpr bool kHasMinus = kNext[1] == '-';
    constexpr std::size_t kLetterAt = kHasMinus ? 2 : 1;
    char* const end = putField<kNext[kLetterAt], kHasMinus>(to, t, millisecond);
    return put<kLayout, kAt + kLetterAt + 1>(end, t, millisecond);
  } else {
    *to = *kNext;
    return put<kLayout, kAt + 1>(to + 1, t, millisecond);
  }
}

template <Layout kLayout, Convert convert>
std::string byHand(const Input& input) {
  std::array<char, 64> buffer;
  const std::tm fields = convert(input);
  return {buffer.data(), put<kLayout>(buffer.data(), fields, input.millisecond)};
}

template <Layout kLayout, Convert convert>
std::string byStrftime(const Input& input) {
  std::array<char, 64> buffer;
  const std::tm fields = convert(input);
  return {buffer.data(), std::strftime(buffer.data(), buffer.size(), kLayout.letters, &fields)};
}

template <Layout kLayout, Convert convert = local>
void compareText(const std::string& name, std::string (*ours)(const Input&)) {
  auto text = comparePool(name, pool(), ours);
  text.limit("conversion, copy", [ours](const Input& input) {
    return [&input, text = ours(input)] {
      benchmark::DoNotOptimize(convert(input));
      return text;
    };
  });
  text.peer("conversion, digits", byHand<kLayout, convert>);
  if constexpr (convert == local) text.peer("cctz, digits", byHand<kLayout, localByCctz>);
  if constexpr (std::string_view(kLayout.letters).find_first_of("zL") == std::string_view::npos) {
    text.peer("conversion, strftime", byStrftime<kLayout, convert>);
  }
}

template <std::string (Time::*kText)() const>
std::string textOf(const Input& input) {
  return (input.time.*kText)();
}

void registerTexts() {
  compareText<"%d.%m.%Y at %H:%M:%S">("time layout 2", textOf<&Time::getTimeStr2>);
  compareText<"%H:%M:%S:%L">("time layout 4", textOf<&Time::getTimeStr4>);
  compareText<"%d.%m.%Y">("time layout 5", textOf<&Time::getTimeStr5>);
  compareText<"%y%m%d">("time layout 6", textOf<&Time::getTimeStr6>);
  compareText<"%y%m%d_%H%M%S">("time layout 7", textOf<&Time::getTimeStr7>);
  compareText<"%Y-%m-%d %H:%M:%S">("time layout 8", textOf<&Time::getTimeStr8>);
  compareText<"%Y-%m-%dT%H:%M:%SZ", utc>("time layout 9", textOf<&Time::getTimeStr9>);
  compareText<"%Y-%m-%dT%H:%M:%S%z">("time layout ISO", textOf<&Time::getIsoTimeStr>);
  compareText<"%Y-%m-%dT%H:%M:%S.%L%z">("isoText", [](const Input& input) { return Tarn::isoText(input.time); });
  compareText<"%-d.%-m.%Y %-H:%-M:%-S:%-L">("time to a buffer",
                                            [](const Input& input) { return bench::written(input.time); });
}

int year(const Input& input) { return input.time.getYear(); }
int localYear(const Input& input) { return local(input).tm_year + 1900; }
int cctzYear(const Input& input) { return localByCctz(input).tm_year + 1900; }

using Pair = std::pair<Input, Input>;

// The order of what clocks show, to the millisecond.
int orderByLocaltime(const Pair& pair) {
  const auto shown = [](const Input& input) {
    const std::tm t = local(input);
    return std::array{t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, input.millisecond};
  };
  const auto order = shown(pair.first) <=> shown(pair.second);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

void registerFields() {
  std::vector<Pair> pairs;
  for (const Input& input : pool()) pairs.emplace_back(pairs.empty() ? input : pairs.back().second, input);
  comparePool("time compare", pairs, [](const Pair& pair) {
    return Time::compare(pair.first.time, pair.second.time);
  }).peer("localtime_r", orderByLocaltime);
  comparePool("time getter", pool(), year).peer("localtime_r", localYear).peer("cctz", cctzYear);
  comparePool("time getter, two threads", pool(), year)
      .threads(2)
      .peer("localtime_r", localYear)
      .peer("cctz", cctzYear);
  constexpr Layout kLayout8 = "%Y-%m-%d %H:%M:%S";
  comparePool("time layout 8, two threads", pool(), textOf<&Time::getTimeStr8>)
      .threads(2)
      .peer("conversion, digits", byHand<kLayout8, local>)
      .peer("cctz, digits", byHand<kLayout8, localByCctz>);
}

}  // namespace

void bench::registerCases() {
  registerTexts();
  registerFields();
}
