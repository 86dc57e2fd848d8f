#!/usr/bin/env bash
# What one system writes the other reads: both append to one model in turn, and verify all that it holds.
# Argument: the repository, with the catalogue built in build/dev and build/windows.
set -euo pipefail
export TZ=UTC
model=$(mktemp -d "$1/build/exchange.XXXXXX")
trap 'rm -rf "$model"' EXIT

append() {
  local first=$1 last=$2
  shift 2
  # The systems name the folder their own way, so both work inside it.
  (cd "$model" && sed -n "${first},${last}p" "$list" | "$@" . -)
}

list=$1/examples/data/scans.tsv
native=("$1/build/dev/examples/catalogue")
windows=("$1/cmake/run-windows" "$1/build/windows/examples/catalogue.exe")
append 1 15 "${native[@]}"
append 16 30 "${windows[@]}"
append 31 99 "${native[@]}"
scans=$(grep -vc -e '^#' -e '^$' "$list")
[ "$(grep -c '^{ ' "$model/Scans")" -eq "$scans" ] || { echo "the model does not hold $scans scans" >&2; exit 1; }
