#!/usr/bin/env bash
# The library exports exactly the names of tests/exports.txt, whichever system it is built for.
# Arguments: the repository, the built library; with a third argument, --update, the list is written anew.
set -euo pipefail
list="$1/tests/exports.txt"

# The systems spell some types differently: a 64-bit number, the standard streams.
names() {
  c++filt | sed -E -e 's/unsigned long long/unsigned long/g; s/long long/long/g; s/([0-9]u?l)l/\1/g' \
    -e 's/std::basic_([io]stream)<char, std::char_traits<char> >/std::\1/g' \
    -e 's/std::__cxx11::basic_string<(char|wchar_t), [^>]*>, std::allocator<[^>]*> >/std::basic_string<\1>/g' |
    grep -v '^typeinfo name for ' | LC_ALL=C sort -u
}

case "$2" in
  *.dll) exported() {
    x86_64-w64-mingw32-objdump -p "$2" | sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/p' | awk 'NR > 1 && NF {print $NF}'
  } ;;
  *) exported() { nm -D --defined-only --format=posix "$2" | awk '$1 !~ /^_init$|^_fini$/ {print $1}'; } ;;
esac

found=$(exported "$@" | names)
[ -n "$found" ] || { echo "no exported names found in $2" >&2; exit 1; }
if [ "${3:-}" = --update ]; then
  printf '%s\n' "$found" > "$list"
fi
diff --label "tests/exports.txt" --label "exported by ${2##*/}" -u "$list" <(printf '%s\n' "$found") ||
  { echo "The interface has changed. If that is meant: $0 $1 $2 --update" >&2; exit 1; }
