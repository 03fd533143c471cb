#!/bin/sh
# layering_test.sh ROOT: a product includes its own and the public headers, and in the filter and in
# the host no folder includes one that stands above it.
set -eu

cd "$1"
grep -rn '^ *# *include *"' vcrd host core util | awk '
  BEGIN {
    split("frame input parser objects output", vcrd)
    split("io languages source filter reading labels writers saving library command", host)
    for (i in vcrd) rank["vcrd/" vcrd[i]] = i + 0
    for (i in host) rank["host/" host[i]] = i + 0
  }
  { gsub(/"/, "", $2); split($1, from, "/"); split($2, to, "/") }
  to[1] == "px" || $2 == "build_stamp.h" { next }
  {
    room = rank[from[1] "/" from[2]]; used = rank[to[1] "/" to[2]]
    hasRooms = to[1] == "vcrd" || to[1] == "host"
    if (to[1] != from[1] || (hasRooms && !(used > 0 && used <= room))) { print; bad = 1 }
  }
  END { exit bad || NR == 0 }'
