#!/bin/sh
# run_path_test.sh BUILD LIBDIR: no program and no library, built or installed, looks for a library in
# the current folder.
set -eu

installed=$(mktemp -d)
trap 'rm -rf "$installed"' EXIT
cmake --install "$1" --prefix "$installed" >/dev/null

for file in "$1"/bin/* "$1/$2"/*.so "$installed"/bin/* "$installed/$2"/*.so; do
  readelf -d "$file" | sed -n "s|.*R.*PATH.*\[\(.*\)\]|$file:\1:|p"
done | awk -F: '
  { for (i = 2; i < NF; ++i) if ($i !~ /^(\/|\$ORIGIN(\/|$))/) { print; bad = 1 } }
  END { exit bad || NR < 8 }'

# What stands beside the command and is no filter is told.
ln -sf libpx_core.so.1 "$installed/$2/libpx_vcrd.so.1"
error=$("$installed/bin/pxcard" /dev/null 2>&1) || :
echo "$error" | grep -q "$2/libpx_vcrd.so.1: no filter library\$"

# Nor does the command where the system doesn't tell it its own path.
mkdir -p "$installed/here/$2"
echo 'no library' >"$installed/here/$2/libpx_vcrd.so.1"
cd "$installed/here"
if ! unshare -rm true 2>/dev/null; then
  echo 'skipped: a system without /proc, as this one lets nobody make namespaces'
  exit
fi
# shellcheck disable=SC2016  # the inner shell expands it
error=$(unshare -rm sh -c 'mount -t tmpfs none /proc && "$0" card.vcf' "$1/bin/pxcard" 2>&1) || :
! echo "$error" | grep "$2/libpx_vcrd.so"
