# Completion of oxaqry's commands and options for bash.

_oxaqry() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local commands="live direct channels archives formats properties search print-hits show create edit delete note masks
    fetch transfer upload orders user outline servers write-test session methods"
  local settings="--json --config --hosts --user --password-file --password-stdin --timeout --session --log-dir
    --blob-local --blob-remote --change-file-ext --user-ip --user-name --login-time --help"
  local database="--json --config --database --session --log-dir --help"
  local grants="--id --right --edit --archive --channel --doc-right --search-right --group"
  local contents="--title --field --contents --charset --import-file"
  local search="--max --query-max --format --rights --layout --layout-field --sort"
  local users="init import add passwd check must-change list groups rights doc-rights search-rights
    grant revoke explain"
  local command="" action="" word options="" files=""
  COMPREPLY=()

  case $previous in
    --config|--password-file|--contents|--import-file|--output|-o)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return ;;
    --log-dir|--blob-local|--blob-remote)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return ;;
    --hosts|--user|--timeout|--session|--change-file-ext|--user-ip|--user-name|--login-time)
      return ;;
    --max|--query-max|--format|--rights|--layout|--layout-field|--sort|--query|--mark-on|--mark-off)
      return ;;
    --channel|--archive|--title|--field|--charset|--segment|--print|--pages|--size|--status)
      return ;;
    --database|--id|--right|--doc-right|--search-right|--archive-user|--depth|--expression)
      return ;;
  esac

  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if [[ -z $command && " "$commands" " =~ [[:space:]]"$word"[[:space:]] ]]; then
      command=$word
    elif [[ $command == note && -z $action && $word =~ ^(add|list|delete)$ ]]; then
      action=$word
    elif [[ $command == orders && -z $action && $word =~ ^(list|set|tiff)$ ]]; then
      action=$word
    elif [[ $command == user && -z $action && " $users " == *" $word "* ]]; then
      action=$word
    fi
  done
  case $command in
    "") options="$commands --help --version" ;;
    live|direct|channels|formats|properties|masks|servers|write-test) options=$settings ;;
    archives) options="$settings --all --ext" ;;
    search) options="$settings $search" ;;
    print-hits) options="$settings $search --title --output --force --keep" ;;
    show) options="$settings --query --mark-on --mark-off" ;;
    create) options="$settings --channel --archive $contents" ;;
    edit) options="$settings $contents" ;;
    delete) options="$settings --yes" ;;
    note)
      case $action in
        "") options="add list delete --help" ;;
        delete) options="$settings --yes" ;;
        *) options=$settings ;;
      esac ;;
    orders)
      case $action in
        "") options="list set tiff --help" ;;
        list) options="$settings --status --max" ;;
        tiff) options="$settings --output --force --keep" ;;
        *) options=$settings ;;
      esac ;;
    user)
      case $action in
        "") options="$users --help" ;;
        init) options="$database --sample" ;;
        import) options=$database files=yes ;;
        add) options="$database --group --archive-user --duplicate --password-stdin" ;;
        passwd) options="$database --id --make-user --password-stdin" ;;
        check) options="$database --password-stdin" ;;
        list) options="$database --groups" ;;
        must-change|groups|rights|doc-rights|search-rights) options="$database --id" ;;
        grant|revoke) options="$database $grants" ;;
        explain) options="$database --id --edit --archive --channel" ;;
        *) options=$database ;;
      esac ;;
    outline) options="$database --depth --expression" ;;
    fetch) options="$settings --segment --first --print --pages --output --force --keep" ;;
    transfer) options="$settings --size --output --force" ;;
    upload) options="$settings --force" files=yes ;;
    session) options="--help" ;;
    methods) options="--json --help" ;;
  esac
  mapfile -t COMPREPLY < <(compgen ${files:+-f} -W "$options" -- "$current")
}

complete -F _oxaqry oxaqry
