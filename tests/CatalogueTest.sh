#!/usr/bin/env bash
# Runs the catalogue as a person would, and looks at its messages, its exit status and the bytes that it leaves.
# Arguments: the command that runs the program, then the folder of the examples.
set -uo pipefail
export LC_ALL=C.UTF-8 TZ=UTC
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
sum() { cksum < "$1"; }
count() { grep -c -e "$1" "$2"; }
many() { awk -v n="$1" 'BEGIN {for (i = 0; i < n; i++) printf "Scan \303\274 %d\t2024-03-05T14:%02d:%02dZ\tpoints=%d\n", i, i / 60 % 60, i % 60, i}'; }

# The sample list.
mkdir sample
expect 'sample' 0 write sample "$examples/data/scans.tsv"
scans=$(count '^[^#]' "$examples/data/scans.tsv")
same 'sample, nothing on standard error' "$(cat err)" ''
says 'sample, summary' out "$scans scans added, 0 lines skipped"
says 'sample, rest of the table' out "... and $((scans - 20)) more"
same 'sample, header' "$(head -n 1 sample/Scans)" "$header"
same 'sample, records' "$(count "^$uuid\$" sample/Scans)" "$scans"
same 'sample, uuids differ' "$(grep "^$uuid\$" sample/Scans | sort -u | wc -l | tr -d ' ')" "$scans"

# One record, byte for byte but for the uuid, and what is shown of it.
mkdir record
printf 'T\303\274r "7"\t2024-03-05T14:07:09+01:00\tpath=a\\b\tempty=\tsum=1=1\tesc=\033\t\r\n' > record.tsv
expect 'record' 0 write record record.tsv
printf '%s\n%s\n%b\n' "$header" UUID \
  '{ "empty"=>"" "esc"=>"\033" "name"=>"T\\u00FCr \\"7\\"" "path"=>"a\\\\b" "sum"=>"1=1" } 5.3.2024 13:7:9:0' > expected
sed "s/^$uuid\$/UUID/" record/Scans | cmp - expected || fail 'record: other bytes'
id=$(sed -n 2p record/Scans)
for key in 'Tür "7"' "$id" "$(tr a-f A-F <<< "$id")" 0; do
  expect "show $key" 0 show record "$key"
  same "show $key" "$(sed 's/ or .*//' out | tr -s ' \n' ' |')" \
    "token 0|uuid $id|time 2024-03-05T13:07:09.000Z|empty |esc ?|name Tür \"7\"|path a\\b|sum 1=1|"
done
expect 'short uuid' 0 show record "$(sed -n 's/.* or //p' out)"

# Columns line up under wide characters: the times of both rows begin in the same column. A name beats a token.
mkdir table
{ scan '正門'; scan 'Tor1'; scan "$(printf 'esc\033[31m')"; scan 1 | sed 's/height/k\x1b/'; } > table.tsv
expect 'table' 0 write table table.tsv
cp out written
expect 'table' 0 show table
same 'table, written and shown' "$(head -n 5 written)" "$(head -n 5 out)"
row() { grep -F "$1" out | sed "s/^[0-9]* *//; s/$1/Tor1/; s/ *[^ ]*\$//"; }
same 'table, wide' "$(row 正門)" "$(row Tor1)"
says 'table, controls' out 'esc?[31m'
says 'table, controls' out ' k? '
same 'table, controls' "$(tr -cd '\033' < out)" ''
expect 'two rows' 0 show --rows 2 table
says 'two rows' out '... and 2 more'
same 'two rows' "$(wc -l < out | tr -d ' ')" 5
expect 'no rows' 0 write --rows 0 "$(mkdir rows; echo rows)" table.tsv
says 'no rows' out '... and 4 more'
expect 'a name before a token' 0 show table 1
says 'a name before a token' <(tr -s ' ' < out) 'token 3'

# Again: nothing is added, nothing is lost. Then one more scan, from standard input, without a line feed at its end.
before=$(sum record/Scans)
expect 'again' 1 write record record.tsv
says 'again' err 'record.tsv:1: there is a scan "Tür "7"" already, token 0'
same 'again, stream' "$(sum record/Scans)" "$before"
expect 'one more' 0 write record - < <(scan 'Keller' | tr -d '\n')
says 'one more' out 'standard input: 1 scans added, 0 lines skipped'
says 'one more' out 'record/Scans: 2 scans'
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
half a zone|a\t2024-03-05T14:07:09+01|"2024-03-05T14:07:09+01" is no time
the first hours|a\t1970-01-01 05:00:00|"1970-01-01 05:00:00" is not from 1970-01-02
before the calendar|a\t1969-12-31T23:59:59Z|"1969-12-31T23:59:59Z" is not from 1970-01-02
February 30|a\t2024-02-30T14:07:09Z|"2024-02-30T14:07:09Z" is no time
25 hours|a\t2024-02-03T25:07:09Z|"2024-02-03T25:07:09Z" is no time
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
mkdir bad
while IFS='|' read -r name line reason; do
  rm -f bad/Scans
  # The row's text is a format for printf on purpose: it holds the escapes.
  # shellcheck disable=SC2059
  { printf '# comment\n\n'; scan first; printf "$line\n"; scan last; } > bad.tsv
  expect "$name" 1 write bad bad.tsv
  same "$name, one message" "$(wc -l < err | tr -d ' ')" 1
  says "$name" err "bad.tsv:4: $reason"
  says "$name" out '2 scans added, 1 lines skipped'
  same "$name, the others are there" "$(grep -o '"name"=>"[a-z]*"' bad/Scans | tr '\n' ' ')" '"name"=>"first" "name"=>"last" '
done < <(bad_lines)

# Nothing to skip: comments, blank lines, line ends of both kinds, a byte order mark, Ctrl-Z, times of another zone.
mkdir ends empty
{ printf '\357\273\277# comment\r\n\r\n\n \t\r\n'; scan a | sed 's/$/\r/'; scan b; printf 'c\t2024-02-29t23:59:59-11:30\tz=\032\n'; } > ends.tsv
expect 'line ends' 0 write ends - < ends.tsv
says 'line ends' out '3 scans added, 0 lines skipped'
same 'line ends, no carriage return stays' "$(tr -cd '\r' < ends/Scans | wc -c | tr -d ' ')" 0
expect 'empty list' 0 write empty < /dev/null
same 'empty list' "$(cat empty/Scans)" "$header"
expect 'empty stream' 0 show empty
same 'empty stream' "$(cat out)" 'empty/Scans: 0 scans'

# What is asked for and cannot be had: name of the row, exit status, the message, the arguments.
scan a > one.tsv
echo 'a line' > file
mkdir none pipe
mkdir pipe/Scans
while IFS='|' read -r name status reason arguments; do
  read -r -a words <<< "$arguments"
  expect "$name" "$status" "${words[@]}"
  same "$name, one message" "$(wc -l < err | tr -d ' ')" 1
  says "$name" err "catalogue: $reason"
  same "$name, no output" "$(cat out)" ''
done <<'ROWS'
no arguments|2|a command is missing; see catalogue --help|
unknown command|2|there is no command sample|sample one.tsv
no folder|2|a folder is missing|write --rows 3
three arguments|2|there is no use for more|write ends one.tsv more
two for verify|2|there is no use for one.tsv|verify ends one.tsv
unknown option|2|write has no option --row|write --row 3 ends one.tsv
option of another command|2|verify has no option --rows|verify --rows 3 ends
options end|2|there is no folder --json|show -- --json
rows without number|2|--rows takes a number|write ends --rows
rows that are no number|2|--rows takes a number|show --rows 3x ends
absent list|2|cannot read absent.tsv|write ends absent.tsv
a folder for a list|2|cannot read ends|write ends ends
absent folder|2|there is no folder absent|write absent one.tsv
a file for a folder|2|there is no folder file|write file one.tsv
nothing to show|2|cannot read none/Scans|show none
nothing to verify|2|cannot read none/Scans|verify none
a folder for a stream|2|pipe/Scans is no regular file|show pipe
no such scan|1|there is no scan "b3" in ends/Scans|show ends b3
ROWS
[ ! -e absent ] || fail 'absent folder: it was made'
while IFS='|' read -r arguments text; do
  read -r -a words <<< "$arguments"
  expect "$arguments" 0 "${words[@]}"
  says "$arguments" out "$text"
done <<'ROWS'
--help|Exit status: 0 all well, 1 some lines were skipped
write --help|Usage: catalogue write
show ends -h|Usage: catalogue show
verify --help|Usage: catalogue verify
--version|catalogue 2.
ROWS

# Damaged streams: name of the row, a sed script that does it, the only problem as LINE: byte BYTE: REASON, the scans
# that can still be read. The stream is three records, on lines 2, 4 and 6.
mkdir damaged
record() { printf '0000000%s-5fb9-448a-b310-3fb524f832ac\n{ "name"=>"%s" } 5.3.2024 14:7:9:0\n' "$1" "$2"; }
{ echo "$header" && record 1 a && record 2 b && record 3 c; } > good
length=$(record 1 a | wc -c | tr -d ' ')
second=$((27 + length))  # Byte and line of the second record.
damages() {
  cat <<ROWS
good||
another header|1s/.*/other/|1: byte 0: the stream does not begin with the header
header with a carriage return|1s/\$/\r/|1: byte 0: the stream does not begin with the header
no header|1d|1: byte 0: the stream does not begin with the header
nothing|d|1: byte 0: the stream does not begin with the header
an empty line|3s/\$/\n/|4: byte $second: no record begins here
no uuid|4s/0/g/|4: byte $second: no record begins here
no properties|5d|4: byte $second: the record is damaged
no name|5s/name/nama/|4: byte $second: the record is damaged
no time|5s/} .*/} x/|4: byte $second: the record is damaged
NUL|5s/b/\x00/|4: byte $second: the record is damaged
more behind the time|5s/\$/ 1/|4: byte $second: the record is damaged
half a time|5s/ 14.*//|4: byte $second: the record is not what would be written
braces around the uuid|4s/.*/{&}/|4: byte $second: the record is not what would be written
a name twice|5s/"b"/"a"/|4: byte $second: there is a scan "a" already, token 0
a uuid twice|4s/2/1/|4: byte $second: there is a scan with this uuid already, token 0
no last line feed||6: byte $((second + length)): the record is cut short
ROWS
}
while IFS='|' read -r name script problem; do
  sed "$script" good > damaged/Scans
  [ "$name" != 'no last line feed' ] || truncate -s -1 damaged/Scans
  [ -n "$problem" ] && status=3 || status=0
  expect "$name" "$status" verify damaged
  same "$name, messages" "$(wc -l < err | tr -d ' ')" $((status / 3))
  [ "$status" = 3 ] || continue
  says "$name" err "damaged/Scans:$problem"
  [[ "$problem" != *"not what would"* ]] || continue
  before=$(sum damaged/Scans)
  expect "$name, write" 3 write damaged one.tsv
  says "$name, write" err 'catalogue: damaged/Scans is damaged; nothing was written'
  same "$name, stream stays" "$(sum damaged/Scans)" "$before"
done < <(damages)

# Cut anywhere: whole records are what it was, and anything else is repaired by another cut at the byte that is named.
size=$(wc -c < good)
for cut in $(seq 27 23 "$size") $second $((second + length - 1)) $((second + 37)); do
  head -c "$cut" good > damaged/Scans
  [ $(((cut - 27) % length)) = 0 ] && status=0 || status=3
  expect "cut at $cut" "$status" verify damaged
  [ "$status" = 3 ] || continue
  truncate -s "$(sed 's/.*: byte \([0-9]*\): .*/\1/' err)" damaged/Scans
  expect "cut at $cut, repaired" 0 verify damaged
  says "cut at $cut, repaired" out "$(((cut - 27) / length)) scans, 0 problems"
done

# A damaged stream is shown as far as it can be read.
{ sed '4d' good && record 4 d; } > damaged/Scans
expect 'show damaged' 3 show damaged
same 'show damaged' "$(sed '1d; s/ .*//' out | tr '\n' ' ')" '0 1 2 damaged/Scans: '
says 'show damaged' err "damaged/Scans:4: byte $second: no record begins here"

# JSON is what a strict reader takes, and says what was written: a name with all that needs an escape, bytes that are no
# UTF-8, the marks that turn the direction of writing.
if command -v python3 > /dev/null; then
  { echo "$header" && record 1 $'a\\\\b\\"c\\n\\u202E\\r\\u00FC\033\177\200\\u4E2D' && record 2 b | sed 's/ .name/ "\x01"=>"\t"&/'; } > damaged/Scans
  expect 'json' 0 show --json damaged
  cp out json
  expect 'json, one' 0 show --json damaged 1
  cmp out <(tail -n 1 json) || fail 'json, one: differs from its line in the list'
  expect 'json, verify' 3 verify --json damaged
  cat out >> json
  expect 'json, write' 1 write --json ends bad.tsv
  cat out >> json
  python3 - json <<'CODE' || fail "json: $(cat json)"
import json, sys
texts = open(sys.argv[1], encoding='utf-8', newline='').read().split('\n')
assert texts.pop() == '' and all(c >= ' ' for text in texts for c in text), texts
first, second, verified, written = [json.loads(text) for text in texts]
assert first == {'token': 0, 'uuid': '00000001-5fb9-448a-b310-3fb524f832ac', 'time': '2024-03-05T14:07:09.000Z',
                 'name': 'a\\b"c\n\u202e\r\u00fc\x1b\x7f\ufffd\u4e2d', 'properties': {}}, first
assert second['name'] == 'b' and second['properties'] == {'\x01': '\t'}, second
assert verified == {'stream': 'damaged/Scans', 'scans': 2, 'problems': [
    {'line': 2, 'byte': 27, 'reason': 'the record is not what would be written for it'}]}, verified
assert written == {'list': 'bad.tsv', 'added': 2, 'skipped': 1, 'stream': 'ends/Scans', 'scans': 5}, written
CODE
else
  echo 'skipped: JSON, as there is no python3'
fi

# A folder that cannot be written to. The administrator may write anywhere but to where the system has no files.
mkdir closed
chmod a-w closed
if [ -w closed ]; then closed=/proc; else closed=closed; fi
if [ -d "$closed" ]; then
  expect 'closed folder' 2 write "$closed" one.tsv
  says 'closed folder' err "cannot write $closed/Scans"
fi
chmod u+w closed 2> /dev/null

# A full disk: a device that is always full, and a limit that a stream hits on its way.
many 20000 > many.tsv
if [ -c /dev/full ]; then
  mkdir full
  ln -s /dev/full full/Scans
  expect 'stream on a device' 2 write full one.tsv
  # Windows has no device files: there the device is only as full as any disk.
  says 'stream on a device' err 'full/Scans'
  found=0
  "${program[@]}" show ends > /dev/full 2> err || found=$?
  same 'output to a full device' "$found" 2
  says 'output to a full device' err 'cannot write to standard output'
  for model in limited-new limited-old; do
    mkdir $model
    [ $model = limited-new ] || cp record/Scans $model/Scans
    found=0
    (trap '' XFSZ; ulimit -f 1024; exec "${program[@]}" write $model many.tsv > out 2> err) || found=$?
    same "$model" "$found" 2
    says "$model" err "cannot write $model/Scans"
  done
  [ ! -e limited-new/Scans ] || fail 'limited-new: a part of the stream stays'
  cmp record/Scans limited-old/Scans || fail 'limited-old: the stream changed'
fi

# Many lines.
mkdir many
expect 'many' 0 write many many.tsv
says 'many' out 'many.tsv: 20000 scans added, 0 lines skipped'
same 'many, quiet' "$(cat err)" ''
same 'many, records' "$(count "^$uuid\$" many/Scans)" 20000
same 'many, names in order' "$(sed -n 's/.*"name"=>"Scan \\u00FC \([0-9]*\)".*/\1/p' many/Scans | cksum)" "$(seq 0 19999 | cksum)"
expect 'many, verify' 0 verify many
same 'many, verify' "$(cat out)" 'many/Scans: 20000 scans, 0 problems'
expect 'many, show' 0 show many
same 'many, show' "$(sed -n 's/^\([0-9]*\) *Scan ü \([0-9]*\) .*/\1 \2/p' out | cksum)" "$(seq 0 19999 | sed 's/.*/& &/' | cksum)"

# A reader that goes away: of the output, which is quiet, and of the messages, which hinders no writing.
"${program[@]}" show many 2> err | head -n 1 > out
same 'reader of the output goes' "${PIPESTATUS[0]} $(cat err)" '2 '
"${program[@]}" write many many.tsv 2>&1 > out | head -n 1 > err
same 'reader of the messages goes' "${PIPESTATUS[0]}" 1
says 'reader of the messages goes' out '0 scans added, 20000 lines skipped'
says 'reader of the messages goes' err 'many.tsv:1: there is a scan'

# Two writers: the second waits for the first, or refuses; readers see whole records meanwhile. What is interrupted
# leaves the stream as it was.
before=$(sum ends/Scans)
if [ ${#program[@]} = 1 ]; then
  mkfifo list
  for signal in TERM none; do
    rm -f err
    "${program[@]}" write ends - < list > out-first 2> err &
    first=$!
    exec 9> list
    echo bad >&9
    for _ in $(seq 100); do [ -s err ] && break; sleep 0.1; done
    expect "refuses ($signal)" 2 write --no-wait ends one.tsv
    says "refuses ($signal)" err 'catalogue: another program writes to ends/Scans'
    printf '00000009-5fb9' >> ends/Scans
    expect "read meanwhile ($signal)" 0 verify ends
    truncate -s -13 ends/Scans
    if [ $signal = TERM ]; then
      kill -TERM $first
      wait $first
      same 'interrupted' "$?" 143
      exec 9>&-
      same 'interrupted, stream stays' "$(sum ends/Scans)" "$before"
    else
      "${program[@]}" write ends many.tsv > out-second 2> err-second 9>&- &
      for _ in $(seq 100); do [ -s err-second ] && break; sleep 0.1; done
      says 'waits' err-second 'catalogue: waiting for another program that writes to ends/Scans'
      scan mine >&9
      exec 9>&-
      wait $first
      wait $!
      same 'two writers' "$(count "^$uuid\$" ends/Scans)" 20006
    fi
  done
  expect 'two writers' 0 verify ends
  mkdir fresh
  "${program[@]}" write fresh - < list > out-first 2>&1 &
  first=$!
  exec 9> list
  for _ in $(seq 100); do [ -e fresh/Scans ] && break; sleep 0.1; done
  sleep 0.2
  kill -INT $first 2> /dev/null || kill -TERM $first
  exec 9>&-
  wait $first
  [ ! -e fresh/Scans ] || [ "$(head -n 1 fresh/Scans)" = "$header" ] || fail 'interrupted, new: half a stream stays'
fi

# A list that is shown is written to the same model, in any zone.
mkdir again
expect 'as a list' 0 show --list record
cp out list.tsv
TZ=America/St_Johns expect 'as a list, written' 0 write again list.tsv
TZ=America/St_Johns expect 'as a list, shown' 0 show --list again
expect 'as a list, once more' 0 write "$(mkdir more; echo more)" out
same 'as a list' "$(tail -n +2 more/Scans | grep -v "^$uuid\$")" "$(tail -n +2 record/Scans | grep -v "^$uuid\$")"

# The bar: on a terminal, for work that takes its time. It knows what is left of a file, but not of a pipe.
if [ ${#program[@]} = 1 ] && command -v script > /dev/null; then
  mkdir bar
  printf -v quoted '%q' "${program[0]}"
  onTerminal() { script -qec "$1" typescript > /dev/null; tr '\r' '\n' < typescript > lines; }
  onTerminal "{ head -n 20 many.tsv; sleep 0.3; tail -n 20 many.tsv; echo bad; } | $quoted write bar"
  same 'bar for a pipe' "$(grep -cE '^\[ {25}\]   0 %  [0-9]+ scans/s  Writing scans' lines)" 1
  says 'bar, cleared for a message' <(tr '\r\n' '>;' < typescript) '   >standard input:41: the time is missing>;'
  many 60000 > more.tsv
  onTerminal "$quoted write limited-old more.tsv"
  sed -nE 's,^\[#* *\] +([0-9]+) %  [0-9]+ scans/s  0:[0-9]{2} left  Writing scans *$,\1,p' lines > percents
  { [ -s percents ] && sort -n percents | cmp - percents; } || fail "bar for a file: $(head -c 300 lines)"
else
  echo 'skipped: the bar, as there is no terminal to be had'
fi

[ "$failures" = 0 ] || exit 1
echo 'all well'
