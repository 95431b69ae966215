#!/usr/bin/env bash
# completion_test.sh OXAQRY_COMPLETION [DEVSERVER_COMPLETION] - completes command lines with the bash completions and
# compares what they offer.
set -u
for completion in "$@"; do source "$completion"; done
failures=0

# expect "LINE" "OFFERS": the last word of LINE is the one being completed; "_" stands for an empty one.
expect() {
  read -ra COMP_WORDS <<<"$1"
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  [[ ${COMP_WORDS[COMP_CWORD]} == _ ]] && COMP_WORDS[COMP_CWORD]=""
  "_${COMP_WORDS[0]}"
  if [[ ${COMPREPLY[*]} != "$2" ]]; then
    echo "\"$1\" offers \"${COMPREPLY[*]}\" instead of \"$2\""
    failures=1
  fi
}

expect "oxaqry se" "servers search session"
expect "oxaqry help ser" "servers"
expect "oxaqry live --v" "--verbose"
expect "oxaqry search --la" "--layout --layout-field"
expect "oxaqry note _" "add list delete --help"
expect "oxaqry note delete a/b/1 --y" "--yes"
expect "oxaqry note add a/b/1 --y" ""
expect "oxaqry live --user _" ""
expect "oxaqry user must-change anna o" "on off"
expect "oxaqry orders tiff live --k" "--keep"
if [[ $# -gt 1 ]]; then
  expect "devserver --m" "--max-connections --misbehave"
  expect "devserver --log --po" "--port"
  expect "devserver --port _" ""
  expect "devserver --database $1" "$1"
fi
exit $failures
