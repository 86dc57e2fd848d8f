#include "Tarn/platform/Platform.h"

#include <sys/random.h>

#include <cerrno>
#include <system_error>

namespace Tarn::platform {

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

bool toUtc(std::int64_t seconds, std::tm& fields) {
  const std::time_t time = seconds;
  return gmtime_r(&time, &fields) != nullptr;
}

std::int64_t fromLocalTime(std::tm fields) { return std::mktime(&fields); }

}  // namespace Tarn::platform
