// Whether someone watches.
#pragma once

// Whether standard error is a terminal.
bool isTerminal();
