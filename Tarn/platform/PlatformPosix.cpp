#include "Tarn/platform/Platform.h"

#include <sys/random.h>

#include <cerrno>
#include <system_error>

namespace Tarn::platform {
namespace {

// Seconds that local time is ahead of UTC at a time.
std::int64_t offsetAt(std::int64_t seconds) {
  std::tm fields{};
  return toLocalTime(seconds, fields) ? fields.tm_gmtoff : 0;
}

}  // namespace

std::array<unsigned char, 16> newUuid() {
  std::array<unsigned char, 16> bytes{};
  while (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    // An identifier that is not random would not be unique: better none at all.
    if (errno != EINTR) throw std::system_error(errno, std::system_category(), "no random bytes for a uuid");
  }
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);  // Version 4,
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant.
  return bytes;
}

bool toLocalTime(std::int64_t seconds, std::tm& fields) {
  const std::time_t time = seconds;
  return localtime_r(&time, &fields) != nullptr;
}

// Not by mktime: it reads the zone anew at every call, under a lock that threads then wait for. A day before and a day
// behind have the two offsets that can hold at a local time. The one before is right in the first of a repeated hour,
// and moves a missing hour forward.
std::int64_t fromLocalTime(std::int64_t local) {
  constexpr std::int64_t kDay = 86400;
  const std::int64_t offsetBefore = offsetAt(local - kDay);
  if (offsetAt(local - offsetBefore) == offsetBefore) return local - offsetBefore;
  const std::int64_t offsetBehind = offsetAt(local + kDay);
  return local - (offsetAt(local - offsetBehind) == offsetBehind ? offsetBehind : offsetBefore);
}

}  // namespace Tarn::platform
