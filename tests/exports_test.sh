#!/bin/sh
# exports_test.sh LIBRARY LIST: the library shows the names of the list and no other, has no writable
# data, and takes memory by calloc alone.
set -eu

nm -D --defined-only "$1" | awk '{ print $3 }' | LC_ALL=C sort | diff "$2" -

# What is only written while the library is loaded stands in .data.rel.ro. The exceptions belong to
# the compiler's start-up code and to the address sanitizer.
nm --format=sysv "$1" | tr -d ' ' | awk -F'|' '
  $7 ~ /^\.t?(data|bss)/ && $7 !~ /rel\.ro/ && $5 ~ /[1-9a-f]/ &&
  $1 !~ /^(completed\.[0-9]+|__odr_asan\..*|__unnamed_[0-9]+)$/ { print "writable: " $1; bad = 1 }
  END { exit bad }'

if nm -D --undefined-only "$1" | grep -E ' (malloc|realloc|_Zn[wa]|__cxa_throw|pthread_)'; then
  exit 1
fi
