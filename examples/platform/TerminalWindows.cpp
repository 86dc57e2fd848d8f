#include <io.h>

#include "Terminal.h"

bool isTerminal() { return _isatty(2) != 0; }
