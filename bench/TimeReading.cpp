#include "Tarn/text/ValueReader.h"
#include "Tarn/time/Time.h"
#include "bench/Bench.h"
#include "bench/Texts.h"
#include "bench/TimePeers.h"

namespace {

using Numbers = std::array<int, 7>;
using Tarn::Time;

// What a function makes of each of some times, 42 milliseconds into their seconds.
template <class Make>
auto poolOf(Make make) {
  std::vector<decltype(make(Time()))> pool;
  for (const std::time_t seconds : bench::someSeconds()) {
    Time time;
    time.setTime(static_cast<double>(seconds) + 0.042);
    pool.push_back(make(time));
  }
  return pool;
}

// What all reading of local fields has to do at least, at about the times that it gives.
template <class Read>
auto twoConversions(Read read) {
  return [read](const auto& input) {
    return [plain = static_cast<std::time_t>(read(input).getLastTime())] { return bench::byTwoConversions(plain); };
  };
}

// A reading of texts beside their numbers by hand, put in order, with either conversion.
template <class Write, class Read, class Order>
void compareReading(const char* name, Write write, Read read, Order order) {
  bench::comparePool(name, poolOf(write), read)
      .limit("two conversions, clocks", twoConversions(read))
      .peer("digits, mktime, clocks", [order](const std::string& text) { return bench::byMktime(order(text)); })
      .peer("digits and cctz", [order](const std::string& text) { return bench::byCctz(order(text)); });
}

// Times that are there already are set and read: making one asks both clocks, too.
void registerFields() {
  const auto fields = [](const Time& time) { return bench::numbersOf(Tarn::isoText(time)); };
  const auto set = [](const Numbers& numbers) {
    static Time time;
    std::apply([](auto... number) { time.setTime(number...); }, numbers);
    return time;
  };
  bench::comparePool("setTime of fields", poolOf(fields), set)
      .limit("two conversions, clocks", twoConversions(set))
      .peer("mktime, clocks", [](const Numbers& numbers) { return bench::byMktime(numbers); })
      .peer("cctz", [](const Numbers& numbers) { return bench::byCctz(numbers); });
}

void registerTexts() {
  const auto dayFirst = [](const std::string& text) {
    Numbers numbers = bench::numbersOf(text);
    std::swap(numbers[0], numbers[2]);
    return numbers;
  };
  compareReading(
      "time from a text", bench::written<Time>,
      [](const std::string& text) {
        static Time time;
        Tarn::ValueReader reader(text);
        reader >> time;
        return time;
      },
      dayFirst);
  compareReading(
      "fromIsoTimeStrIgnoringTimeZone",
      [](const Time& time) { return time.getTimeStr9().replace(0, 19, Tarn::isoText(time), 0, 19); },
      [](const std::string& text) { return Time::fromIsoTimeStrIgnoringTimeZone(text); }, bench::numbersOf);
  const auto parse = [](const std::string& text) { return *Tarn::parseTime(text); };
  compareReading(
      "parseTime of local time", [](const Time& time) { return Tarn::isoText(time).substr(0, 23); }, parse,
      bench::numbersOf);
  const auto offsetOf = [](std::string_view text) {
    const Numbers offset = bench::numbersOf(text.substr(24));
    return offset[0] * 3600 + offset[1] * 60;
  };
  bench::comparePool("parseTime with an offset", poolOf(Tarn::isoText), parse)
      .peer("digits, timegm, clocks",
            [offsetOf](const std::string& text) {
              return bench::byMktime<timegm>(bench::numbersOf(text), offsetOf(text));
            })
      .peer("digits and cctz", [offsetOf](const std::string& text) {
        return bench::byCctz(bench::numbersOf(text), cctz::utc_time_zone(), offsetOf(text));
      });
}

}  // namespace

void bench::registerCases() {
  registerFields();
  registerTexts();
}
