#!/bin/sh
# install_test.sh BUILD ROOT: what is installed is enough for others. The examples find the libraries
# by pkg-config and by CMake, build as C99 without a warning and run; Python reads what they read; the
# README quotes them.
set -eu

build=$1
root=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/px
cmake --install "$build" --prefix "$prefix" >/dev/null

for name in core util vcrd cards; do
  readelf -d "$prefix/lib/libpx_$name.so" | grep -q "SONAME.*\[libpx_$name.so.1\]"
done
test -s "$prefix/share/man/man3/px_cards.3"
test -s "$prefix/share/man/man3/px_vcrd.3"

export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
strict='-std=c99 -pedantic -Wall -Wextra -Wno-unused-parameter -Werror'
mkdir "$work/bin"
for pair in cards_json:px-cards filter_host:px-vcrd; do
  # shellcheck disable=SC2046,SC2086
  cc $strict -o "$work/bin/${pair%:*}" "$root/examples/${pair%:*}.c" \
    $(pkg-config --cflags --libs "${pair#*:}") -Wl,-rpath,"$prefix/lib"
done
cmake -S "$root/examples" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null

# The library speaks its languages, also where its folder is reached by a link, as /lib is one.
ln -s "$prefix/lib" "$work/lib"
python3 -c 'import ctypes, sys
label = ctypes.CDLL(sys.argv[1]).PxPropertyLabel
label.restype = ctypes.c_char_p
sys.exit(label(0, b"NICKNAME", b"de") != b"Spitzname")' "$work/lib/libpx_cards.so.1"

for bin in "$work/bin" "$work/cmake"; do
  "$bin/cards_json" "$root"/samples/*.v?? >"$work/lines" 2>"$work/objects" || test $? = 1
  "$prefix/bin/pxcard" --format jsonl "$root"/samples/*.v?? >"$work/expected" 2>/dev/null ||
    test $? = 1
  diff "$work/lines" "$work/expected"
  grep -q '^object 1: [1-9]' "$work/objects"
  "$bin/filter_host" "$root/samples/several.vcf" >"$work/text"
  test "$(grep -c '^Telephone' "$work/text")" = \
    "$("$prefix/bin/pxcard" --format trace "$root/samples/several.vcf" |
      grep -c '^SoEmitResourceString(79406)')"
done

PYTHONPATH=$(echo "$prefix"/lib/python3*/dist-packages) PX_LIBRARY=$prefix/lib/libpx_cards.so.1 \
  /usr/bin/python3 -B -m pxcards "$root"/samples/*.v?? >"$work/lines" 2>/dev/null || test $? = 1
diff "$work/lines" "$work/expected"

# Each piece of C in the README is a run of lines of an example.
awk '/^```c$/ { quoting = 1; ++n; next } /^```$/ { quoting = 0 }
  quoting { print > ("'"$work"'/quote" n) }' "$root/README.md"
test -s "$work/quote2"
python3 - "$root" "$work"/quote? <<'END'
import glob, sys
examples = [open(name).read() for name in glob.glob(sys.argv[1] + "/examples/*.c")]
sys.exit(not all(any(open(quote).read() in text for text in examples) for quote in sys.argv[2:]))
END
