#include <cstdlib>
#include <ctime>

#include "tests/TimeZones.h"

void setTimeZone(const std::string& zone) {
  setenv("TZ", zone.c_str(), 1);
  tzset();
}
