# shellcheck shell=bash disable=SC2034
# Sourced by the other scripts: what they need from Debian, installed when it isn't there.

build_packages="g++ cmake ninja-build gettext scdoc nettle-dev libuchardet-dev libutf8proc-dev rapidjson-dev"
test_packages="libgtest-dev libcli11-dev pkg-config python3 python3-jsonschema tidy chromium chromium-driver python3-selenium
  python3-pytest python3-dask python3-distributed python3-pandas mypy"
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

# Configures and builds a preset, and says so where sources have changed since the last time; prints
# the build's output only when it fails.
build_preset() {
  local preset=$1 log last=build/$1/.ninja_log
  shift
  log=$(mktemp)
  if [ ! -e "$last" ] ||
    [ -n "$(find CMakeLists.txt core util vcrd host include po docs -newer "$last" -print -quit)" ]; then
    echo "building $preset" >&2
  fi
  if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "$@"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
