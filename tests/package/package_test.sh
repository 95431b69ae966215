#!/usr/bin/env bash
# package_test.sh SOURCE BUILD CMAKE COMPILER [FLAG ...] - tests the installed package: installs BUILD, moves the
# installed tree, builds the example through find_package() and through pkg-config, and runs it against the installed
# devserver. FLAGS are the sanitizer or coverage flags that the library was built with.

set -euo pipefail

source=$1 build=$2 cmake=$3 compiler=$4
shift 4
flags="$*"

work=$(mktemp -d)
server=0
finish() {
  if [[ $server -ne 0 ]]; then
    kill "$server" 2>/dev/null || true
    wait "$server" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap finish EXIT

fail() {
  printf 'FAILED: %s\n' "$*" >&2
  exit 1
}

"$cmake" --install "$build" --prefix "$work/first" >"$work/install.log" || fail "install: $(cat "$work/install.log")"
mkdir "$work/other place"
tree="$work/other place/moved"
mv "$work/first" "$tree"

printf 'Checking the installed files\n'
libdir=$(dirname "$(find "$tree" -name 'liboxaqrycln.a')")
for file in bin/oxaqry bin/devserver include/oxaqrycln/component/clsQuery.h include/oxaqrycln.h share/man/man1/{oxaqry,devserver}.1 \
  share/man/man3/oxaqrycln.3 share/man/man5/oxaqry-log.5 share/bash-completion/completions/{oxaqry,devserver} \
  share/zsh/site-functions/_{oxaqry,devserver} share/doc/oxaqrycln/LICENSE share/doc/oxaqrycln/docs/protocol.md; do
  [[ -s $tree/$file ]] || fail "$file is not installed"
done
[[ -s $libdir/liboxaqrycln.a && -s $libdir/liboxaqrycln.so.1 ]] || fail "a library is not installed"
for path in "$source" "$build" "$work/first"; do
  ! grep -rIlF -- "$path" "$libdir/cmake" "$libdir/pkgconfig" "$tree/include" ||
    fail "an installed file names $path"
done

printf 'Checking the links of documents and manual pages\n'
links=0
while IFS=: read -r page link; do
  target=${link#*\(} target=${target%)} target=${target%%#*}
  [[ -z $target || -e $(dirname "$page")/$target ]] || fail "$page links to $target, which is not installed"
  ((++links))
done < <(grep -rHoE '\]\([^) ]+\)' --include='*.md' "$tree/share/doc" | grep -v ':](http' || true)
[[ $links -gt 10 ]] || fail "only $links links were found"
while IFS=: read -r page link; do
  read -r name section <<<"$(sed -E 's/^\.BR ([a-z\\-]+) \(([0-9])\).*/\1 \2/; s/\\//g' <<<"$link")"
  [[ -e $tree/share/man/man$section/$name.$section ]] || fail "$page refers to $name($section), which is not installed"
done < <(grep -rHoE '^\.BR (oxaqry|devserver)[a-z\\-]* \([0-9]\)' "$tree/share/man")

printf 'Building programs through find_package\n'
"$cmake" -G Ninja -S "$source/tests/package/consumer" -B "$work/consumer" -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_C_FLAGS="$flags" -DCMAKE_PREFIX_PATH="$tree" \
  -DEXAMPLES="$source/examples" -DHEADERS="$tree/include/oxaqrycln" >"$work/log" 2>&1 ||
  fail "$(cat "$work/log")"
"$cmake" --build "$work/consumer" --parallel 2 >"$work/log" 2>&1 || fail "$(cat "$work/log")"

printf 'Building programs through pkg-config\n'
export PKG_CONFIG_PATH=$libdir/pkgconfig
# --dont-define-prefix: the .pc file itself must derive its prefix.
options=$(pkg-config --dont-define-prefix --cflags --libs oxaqrycln)
# The path contains a blank, which pkg-config quotes for the shell.
eval "'$compiler' $flags -o '$work/by_pkg_config' '$source/examples/first_query/main.cpp' $options"
c_compiler=${compiler/c++/cc} c_compiler=${c_compiler/g++/gcc} c_compiler=${c_compiler/clang++/clang}
options=$(pkg-config --dont-define-prefix --cflags --libs oxaqrycln-c)
eval "'$c_compiler' -std=c99 -Wall -Wextra -Werror -pedantic $flags -o '$work/c_by_pkg_config' '$source/examples/c/main.c'" \
  "$options '-Wl,-rpath,$libdir'"

printf 'Running them\n'
: >"$work/devserver.log"
"$tree/bin/devserver" --port 0 >"$work/devserver.log" 2>&1 &
server=$!
for ((tries = 0; tries < 100; ++tries)); do
  port=$(sed -n 's/^listening on 127\.0\.0\.1:\([0-9]*\)$/\1/p' "$work/devserver.log")
  [[ -z $port ]] || break
  sleep 0.1
done
[[ -n $port ]] || fail "devserver did not start: $(cat "$work/devserver.log")"
export ARCHIVE_PASSWORD=secret
for program in consumer/first_query/first_query by_pkg_config; do
  output=$("$work/$program" "127.0.0.1,$port" pipes 2>&1) || fail "$program: $output"
  [[ $output == [1-9]*" hits"$'\n'*"copper pipes"* ]] || fail "$program printed: $output"
done
for program in consumer/c/hit_list c_by_pkg_config; do
  output=$("$work/$program" "127.0.0.1,$port" pipes 2>&1) || fail "$program: $output"
  [[ $output == *Mail$'\t'*[1-9]*" hits"$'\n'*"copper pipes"* ]] || fail "$program printed: $output"
done
! ARCHIVE_PASSWORD=wrong "$work/by_pkg_config" "127.0.0.1,$port" pipes >/dev/null 2>&1 || fail "a wrong password was accepted"
OXAQRY_USER=webuser OXAQRY_PASSWORD=secret "$tree/bin/oxaqry" channels --hosts "127.0.0.1,$port" >"$work/channels" ||
  fail "the installed oxaqry: $(cat "$work/channels")"

printf 'Visiting the page\n'
export OXAQRY_REMOTE_HOSTS=127.0.0.1,$port OXAQRY_USER=webuser OXAQRY_PASSWORD=secret SCRIPT_NAME=/page
export OXAQRY_DATABASE="Driver=SQLite3;Database=$work/users.sqlite" PAGE_SESSIONS=$work/sessions
mkdir "$PAGE_SESSIONS"
"$tree/bin/oxaqry" user init --sample >/dev/null
for name in anna none; do "$tree/bin/oxaqry" user add "$name" --password-stdin <<<sesame >/dev/null; done
"$tree/bin/oxaqry" user grant anna --channel Mail >/dev/null

# page QUERY [COOKIE]: what a visitor gets.
page() { REQUEST_METHOD=GET QUERY_STRING=$1 HTTP_COOKIE=${2:-} "$work/consumer/search_page/search_page"; }
# log_on NAME PASSWORD: the answer to the form.
log_on() {
  local body="user=$1&password=$2"
  REQUEST_METHOD=POST CONTENT_LENGTH=${#body} "$work/consumer/search_page/search_page" <<<"$body"
}
# expect WHAT PATTERN TEXT
expect() { [[ $3 == $2 ]] || fail "$1: $3"; }

expect "without a session" '*Please log on.*' "$(page 'q=copper')"
expect "a wrong password" '*wrong.*' "$(log_on anna "'OR'1'='1")"
cookie=$(log_on anna sesame | sed -n 's/^Set-Cookie: \(session=[0-9-]*\);.*/\1/p')
[[ -n $cookie ]] || fail "no session after the log-on"
expect "hits of the user's channels only" '* hits</p>*' "$(page 'q=copper' "other=1; $cookie; more=2")"
! page 'q=copper' "$cookie" | grep -q 'channel=[^M]' || fail "a hit of another channel is shown"
expect "marks" '*<mark>price</mark>*' "$(page 'channel=Mail&archive=Inbox&id=1262&version=2&q=price' "$cookie")"
expect "another channel's document" 'Status: 400*' "$(page 'channel=Finance&archive=Orders&id=1009' "$cookie")"
expect "markup of a visitor" '*value="&lt;script&gt;"*' "$(page 'q=%3Cscript%3E' "$cookie")"
cookie=$(log_on none sesame | sed -n 's/^Set-Cookie: \(session=[0-9-]*\);.*/\1/p')
expect "a user without rights" '*>0 of 0 hits*' "$(page 'q=copper' "$cookie")"
printf 'All done\n'
