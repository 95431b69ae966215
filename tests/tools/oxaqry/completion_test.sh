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

expect "oxaqry ch" "channels"
expect "oxaqry se" "servers search session"
expect "oxaqry t" "transfer"
expect "oxaqry m" "masks methods"
expect "oxaqry --v" "--version"
expect "oxaqry live --v" "--verbose"
expect "oxaqry search --la" "--layout --layout-field"
expect "oxaqry search --so" "--sort"
expect "oxaqry channels --la" ""
expect "oxaqry archives --e" "--ext"
expect "oxaqry methods --j" "--json"
expect "oxaqry show a/b/1 --ma" "--mark-on --mark-off"
expect "oxaqry create --ti" "--timeout --title"
expect "oxaqry edit a/b/1 --ch" "--change-file-ext --charset"
expect "oxaqry note _" "add list delete --help"
expect "oxaqry note delete a/b/1 --y" "--yes"
expect "oxaqry note add a/b/1 --y" ""
expect "oxaqry delete a/b/1 --y" "--yes"
expect "oxaqry fetch a/b/1 --o" "--output"
expect "oxaqry transfer x --si" "--size"
expect "oxaqry print-hits copper --t" "--timeout --title"
expect "oxaqry orders _" "list set tiff --help"
expect "oxaqry orders list --s" "--session --status"
expect "oxaqry orders tiff FA-0001 --k" "--keep"
expect "oxaqry orders set FA-0001 --k" ""
expect "oxaqry user re" "revoke"
expect "oxaqry user doc-rights anna --i" "--id"
expect "oxaqry user init --sa" "--sample"
expect "oxaqry outline --ex" "--expression"
expect "oxaqry user add anna --du" "--duplicate"
expect "oxaqry user grant anna --ar" "--archive"
expect "oxaqry user grant anna --doc" "--doc-right"
expect "oxaqry user list --g" "--groups"
expect "oxaqry session _" "--help"
expect "oxaqry live --user _" ""
expect "oxaqry user must-change anna o" "on off"
expect "oxaqry orders tiff live --k" "--keep"
exit $failures
