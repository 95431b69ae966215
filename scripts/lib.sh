# lib.sh - what the scripts share: the project's root, messages, and the installation of missing Debian packages.
# Sourced, not run.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '== %s\n' "$*"; }
die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo -n "$@" || die "installing packages needs root: run '$*' as root, then try again"
  else
    die "installing packages needs root or sudo: run '$*' as root, then try again"
  fi
}

# need PACKAGE ...: installs those that are missing.
need() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  say "installing ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

need_to_build() {
  need g++ cmake ninja-build ccache pkg-config nlohmann-json3-dev libcli11-dev libsqlite3-dev
}

# build_preset PRESET [CMAKE ARGUMENT ...]: configures when that was not done yet, and builds.
build_preset() {
  local preset=$1
  shift
  cd "$root" || exit 1
  [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" "$@" >/dev/null || die "configuring $preset failed"
  cmake --build --preset "$preset" || die "building $preset failed"
}
