// All properties.
#ifndef TESTS_PROPERTIES_PROPERTIES_H_
#define TESTS_PROPERTIES_PROPERTIES_H_

#include "tests/properties/Input.h"

void checkProgress(Input input);
void checkReaders(Input input);
void checkStrings(Input input);
void checkTables(Input input);
void checkTexts(Input input);
void checkTimes(Input input);
void checkWords(Input input);
void checkWriters(Input input);

#endif  // TESTS_PROPERTIES_PROPERTIES_H_
