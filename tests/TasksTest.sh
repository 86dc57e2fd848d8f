#!/usr/bin/env bash
# The examples of the reference print what their comments say, and all of them are shown.
# Arguments: the repository, the command that runs the examples.
set -euo pipefail
tasks=$1/examples/tasks.cpp
diff --label 'comments of examples/tasks.cpp' --label 'what it prints' -u \
  <(grep -o '//> .*' "$tasks" | cut -c5-) <("${@:2}" | tr -d '\r')
diff <(grep -oP '^// \[\K\w+' "$tasks" | uniq) <(grep -oP 'snippet tasks.cpp \K\w+' "$1/docs/reference/mainpage.md")
