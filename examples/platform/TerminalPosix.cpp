#include <unistd.h>

#include "Terminal.h"

bool isTerminal() { return isatty(STDERR_FILENO) != 0; }
