// The form is fixed in length and in the place of every character, so a line is compared with a picture of it:
//
//     dddd-dd-ddTdd:dd:ddZ   or   dddd-dd-ddTdd:dd:dd+dd:dd
#include <algorithm>
#include <string_view>

#include "Tarn/text/internal/Characters.h"
#include "Tarn/time/Time.h"

namespace Tarn {
namespace {

bool fits(char character, char picture) {
  switch (picture) {
    case 'd':
      return internal::isOf(character, internal::kDigit);
    case 'T':
      return character == 'T' || character == 't';
    case 'Z':
      return character == 'Z' || character == 'z';
    case '+':
      return character == '+' || character == '-';
    default:
      return character == picture;
  }
}

bool fits(std::string_view line, std::string_view picture) {
  return std::equal(line.begin(), line.end(), picture.begin(), picture.end(),
                    [](char character, char place) { return fits(character, place); });
}

bool isIsoTime(std::string_view line) {
  return fits(line, "dddd-dd-ddTdd:dd:ddZ") || fits(line, "dddd-dd-ddTdd:dd:dd+dd:dd");
}

int number(std::string_view digits) {
  int value = 0;
  for (const char digit : digits) value = value * 10 + (digit - '0');
  return value;
}

}  // namespace

Time Time::fromIsoTimeStrIgnoringTimeZone(const std::string& text) {
  Time time;
  for (std::string_view rest = text;;) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    if (isIsoTime(line)) {
      const auto field = [line](std::size_t first, std::size_t size) { return number(line.substr(first, size)); };
      time.setTime(field(0, 4), field(5, 2), field(8, 2), field(11, 2), field(14, 2), field(17, 2), 0);
      return time;
    }
    if (line.size() == rest.size()) return time;
    rest.remove_prefix(line.size() + 1);
  }
}

}  // namespace Tarn
