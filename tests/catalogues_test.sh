#!/usr/bin/env bash
# catalogues_test.sh ROOT: every text that the code marks is translated in every catalogue, with the
# same places for values, and no catalogue holds another text.
set -eu
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# The texts of a catalogue, with their contexts, a line for each.
texts() { msgcat --no-wrap --no-location --sort-output "$@" | grep -E '^msg(ctxt|id) ' | sort; }

find host -name '*.cc' -o -name '*.h' | sort |
  xgettext --files-from=- --language=C++ --from-code=UTF-8 -k -kN_ -ktr -ktrIn:1c,2 -o "$work/all.po"
sed -i 's/CHARSET/UTF-8/' "$work/all.po"
texts "$work/all.po" >"$work/marked"
[ "$(wc -l <"$work/marked")" -gt 200 ]

[ "$(ls po/*.po)" = "$(sed -nE 's/^foreach\(language (.*)\)/\1/p' po/CMakeLists.txt | xargs printf 'po/%s.po\n')" ]
for catalogue in po/*.po; do
  msgfmt --check-format --check-domain -o /dev/null "$catalogue"
  texts "$catalogue" >"$work/held"
  diff "$work/marked" "$work/held" || failures=$((failures + 1))
  {
    msgattrib --untranslated "$catalogue"
    msgattrib --only-fuzzy "$catalogue"
    msgattrib --only-obsolete "$catalogue"
  } | grep . && failures=$((failures + 1))
  # An option, a place for a value or a part of a pattern that only one of the two texts has.
  msgcat --no-wrap "$catalogue" | awk -v file="$catalogue" '
    function places(text, found, all) {
      while (match(text, /%[1-9]|--[a-z0-9-]*[a-z0-9]|\{[a-z]+\}/)) {
        found = substr(text, RSTART, RLENGTH)
        if (!index(all, found ";")) all = all found ";"
        text = substr(text, RSTART + RLENGTH)
      }
      return all
    }
    function missing(from, other, n, part, i) {
      n = split(places(from), part, ";")
      for (i = 1; i < n; ++i) if (!index(other, part[i])) return 1
      return 0
    }
    /^msgid / { id = $0 }
    /^msgstr / && id != "msgid \"\"" && (missing(id, $0) || missing($0, id)) { print file ": " $0; bad = 1 }
    END { exit bad }' || failures=$((failures + 1))
done

# What the reader tells of files is marked where the command translates it.
grep -rohE 'faults?\(([^"]*, )?"[^"]+"\)' host/source | grep -o '"[^"]*"' | sort -u >"$work/told"
[ -s "$work/told" ]
while read -r text; do
  grep -qF "N_($text)" host/command/error_text.cc || { echo "not marked: $text"; failures=1; }
done <"$work/told"
exit $((failures > 0))
