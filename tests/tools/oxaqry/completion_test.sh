#!/usr/bin/env bash
# Completes command lines with the bash completion given as the argument and compares what it offers.
set -u
source "$1"
failures=0

# expect "LINE" "OFFERS": the last word of LINE is the one being completed; "_" stands for an empty one.
expect() {
  read -ra COMP_WORDS <<<"$1"
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  [[ ${COMP_WORDS[COMP_CWORD]} == _ ]] && COMP_WORDS[COMP_CWORD]=""
  _oxaqry
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
exit $failures
