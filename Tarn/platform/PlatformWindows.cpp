#include "Tarn/platform/Platform.h"

#include <objbase.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "Tarn/platform/GuidFields.h"
#include "Tarn/platform/PlainClock.h"

namespace Tarn::platform {

void putNewUuids(std::span<std::byte> bytes) {
  for (std::size_t i = 0; i < bytes.size(); i += 16) {
    GUID guid{};
    // The status is left alone: there is no other source to turn to.
    static_cast<void>(CoCreateGuid(&guid));
    GuidFields fields{guid.Data1, guid.Data2, guid.Data3, {}};
    std::copy(std::begin(guid.Data4), std::end(guid.Data4), fields.data4.begin());
    const std::array<unsigned char, 16> id = toBytes(fields);
    std::copy(id.begin(), id.end(), reinterpret_cast<unsigned char*>(bytes.data() + i));
  }
}

bool toLocalTime(std::int64_t seconds, std::tm& fields) {
  const __time64_t time = seconds;
  return _localtime64_s(&fields, &time) == 0;
}

bool toUtc(std::int64_t seconds, std::tm& fields) {
  fields = toPlainFields(seconds);
  return true;
}

std::int64_t offsetOf(const std::tm& fields, std::int64_t seconds) { return fromPlainFields(fields) - seconds; }

// Local clocks show 1969 for some hours of the calendar range, or 3001, which the runtime does not take: it is asked
// for what they show two days later or earlier.
std::int64_t fromLocalTime(std::int64_t plain) {
  constexpr std::int64_t kLast = 32535215999;  // 3000-12-31 23:59:59.
  const std::int64_t shift = plain < 0 ? 172800 : plain > kLast ? -172800 : 0;
  std::tm fields = toPlainFields(plain + shift);
  const std::int64_t seconds = _mktime64(&fields);
  return seconds < 0 ? seconds : seconds - shift;
}

std::int64_t fromUtc(std::int64_t plain) { return plain; }

}  // namespace Tarn::platform
