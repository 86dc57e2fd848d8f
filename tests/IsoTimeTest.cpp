#include <gtest/gtest.h>

#include "Tarn/time/Time.h"
#include "tests/Growth.h"
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
