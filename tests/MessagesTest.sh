#!/usr/bin/env bash
# What is wrong is said in the first line of an error, and not much more besides.
# Arguments: the repository, the compiler.
set -uo pipefail
status=0

# says WHAT-THE-FIRST-ERROR-HOLDS MOST-LINES CODE OPTION...: compiles a statement, which must not do.
says() {
  local text=$1 most=$2 code=$3
  shift 3
  found=$(printf '%s\n' '#include <Tarn/Tarn.h>' 'using namespace Tarn;' "void call(std::string& buffer, ValueReader& reader) { $code }" |
    "$compiler" -std=c++20 -fsyntax-only -I "$root" "$@" -x c++ - 2>&1) && { echo "compiles: $code $*" >&2; status=1; }
  grep -m 1 'error' <<< "$found" | grep -qF -e "$text" ||
    { echo "another message than '$text' for: $code $*"; head -5 <<< "$found"; status=1; } >&2
  [ "$(wc -l <<< "$found")" -le "$most" ] || { echo "$(wc -l <<< "$found") lines for: $code $*" >&2; status=1; }
}

root=$1
compiler=$2
says 'a value is written by its operator<< on std::ostream, and this type has none' 20 'buffer << std::vector<int>{};'
says 'a value is read by its operator>> on std::istream, and this type has none' 20 'std::string_view view; reader >> view;'
says 'a value is read by its operator>> on std::istream, and this type has none' 20 'reader.tryRead<std::vector<int>>();'
says 'format' 20 'PrintF("%d", "seven");' -Werror=format
says 'deleted' 30 'PrintF("%s", std::string_view("view"));'
says 'needs exceptions' 2000 'static_cast<void>(buffer);' -fno-exceptions
says 'needs C++20' 100000 'static_cast<void>(buffer);' -std=c++17
exit $status
