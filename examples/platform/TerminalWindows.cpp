#include <io.h>

#include "catalogue/Terminal.h"

bool catalogue::errorsGoToTerminal() { return _isatty(2) != 0; }
