# Completion of vantrel for bash. What there is to complete is read from --help, so that it is never out of date.

_vantrel_subcommands() {
  "$1" --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z]*\) .*/\1/p'
}

_vantrel_options() {
  "$1" "$2" --help 2>/dev/null | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n'
}

# The words that an option takes, where it takes one of a few.
_vantrel_values() {
  "$1" "$2" --help 2>/dev/null | sed -n "s/^  \(-[^ ]*,\)\{0,1\}$3 \([^ :]*|[^ :]*\).*/\2/p" | tr '|' '\n' | grep -v '^[A-Z]$'
}

_vantrel() {
  local tool=$1 word=$2 before=$3 command=auto known
  COMPREPLY=()
  known=$(_vantrel_subcommands "$tool")
  if [ "$COMP_CWORD" -gt 1 ] && grep -qxF -e "${COMP_WORDS[1]}" <<<"$known"; then command=${COMP_WORDS[1]}; fi
  if [ "$COMP_CWORD" -eq 1 ] || [ "${COMP_WORDS[1]}" = help ]; then
    case $word in
      -*) ;;
      *) mapfile -t COMPREPLY < <(compgen -W "$known help" -- "$word") ;;
    esac
    [ "${COMP_WORDS[1]}" = help ] && [ "$COMP_CWORD" -gt 1 ] && return
  fi
  case $before in
    -*)
      local values
      values=$(_vantrel_values "$tool" "$command" "$before")
      if [ -n "$values" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
        return
      fi
      ;;
  esac
  case $word in
    -*) mapfile -t COMPREPLY < <(compgen -W "$(_vantrel_options "$tool" "$command")" -- "$word") ;;
    *) mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$word") ;;
  esac
}

complete -o filenames -F _vantrel vantrel
