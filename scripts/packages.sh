# shellcheck shell=bash disable=SC2034
# Sourced by the other scripts: what they need from Debian, installed when it isn't there.

build_packages="g++ cmake ninja-build gettext scdoc nettle-dev libuchardet-dev libutf8proc-dev rapidjson-dev"
test_packages="libgtest-dev libcli11-dev pkg-config python3 python3-jsonschema tidy chromium chromium-driver python3-selenium
  desktop-file-utils python3-pytest python3-dask python3-distributed python3-pandas mypy"
peer_packages="pkg-config libical-dev libebook-contacts1.2-dev libkf5contacts-dev"
fuzz_packages="clang libclang-rt-14-dev"
lint_packages="clang-tidy cppcheck shellcheck"
coverage_packages="gcovr"

need_packages() {
  local missing=() name
  for name in "$@"; do
    dpkg-query -W -f '${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "installing ${missing[*]}" >&2
  export DEBIAN_FRONTEND=noninteractive
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# Reads what ninja writes and tells how far it is: in one line on a terminal, else at every quarter.
show_progress() {
  local line count all told=-1
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
    count=${BASH_REMATCH[1]} all=${BASH_REMATCH[2]}
    ((count > 0 && all > 4)) || continue # not what ninja does to see whether there is anything to do
    if [ -t 2 ]; then
      printf '\r%s: %d of %d\e[K' "$1" "$count" "$all" >&2
    elif ((4 * count / all > told)); then
      told=$((4 * count / all))
      echo "$1: $count of $all" >&2
    fi
  done
  [ ! -t 2 ] || printf '\r\e[K' >&2
}

# Configures and builds a preset, or those of its targets that are named; prints the output only when
# that fails.
build_preset() {
  local preset=$1 log
  shift
  log=$(mktemp)
  [ -e "build/$preset/build.ninja" ] || echo "configuring $preset" >&2
  if ! { cmake --preset "$preset" && NINJA_STATUS='[%f/%t] ' cmake --build --preset "$preset" "$@"; } 2>&1 |
    tee "$log" | show_progress "building $preset"; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
