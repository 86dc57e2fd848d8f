#!/usr/bin/env bash
# The code that the README shows is the example that is compiled and run.
# Arguments: the repository, the command that runs the example.
set -euo pipefail
diff <(sed -n '/^```cpp$/,/^```$/p' "$1/README.md" | sed '1d;$d') "$1/examples/tour.cpp"
"${@:2}" | tr -d '\r' | grep -xF 'Scan100: 12.2 m in Scans'
