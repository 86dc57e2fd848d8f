#include <gtest/gtest.h>

#include "Tarn/time/Time.h"
#include "tests/Generate.h"
#include "tests/Plain.h"
#include "tests/TimeZones.h"

namespace {

using Tarn::Time;

void expectAsPattern(const std::string& text) {
  EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(text).getLastTime(), byPattern(text).getLastTime())
      << testing::PrintToString(text);
}

TEST(IsoTime, EveryTextThatIsNearlyGood) {
  const TimeZone zone("Europe/Berlin");
  for (const std::string good : {"2024-03-05T14:07:09Z", "2024-13-45t24:61:99+09:00", "1970-01-01T00:00:00z"}) {
    for (std::size_t at = 0; at <= good.size(); ++at) {
      expectAsPattern(good.substr(0, at));
      for (int byte = 0; byte < 256; ++byte) {
        const char character = static_cast<char>(byte);
        expectAsPattern(good.substr(0, at) + character + good.substr(at));
        if (at < good.size()) expectAsPattern(good.substr(0, at) + character + good.substr(at + 1));
      }
    }
  }
}

TEST(IsoTime, TheFirstLineThatIsOne) {
  const TimeZone zone("UTC");
  const std::string lines[] = {"", "x", "2024-03-05T14:07:09Z", "2025-01-01T00:00:00-08:00", "2024-03-05T14:07:09Z\r"};
  Generate generate(40);
  for (int i = 0; i < 2000; ++i) {
    std::string text = lines[generate.below(5)];
    for (std::uint64_t n = generate.below(4); n > 0; --n) text += '\n' + lines[generate.below(5)];
    expectAsPattern(text);
  }
  const std::string far = std::string(2000000, '2') + "\n" + std::string(500000, '\n') + lines[2] + "\n" + lines[3];
  EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(far).getTimeStr9(), lines[2]);
  EXPECT_EQ(Time::fromIsoTimeStrIgnoringTimeZone(far).getMSec(), 0);
}

}  // namespace
