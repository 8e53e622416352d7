# bash completion for kelspar: commands, options and their values as its own --help lists them.
_kelspar_values() { # COMMAND OPTION
  kelspar "$1" --help 2>/dev/null | sed -n "s/^  \(-[a-z],\)\{0,1\}$2 [A-Z]*:{\([a-z0-9,]*\)}.*/\2/p"
}
_kelspar() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} words
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    words=$(kelspar --help 2>/dev/null |
      awk '/^Subcommands:/ {inside = 1; next} inside && /^  [a-z]/ {print $1}')
    mapfile -t COMPREPLY < <(compgen -W "$words --help --version" -- "$current")
  elif [[ $current == -* ]]; then
    words=$(kelspar "${COMP_WORDS[1]}" --help 2>/dev/null | grep -oE -- '(^| |,)--?[a-z][a-z-]*' |
      tr -d ' ,')
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  elif [[ $before == --[a-z]* ]] && words=$(_kelspar_values "${COMP_WORDS[1]}" "$before") && [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "${words//,/ }" -- "$current")
  else
    compopt -o default
  fi
}
complete -F _kelspar kelspar
