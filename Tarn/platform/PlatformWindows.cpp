#include "Tarn/platform/Platform.h"

#include <objbase.h>

#include <algorithm>
#include <iterator>

#include "Tarn/platform/GuidFields.h"
#include "Tarn/platform/PlainClock.h"

namespace Tarn::platform {

std::array<unsigned char, 16> newUuid() {
  GUID guid{};
  // The status is left alone: there is no other source to turn to.
  static_cast<void>(CoCreateGuid(&guid));
  GuidFields fields{guid.Data1, guid.Data2, guid.Data3, {}};
  std::copy(std::begin(guid.Data4), std::end(guid.Data4), fields.data4.begin());
  return toBytes(fields);
}

bool toLocalTime(std::int64_t seconds, std::tm& fields) {
  const __time64_t time = seconds;
  return _localtime64_s(&fields, &time) == 0;
}

std::int64_t fromLocalTime(std::int64_t local) {
  std::tm fields = plainFields(local);
  return _mktime64(&fields);
}

}  // namespace Tarn::platform
