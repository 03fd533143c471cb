#!/usr/bin/env bash
# The command, from the outside: pxcard_test.sh PXCARD SAMPLES
set -u
pxcard=$1
samples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0

# same WHAT GOT EXPECTED
same() {
  [ "$2" = "$3" ] && return
  echo "FAILED: $1: got '$2', expected '$3'"
  failures=$((failures + 1))
}

# expect CODE STDERR ARGUMENT...   runs pxcard, with its standard output in the file "out"
expect() {
  local code=$1 error=$2
  shift 2
  "$pxcard" "$@" >out 2>err
  same "code of '$*'" $? "$code"
  same "errors of '$*'" "$(<err)" "$error"
}

agent=$samples/agent.vcf
: >empty.vcf
echo hello >wrong.txt
cp "$agent" '[x]'
cp "$agent" -- -x.vcf

# What is shown, however the file is named.
expect 0 '' "$agent"
shown=$(<out)
same 'head' "$(head -n 2 out)" 'Amara Diallo
============'
like_shown() {
  expect 0 '' "$@"
  same "text of '$*'" "$(<out)" "$shown"
}
like_shown '[x]'
like_shown -- -x.vcf
like_shown <(cat "$agent")
like_shown - < <(cat "$agent")
# shellcheck disable=SC2094  # the file is only read
expect 0 '' --format text "$agent" - <"$agent"
same 'titles of several' "$(grep '^== ' out)" "== $agent ==
== standard input =="
printf "BEGIN:VCARD\\nX:~'\\\\\x7F\\nEND:VCARD" >trace.vcf
expect 0 '' --format trace trace.vcf
same 'trace' "$(sed -n '1p' out; tail -n 7 out)" "SoBeginSection(0, 0, 0)
SoEmitChar('~')
SoEmitChar(0x27)
SoEmitChar(0x5C)
SoEmitChar(0x7F)
SoEmitSpecial(5)
SoEmitBreak(1, 0)
SoEmitBreak(2, 0)"
expect 0 '' --format trace trace.vcf "$agent"
same 'titles of traces' "$(grep -A2 '^== ' out)" "== trace.vcf ==

SoBeginSection(0, 0, 0)
--
== $agent ==

SoBeginSection(0, 0, 0)"

# What can't be read. The other files are shown.
expect 1 'pxcard: empty.vcf: not a vCard or vCalendar file' empty.vcf
expect 1 'pxcard: standard input: not a vCard or vCalendar file' - </dev/null
expect 1 'pxcard: standard input: Bad file descriptor' - <&-
expect 1 'pxcard: .: Is a directory' .
expect 1 'pxcard: a�[1m�b: No such file or directory' $'a\e[1m\nb'
expect 1 'pxcard: none: No such file or directory
pxcard: wrong.txt: not a vCard or vCalendar file' none ./-x.vcf wrong.txt
same 'a good file among bad ones' "$(<out)" "== ./-x.vcf ==

$shown"

# Standard output that can't be written, or whose reader has gone.
"$pxcard" "$agent" >/dev/full 2>err
same 'full disk' "$? $(<err)" '1 pxcard: standard output: No space left on device'
"$pxcard" "$agent" >&- 2>err
same 'closed output' "$? $(<err)" '1 pxcard: standard output: Bad file descriptor'
many=()
for _ in {1..50}; do many+=("$samples/key-and-sound.vcf"); done
"$pxcard" --format trace "${many[@]}" 2>err | head -n 1 >out
same 'closed pipe' "${PIPESTATUS[*]} $(<err)" '1 0 '

# A file that becomes shorter while it is read: at the first line of the trace most is still unread.
for _ in {1..500}; do cat "$agent"; done >shrinking.vcf
"$pxcard" --format trace shrinking.vcf 2>err | { read -r _; : >shrinking.vcf; cat >out; }
same 'shrinking' "${PIPESTATUS[0]} $(<err)" '1 pxcard: shrinking.vcf: cut short while it was read'

# Formats, and what is said of damage.
expect 0 '' --format jsonl "$agent" "$agent"
same 'a line for each card' "$(wc -l <out)" 4
expect 1 'pxcard: wrong.txt: not a vCard or vCalendar file' --format json wrong.txt
same 'a file that is no card' "$(<out)" '[
{"file":"wrong.txt","error":"not a vCard or vCalendar file"}
]'
printf 'BEGIN:VCARD\nFN:a\nBEGIN:VCARD\nFN:\xff\nNOTE;CHARSET=UTF-8:\xff\nEND:VCARD\n' >faults.vcf
expect 1 'pxcard: faults.vcf: line 1: VCARD without END
pxcard: faults.vcf: line 5: bytes that are no text in the value'\''s character set' faults.vcf
same 'colours' "$("$pxcard" --color always "$agent" | grep -c $'\e\[')" "$("$pxcard" --color always "$agent" | grep -c $'\e\[0m')"
same 'no colours' "$("$pxcard" "$agent" | grep -c $'\e')" 0

# A file that costs more than its size allows: what is shown is whole, and where it ends is told.
for _ in {1..6000}; do printf 'BEGIN:VCARD\nN:a;\nEND:VCARD\n'; done >costly.vcf
expect 0 '' costly.vcf
for format in json trace; do
  "$pxcard" --raw --format $format costly.vcf >out 2>err
  same "a limit, $format" "$? $(sed -E 's/byte [0-9]+/byte N/' err)" "1 pxcard: costly.vcf: more work \
than its size allows; stopped at byte N (--no-limit reads on)"
done
"$pxcard" --raw --format json costly.vcf 2>err | python3 -c 'import json, sys
cards = json.load(sys.stdin)
print(len(cards) > 1, cards[-1]["error"][:9], all("properties" in card for card in cards[:-1]))' >out
same 'what is stopped is whole' "$(<out)" 'True more work True'
expect 0 '' --raw --no-limit --format trace costly.vcf

# Wrong use.
while IFS='|' read -r wrong words; do
  read -r -a arguments <<<"$wrong"
  expect 2 "pxcard: $words
See pxcard --help." "${arguments[@]}"
done <<END
|no file is given
--extract d|no file is given
--nonsense $agent|unknown option --nonsense
-x $agent|unknown option -x
--format [nonsense $agent|unknown format [nonsense
--format|--format needs a value
--extract|--extract needs a value
--extract d --format trace $agent|--format and --extract exclude each other
--$(printf '\e[1m') $agent|unknown option --�[1m
END
expect 0 '' --help
same 'codes in the help' "$(grep -Ec '^ *[012]  ' out)" 3
expect 0 '' --version
same 'version' "$(sed -E 's/[0-9]+(\.[0-9]+)+/N/g' out)" 'pxcard N (libpx_vcrd N)'

# Objects are saved as they were written.
for sample in picture.vcf key-and-sound.vcf calendar.vcs; do
  expect 0 '' --extract objects "$samples/$sample"
  cat out >>saved
done
same 'saved objects' "$(<saved)" "1-photo-1.jpg	image/jpeg	534	$samples/picture.vcf	1
1-sound-1.wav	audio/x-wav	844	$samples/key-and-sound.vcf	1
1-key-1.pgp	application/pgp-keys	239	$samples/key-and-sound.vcf	1
agenda.txt	text/plain	84	$samples/calendar.vcs	2
2-attachment-2.png	image/png	371	$samples/calendar.vcs	2"
sed -n '/^PHOTO/,/^.$/p' "$samples/picture.vcf" | tail -n +2 | tr -d ' \r' | base64 -d >photo
cmp photo objects/1-photo-1.jpg || same 'the photo' other equal
expect 0 "pxcard: $agent: no embedded objects" --extract none "$agent"
same 'nothing to save' "$(find . -name none)" ''
picture=$samples/picture.vcf
expect 1 "pxcard: $picture: no/there: No such file or directory" --extract no/there "$picture"
expect 1 "pxcard: $picture: wrong.txt: Not a directory" --extract wrong.txt "$picture"
limited=$(ulimit -f 0; "$pxcard" --extract limited "$picture" 2>&1)
same 'no room' "$limited$(ls -A limited)" "pxcard: $picture: limited: File too large"

# Titles of strangers.
long=$(printf 'n%.0s' {1..300})
{
  printf 'BEGIN:VCALENDAR\r\n'
  printf 'ATTACH;VALUE=BINARY;ENCODING=BASE64;X-FILENAME=%s:\r\n aGVsbG8K\r\n\r\n' ../up.txt \
    /abs.txt ../../.. $'c\e[31m\x01.txt' same.csv same.csv taken.txt link.txt "$long" "$long" \
    .hidden
  printf 'END:VCALENDAR\r\n'
} >hostile.vcs
mkdir -p in/d
echo mine >in/d/taken.txt
ln -s nowhere in/d/link.txt
expect 0 '' --extract in/d hostile.vcs
same 'files of strangers' "$(find in -type f -printf '%P %s\n' | LC_ALL=C sort)" "d/1-attachment-3.txt 6
d/abs.txt 6
d/c_[31m_.txt 6
d/hidden.txt 6
d/link-2.txt 6
d/${long:0:249}-2.txt 6
d/${long:0:251}.txt 6
d/same-2.csv 6
d/same.csv 6
d/taken-2.txt 6
d/taken.txt 5
d/up.txt 6"
same 'lines' "$(grep -c '^[^	]*	text/plain	6	hostile.vcs	1$' out)" 11

# Data that breaks off; the next card's is whole.
printf 'BEGIN:VCARD\nKEY;BASE64:%s\nEND:VCARD\n' 'QUJD*QUJD' QUJD >bad.vcf
expect 1 'pxcard: bad.vcf: 1-key-1.txt: cut off at a byte that is no Base64' --raw --extract raw bad.vcf
expect 1 'pxcard: bad.vcf: line 2: the Base64 text ends at a byte that is none, 0x2A' --extract bad bad.vcf
same 'both' "$(<out)" '1-key-1.txt	text/plain	3	bad.vcf	1
2-key-1.txt	text/plain	3	bad.vcf	2'
same 'their data' "$(cat bad/*)" ABCABC

exit $((failures > 0))
