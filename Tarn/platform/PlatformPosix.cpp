#include "Tarn/platform/Platform.h"

#include <sys/random.h>

#include <cerrno>
#include <system_error>

#include "Tarn/platform/PlainClock.h"

namespace Tarn::platform {

void putNewUuids(std::span<std::byte> bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const ssize_t count = getrandom(bytes.data() + done, bytes.size() - done, 0);
    if (count > 0) done += static_cast<std::size_t>(count);
    // An identifier that is not random would not be unique: better none at all.
    if (count < 0 && errno != EINTR)
      throw std::system_error(errno, std::system_category(), "no random bytes for a uuid");
  }
  for (std::size_t i = 0; i < bytes.size(); i += 16) {
    bytes[i + 6] = (bytes[i + 6] & std::byte{0x0F}) | std::byte{0x40};  // Version 4,
    bytes[i + 8] = (bytes[i + 8] & std::byte{0x3F}) | std::byte{0x80};  // RFC 4122 variant.
  }
}

bool toLocalTime(std::int64_t seconds, std::tm& fields) {
  const std::time_t time = seconds;
  return localtime_r(&time, &fields) != nullptr;
}

// Not by arithmetic: where a zone knows of leap seconds, so does UTC.
bool toUtc(std::int64_t seconds, std::tm& fields) {
  const std::time_t time = seconds;
  return gmtime_r(&time, &fields) != nullptr;
}

std::int64_t offsetOf(const std::tm& fields, std::int64_t /*seconds*/) { return fields.tm_gmtoff; }

namespace {

// Whether they are what a clock without a zone shows, and no leap second.
bool areAt(std::int64_t plain, const std::tm& fields) { return fields.tm_sec < 60 && fromPlainFields(fields) == plain; }

}  // namespace

// By the offset of the day before, which nearly always holds, and is that of the first of two equal hours. `mktime`
// takes longer, but knows what to do where clocks change and where seconds leap.
std::int64_t fromLocalTime(std::int64_t plain) {
  constexpr std::int64_t kDay = 86400;
  std::tm fields;
  if (toLocalTime(plain - kDay, fields)) {
    const std::int64_t seconds = plain - fields.tm_gmtoff;
    if (toLocalTime(seconds, fields) && areAt(plain, fields)) return seconds;
  }
  fields = toPlainFields(plain);
  return std::mktime(&fields);
}

// By asking back, as above: nearly no zone knows of leap seconds.
std::int64_t fromUtc(std::int64_t plain) {
  std::tm fields;
  if (toUtc(plain, fields) && areAt(plain, fields)) return plain;
  fields = toPlainFields(plain);
  return timegm(&fields);
}

}  // namespace Tarn::platform
