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

// A reading of texts beside their numbers by hand, put in order, with either conversion.
template <class Write, class Read, class Order>
void compareReading(const char* name, Write write, Read read, Order order) {
  bench::comparePool(name, poolOf(write), read)
      .peer("digits, mktime, clocks", [order](const std::string& text) { return bench::byMktime(order(text)); })
      .peer("digits and cctz", [order](const std::string& text) { return bench::byCctz(order(text)); });
}

void registerFields() {
  const auto fields = [](const Time& time) { return bench::numbersOf(Tarn::isoText(time)); };
  bench::comparePool("setTime of fields", poolOf(fields),
                     [](const Numbers& numbers) {
                       Time time;
                       std::apply([&time](auto... number) { time.setTime(number...); }, numbers);
                       return time;
                     })
      .peer("mktime, clocks", bench::byMktime)
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
        Time time;
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
  bench::comparePool("parseTime with an offset", poolOf(Tarn::isoText), parse)
      .peer("digits and cctz", [](const std::string& text) {
        const Numbers offset = bench::numbersOf(std::string_view(text).substr(24));
        return bench::byCctz(bench::numbersOf(text), cctz::utc_time_zone(), offset[0] * 3600 + offset[1] * 60);
      });
}

}  // namespace

void bench::registerCases() {
  registerFields();
  registerTexts();
}
