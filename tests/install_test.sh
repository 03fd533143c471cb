#!/bin/sh
# install_test.sh BUILD ROOT LIBDIR PYTHONDIR: what is installed is enough for others. The examples
# find the libraries by pkg-config and by CMake, build as C99 without a warning and run; Python reads
# what they read; the README quotes them. Nor does a project need an installed px: it takes in the
# sources.
set -eu

build=$1
root=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/px
lib=$prefix/$3
cmake --install "$build" --prefix "$prefix" >/dev/null

for name in core util vcrd cards; do
  readelf -d "$lib/libpx_$name.so" | grep -q "SONAME.*\[libpx_$name.so.1\]"
done
test -s "$prefix/share/man/man3/px_cards.3"
test -s "$prefix/share/man/man3/px_vcrd.3"

# A host sets the one option there is; the rest is the smallest example's.
mkdir "$work/bin" "$work/host"
sed 's|^#include <px/vcrd.h>|&\n#include <px/util.h>|
  s|^  VcardIo \*back;|  uint32_t size = 64;\n  UTSetGlobalOption(UTOptionInputBuffer, \&size, sizeof size);\n&|' \
  "$root/examples/filter_host.c" >"$work/host/filter_host.c"
grep -q UTSetGlobalOption "$work/host/filter_host.c"
cp "$root/examples/CMakeLists.txt" "$root/examples/cards_json.c" "$work/host"

export PKG_CONFIG_PATH="$lib/pkgconfig"
strict='-std=c99 -pedantic -Wall -Wextra -Wno-unused-parameter -Werror'
for pair in cards_json:px-cards filter_host:px-vcrd; do
  # shellcheck disable=SC2046,SC2086
  cc $strict -o "$work/bin/${pair%:*}" "$work/host/${pair%:*}.c" \
    $(pkg-config --cflags --libs "${pair#*:}") -Wl,-rpath,"$lib"
done
cmake -G Ninja -S "$work/host" -B "$work/cmake" -Dpx_DIR="$lib/cmake/px" >/dev/null
cmake --build "$work/cmake" >/dev/null

# The library speaks its languages, also where its folder is reached by a link, as /lib is one.
ln -s "$lib" "$work/lib"
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
  "$bin/filter_host" "$root/samples/picture.vcf" | grep -qx 'Dr. Maja Lindström'
  "$bin/filter_host" "$root/samples/windows-1251.vcf" | grep -qx 'ООО «Ромашка»'
done

PYTHONPATH=$prefix/$4 PX_LIBRARY=$lib/libpx_cards.so.1 \
  /usr/bin/python3 -B -m pxcards "$root"/samples/*.v?? >"$work/lines" 2>/dev/null || test $? = 1
diff "$work/lines" "$work/expected"

# A project that takes px in, for a machine whose programs don't run here, gets the libraries that it
# uses, and nothing that is ours alone: no tests, manuals, installed files, flags.
mkdir "$work/taker"
cat >"$work/taker/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(taker C CXX)
include(CTest)
include(FetchContent)
FetchContent_Declare(px SOURCE_DIR ${PX_SOURCE})
FetchContent_MakeAvailable(px)
add_executable(host host.c)
target_link_libraries(host PRIVATE px::vcrd)
add_executable(reader EXCLUDE_FROM_ALL host.c)
target_link_libraries(reader PRIVATE px::cards)
get_directory_property(options COMPILE_OPTIONS)
get_directory_property(linking LINK_OPTIONS)
if(options OR linking OR CMAKE_CXX_STANDARD OR CMAKE_RUNTIME_OUTPUT_DIRECTORY OR TARGET px_docs
    OR TARGET px_completions)
  message(FATAL_ERROR "px changes what isn't its own")
endif()
END
cp "$work/host/filter_host.c" "$work/taker/host.c"
cmake -G Ninja -S "$work/taker" -B "$work/taken" -DPX_SOURCE="$root" \
  -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="$(uname -m)" >/dev/null
cmake --build "$work/taken" --target host --parallel 2 >/dev/null
"$work/taken/host" "$root/samples/several.vcf" >"$work/taken/text"
diff "$work/text" "$work/taken/text"
test "$(cd "$work/taken" && ctest -N | tail -n 1)" = 'Total Tests: 0'
cmake --install "$work/taken" --prefix "$work/nothing" >/dev/null
test ! -e "$work/nothing"

# For another machine the manuals are made, and the completions by the pxcard that is named.
cross() { cmake -G Ninja -S "$root" -B "$work/cross" -DCMAKE_SYSTEM_NAME=Linux \
  -DCMAKE_SYSTEM_PROCESSOR="$(uname -m)" -DBUILD_TESTING=OFF -DPX_BUILD_BENCH=OFF "$@"; }
cross >"$work/told"
grep -q 'no completions' "$work/told"
cmake --build "$work/cross" --target px_docs >/dev/null
test -s "$work/cross/share/man/man1/pxcard.1"
cross -DPX_NATIVE_PXCARD="$prefix/bin/pxcard" >/dev/null
cmake --build "$work/cross" --target px_completions >/dev/null
grep -q -e --format "$work/cross/share/bash-completion/completions/pxcard"
test ! -e "$work/cross/bin/pxcard"

# Each piece of C in the README is a run of lines of an example.
awk '/^```c$/ { quoting = 1; ++n; next } /^```$/ { quoting = 0 }
  quoting { print > ("'"$work"'/quote" n) }' "$root/README.md"
test -s "$work/quote2"
python3 - "$root" "$work"/quote? <<'END'
import glob, sys
examples = [open(name).read() for name in glob.glob(sys.argv[1] + "/examples/*.c")]
sys.exit(not all(any(open(quote).read() in text for text in examples) for quote in sys.argv[2:]))
END
