#!/usr/bin/env bash
# Runs the catalogue as a person would, and looks at its messages, its exit status and the bytes that it leaves.
# Arguments: the command that runs the program, then the folder of the examples.
set -uo pipefail
examples="${*: -1}"
program=("${@:1:$#-1}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
header='/** Korvale: Scan Data **/'
uuid='[0-9a-f]\{8\}-[0-9a-f]\{4\}-[0-9a-f]\{4\}-[0-9a-f]\{4\}-[0-9a-f]\{12\}'

fail() {
  echo "FAILED: $1" >&2
  failures=$((failures + 1))
}

# expect NAME STATUS ARGUMENT...: runs the program on the caller's input; what it says goes to the files out and err.
expect() {
  local name=$1 status=$2 found=0
  shift 2
  "${program[@]}" "$@" > raw-out 2> raw-err || found=$?
  tr -d '\r' < raw-out > out
  tr -d '\r' < raw-err > err
  [ "$found" = "$status" ] || fail "$name: exit status $found instead of $status; $(head -c 300 err)"
}
says() { grep -qF -e "$3" "$2" || fail "$1: '$3' is not in $2: $(head -c 300 "$2")"; }
same() { [ "$2" = "$3" ] || fail "$1: found '$2' instead of '$3'"; }
scan() { printf '%s\t2024-03-05T14:07:09Z\theight=1.8\n' "$1"; }

# The sample list.
mkdir sample
expect 'sample' 0 sample "$examples/data/scans.tsv"
scans=$(grep -c '^[^#]' "$examples/data/scans.tsv")
same 'sample, nothing on standard error' "$(cat err)" ''
says 'sample, summary' out "$scans scans added, 0 lines skipped"
says 'sample, rest of the table' out "... and $((scans - 20)) more"
same 'sample, header' "$(head -n 1 sample/Scans)" "$header"
same 'sample, records' "$(grep -c "^$uuid\$" sample/Scans)" "$scans"
same 'sample, uuids differ' "$(grep "^$uuid\$" sample/Scans | sort -u | wc -l | tr -d ' ')" "$scans"

# One record, byte for byte but for the uuid.
mkdir record
printf 'T\303\274r "7"\t2024-03-05T14:07:09+01:00\tpath=a\\b\tempty=\tsum=1=1\t\r\n' > record.tsv
expect 'record' 0 record record.tsv
printf '%s\n%s\n%s\n' "$header" UUID \
  '{ "empty"=>"" "name"=>"T\u00FCr \"7\"" "path"=>"a\\b" "sum"=>"1=1" } 5.3.2024 14:7:9:0' > expected
sed "s/^$uuid\$/UUID/" record/Scans | cmp - expected || fail 'record: other bytes'

# Columns line up under wide characters: the times of both rows begin in the same column.
mkdir table
{ scan '正門'; scan 'Tor1'; scan "$(printf 'esc\033[31m')"; } > table.tsv
expect 'table' 0 table table.tsv
row() { grep -F "$1" out | sed "s/^[0-9]* *//; s/$1/Tor1/; s/ *[^ ]*\$//"; }
same 'table, wide' "$(row 正門)" "$(row Tor1)"
says 'table, controls' out 'esc?[31m'
expect 'no rows' 0 --rows 0 "$(mkdir rows; echo rows)" table.tsv
says 'no rows' out '... and 3 more'

# Again: nothing is added, nothing is lost. Then one more scan, from standard input, without a line feed at its end.
before=$(cksum < record/Scans)
expect 'again' 1 record record.tsv
says 'again' err 'record.tsv:1: there is a scan "Tür "7"" already'
same 'again, stream' "$(cksum < record/Scans)" "$before"
expect 'one more' 0 record - < <(scan 'Keller' | tr -d '\n')
says 'one more' out 'standard input: 1 scans added, 0 lines skipped'
says 'one more' out ': 2 scans, each read back and compared'
same 'one more, one header' "$(grep -cxF "$header" record/Scans)" 1
head -c "$(wc -c < expected)" <(sed "s/^$uuid\$/UUID/" record/Scans) | cmp - expected || fail 'one more: the first record changed'

# Lines that are skipped, each between two good ones: name of the row, the line (for printf), the reason.
bad_lines() {
  cat <<'ROWS'
no UTF-8|a\200\t2024-03-05T14:07:09Z|byte 2 is not UTF-8
cut short|a\303|byte 2 is not UTF-8
cut by a tab|a\303\t2024-03-05T14:07:09Z|byte 2 is not UTF-8
not the shortest form|\300\257\t2024-03-05T14:07:09Z|byte 1 is not UTF-8
three bytes for two|\340\202\200\t2024-03-05T14:07:09Z|byte 1 is not UTF-8
surrogate|\355\240\200\t2024-03-05T14:07:09Z|byte 1 is not UTF-8
above U+10FFFF|\364\220\200\200\t2024-03-05T14:07:09Z|byte 1 is not UTF-8
above U+FFFF|ab\360\237\230\200\t2024-03-05T14:07:09Z|byte 3 begins U+1F600
no time|a|the time is missing
empty time|a\t\th=1|the time is missing
no such form|a\tyesterday|"yesterday" is no time
no zone|a\t2024-03-05T14:07:09|"2024-03-05T14:07:09" is no time
the epoch in another form|a\t1970-01-01 00:00:00|"1970-01-01 00:00:00" is no time
before the calendar|a\t1969-12-31T23:59:59Z|"1969-12-31T23:59:59Z" is no time
February 30|a\t2024-02-30T14:07:09Z|"2024-02-30T14:07:09Z" is not on the calendar
25 hours|a\t2024-02-03T25:07:09Z|"2024-02-03T25:07:09Z" is not on the calendar
no equals sign|a\t2024-03-05T14:07:09Z\theight|the property "height" has no '='
no key|a\t2024-03-05T14:07:09Z\t=1|the property "=1" has no key
a key twice|a\t2024-03-05T14:07:09Z\th=1\th=2|the property "h" occurs twice
the name as property|a\t2024-03-05T14:07:09Z\tname=b|the property "name" would replace
no name|\t2024-03-05T14:07:09Z|the name is empty
a blank name|  \t2024-03-05T14:07:09Z|the name is empty
a name twice|first\t2024-03-05T14:07:09Z|there is a scan "first" already
backslash and quote|a\t2024-03-05T14:07:09Z\tn=x\\"y|cannot be stored
backslash and quote in the name|a\\"\t2024-03-05T14:07:09Z|cannot be stored
backslash and quote in a key|a\t2024-03-05T14:07:09Z\t\\"=1|cannot be stored
NUL|a\t2024-03-05T14:07:09Z\tn=x\000y|cannot be stored
ROWS
}
while IFS='|' read -r name line reason; do
  rm -rf bad
  mkdir bad
  # The row's text is a format for printf on purpose: it holds the escapes.
  # shellcheck disable=SC2059
  { printf '# comment\n\n'; scan first; printf "$line\n"; scan last; } > bad.tsv
  expect "$name" 1 bad bad.tsv
  same "$name, one message" "$(wc -l < err | tr -d ' ')" 1
  says "$name" err "bad.tsv:4: $reason"
  says "$name" out '2 scans added, 1 lines skipped'
  same "$name, the others are there" "$(grep -o '"name"=>"[a-z]*"' bad/Scans | tr '\n' ' ')" '"name"=>"first" "name"=>"last" '
done < <(bad_lines)

# Nothing to skip: comments, empty lines, line ends of both kinds, a byte order mark, times without a second one like it.
mkdir ends
{ printf '\357\273\277# comment\r\n\r\n\n'; scan a | sed 's/$/\r/'; scan b; printf 'c\t2024-02-29t23:59:59-11:30\n'; } > ends.tsv
expect 'line ends' 0 ends ends.tsv
says 'line ends' out '3 scans added, 0 lines skipped'
same 'line ends, no carriage return stays' "$(tr -cd '\r' < ends/Scans | wc -c | tr -d ' ')" 0
mkdir empty
expect 'empty list' 0 empty - < /dev/null
same 'empty list' "$(cat empty/Scans)" "$header"

# Wrong usage, and files that cannot be read or written.
scan a > one.tsv
echo 'a line' > file
mkdir foreign damaged lost full
printf 'something else\n' > foreign/Scans
head -n 21 sample/Scans | head -c -1 > damaged/Scans
head -n 20 sample/Scans > lost/Scans
while IFS='|' read -r name reason arguments; do
  read -r -a words <<< "$arguments"
  expect "$name" 2 "${words[@]}"
  says "$name" err "$reason"
  same "$name, no output" "$(cat out)" ''
done <<'ROWS'
no arguments|a folder and at most one list are expected|
three arguments|a folder and at most one list are expected|ends one.tsv more
unknown option|there is no option --row|--row 3 ends one.tsv
rows without number|--rows takes a number|ends --rows
rows that are no number|--rows takes a number|--rows 3x ends one.tsv
absent list|cannot read absent.tsv|ends absent.tsv
a folder for a list|cannot read ends|ends ends
absent folder|there is no folder absent|absent one.tsv
a file for a folder|there is no folder file|file one.tsv
foreign stream|does not begin with the header|foreign one.tsv
stream without its last line feed|is damaged|damaged one.tsv
stream cut in a record|is damaged|lost one.tsv
ROWS
same 'foreign stream stays' "$(cat foreign/Scans)" 'something else'
head -n 21 sample/Scans | head -c -1 | cmp - damaged/Scans || fail 'damaged stream: changed'
[ ! -e absent ] || fail 'absent folder: it was made'
expect 'help' 0 --help
says 'help' out 'Exit status: 0 all well, 1 some lines were skipped, 2'

# A folder that cannot be written to. The administrator may write anywhere but to where the system has no files.
mkdir closed
chmod a-w closed
if [ -w closed ]; then closed=/proc; else closed=closed; fi
if [ -d "$closed" ]; then
  expect 'closed folder' 2 "$closed" one.tsv
  says 'closed folder' err "cannot write $closed/Scans"
fi
chmod u+w closed 2> /dev/null

# A full disk: a device that is always full, and a limit that a stream hits on its way.
many() { awk -v n="$1" 'BEGIN {for (i = 0; i < n; i++) printf "Scan \303\274 %d\t2024-03-05T14:%02d:%02dZ\tpoints=%d\n", i, i / 60 % 60, i % 60, i}'; }
many 20000 > many.tsv
if [ -c /dev/full ]; then
  ln -s /dev/full full/Scans
  expect 'stream on a device' 2 full one.tsv
  # Windows has no device files: there the device is only as full as any disk.
  says 'stream on a device' err 'full/Scans'
  found=0
  "${program[@]}" ends one.tsv > /dev/full 2> err || found=$?
  same 'output to a full device' "$found" 2
  says 'output to a full device' err 'cannot write to standard output'
  for model in limited-new limited-old; do
    mkdir $model
    [ $model = limited-new ] || cp record/Scans $model/Scans
    found=0
    (trap '' XFSZ; ulimit -f 1024; exec "${program[@]}" $model many.tsv > out 2> err) || found=$?
    same "$model" "$found" 2
    says "$model" err "cannot write $model/Scans"
  done
  [ ! -e limited-new/Scans ] || fail 'limited-new: a part of the stream stays'
  cmp record/Scans limited-old/Scans || fail 'limited-old: the stream changed'
fi

# Many lines.
mkdir many
expect 'many' 0 many many.tsv
says 'many' out 'many.tsv: 20000 scans added, 0 lines skipped'
same 'many, records' "$(grep -c "^$uuid\$" many/Scans)" 20000
same 'many, names in order' "$(sed -n 's/.*"name"=>"Scan \\u00FC \([0-9]*\)".*/\1/p' many/Scans | cksum)" "$(seq 0 19999 | cksum)"
expect 'many again' 1 many many.tsv
same 'many again, messages' "$(wc -l < err | tr -d ' ')" 20000
says 'many again' err 'many.tsv:20000: there is a scan'

[ "$failures" = 0 ] || exit 1
echo 'all well'
