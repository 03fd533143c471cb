#!/bin/sh
# layering_test.sh ROOT: a product includes its own and the public headers, and in the filter no
# folder includes one that stands above it.
set -eu

cd "$1"
grep -rn '^ *# *include *"' vcrd host core util | awk '
  BEGIN { for (n = split("frame input parser objects output", order); n > 0; --n) rank[order[n]] = n }
  { gsub(/"/, "", $2); split($1, from, "/"); split($2, to, "/") }
  to[1] == "px" || $2 == "build_stamp.h" { next }
  to[1] != from[1] || (to[1] == "vcrd" && !(rank[to[2]] > 0 && rank[to[2]] <= rank[from[2]])) {
    print; bad = 1
  }
  END { exit bad || NR == 0 }'
