#!/usr/bin/env bash
# The code that the README shows is the example that is compiled and run. Arguments: the repository, the built example.
set -euo pipefail
diff <(sed -n '/^```cpp$/,/^```$/p' "$1/README.md" | sed '1d;$d') "$1/examples/tour.cpp"
"$2" | grep -qxF 'Scan100: 12.2 m in Scans'
