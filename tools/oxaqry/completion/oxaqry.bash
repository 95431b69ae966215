# Completion of oxaqry's commands and options for bash.

_oxaqry() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local commands="live direct channels archives formats properties search servers write-test session methods"
  local settings="--json --config --hosts --user --password-file --password-stdin --timeout --session --log-dir
    --blob-local --blob-remote --change-file-ext --user-ip --user-name --login-time --help"
  local command="" word options
  COMPREPLY=()

  case $previous in
    --config|--password-file)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return ;;
    --log-dir|--blob-local|--blob-remote)
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return ;;
    --hosts|--user|--timeout|--session|--change-file-ext|--user-ip|--user-name|--login-time)
      return ;;
    --max|--query-max|--format|--rights|--layout|--layout-field)
      return ;;
  esac

  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if [[ " $commands " == *" $word "* ]]; then
      command=$word
      break
    fi
  done
  case $command in
    "") options="$commands --help --version" ;;
    live|direct|channels|formats|properties|servers|write-test) options=$settings ;;
    archives) options="$settings --all --ext" ;;
    search) options="$settings --max --query-max --format --rights --layout --layout-field" ;;
    session) options="--help" ;;
    methods) options="--json --markdown --help" ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
}

complete -F _oxaqry oxaqry
