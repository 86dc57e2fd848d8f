#include <cstdlib>
#include <ctime>
#include <map>

#include "tests/TimeZones.h"

void setTimeZone(const std::string& zone) {
  // This runtime has one rule for all summer times, and names of three letters.
  static const std::map<std::string, std::string> kRules = {{"UTC", "UTC0"},
                                                            {"Europe/Berlin", "CET-1CEST"},
                                                            {"America/St_Johns", "NST3:30NDT"},
                                                            {"Asia/Kolkata", "IST-5:30"},
                                                            {"Pacific/Kiritimati", "LIN-14"}};
  const auto rule = kRules.find(zone);
  _putenv_s("TZ", rule != kRules.end() ? rule->second.c_str() : zone.c_str());
  _tzset();
}
