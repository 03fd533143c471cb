#!/usr/bin/env bash
# hardening_test.sh BUILD: what an optimised build makes is position-independent, binds all names at
# once and lets nobody write its tables, and its stack and its copies are guarded.
set -eu

bad=0
# expect WHAT FILE TEXT PATTERN
expect() {
  echo "$3" | grep -Eq "$4" && return
  echo "$2: no $1"
  bad=1
}
for file in "$1"/bin/pxcard "$1"/lib/lib{px_vcrd,px_core,px_util,px_cards}.so; do
  expect 'position independence' "$file" "$(readelf -hW "$file")" 'Type: +DYN'
  expect 'read-only tables' "$file" "$(readelf -lW "$file")" 'GNU_RELRO'
  expect 'immediate binding' "$file" "$(readelf -dW "$file")" 'BIND_NOW|FLAGS.*NOW'
  expect 'plain stack' "$file" "$(readelf -lW "$file" | grep GNU_STACK)" ' RW +0x'
done
# The two small libraries have no arrays to guard, and the filter copies without the C library.
for file in "$1"/bin/pxcard "$1"/lib/libpx_vcrd.so "$1"/lib/libpx_cards.so; do
  expect 'stack protector' "$file" "$(readelf --dyn-syms -W "$file")" '__stack_chk_fail'
done
expect 'checked copies' pxcard "$(readelf --dyn-syms -W "$1"/bin/pxcard)" '__[a-z]*printf_chk|__mem[a-z]+_chk'
exit $bad
