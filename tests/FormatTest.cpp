// By {fmt}, and by the standard library's where it has one.
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "Tarn/Format.h"
#include "Tarn/uuids/UuidText.h"
#include "tests/TimeZones.h"

namespace {

constexpr Tarn::uuids::uuid kId = *Tarn::parseUuid("00112233-4455-6677-8899-aabbccddeeff");

TEST(Format, NamesLayouts) {
  const TimeZone zone("Europe/Berlin");
  // [format]
  const Tarn::Time time = *Tarn::parseTime("2024-03-05T14:07:09.042+01:00");
  EXPECT_EQ(fmt::format("{} {:short} {:,>38}|{:short,<25}|", kId, kId, kId, kId),
            "00112233-4455-6677-8899-aabbccddeeff ABEiM0RVZneImaq7zN3u/w==   "
            "00112233-4455-6677-8899-aabbccddeeff|ABEiM0RVZneImaq7zN3u/w== |");
  EXPECT_EQ(fmt::format("{} {:getTimeStr8} {:getTimeStr7,>14} {:getIsoTimeStr}", time, time, time, time),
            "2024-03-05T14:07:09.042+01:00 2024-03-05 14:07:09  240305_140709 2024-03-05T14:07:09+01:00");
#if defined(__cpp_lib_format)
  EXPECT_EQ(std::format("{} {:short} {:getTimeStr8,>20}", kId, kId, time),
            fmt::format("{} {:short} {:getTimeStr8,>20}", kId, kId, time));
#endif
  // [format]
  EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime("{:long}"), kId)), fmt::format_error);
  EXPECT_EQ(fmt::format("{}", std::pair(kId, time)), fmt::format("({}, {})", kId, time));
}

}  // namespace
