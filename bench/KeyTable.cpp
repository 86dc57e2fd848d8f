#include "bench/Tables.h"

void bench::registerCases() { registerTables<StringTables>({1000, 100000, 1000000, 10000000}); }
