#include <unistd.h>

#include "catalogue/Terminal.h"

bool catalogue::errorsGoToTerminal() { return isatty(STDERR_FILENO) != 0; }
