// The calls whose names and behaviour differ by operating system.
//
// The calendar functions know nothing of the library's calendar range; the callers keep to it, because the runtimes
// differ from it, and from each other, at its ends.
#ifndef TARN_PLATFORM_PLATFORM_H_
#define TARN_PLATFORM_PLATFORM_H_

#include <array>
#include <cstdint>
#include <ctime>

namespace Tarn::platform {

// The bytes of a new uuid, in the order of its canonical text.
std::array<unsigned char, 16> newUuid();

// Breaks whole seconds since 1970-01-01 UTC down into local time. False, and the fields are unspecified, if the runtime
// cannot.
bool toLocalTime(std::int64_t seconds, std::tm& fields);

// Whole seconds since 1970-01-01 UTC at which local clocks show what a clock without a zone shows `local` seconds after
// 1970-01-01 00:00:00; negative if the time is earlier. Where the runtime cannot tell, negative or as in UTC.
std::int64_t fromLocalTime(std::int64_t local);

}  // namespace Tarn::platform

#endif  // TARN_PLATFORM_PLATFORM_H_
