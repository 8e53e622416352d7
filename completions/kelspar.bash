# bash completion for kelspar: commands and options as its own --help lists them.
_kelspar() {
  local current=${COMP_WORDS[COMP_CWORD]} words
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    words=$(kelspar --help 2>/dev/null |
      awk '/^Subcommands:/ {inside = 1; next} inside && /^  [a-z]/ {print $1}')
    mapfile -t COMPREPLY < <(compgen -W "$words --help --version" -- "$current")
  elif [[ $current == -* ]]; then
    words=$(kelspar "${COMP_WORDS[1]}" --help 2>/dev/null | grep -oE -- '(^| |,)--?[a-z][a-z-]*' |
      tr -d ' ,')
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  elif [ "${COMP_WORDS[COMP_CWORD - 1]}" = --to ]; then
    words=$(kelspar "${COMP_WORDS[1]}" --help 2>/dev/null | sed -n 's/.*--to.*{\([a-z,]*\)}.*/\1/p')
    mapfile -t COMPREPLY < <(compgen -W "${words//,/ }" -- "$current")
  else
    compopt -o default
  fi
}
complete -F _kelspar kelspar
