#!/usr/bin/env bash
# Runs the catalogue as a person would, and looks at its exit status, output and messages, and the bytes that it leaves.
# Arguments: the command that runs the program.
set -uo pipefail
export LC_ALL=C.UTF-8 TZ=UTC
program=("$@")
cd "$(mktemp -d)" || exit 1
trap 'rm -rf "$PWD"' EXIT

fail() { echo "FAILED: $what: $1" | tee -a failures >&2; }
# The text with UUID and SHORT for uuids in both forms, and with ^ for controls.
plain() {
  sed -E 's/\r//; s/[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}/UUID/g; s|[A-Za-z0-9+/]{22}==|SHORT|g; s/[\o0-\o37\o177]/^/g'
}
# STATUS ARGUMENT...: runs the program on the caller's input; what it says goes, plain, to the files out and err.
run() {
  local status=0; what=${*:2}
  timeout 100 "${program[@]}" "${@:2}" > raw-out 2> raw-err || status=$?
  plain < raw-out > out
  plain < raw-err > err
  [ "$status" = "$1" ] || fail "exit status $status instead of $1; $(head -c 300 err)"
}
holds() { diff - "$1" > difference || fail "$1: $(cat difference)"; }  # FILE: compares it with the caller's input.
equals() { [ "$1" = "$2" ] || fail "found '$1' instead of '$2'"; }
# STATUS TEXT ARGUMENT...: runs the program, which says nothing but that.
gives() { run "$1" "${@:3}" < /dev/null; equals "$(cat out err)" "$2"; }
waitFor() { for _ in $(seq 200); do [ -s "$1" ] && return; sleep 0.05; done; fail "nothing comes to $1"; }
at=2024-03-05T14:07:09

# A list as editors and other zones leave it: mark, comment, blank lines, both line ends, none at the end; then all of it.
mkdir model again more bad broken many fresh none pipe pipe/Scans
printf '%b' '\357\273\277# comment\r\n\r\n \t\r\n' "T\303\274r \"7\"\t$at.042+01:00\tpath=a\\\\b\tempty=\tsum=1=1\t\r\n" \
  "山門\t2024-02-29t23:59:59-11:30\tz=\032\nไทยกำลัง\t${at}Z\nשָׁלוֹם\t${at}Z\nहिन्दी\t${at}Z\n\u1112\u1161\u11ab\t${at}Z\n" \
  "esc\033[31m\t${at}Z\tk\033=long $(printf '正%.0s' {1..30})\n1\t${at}Z" > list
run 0 write model - < list
holds out << 'END'
token  name      time                 properties                                                   uuid
0      Tür "7"   2024-03-05 13:07:09  empty=, path=a\b, sum=1=1                                    SHORT
1      山門      2024-03-01 11:29:59  z=?                                                          SHORT
2      ไทยกำลัง   2024-03-05 14:07:09                                                               SHORT
3      שָׁלוֹם      2024-03-05 14:07:09                                                               SHORT
4      हिन्दी     2024-03-05 14:07:09                                                               SHORT
5      한        2024-03-05 14:07:09                                                               SHORT
6      esc?[31m  2024-03-05 14:07:09  k?=long 正正正正正正正正正正正正正正正正正正正正正正正正正…  SHORT
7      1         2024-03-05 14:07:09                                                               SHORT
standard input: 8 scans added, 0 lines skipped
model/Scans: 8 scans
END
equals "$(cat err)" ''
equals "$(head -n 3 model/Scans | plain | tr '\n' '|')" '/** Korvale: Scan Data **/|UUID|'\
'{ "empty"=>"" "name"=>"T\u00FCr \"7\"" "path"=>"a\\b" "sum"=>"1=1" } 5.3.2024 13:7:9:42|'
equals "$(sed -n '2~2p' model/Scans | sort -u | wc -l)" 8  # Different uuids.
run 0 show --rows=2 model
equals "$(sed 's/ .*//' out | tr '\n' ' ')" 'token 0 1 ... model/Scans: '

# One scan by each of its names; what is a name and a token gives two. JSON. A list that is written to the same scans.
id=$(sed -n 2p model/Scans)
run 0 show model "${id^^}"
for key in 'Tür "7"' "$id" "$(sed -n "s/.*$id or \([^ ]*==\).*/\1/p" raw-out)" 0; do
  run 0 show model "$key"
  equals "$(tr -s ' \n' ' |' < out)" 'token 0|uuid UUID or SHORT|time 2024-03-05T13:07:09.042Z|empty|name Tür "7"|path a\b|sum 1=1|'
done
run 0 show model 1
equals "$(grep token out)" $'token  1\ntoken  7'
run 0 show --json model
holds <(sed -n '1p; 7s/\(\\u6b63\)*//gp' out) << 'END'
{"token":0,"uuid":"UUID","name":"T\u00fcr \"7\"","time":"2024-03-05T13:07:09.042Z","properties":{"empty":"","path":"a\\b","sum":"1=1"}}
{"token":6,"uuid":"UUID","name":"esc\u001b[31m","time":"2024-03-05T14:07:09.000Z","properties":{"k\u001b":"long "}}
END
run 0 show --list model
mv raw-out shown
TZ=NST3:30 run 0 write again shown
TZ=NST3:30 run 0 show --list again
equals "$(head -n 1 raw-out | tr -d '\r')" $'Tür "7"\t2024-03-05T09:37:09.042-03:30\tempty=\tpath=a\\b\tsum=1=1'
mv raw-out shown
run 0 write more shown
plain < model/Scans | holds <(plain < more/Scans)
gives 0 'more/Scans: 8 scans, 0 problems' verify more

# Lines that are skipped: each message, and the good ones around them.
printf '%b\n' "first\t${at}Z" "a\0303\t${at}Z" "\0360\0237\0230\0200\t${at}Z" "a\t${at}Z\tn=x\\\\\\\"y" "a\t${at}Z\tn=x\0000y" \
  a 'a\tyesterday' 'a\t1970-01-01T05:00:00Z' "a\t${at}Z\theight" "a\t${at}Z\t=1" "a\t${at}Z\th=1\th=2" "a\t${at}Z\tname=b" \
  "  \t${at}Z" "first\t${at}Z" "last\t${at}Z" > bad.tsv
run 1 write --json bad bad.tsv
equals "$(cat out)" '{"list":"bad.tsv","added":2,"skipped":13,"stream":"bad/Scans","scans":2}'
equals "$(grep -o '"name"=>"[a-z]*"' bad/Scans | tr '\n' ' ')" '"name"=>"first" "name"=>"last" '
equals "$(sed 's/^bad.tsv//; s/ such as .*//; s/ 1970-01-02 .*//; s/ no UTF.*//; s/"//g' err | tr '\n' '|')" ":2: cannot be stored:|\
:3: cannot be stored:|:4: cannot be stored:|:5: cannot be stored:|:6: the time is missing|:7: yesterday is no time|\
:8: 1970-01-01T05:00:00Z is not from|:9: the property height has no '='|:10: the property =1 has no key|\
:11: the property h occurs twice|:12: the property name would replace the scan's name|:13: the name is empty|\
:14: there is a scan first already, token 0|"

# What is asked for and cannot be had: exit status, arguments, message, nothing else.
while IFS='|' read -r status arguments message; do
  run "$status" $arguments < /dev/null
  [[ "$(cat err)" == "catalogue: $message"* && $(wc -l < err) = 1 && ! -s out ]] || fail "$(cat err)"
done << 'END'
2||a command is missing; see catalogue --help
2|sample|The following argument was not expected: sample; see
2|verify model --no-wait|The following argument was not expected: --no-wait
2|show model --rows=3x|--rows: Value 3x not in range
2|show -- --json|there is no folder --json
2|write model absent.tsv|cannot read absent.tsv
2|write model model|cannot read model
2|show none|cannot read none/Scans
2|show pipe|pipe/Scans is no regular file
2|write /proc list|cannot write /proc/Scans
1|show model b3|there is no scan "b3" in model/Scans
END

# Every damage in one stream, which is read as far as it can be, and never written to.
record() { printf '0000000%s-5fb9-448a-b310-3fb524f832ac\n{ "name"=>"%s" } 5.3.2024 14:7:9:%s\n' "$1" "$2" "${3:-0}"; }
{
  printf '/** Korvale: Scan Data **/\r\n' && record 1 a && echo && record 2 b | tr m n && record 3 c x && record 4 d '0 1'
  record 5 n | sed '1s/$/\o0/' && record 6 e | head -n 1 && record 7 f && record 8 g | sed 's/ 14.*//'
  record 9 h | sed '1s/.*/{&}/' && record 0 a && record 1 i && record 2 $'\200' && record 3 'k\u006B' && record 4 l | head -c 40
} > broken/Scans
cp broken/Scans copy
run 3 verify broken
cp err problems
equals "$(sed 's,^broken/Scans,,; s/: byte / /; s/ [a-z ]*damaged/ damaged/; s/ already.*//; s/"//g' err | tr '\n' '|')" "\
:1 0: the stream does not begin with the header of scan data|:4 99: no record begins here|:5 100: damaged|:7 171: damaged|\
:9 242: damaged|:11 315: damaged|:13 387: damaged|:16 495: damaged|:18 557: this is not what would be written|\
:20 630: there is a scan a|:22 701: there is a scan with this uuid|:24 772: Invalid UTF-8 byte encountered.|\
:26 843: this is not what would be written|:28 920: the record is cut short|"
run 3 write broken list
{ grep -v 'this is not\|Invalid' problems; echo 'catalogue: broken/Scans is damaged; nothing was written'; } | holds err
holds broken/Scans < copy
run 3 show broken
grep -v 'this is not\|Invalid\|already' problems | holds err
equals "$(sed '1d; s/ .*//' out | tr '\n' ' ')" '0 1 2 3 4 5 broken/Scans: '
run 3 verify --json broken
equals "$(sed 's/"reason":"[^"]*"//g' out | head -c 85)" '{"stream":"broken/Scans","scans":3,"problems":[{"line":1,"byte":0,},{"line":4,"byte":'
for cut in 28 63 64 "$(($(wc -c < model/Scans) - 1))"; do  # A cut at the byte that is named repairs the stream.
  head -c "$cut" model/Scans > broken/Scans
  run 3 verify broken
  truncate -s "$(sed 's/.*: byte \([0-9]*\): .*/\1/' err)" broken/Scans
  run 0 verify broken
done

# Disks that are full and readers that go away. What was written before stays, in whole records, and the list can be run again.
awk 'BEGIN {for (; i < 12000; i++) printf "Scan \303\274 %d\t2024-03-05T14:07:09Z\tpoints=%d\n", i, i}' > many.tsv
(trap '' XFSZ; ulimit -f 1100; run 2 write many many.tsv; [[ $(cat err) == 'catalogue: cannot write many/Scans: '* ]] || fail "$(cat err)")
run 0 verify many
[ "$(wc -c < many/Scans)" -gt 1000000 ] || fail 'nothing stays'
run 1 write many many.tsv
run 0 show many
sed -n 's/^\([0-9]*\) *Scan ü \([0-9]*\) .*/\1 \2/p' out | holds <(seq 0 11999 | sed 's/.*/& &/')
"${program[@]}" show model > /dev/full 2> err
equals "$? $(head -c 43 err)" '2 catalogue: cannot write to standard output:'
"${program[@]}" show many 2> err | head -n 1 > out
equals "${PIPESTATUS[0]} $(cat err)" '2 '
"${program[@]}" write many many.tsv 2>&1 > out | head -n 1 > err
equals "${PIPESTATUS[0]} $(head -n 1 out | tr -d '\r')" '1 many.tsv: 0 scans added, 12000 lines skipped'

if [ ${#program[@]} = 1 ]; then
  # A second writer is refused or waits, and a reader sees whole records; one that is interrupted leaves such.
  mkfifo feed
  "${program[@]}" write fresh - < feed > out-first 2> err-first &
  first=$!
  exec 9> feed
  { cat many.tsv; echo bad; } >&9
  waitFor err-first
  gives 2 'catalogue: another program writes to fresh/Scans' write --no-wait fresh list
  printf '00000009-5fb9' >> fresh/Scans
  run 0 verify fresh
  truncate -s -13 fresh/Scans
  "${program[@]}" write fresh many.tsv > out-second 2> err-second 9>&- &
  waitFor err-second
  kill -TERM $first; wait $first; equals $? 143
  wait $!
  equals "$? $(head -n 1 err-second)" '1 catalogue: waiting for another program that writes to fresh/Scans'
  gives 0 'fresh/Scans: 12000 scans, 0 problems' verify fresh

  # A terminal: bars of a pipe, whose end nobody knows, and of a file; the width changes, or only COLUMNS tells it.
  printf -v quoted '%q' "${program[0]}"
  onTerminal() { what=$1; script -qec "$1" typescript > /dev/null < /dev/null; tr '\r' '\n' < typescript | sed '/^Script/d' > lines; }
  feed="sleep 0.5; sed -n 1,9p many.tsv; sleep 0.5; stty cols 24 < /dev/tty; sed -n 11p many.tsv; echo bad"
  onTerminal "stty cols 59; { $feed; } | $quoted write none"
  equals "$(sed -nE 's/\[ {20,25}\]/[wide]/; s/\[ {15}\]/[narrow]/; s/[0-9]+ scans/N scans/; /%/p' lines | uniq | tr '\n' '|')" \
    '[wide]   0 %  N scans/s  Writing scans|[narrow]   0 %|'
  equals "$(grep -B 1 '^standard input:11: the time is missing' lines | head -n 1 | tr -d ' ')" ''
  equals "$(grep '…$' lines | wc -L)" 24
  onTerminal "stty cols 100; $quoted verify many"
  sed -nE 's,^\[#* *\] +([0-9]+) %  [0-9]+ scans/s  0:[0-9]{2} left  Verifying *$,\1,p' lines > percents
  { [ -s percents ] && sort -n percents | cmp - percents; } || fail "$(head -c 300 lines)"
  onTerminal "stty cols 0; COLUMNS=33 $quoted show model"
  equals "$(wc -L < lines)" 33
  onTerminal "$quoted write model"
  equals "$(head -n 1 lines)" 'catalogue: waiting for a list from the terminal, up to its end'
fi
[ ! -e failures ] && echo 'all well'
