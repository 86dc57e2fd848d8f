#include "bench/Tables.h"

void bench::registerCases() {
  registerTables<StringTables<8>>({1000, 1000000});
  registerTables<StringTables<24>>({1000, 100000, 1000000, 10000000});
  registerTables<StringTables<200>>({1000, 100000});
}
