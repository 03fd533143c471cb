#!/bin/sh
# exports_cards_test.sh LIBRARY HEADER: the library shows the routines of the header and no other,
# each with a version.
set -eu

declared=$(grep -o 'PX_API .*' "$2" | grep -o 'Px[A-Za-z]*(' | tr -d '(' | LC_ALL=C sort)
shown=$(nm -D --defined-only "$1" | sed -n 's/.* T \(.*\)@@PX_CARDS_1$/\1/p' | LC_ALL=C sort)
test -n "$declared"
test "$declared" = "$shown"
test "$(nm -D --defined-only "$1" | grep -vc ' A PX_CARDS_1$')" = "$(echo "$declared" | wc -l)"
