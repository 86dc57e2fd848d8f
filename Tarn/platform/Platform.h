// The calls whose names and behaviour differ by operating system.
//
// The calendar functions know nothing of the library's calendar range; the callers keep to it, because the runtimes
// differ from it, and from each other, at its ends.
#ifndef TARN_PLATFORM_PLATFORM_H_
#define TARN_PLATFORM_PLATFORM_H_

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <span>

namespace Tarn::platform {

// Fills the bytes, 16 for each, with new uuids in the order of their canonical text.
void putNewUuids(std::span<std::byte> bytes);

// Breaks whole seconds since 1970-01-01 UTC down into local time or UTC. False, and the fields are unspecified, if the
// runtime cannot.
bool toLocalTime(std::int64_t seconds, std::tm& fields);
bool toUtc(std::int64_t seconds, std::tm& fields);

// How many seconds the local fields of a time are ahead of UTC.
std::int64_t offsetOf(const std::tm& fields, std::int64_t seconds);

// Whole seconds since 1970-01-01 UTC at which clocks in local time, or in UTC, show what a clock without a zone shows
// `plain` seconds after its 1970-01-01 00:00:00. Negative if that is earlier, or if the runtime cannot tell.
std::int64_t fromLocalTime(std::int64_t plain);
std::int64_t fromUtc(std::int64_t plain);

}  // namespace Tarn::platform

#endif  // TARN_PLATFORM_PLATFORM_H_
