#!/usr/bin/env bash
# What a fresh machine makes of px: a bare Debian 12 root, in which root has the rights of a container.
#   bare_root_test.sh tree ROOT                 scripts/run and scripts/test work, with what they install
#   bare_root_test.sh packages ROOT PACKAGES    the Debian packages install, the command shows a card,
#       Python reads it, the examples build, nothing has a run path, and nothing stays behind
# Needs root, debootstrap and the network, and some minutes, so it is no part of the ordinary tests:
# `scripts/test bare` and `scripts/package --try` run it.
set -euo pipefail
what=$1
root=$2

bare=$(mktemp -d)
chmod 755 "$bare"
trap 'rm -rf --one-file-system "$bare"' EXIT
debootstrap --variant=minbase bookworm "$bare" >/dev/null
cp /etc/apt/apt.conf.d/* "$bare/etc/apt/apt.conf.d/" 2>/dev/null || :
mkdir "$bare/px"

# inside LANG COMMAND...   runs it in the root, in /px. There is no /sys, and what is mounted goes with
# the command.
container=-all
for right in chown dac_override fowner fsetid kill setgid setuid setpcap net_bind_service net_raw \
  sys_chroot mknod audit_write setfcap; do
  container+=,+$right
done
inside() {
  # shellcheck disable=SC2016  # the inner shell expands it
  unshare --mount --pid --fork --kill-child sh -euc '
    bare=$1 rights=$2
    shift 2
    mount -t proc proc "$bare/proc"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$bare/dev/pts"
    exec setpriv --inh-caps=-all --bounding-set="$rights" chroot "$bare" "$@"' \
    - "$bare" "$container" env -i ${http_proxy+http_proxy="$http_proxy"} HOME=/root \
    PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG="$1" \
    sh -euc 'cd /px; exec "$@"' - "${@:2}"
}

try_tree() {
  tar -C "$root" --exclude=./build --exclude=./.git -c . | tar -C "$bare/px" --no-same-owner -x
  inside de_DE.UTF-8 scripts/run samples/picture.vcf | grep '^Telefon .geschäft'
  inside de_DE.UTF-8 scripts/test dev
  inside C.UTF-8 scripts/test dev
  echo "the scripts work in a bare root"
}

try_packages() {
  cp -r "$1"/*.deb "$root/examples" "$root/samples" "$bare/px"
  # shellcheck disable=SC2016  # the inner shell expands it
  inside C sh -euc '
    export DEBIAN_FRONTEND=noninteractive
    install="apt-get install -y -qq --no-install-recommends"
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
}

try_"$what" "${@:3}"
