# shellcheck shell=bash
# lib.sh - shared by the scripts: the project's root, messages, packages, builds. To be sourced, not run.
# Changes to the project's root.
# shellcheck disable=SC2034  # its variables are used by the scripts

set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
readonly PROJECT_ROOT=$PWD
readonly BUILD_PACKAGES=(g++ cmake ninja-build ccache pkg-config libgtest-dev libgmock-dev nlohmann-json3-dev
  libcli11-dev libsqlitecpp-dev libtiff-dev libhpdf-dev unixodbc-dev libgcrypt20-dev libbsd-dev libsqliteodbc python3)
readonly TEST_PACKAGES=(odbcinst odbc-postgresql postgresql poppler-utils php-cli php-fpm phpunit mypy python3-build
  python3-setuptools python3-wheel)

# What serves the portal.
readonly PORTAL_PACKAGES=(php-cli php-sqlite3 php-imagick libtiff-tools)

# Prints a line of progress.
say() { printf '==> %s\n' "$*"; }

# Prints an error and ends the script.
fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

# Prints the comment block at the top of the calling script, which is its help.
show_help() { sed -n '2,/^$/s/^# \{0,1\}//p' "$PROJECT_ROOT/scripts/${0##*/}"; }

# Runs a command as root; asks for a password only on a terminal and outside continuous integration.
as_root() {
  if [[ $(id -u) -eq 0 ]]; then
    "$@"
  elif [[ -t 0 && -z ${CI:-} ]]; then
    sudo "$@"
  else
    sudo -n "$@"
  fi
}

apt_get() { as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y -o DPkg::Lock::Timeout=300 "$@" </dev/null; }

is_installed() { [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; }

# Whether a package is in the package lists of this machine.
is_known() { apt-cache policy "$1" 2>/dev/null | grep -q 'Candidate: [^(]'; }

# Installs those of the given Debian packages that are missing.
need_packages() {
  command -v dpkg-query >/dev/null || fail "this is not a Debian system; install these packages by hand: $*"
  local package missing=() unknown=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [[ ${#missing[@]} -gt 0 ]] || return 0
  if [[ $(id -u) -ne 0 ]] && ! command -v sudo >/dev/null; then
    fail "packages are missing, and there is no sudo; run as root: apt-get install ${missing[*]}"
  fi
  say "Installing ${missing[*]}"
  for package in "${missing[@]}"; do
    is_known "$package" || unknown+=("$package")
  done
  [[ ${#unknown[@]} -eq 0 ]] || apt_get update || fail "apt-get update failed"
  # Outdated package lists name files that no longer exist, so the second try updates them first.
  apt_get install --no-install-recommends "${missing[@]}" >/dev/null ||
    { apt_get update && apt_get install --no-install-recommends "${missing[@]}" >/dev/null; } ||
    fail "apt-get could not install ${missing[*]}"
}

# Installs what the tests need in addition: the programs of a PostgreSQL server and of PHP's FastCGI server, without a
# server for the whole machine.
need_test_packages() {
  if ! is_installed postgresql && ! is_installed postgresql-common; then
    as_root mkdir -p /etc/postgresql-common/createcluster.d
    printf 'create_main_cluster = false\n' |
      as_root tee /etc/postgresql-common/createcluster.d/no-main-cluster.conf >/dev/null
  fi
  # The package starts its service unless that is masked; the name of the service is that of the package behind php-fpm.
  if ! is_installed php-fpm && [[ -d /run/systemd/system ]]; then
    local service
    service=$(apt-cache depends php-fpm | sed -n 's/.*Depends: \(php[0-9.]*-fpm\)$/\1/p')
    say "The service $service is masked, so that it does not start; 'systemctl unmask $service' makes it available"
    as_root systemctl mask --quiet "$service" || true
  fi
  need_packages "${TEST_PACKAGES[@]}"
}

# Installs what the browser tests need: the web server does not start as a service of the machine.
need_portal_test_packages() {
  if ! is_installed nginx-light && [[ -d /run/systemd/system ]]; then
    say "The service nginx is masked, so that it does not start; 'systemctl unmask nginx' makes it available"
    as_root systemctl mask --quiet nginx || true
  fi
  need_test_packages
  need_packages "${PORTAL_PACKAGES[@]}" php-pgsql nginx-light chromium pngquant unzip
  # Those of another source than Debian's, which its packages do not go with, serve as well.
  command -v node >/dev/null || need_packages nodejs
  command -v npm >/dev/null || need_packages npm
}

# build PRESET [TARGET ...]: configures if that has not been done yet, then builds everything or the targets.
build() {
  local preset=$1 targets=()
  shift
  [[ $# -eq 0 ]] || targets=(--target "$@")
  local configured=build/$preset/.configured
  if [[ ! -f $configured || CMakePresets.json -nt $configured ]]; then
    say "Configuring build/$preset"
    # A cache without a build file is left over from a failed configuration.
    [[ -f build/$preset/build.ninja ]] || rm -f "build/$preset/CMakeCache.txt"
    cmake --preset "$preset" </dev/null && touch "$configured" || return 1
  fi
  say "Building $preset"
  cmake --build --preset "$preset" --parallel "$(nproc)" "${targets[@]}" </dev/null
}

# The results of the tests so far, and a line for each group of them.
passed=0
failed=0
skipped=0
report=()

# add NAME PASSED FAILED SKIPPED: adds to the totals, and records a line for the end.
add() {
  ((passed += $2, failed += $3, skipped += $4)) || true
  report+=("$(printf '%-12s %4d passed, %d failed, %d skipped' "$1" "$2" "$3" "$4")")
}

# check NAME COMMAND...: runs a check that counts as one test.
check() {
  local name=$1
  shift
  if "$@"; then add "$name" 1 0 0; else add "$name" 0 1 0; fi
}

# first_attribute NAME FILE: the number in an attribute of the outermost element of a test report; nothing without one.
first_attribute() { [[ ! -f $2 ]] || sed -n "s/^.*[[:space:]]$1=\"\([0-9]*\)\".*/\1/p" "$2" | head -n 1; }

# Prints the results, the totals last. Its status is 0 if nothing failed.
print_summary() {
  printf '\n'
  printf '%s\n' "${report[@]}"
  printf '%d passed, %d failed' "$passed" "$failed"
  [[ $skipped -eq 0 ]] || printf ', %d skipped' "$skipped"
  printf '\n'
  [[ $failed -eq 0 ]]
}
