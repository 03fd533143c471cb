#!/usr/bin/env bash
# The command, from the outside: pxcard_test.sh PXCARD SAMPLES
set -u
export LC_ALL=C
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
expect 1 'pxcard: .: is a folder; -r reads the files below it' .
expect 1 'pxcard: a�[1m�b: No such file or directory' $'a\e[1m\nb'
expect 1 'pxcard: none: No such file or directory
pxcard: wrong.txt: not a vCard or vCalendar file' none ./-x.vcf wrong.txt
same 'a good file among bad ones' "$(<out)" "== ./-x.vcf ==

$shown"

# A page tells of files that can't be read, as standard error does.
expect 1 'pxcard: none: No such file or directory' --format html none "$agent"
same 'page' "$(grep -Eo '</html>|<h1>.*</h1>|<h2 .*</h2>|^<p class="fault.*' out)" "<h1><bdi>Cards and calendars</bdi></h1>
<p class=\"fault\"><b><bdi>none</bdi></b> <bdi>No such file or directory</bdi></p>
<h2 id=\"f1\"><bdi>$agent</bdi></h2>
</html>"

# Standard output that can't be written, or whose reader has gone.
"$pxcard" "$agent" >/dev/full 2>err
same 'full disk' "$? $(<err)" '1 pxcard: standard output: No space left on device'
"$pxcard" "$agent" >&- 2>err
same 'closed output' "$? $(<err)" '1 pxcard: standard output: Bad file descriptor'
many=()
for _ in {1..50}; do many+=("$samples/key-and-sound.vcf"); done
"$pxcard" --format trace "${many[@]}" 2>err | head -n 1 >out
same 'closed pipe' "${PIPESTATUS[*]} $(<err)" '1 0 '
"$pxcard" --jobs 2 --format trace "${many[@]}" 2>err | head -n 1 >out
same 'closed pipe, in parallel' "${PIPESTATUS[*]} $(<err)" '1 0 '

# A file that becomes shorter or is written over while it is read: at the first line of the trace most
# is still unread.
for _ in {1..500}; do cat "$agent"; done >long.vcf
for change in 'truncate -s 0 :cut short' 'dd if=long.vcf conv=notrunc status=none of=:changed'; do
  cp long.vcf changing.vcf
  touch -d 1999-12-31 changing.vcf
  # shellcheck disable=SC2086
  "$pxcard" --format trace changing.vcf 2>err |
    { read -r _; set -f; ${change%%:*}changing.vcf; cat >out; }
  same "$change" "${PIPESTATUS[0]} $(<err)" "1 pxcard: changing.vcf: ${change#*:} while it was read"
done

# JSON calls a file what it was given as, in any language.
expect 1 'pxcard: Standardeingabe: keine vCard- oder vCalendar-Datei
pxcard: a�b: Datei oder Ordner nicht gefunden' --lang de --format jsonl - $'a\nb' <wrong.txt
same 'names in JSON' "$(<out)" '{"file":"standard input","error":"keine vCard- oder vCalendar-Datei"}
{"file":"a\nb","error":"Datei oder Ordner nicht gefunden"}'

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

# Many inputs: folders with a loop in them, a list, standard input that isn't named.
mkdir -p tree/Sub/deep tree/empty
cp "$agent" tree/Sub/deep/B.VCF
cp "$agent" tree/a.vcard
ln -s ../a.vcard tree/Sub/link.ics
ln -s .. tree/Sub/loop
ln -s "$samples" tree/linked
echo other >tree/c.txt
expect 0 '' -r tree
same 'files below' "$(grep '^== ' out)" '== tree/Sub/deep/B.VCF ==
== tree/Sub/link.ics ==
== tree/a.vcard =='
mkdir tree/closed
chmod 0 tree/closed
unshare -U "$pxcard" -r tree >out 2>err # without the rights of root
same 'a closed folder' "$? $(<err) $(grep -c '^== ' out)" '1 pxcard: tree/closed: Permission denied 3'
rmdir tree/closed
expect 1 'pxcard: tree/empty: holds no file named .vcf, .vcard, .vcs or .ics' -r tree/empty
printf 'tree/a.vcard\0-\0\0%s' "$agent" >names
expect 1 "pxcard: standard input: gives the names of files, so it can't be read as one
pxcard: standard input: holds an empty name; each name ends with one zero byte" --files0-from - <names
same 'files of a list' "$(grep '^== ' out)" "== tree/a.vcard ==
== $agent =="
expect 1 'pxcard: none: No such file or directory' --files0-from none
expect 0 '' --files0-from /dev/null
like_shown < <(cat "$agent")

# Files in parallel: the same, in the same order.
for _ in {1..30}; do many+=("$samples/several.vcf" none "$work/bad-lines.vcf"); done
printf 'BEGIN:VCARD\nnothing\nEND:VCARD\n' >bad-lines.vcf
for format in text html json jsonl trace; do
  "$pxcard" --format $format "${many[@]}" >one 2>&1
  "$pxcard" --jobs 3 --format $format "${many[@]}" >out 2>&1
  same "code of $format in parallel" $? 1
  cmp one out || same "$format in parallel" other equal
  "$pxcard" -q --jobs 2 --format $format "${many[@]}" >out
  [ $format != json ] || python3 -m json.tool out >/dev/null || same 'one array' bad good
done

# Faults alone, and none of them.
expect 1 'pxcard: bad-lines.vcf: line 2: no colon: not a property' --check bad-lines.vcf "$agent"
same 'checked' "$(<out)" ''
expect 0 '' --check "$agent"
expect 1 '' -q none bad-lines.vcf

# The output file is there as a whole or as it was.
echo old >kept
chmod 640 kept
ln -s kept link
expect 1 'pxcard: none: No such file or directory' -o link none "$agent"
same 'output file' "$(<kept)$(stat -c %a kept)$(find . -name '.px*' -o -type l -name link)" \
  "== $agent ==

${shown}640./link"
(ulimit -f 128; "$pxcard" -o kept --format trace "${many[@]}" 2>&1) >/dev/null
same 'full disk, output file' "$? $(stat -c %a kept) $(find . -name '.px*')" '1 640 '
grep -q '^== ' kept || same 'the old file' gone there
mkfifo waiting
"$pxcard" -o kept waiting 2>err &
exec 3>waiting
until [ -n "$(find . -name '.px*')" ]; do sleep 0.01; done
kill $!
wait $! 2>err
same 'interrupted' "$? $(find . -name '.px*')" '143 '
exec 3>&-
(trap '' TERM && exec "$pxcard" -o kept waiting) &
exec 3>waiting
until [ -n "$(find . -name '.px*')" ]; do sleep 0.01; done
kill $!
cat "$agent" >&3
exec 3>&-
wait $!
same 'a signal that is ignored' "$? $(grep -c Telephone kept)" "0 $(grep -c Telephone <<<"$shown")"
expect 1 'pxcard: no/there: No such file or directory' -o no/there "$agent"
expect 1 'pxcard: .: Is a directory' -o . "$agent"
expect 0 '' -o /dev/null "$agent"

# On a terminal: no input, and a line that tells how far the work is and goes at the end.
at_terminal() { script -qec "$1" /dev/null </dev/null | tr '\r' '\n' | tr -d '\n\033'; }
same 'terminal' "$(at_terminal "$pxcard </dev/tty")" 'pxcard: no file is given''See pxcard --help.'
same 'progress' "$(at_terminal "(sleep 1.5; cat '$agent') | '$pxcard' -o progress - '$agent'" |
  sed -E 's|([0-9.]+ k?B, [0-9] files, [0-9.]+ k?B/s[[]K)+|LINE|')" '[KLINE'
same 'measured progress' "$(at_terminal "'$pxcard' --format trace long.vcf | (sleep 2; cat) >out" |
  grep -cE '[0-9] k?B of 220 kB, 0 of 1 files, [0-9.]+ k?B/s, 0:[0-9][0-9] left.K')" 1
same 'width' "$(at_terminal "stty cols 40; '$pxcard' '$agent'" | grep -oE -- '-{20,}' | head -n 1 | wc -c)" 41
same 'no progress' "$(at_terminal "(sleep 1.5; cat '$agent') | '$pxcard' -q -o progress -")" ''
# A file that costs more than its size allows: what is shown is whole, and where it ends is told.
for _ in {1..6000}; do printf 'BEGIN:VCARD\nN:a;\nEND:VCARD\n'; done >costly.vcf
expect 0 '' costly.vcf
for task in --check '--format json' '--format html' '--format trace'; do
  read -r -a arguments <<<"$task"
  "$pxcard" --raw "${arguments[@]}" costly.vcf >out 2>err
  same "a limit, $task" "$? $(sed -E 's/byte [0-9]+/byte N/' err)" "1 pxcard: costly.vcf: more work \
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
--nonsense $agent|unknown option --nonsense
-x $agent|unknown option -x
--format [nonsense $agent|unknown value [nonsense for --format; known: text, html, json, jsonl, trace
--raw=1 $agent|--raw takes no value
--lang xx $agent|unknown value xx for --lang; known: ar, de, en, es, fr, ja
--jobs 0 $agent|--jobs needs a number from 1 to 256
--jobs 2x $agent|--jobs needs a number from 1 to 256
--files0-from x $agent|with --files0-from no file can be an argument
--check -o x $agent|--check and --output exclude each other
--name x $agent|--name goes with --extract only
--extract d --name x/y $agent|--name: a name can't hold a slash; --extract gives the folder
--extract d --name {no $agent|--name: there is no {no, but {file}, {card}, {kind}, {number} and {title}
--format|--format needs a value
--extract|--extract needs a value
--extract d --format trace $agent|--format and --extract exclude each other
--$(printf '\e[1m') $agent|unknown option --�[1m
END

# The help, the page and the completions tell the same.
expect 0 '' --help
share=$(dirname "$pxcard")/../share
page=$share/man/man1/pxcard.1
options=$(grep -oE '^ +(-., )?--[a-z0-9-]+' out | grep -oE -- '--[a-z0-9-]+')
same 'options' "$(wc -w <<<"$options")" 16
for option in $options; do
  name=${option#--}
  grep -qF -- "fB$option\\fR" "$page" || same "$option in the page" none there
  grep -qE -- "[ |]${option}[ |)']" "$share/bash-completion/completions/pxcard" || same "$option" none bash
  grep -qE -- "[ {]${option}[,'}]" "$share/zsh/site-functions/_pxcard" || same "$option" none zsh
  grep -qF -- " -l $name " "$share/fish/vendor_completions.d/pxcard.fish" || same "$option" none fish
done
bash -c '. "$1"; _pxcard pxcard tr --format; echo "${COMPREPLY[*]}"; _pxcard pxcard --ch x
  echo "${COMPREPLY[*]}"' - "$share/bash-completion/completions/pxcard" >out2
same 'completed' "$(<out2)" 'trace
--check'
same 'codes' "$(sed -nE '/^Exit codes/,$s/^ +([0-9])  /\1 /p' out)" \
  "$(sed -n '/EXIT CODES/,/ENVIRONMENT/p' "$page" | grep -A2 '^\\fB' | grep -v '^\(--\|.RS.*\)$' |
    sed 's/\\f[BR]//g' | paste -d' ' - -)"

# Languages, on a system without any locale.
mkdir speech
while IFS='|' read -r environment arguments words; do
  # shellcheck disable=SC2086
  (cd speech && env -i $environment "$pxcard" $arguments "$samples/picture.vcf" none) >out 2>&1
  same "language of '$environment' '$arguments'" "$(grep -cE "$words" out)" 1
done <<END
|--lang de|^Telefon .geschäft
|--lang de_AT.UTF-8|none: Datei oder Ordner nicht gefunden
LANG=ja_JP.UTF-8||^電話 .勤務先
LC_ALL=ar_EG LANG=de_DE||^الهاتف .العمل
LANG=fr_FR LANGUAGE=xx:es:de||^Teléfono .trabajo
LANG=C LANGUAGE=de||^Telephone .work
LANG=de_DE|--lang en|^Telephone .work
LANG=de_DE|--format json|"label":"Telephone"
|--lang ar --format html|^<html lang="ar" dir="rtl">
LANG=ja_JP|--format html|<dt><bdi>電話</bdi> <small><bdi>勤務先
|--lang de --format nonsense|unbekannter Wert nonsense
END
expect 0 '' --lang de --format html -o page.html "$agent" "$samples/calendar.vcs"
for text in 'lang="de" dir="ltr"' 'placeholder="Filtern"' '> Details</label>' \
  '<h1><bdi>Karten und Kalender<' '>Vertretung von <a href="#c1">' '>Donnerstag, 18. April 2024</time>' \
  '>Aufgabe</span> <span class="tag">offen<' '<div>Fällig <time' '>bestätigt</span> <small>Eigentümer<' \
  '<dt>Schlummerzeit</dt><dd dir="auto"><time datetime="PT5M">5 Min.<'; do
  same "'$text' in German" "$(grep -cF -- "$text" page.html | sed 's/[1-9].*/some/')" some
done
expect 0 '' --version
same 'version' "$(sed -E 's/^pxcard ([0-9]+\.[0-9]+\.[0-9]+) \(libpx_vcrd \1\)$/N N/' out)" 'N N'

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
printf 'BEGIN:VCARD\nPHOTO;BASE64:%s\nEND:VCARD\n' "$(head -c 200000 /dev/zero | base64 -w 0)" >large.vcf
limited=$(ulimit -f 128; "$pxcard" --raw --extract limited large.vcf 2>&1)
same 'no room' "$limited$(ls -A limited)" "pxcard: large.vcf: limited: File too large"
note=NOTE:$(head -c 60000 /dev/zero | tr '\0' a)
printf 'BEGIN:VCARD\nVERSION:3.0\n%s\n%s\n%s\nFN:x\nEND:VCARD\n' "$note" "$note" "$note" >notes.vcf
same 'room enough' "$(TMPDIR=$PWD/none "$pxcard" notes.vcf 2>&1 | sed -n 1p)" x
same 'no room for a copy' "$(ulimit -f 128; "$pxcard" - < <(cat long.vcf) 2>&1)" \
  'pxcard: standard input: temporary file in TMPDIR or /tmp: File too large'

# Equal content is saved once; names by a pattern.
picture_line="image/jpeg	534	$picture	1"
expect 0 '' --extract named --jobs 2 --name '{file}-{card}-{kind}{number}{title}' "$picture" "$picture" \
  "$samples/calendar.vcs"
same 'named' "$(<out)" "picture-1-photo1.jpg	$picture_line
picture-1-photo1.jpg	$picture_line
calendar-2-attachment1agenda.txt	text/plain	84	$samples/calendar.vcs	2
calendar-2-attachment2.png	image/png	371	$samples/calendar.vcs	2"
same 'saved once' "$(find named -type f | wc -l)" 3
cp "$picture" $'\\..a\e.vcf'
expect 0 '' --extract named --name '.{file}{title}-' $'\\..a\e.vcf'
same 'safe name' "$(cut -f1 out)" 'a_-.jpg'

# Titles of strangers.
long=$(printf 'n%.0s' {1..300})
{
  printf 'BEGIN:VCALENDAR\r\n'
  count=10
  for name in ../up.txt /abs.txt ../../.. $'c\e[31m\x01.txt' same.csv same.csv taken.txt link.txt \
    "$long" "$long" .hidden; do
    printf 'ATTACH;VALUE=BINARY;ENCODING=BASE64;X-FILENAME=%s:\r\n %s\r\n\r\n' "$name" \
      "$(printf 'no%d\n\n' $count | base64)"
    count=$((count + 1))
  done
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
printf 'BEGIN:VCARD\nKEY;BASE64:%s\nEND:VCARD\n' 'QUJD*QUJD' REVG >bad.vcf
expect 1 'pxcard: bad.vcf: line 2: the Base64 text ends at a byte that is none, 0x2A' --extract bad \
  bad.vcf
expect 1 'pxcard: bad.vcf: 1-key-1.txt: cut off at a byte that is no Base64' --raw --extract raw bad.vcf
same 'both' "$(<out)" '1-key-1.txt	text/plain	3	bad.vcf	1
2-key-1.txt	text/plain	3	bad.vcf	2'
same 'their data' "$(cat bad/*)" ABCDEF

exit $((failures > 0))
