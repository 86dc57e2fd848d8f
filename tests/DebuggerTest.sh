#!/usr/bin/env bash
# GDB finds the printers by itself, and shows values as people write them.
# Arguments: the repository, the program to stop in, a folder whose scripts GDB shall trust (none where it does already).
set -euo pipefail
command -v gdb > /dev/null || { echo "there is no gdb: see tools/setup" >&2; exit 1; }
export TZ=CET-1
trust=(${3:+-iex "add-auto-load-safe-path $3"})
stop=$(grep -n 'Stop here' "$1/tests/debugger/main.cpp" | cut -d: -f1)

all=$(gdb -nx -batch "${trust[@]}" -ex "break main.cpp:$stop" -ex run -ex 'print id' -ex 'print taken' -ex 'print never' \
  -ex 'print noNames' -ex 'print names' -ex 'print ids' -ex 'print *&names' -ex 'print hub' -ex 'print part' \
  -ex 'set print elements 2000' -ex 'print manyIds' "$2" 2>&1)
diff - <(grep '^\$[1-9] = ' <<< "$all") << 'EXPECTED' || { head -c 2000 <<< "$all" >&2; exit 1; }
$1 = 00112233-4455-6677-8899-aabbccddeeff
$2 = 2024-03-05 15:07:09.043
$3 = -1.5 s from 1970, outside the calendar
$4 = KeyTable with 0 elements
$5 = KeyTable with 3 elements = {[18446744073709551615] = "Roof", [2] = "Cellar", [1] = "Tower"}
$6 = UuidKeyTable with 2 elements = {[7] = 00112233-4455-6677-8899-aabbccddeeff, [3] = 00000000-0000-0000-0000-000000000000}
$7 = KeyTable with 3 elements = {[18446744073709551615] = "Roof", [2] = "Cellar", [1] = "Tower"}
$8 = Progress = {value = 0.25, step = "Reading", value observers = 1, step observers = 0}
$9 = PartialProgress = {value = 0, step = "", value observers = 0, step observers = 0, share = 0.5, parent = std::shared_ptr<Tarn::DataStructures::IProgress> (empty) = {get() = 0x0}}
EXPECTED
tokens=$(grep '^\$10 = UuidKeyTable with 1000 elements' <<< "$all" | grep -oE '\[[0-9]+\] = 00112233' | tr -dc '0-9\n' | wc -l)
[ "$tokens" -eq 1000 ] || { echo "shows $tokens of 1000 pairs" >&2; exit 1; }
