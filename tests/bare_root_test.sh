#!/bin/bash
# bare_root_test.sh PACKAGES ROOT: the Debian packages install in a bare Debian 12 root, the command
# shows a card there, Python reads it, the examples build, and nothing stays when they are removed.
# Nothing in them has a run path.
# Needs root, debootstrap and the network, and some minutes, so it is no part of the ordinary tests:
# scripts/package --try runs it.
set -euo pipefail

bare=$(mktemp -d)
chmod 755 "$bare"
trap 'rm -rf --one-file-system "$bare"' EXIT
debootstrap --variant=minbase bookworm "$bare" >/dev/null
cp /etc/apt/apt.conf.d/* "$bare/etc/apt/apt.conf.d/" 2>/dev/null || :
mkdir "$bare/px"
cp -r "$1"/*.deb "$2/examples" "$2/samples" "$bare/px"

# shellcheck disable=SC2016  # the inner shell expands it
chroot "$bare" sh -eu -c '
  export DEBIAN_FRONTEND=noninteractive
  install="apt-get install -y -qq --no-install-recommends"
  cd /px
  apt-get update -qq
  $install ./libpx1_*.deb ./pxcard_*.deb >/dev/null 2>&1
  pxcard samples/picture.vcf | grep "^Photo .*image"
  test -s /usr/lib/mime/packages/pxcard
  pxcard --format jsonl samples/picture.vcf >expected
  pxcard --extract objects samples/picture.vcf >/dev/null

  $install ./python3-pxcards_*.deb >/dev/null 2>&1
  test -d /usr/lib/python3/dist-packages/pxcards/__pycache__
  python3 -m pxcards samples/picture.vcf | cmp - expected
  python3 examples/telephones.py samples/picture.vcf >telephones
  grep -q "^Dr. Maja Lindstr" telephones
  cmp photo-1-0 objects/1-photo-1.jpg

  $install gcc libc6-dev make cmake pkg-config ./libpx-dev_*.deb >/dev/null 2>&1
  if readelf -d /usr/bin/pxcard /usr/lib/*/libpx_*.so | grep -E "R(UN)?PATH"; then exit 1; fi
  cc -std=c99 -o host examples/filter_host.c $(pkg-config --cflags --libs px-vcrd)
  cc -std=c99 -o cards examples/cards_json.c $(pkg-config --cflags --libs px-cards)
  cmake -S examples -B build >/dev/null
  cmake --build build >/dev/null
  ./cards samples/picture.vcf | cmp - expected
  build/cards_json samples/picture.vcf | cmp - expected
  ./host samples/picture.vcf | grep -q Telephone
  build/filter_host samples/picture.vcf | grep -q Telephone

  apt-get purge -y -qq pxcard python3-pxcards libpx-dev libpx1 >/dev/null 2>&1
  ! find /usr -name "*libpx*" -o -name "pxcard*" -o -name pxcards -o -name python3-pxcards | grep .'
echo "the packages work in a bare root"
