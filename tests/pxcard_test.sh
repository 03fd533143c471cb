#!/usr/bin/env bash
# The command, from the outside: pxcard_test.sh PXCARD SAMPLES
set -u
export LC_ALL=C
unset COLUMNS DISPLAY WAYLAND_DISPLAY
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

# expect_each   expect for each line of standard input: CODE|ARGUMENTS|ERROR
expect_each() {
  local code arguments error
  while IFS='|' read -r code arguments error; do
    read -r -a arguments <<<"$arguments"
    [ "$code" = 2 ] && error+=$'\n''See pxcard --help.'
    expect "$code" "${error:+pxcard: $error}" "${arguments[@]}"
  done
}

agent=$samples/agent.vcf
picture=$samples/picture.vcf
: >empty.vcf
echo hello >wrong.txt
printf 'BEGIN:VCARD\nnothing\nEND:VCARD\n' >bad-lines.vcf
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

# What can't be read, and how the command ends. The other files are shown.
expect_each <<END
1|bad-lines.vcf $agent|bad-lines.vcf: line 2: no colon: not a property
1|-q --format jsonl bad-lines.vcf|
1|--check bad-lines.vcf $agent|bad-lines.vcf: line 2: no colon: not a property
0|--check $agent|
0|--tolerant bad-lines.vcf|bad-lines.vcf: line 2: no colon: not a property
0|-q --tolerant --check bad-lines.vcf|
0|-q --tolerant --extract none bad-lines.vcf|
3|-q --jobs 2 none bad-lines.vcf $agent|
3|--tolerant empty.vcf|empty.vcf: is empty
3|--format trace empty.vcf|empty.vcf: is empty
3|--check wrong.txt|wrong.txt: not a vCard or vCalendar file
3|--extract none wrong.txt|wrong.txt: not a vCard or vCalendar file
3|.|.: is a folder; -r reads the files below it
END
expect 3 'pxcard: standard input: is empty' - </dev/null
expect 3 'pxcard: standard input: Bad file descriptor' - <&-
expect 3 'pxcard: a�[1m�b: No such file or directory' $'a\e[1m\nb'
expect 3 'pxcard: none: No such file or directory
pxcard: wrong.txt: not a vCard or vCalendar file' none ./-x.vcf wrong.txt
same 'a good file among bad ones' "$(<out)" "== ./-x.vcf ==

$shown"

# A file that is too large is refused at once.
cp "$agent" huge.vcf
truncate -s 4G huge.vcf
expect 3 'pxcard: huge.vcf: File too large' --format trace huge.vcf
same 'shown of a huge file' "$(<out)" ''

# A page tells of files that can't be read, as standard error does.
expect 3 'pxcard: none: No such file or directory' --format html none "$agent"
same 'page' "$(grep -Eo '</html>|<h1>.*</h1>|<h2 .*</h2>|^<p class="fault.*' out)" "<h1><bdi>Cards and calendars</bdi></h1>
<p class=\"fault\"><b><bdi>none</bdi></b> <bdi>No such file or directory</bdi></p>
<h2 id=\"f1\"><bdi>$agent</bdi></h2>
</html>"

# Standard output that can't be written, or whose reader has gone.
"$pxcard" "$agent" >/dev/full 2>err
same 'full disk' "$? $(<err)" '3 pxcard: standard output: No space left on device'
"$pxcard" "$agent" >&- 2>err
same 'closed output' "$? $(<err)" '3 pxcard: standard output: Bad file descriptor'
many=()
for _ in {1..50}; do many+=("$samples/key-and-sound.vcf"); done
"$pxcard" --format trace "${many[@]}" 2>err | head -n 1 >out
same 'closed pipe' "${PIPESTATUS[*]} $(<err)" '3 0 '
"$pxcard" --jobs 2 --format trace "${many[@]}" 2>err | head -n 1 >out
same 'closed pipe, in parallel' "${PIPESTATUS[*]} $(<err)" '3 0 '

# A file that becomes shorter or is written over while it is read: at the first line of the trace most
# is still unread.
for _ in {1..500}; do cat "$agent"; done >long.vcf
for change in 'truncate -s 0 :cut short' 'dd if=long.vcf conv=notrunc status=none of=:changed'; do
  cp long.vcf changing.vcf
  touch -d 1999-12-31 changing.vcf
  # shellcheck disable=SC2086
  "$pxcard" --format trace changing.vcf 2>err |
    { read -r _; set -f; ${change%%:*}changing.vcf; cat >out; }
  same "$change" "${PIPESTATUS[0]} $(<err)" "3 pxcard: changing.vcf: ${change#*:} while it was read"
done

# JSON calls a file what it was given as, in any language.
expect 3 'pxcard: Standardeingabe: keine vCard- oder vCalendar-Datei
pxcard: a�b: Datei oder Ordner nicht gefunden' --lang de --format jsonl - $'a\nb' <wrong.txt
same 'names in JSON' "$(<out)" '{"file":"standard input","error":"keine vCard- oder vCalendar-Datei"}
{"file":"a\nb","error":"Datei oder Ordner nicht gefunden"}'

# Formats, and what is said of damage.
expect 0 '' --format jsonl "$agent" "$agent"
same 'a line for each card' "$(wc -l <out)" 4
expect 3 'pxcard: wrong.txt: not a vCard or vCalendar file' --format json wrong.txt
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
as_anybody=() # what takes the right to open anything from root
[ "$(id -u)" -ne 0 ] || as_anybody=(setpriv '--inh-caps=-all' '--bounding-set=-dac_override,-dac_read_search')
if "${as_anybody[@]}" test ! -x tree/closed; then
  "${as_anybody[@]}" "$pxcard" -r tree >out 2>err
  same 'a closed folder' "$? $(<err) $(grep -c '^== ' out)" '3 pxcard: tree/closed: Permission denied 3'
else
  echo 'skipped: a folder that is closed, as none is closed to this user'
fi
rmdir tree/closed
expect 3 'pxcard: tree/empty: holds no file named .vcf, .vcard, .vcs or .ics' -r tree/empty
printf 'tree/a.vcard\0-\0\0%s' "$agent" >names
expect 3 "pxcard: standard input: gives the names of files, so it can't be read as one
pxcard: standard input: holds an empty name; each name ends with one zero byte" --files0-from - <names
same 'files of a list' "$(grep '^== ' out)" "== tree/a.vcard ==
== $agent =="
expect 3 'pxcard: none: No such file or directory' --files0-from none
expect 0 '' --files0-from /dev/null
like_shown < <(cat "$agent")

# Files in parallel: the same, in the same order.
for _ in {1..30}; do many+=("$samples/several.vcf" none "$work/bad-lines.vcf"); done
for format in text html json jsonl trace; do
  "$pxcard" --format $format "${many[@]}" >one 2>&1
  "$pxcard" --jobs 3 --format $format "${many[@]}" >out 2>&1
  same "code of $format in parallel" $? 3
  cmp one out || same "$format in parallel" other equal
  "$pxcard" -q --jobs 2 --format $format "${many[@]}" >out
  [ $format != json ] || python3 -m json.tool out >/dev/null || same 'one array' bad good
done

# No input is the output, whatever it is called; nothing is written then.
mkdir own
cp "$agent" own/a.vcf
ln own/a.vcf own/hard.vcf
ln -s a.vcf own/link.vcf
printf '%s\0own/a.vcf\0' "$agent" >own/list
cp -a own before
expect_each <<END
2|-o own/a.vcf $agent own/a.vcf|own/a.vcf: is the output as well
2|-o own/link.vcf own/a.vcf|own/a.vcf: is the output as well
2|--extract none -o own/a.vcf own/link.vcf|own/link.vcf: is the output as well
2|--format json -o own/a.vcf own/hard.vcf|own/hard.vcf: is the output as well
2|-r -o own/link.vcf own|own/a.vcf: is the output as well
2|-o own/list --files0-from own/list|own/list: is the output as well
2|-o own/a.vcf --files0-from own/list|own/a.vcf: is the output as well
2|--jobs 2 -o own/a.vcf --files0-from own/list|own/a.vcf: is the output as well
2|-r --extract own $agent own|own: is the output as well
END
# shellcheck disable=SC2094  # that is what is refused
expect 2 'pxcard: standard input: is the output as well
See pxcard --help.' -o own/a.vcf - <own/a.vcf
# shellcheck disable=SC2094
"$pxcard" own/a.vcf >>own/a.vcf 2>err
same 'appended to itself' "$? $(head -n 1 err)" '2 pxcard: own/a.vcf: is the output as well'
diff -r own before || same 'what is the output as well' changed kept
# What was saved below a folder that is read is no input.
printf 'BEGIN:VCALENDAR\nATTACH;ENCODING=BASE64;X-FILENAME=x.vcf:%s\nEND:VCALENDAR\n' \
  "$(base64 -w 0 "$agent")" >tree/empty/a.ics
for saved in x.vcf x-2.vcf; do
  expect 0 '' -r --extract tree/empty/objects tree/empty
  same 'saved below' "$(cut -f 1,4 out)" "$saved	tree/empty/a.ics"
done

# The output file is there as a whole or as it was.
echo old >kept
chmod 640 kept
ln -s kept link
expect 3 'pxcard: none: No such file or directory' -o link none "$agent"
same 'output file' "$(<kept)$(stat -c %a kept)$(find . -name '.px*' -o -type l -name link)" \
  "== $agent ==

${shown}640./link"
(ulimit -f 128; "$pxcard" -o kept --format trace "${many[@]}" 2>&1) >/dev/null
same 'full disk, output file' "$? $(stat -c %a kept) $(find . -name '.px*')" '3 640 '
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
expect 3 'pxcard: no/there: No such file or directory' -o no/there "$agent"
expect 3 'pxcard: .: Is a directory' -o . "$agent"
expect 0 '' -o /dev/null "$agent"

# On a terminal: no input, and a line that tells how far the work is and goes at the end.
at_terminal() { script -qec "$1" /dev/null </dev/null | tr '\r' '\n' | tr -d '\n\033'; }
same 'terminal' "$(at_terminal "$pxcard </dev/tty")" 'pxcard: no file is given''See pxcard --help.'
at_terminal "(sleep 1.5; cat '$agent') | '$pxcard' -q -o quiet -" >no-progress &
at_terminal "'$pxcard' --format trace long.vcf | (sleep 2; cat) >traced" >measured-progress &
same 'progress' "$(at_terminal "(sleep 1.5; cat '$agent') | '$pxcard' -o progress - '$agent'" |
  sed -E 's|([0-9.]+ k?B, [0-9] files, [0-9.]+ k?B/s[[]K)+|LINE|')" '[KLINE'
wait
same 'measured progress' \
  "$(grep -cE '[0-9] k?B of 220 kB, 0 of 1 files, [0-9.]+ k?B/s, 0:[0-9][0-9] left.K' measured-progress)" 1
same 'no progress' "$(<no-progress)" ''
same 'an object at a terminal' "$(at_terminal "$pxcard --extract - $picture")" \
  "pxcard: an object isn't written to a terminal; --output writes it to a file""See pxcard --help."
# The width of text: WIDTH|COLUMNS|ARGUMENTS
note=NOTE:$(head -c 60000 /dev/zero | tr '\0' a)
printf 'BEGIN:VCARD\nVERSION:3.0\n%s\n%s\n%s\nFN:x\nEND:VCARD\n' "$note" "$note" "$note" >notes.vcf
same 'width' "$(script -qec "stty cols 50; COLUMNS=60 '$pxcard' --color never notes.vcf" /dev/null </dev/null |
  tr -d '\r' | wc -L)" 50
while IFS='|' read -r width columns arguments; do
  # shellcheck disable=SC2086
  same "width with $columns, '$arguments'" "$(COLUMNS=$columns "$pxcard" $arguments notes.vcf | wc -L)" "$width"
done <<END
80||
60|60|
40|7|
80|60x|
80|0|
70|60|--width 70
40||--width 1
60026||--width 0
END
# A file that costs more than its size allows: what is shown is whole, and where it ends is told.
for _ in {1..1500}; do printf 'BEGIN:VCARD\nN:a;\nEND:VCARD\n'; done >costly.vcf
expect 0 '' costly.vcf
for task in --check '--format json' '--format html' '--format trace'; do
  read -r -a arguments <<<"$task"
  "$pxcard" --raw "${arguments[@]}" costly.vcf >out 2>err
  same "a limit, $task" "$? $(sed -E 's/byte [0-9]+/byte N/' err)" "3 pxcard: costly.vcf: more work \
than its size allows; stopped at byte N (--no-limit reads on)"
done
"$pxcard" --raw --format json costly.vcf 2>err | python3 -c 'import json, sys
cards = json.load(sys.stdin)
print(len(cards) > 1, cards[-1]["error"][:9], all("properties" in card for card in cards[:-1]))' >out
same 'what is stopped is whole' "$(<out)" 'True more work True'
expect 0 '' --raw --no-limit --format trace costly.vcf

# Wrong use.
expect_each <<END
2|--nonsense|unknown option --nonsense
2|-x|unknown option -x
2|--fromat=json|unknown option --fromat; did you mean --format?
2|--jsonl|unknown option --jsonl; did you mean --format jsonl?
2|--co|unknown option --co; did you mean --color, --completion?
2|--format jsno|unknown value jsno for --format; known: text, html, json, jsonl, trace; did you mean json?
2|--format [nonsense|unknown value [nonsense for --format; known: text, html, json, jsonl, trace
2|-v|there is no -v: faults are told without it, all of them by --check, none with -q
2|--verbose|there is no --verbose: faults are told without it, all of them by --check, none with -q
2|--raw=1|--raw takes no value
2|--lang xx|unknown value xx for --lang; known: ar, de, en, es, fr, ja
2|--jobs 0|--jobs needs a number from 1 to 256
2|--jobs 2x|--jobs needs a number from 1 to 256
2|--width -1|--width needs a number from 0 to 100000
2|--files0-from x $agent|with --files0-from no file can be an argument
2|--check -o x|--check and --output exclude each other
2|--name x|--name goes with --extract only
2|--name x --extract -|--name and --extract - exclude each other
2|--object 1 --extract d|--object goes with --extract - only
2|--object pohto --extract -|unknown value pohto for --object; known: N, photo; did you mean photo?
2|--object 0 --extract -|unknown value 0 for --object; known: N, photo
2|--extract d --name x/y|--name: a name can't hold a slash; --extract gives the folder
2|--extract d --name {no|--name: there is no {no, but {file}, {card}, {kind}, {number} and {title}
2|--format|--format needs a value
2|--extract|--extract needs a value
2|--extract d --format trace|--format and --extract exclude each other
2|--$(printf '\e[1m')|unknown option --�[1m
END

# The help, the page and the completions tell the same.
expect 0 '' --help
share=$(dirname "$pxcard")/../share
page=$share/man/man1/pxcard.1
options=$(grep -oE '^ +(-., )?--[a-z0-9-]+' out | grep -oE -- '--[a-z0-9-]+')
[ "$(wc -w <<<"$options")" -ge 19 ] || same 'options' few all
for option in $options; do
  name=${option#--}
  grep -qF -- "fB$option\\fR" "$page" || same "$option in the page" none there
  grep -qE -- "[ |]${option}[ |)']" "$share/bash-completion/completions/pxcard" || same "$option" none bash
  grep -qE -- "[ {]${option}[,'}]" "$share/zsh/site-functions/_pxcard" || same "$option" none zsh
  grep -qF -- " -l $name " "$share/fish/vendor_completions.d/pxcard.fish" || same "$option" none fish
done
while IFS='|' read -r words reply; do
  # The shell divides what stands before the cursor into words, at each = too.
  # shellcheck disable=SC2016  # the inner shell expands it
  same "completed '$words'" "$(bash -c '. "$1"; read -r -a COMP_WORDS <<<"pxcard $2"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _pxcard pxcard "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    echo "${COMPREPLY[*]}"' - "$share/bash-completion/completions/pxcard" "$words")" "$reply"
done <<END
--format tr|trace
x.vcf --format = j|json jsonl
--color =|auto always never
--chec|--check
-o own/h|own/hard.vcf
END
same 'codes' "$(sed -nE '/^Exit codes/,$p' out | tr -s ' \n' ' ' | sed -E 's/ ([0-9]) /\n\1 /g')" \
  "Exit codes:$(sed -n '/^\\fB0/,/ENVIRONMENT/p' "$page" | sed -E '$d;/^\.(P|R|S)/d;s/\\f[BR]//g' |
    tr -s ' \n' ' ' | sed -E 's/(^| )([0-9]) /\n\2 /g')"

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
expect 3 "pxcard: $picture: no/there: No such file or directory" --extract no/there "$picture"
expect 3 "pxcard: $picture: wrong.txt: Not a directory" --extract wrong.txt "$picture"
printf 'BEGIN:VCARD\nPHOTO;BASE64:%s\nEND:VCARD\n' "$(head -c 200000 /dev/zero | base64 -w 0)" >large.vcf
limited=$(ulimit -f 128; "$pxcard" --raw --extract limited large.vcf 2>&1)
same 'no room' "$limited$(ls -A limited)" "pxcard: large.vcf: limited: File too large"
same 'room enough' "$(TMPDIR=$PWD/none "$pxcard" notes.vcf 2>&1 | sed -n 1p)" x
same 'no room for a copy' "$(ulimit -f 128; "$pxcard" - < <(cat long.vcf) 2>&1)" \
  'pxcard: standard input: temporary file in TMPDIR or /tmp: File too large'

# One of them goes to standard output: FILE|ARGUMENTS|SAMPLES
cp -r "$samples" cards
while IFS='|' read -r file arguments names; do
  # shellcheck disable=SC2086
  (cd cards && "$pxcard" --extract - $arguments $names) >out 2>err
  same "object '$arguments' of '$names'" "$? $(<err)" '0 '
  cmp out "objects/$file" || same "object '$arguments' of '$names'" other "$file"
done <<END
1-photo-1.jpg||agent.vcf picture.vcf none
1-key-1.pgp|--object 3|picture.vcf key-and-sound.vcf calendar.vcs
2-attachment-2.png|--object 5|picture.vcf key-and-sound.vcf calendar.vcs
1-photo-1.jpg|--object photo|key-and-sound.vcf calendar.vcs picture.vcf
2-attachment-2.png|--object photo|agent.vcf calendar.vcs key-and-sound.vcf
END
echo kept >one.jpg
expect_each <<END
3|--extract - -o one.jpg --object 3 $picture $picture|there is no object 3; there are 2
3|--extract - -o one.jpg --object photo $samples/key-and-sound.vcf|no picture is embedded
END
same 'what is not replaced' "$(<one.jpg)" kept
expect 0 '' --extract - -o one.jpg "$picture"
cmp one.jpg photo || same 'an object in a file' other equal
expect 3 'pxcard: no embedded objects' --extract - "$agent"
same 'no object' "$(<out)" ''

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
digits=$(printf 'QUJD%.0s' {1..16})
printf 'BEGIN:VCARD\nKEY;BASE64:%s\nEND:VCARD\n' "$digits*QUJD" REVG >bad.vcf
expect 1 'pxcard: -: cut off at a byte that is no Base64' --raw --extract - bad.vcf
expect 1 'pxcard: bad.vcf: line 2: the Base64 text ends at a byte that is none, 0x2A' --extract bad \
  bad.vcf
expect 1 'pxcard: bad.vcf: 1-key-1.txt: cut off at a byte that is no Base64' --raw --extract raw bad.vcf
same 'both' "$(<out)" '1-key-1.txt	text/plain	48	bad.vcf	1
2-key-1.txt	text/plain	3	bad.vcf	2'
same 'their data' "$(cat bad/*)" "$(base64 -d <<<"$digits")DEF"

# On a desktop: a page that only its owner can read and that goes after a while, else text in a pager.
packaging=$samples/../packaging
desktop-file-validate "$packaging/pxcard.desktop" || same 'desktop entry' bad good
mkdir desktop
cp "$packaging/pxcard-open" desktop
ln -s "$pxcard" desktop/pxcard
cat >desktop/xdg-open <<'END'
#!/bin/sh
stat -c %a "$1" >opened
cat "$1" >>opened
echo "$1" >page
test -e browser
END
cat >desktop/sleep <<'END'
#!/bin/sh
until [ -e over ]; do /bin/sleep 0.01; done
END
chmod +x desktop/*
open_cards="env DISPLAY=:0 PATH=$PWD/desktop:$PATH TMPDIR=$PWD PAGER='sed s/^/|/' desktop/pxcard-open"
: >browser
eval "$open_cards none '$agent'"
same 'opened' "$? $(grep -cE '^600$|<h2 .*agent.vcf|</html>|No such file' opened)" '0 4'
[ -s "$(<page)" ] || same 'the page' gone there
: >over
for _ in {1..500}; do [ -e "$(<page)" ] && sleep 0.01; done
rm browser
same 'no browser' "$(at_terminal "$open_cards '$agent'" | grep -o '|Amara Diallo')" '|Amara Diallo'
same 'pages that stay' "$(find . -name 'pxcard-*.html')" ''

exit $((failures > 0))
