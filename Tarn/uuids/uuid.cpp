// Both texts are written by table into an array of their exact size.
#include "Tarn/uuids/uuid.h"

#include <ostream>
#include <string_view>

#include "Tarn/platform/Platform.h"

namespace Tarn::uuids {
namespace {

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr bool hyphenFollows(std::size_t byte) { return byte == 3 || byte == 5 || byte == 7 || byte == 9; }

std::array<char, 36> canonicalText(const std::array<unsigned char, 16>& data) {
  std::array<char, 36> text;
  auto* out = text.data();
  for (std::size_t i = 0; i < data.size(); ++i) {
    *out++ = kHexDigits[data[i] >> 4U];
    *out++ = kHexDigits[data[i] & 0xFU];
    if (hyphenFollows(i)) *out++ = '-';
  }
  return text;
}

}  // namespace

uuid uuid::generate() { return uuid(platform::newUuid()); }

std::string uuid::string() const {
  const auto text = canonicalText(data);
  return {text.data(), text.size()};
}

std::string uuid::toShortString() const {
  std::array<char, 24> text;
  auto* out = text.data();
  for (std::size_t i = 0; i < 15; i += 3) {
    const unsigned group = (unsigned{data[i]} << 16U) | (unsigned{data[i + 1]} << 8U) | data[i + 2];
    for (unsigned shift = 24; shift > 0; shift -= 6) *out++ = kBase64Digits[(group >> (shift - 6)) & 0x3FU];
  }
  *out++ = kBase64Digits[data[15] >> 2U];
  *out++ = kBase64Digits[(unsigned{data[15]} << 4U) & 0x3FU];
  *out++ = '=';
  *out = '=';
  return {text.data(), text.size()};
}

std::ostream& operator<<(std::ostream& stream, const uuid& id) { return stream << id.string(); }

}  // namespace Tarn::uuids
