// Both texts have a fixed size, so each is made once in that size and its digits are written in their places.
#include "Tarn/uuids/uuid.h"

#include <ostream>
#include <string_view>
#include <type_traits>

#include "Tarn/platform/Platform.h"
#include "Tarn/uuids/internal/SeededHash.h"

namespace Tarn::uuids {
namespace {

constexpr std::string_view kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The two hexadecimal digits of every byte: one look-up instead of two.
constexpr std::array<std::array<char, 2>, 256> kHexPairs = [] {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::array<std::array<char, 2>, 256> pairs{};
  for (std::size_t byte = 0; byte < pairs.size(); ++byte) pairs[byte] = {kDigits[byte / 16], kDigits[byte % 16]};
  return pairs;
}();

constexpr bool hyphenFollows(std::size_t byte) { return byte == 3 || byte == 5 || byte == 7 || byte == 9; }

}  // namespace

uuid uuid::generate() {
  uuid id;
  generate(std::span(&id, 1));
  return id;
}

void uuid::generate(std::span<uuid> ids) {
  static_assert(sizeof(uuid) == 16 && std::is_trivially_copyable_v<uuid>);
  platform::putNewUuids(std::as_writable_bytes(ids));
}

std::string uuid::string() const {
  std::string text(36, '-');
  char* out = text.data();
  for (std::size_t i = 0; i < data.size(); ++i) {
    const std::array<char, 2> pair = kHexPairs[data[i]];
    *out++ = pair[0];
    *out++ = pair[1];
    if (hyphenFollows(i)) ++out;
  }
  return text;
}

std::string uuid::toShortString() const {
  std::string text(24, '=');
  char* out = text.data();
  for (std::size_t i = 0; i < 15; i += 3) {
    const unsigned group = (unsigned{data[i]} << 16U) | (unsigned{data[i + 1]} << 8U) | data[i + 2];
    for (unsigned shift = 24; shift > 0; shift -= 6) *out++ = kBase64Digits[(group >> (shift - 6)) & 0x3FU];
  }
  *out++ = kBase64Digits[data[15] >> 2U];
  *out = kBase64Digits[(unsigned{data[15]} << 4U) & 0x3FU];
  return text;
}

std::ostream& operator<<(std::ostream& stream, const uuid& id) { return stream << id.string(); }

}  // namespace Tarn::uuids

std::size_t std::hash<Tarn::uuids::uuid>::operator()(const Tarn::uuids::uuid& id) const noexcept {
  return static_cast<std::size_t>(Tarn::internal::seededHash16(id.as_bytes().data()));
}
