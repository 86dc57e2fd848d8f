#!/usr/bin/env bash
# An optimised library has what makes a fault stop the program instead of giving it away.
# Argument: the built library.
set -euo pipefail
missing=0

requires() {  # WHAT PATTERN TEXT
  grep -qE "$2" <<< "$3" || { echo "missing: $1" >&2; missing=1; }
}

case "$1" in
  *.dll)
    header=$(x86_64-w64-mingw32-objdump -p "$1")
    requires "an address that changes" DYNAMIC_BASE "$header"
    requires "data that is not run" NX_COMPAT "$header"
    ;;
  *)
    segments=$(readelf -lW "$1")
    requires "a stack that is not run" 'GNU_STACK .* RW ' "$segments"
    requires "tables that are read only once loaded" GNU_RELRO "$segments"
    requires "all names bound when loaded" 'FLAGS_1.* NOW' "$(readelf -dW "$1")"
    imports=$(nm -D --undefined-only "$1")
    requires "guarded stacks" ' __stack_chk_fail' "$imports"
    requires "bounds for the C library's writes" ' __vsnprintf_chk' "$imports"
    requires "assertions of the standard library" glibcxx_assert_fail "$imports"
    if readelf -h "$1" | grep -q X86-64; then
      code=$(objdump -d --no-show-raw-insn "$1")
      requires "marks of where calls may go" endbr64 "$code"
      requires "stacks that grow page by page" '(or[bq] +\$0x0,|movq +\$0x0,\(%rsp\))' "$code"
    fi
    ;;
esac
exit $missing
