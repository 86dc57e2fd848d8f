#!/usr/bin/env bash
# What one system writes the other reads: both append to one model in turn, verify all that it holds and show the same.
# Argument: the repository, with the catalogue built in build/dev and build/windows.
set -euo pipefail
export TZ=UTC
model=$(mktemp -d "$1/build/exchange.XXXXXX")
trap 'rm -rf "$model"' EXIT

# The systems name the folder their own way, so both work inside it.
cd "$model"
list=$1/examples/data/scans.tsv
native=("$1/build/dev/examples/catalogue")
windows=("$1/cmake/run-windows" "$1/build/windows/examples/catalogue.exe")
sed -n 1,15p "$list" | "${native[@]}" write . -
sed -n 16,30p "$list" | "${windows[@]}" write . -
sed -n 31,99p "$list" | "${native[@]}" write . -
for system in native windows; do
  declare -n program=$system
  "${program[@]}" verify .
  "${program[@]}" show --json . | tr -d '\r' > $system.json
done
cmp native.json windows.json
scans=$(grep -vc -e '^#' -e '^$' "$list")
[ "$(grep -c '"token":' native.json)" -eq "$scans" ] || { echo "the model does not hold $scans scans" >&2; exit 1; }
