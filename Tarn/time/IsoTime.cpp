// The form is fixed in length and in the place of every character, so a line is taken apart by places:
//
//     0000-00-00T00:00:00Z   or   0000-00-00T00:00:00+00:00
#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "Tarn/text/internal/Characters.h"
#include "Tarn/time/Time.h"
#include "Tarn/time/internal/Calendar.h"

namespace Tarn {
namespace {

// The number of two digits; where there are none, more than 99.
unsigned pairAt(const char* text) {
  const unsigned tens = static_cast<unsigned char>(text[0]) - unsigned{'0'};
  const unsigned ones = static_cast<unsigned char>(text[1]) - unsigned{'0'};
  return tens <= 9 && ones <= 9 ? tens * 10 + ones : 100;
}

bool isZone(std::string_view text) {
  if (text.size() == 1) return internal::toLower(text[0]) == 'z';
  return text.size() == 6 && (text[0] == '+' || text[0] == '-') && text[3] == ':' && pairAt(&text[1]) <= 99 &&
         pairAt(&text[4]) <= 99;
}

// The fields of a line of that form, in any range.
std::optional<internal::CalendarFields> fieldsOf(std::string_view line) {
  if (line.size() < 20 || !isZone(line.substr(19))) return std::nullopt;
  const char* const text = line.data();
  const std::array pairs = {pairAt(text),      pairAt(text + 2),  pairAt(text + 5), pairAt(text + 8),
                            pairAt(text + 11), pairAt(text + 14), pairAt(text + 17)};
  if (text[4] != '-' || text[7] != '-' || internal::toLower(text[10]) != 't' || text[13] != ':' || text[16] != ':' ||
      std::any_of(pairs.begin(), pairs.end(), [](unsigned pair) { return pair > 99; })) {
    return std::nullopt;
  }
  const auto field = [&pairs](std::size_t i) { return static_cast<int>(pairs[i]); };
  return internal::CalendarFields{field(0) * 100 + field(1), field(2), field(3), field(4), field(5), field(6)};
}

}  // namespace

Time Time::fromIsoTimeStrIgnoringTimeZone(const std::string& text) {
  double seconds = 0.0;
  for (std::string_view rest = text;;) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    if (const auto fields = fieldsOf(line)) {
      seconds = internal::fromLocalFields(*fields, 0);
      break;
    }
    if (line.size() == rest.size()) break;
    rest.remove_prefix(line.size() + 1);
  }
  return {seconds, realTimeToMonotonic(seconds)};
}

}  // namespace Tarn
