# fish completion for kelspar: commands and options as its own --help lists them.
function __kelspar_commands
    kelspar --help 2>/dev/null | awk '/^Subcommands:/ {inside = 1; next} inside && /^  [a-z]/ {print $1}'
end
function __kelspar_options
    set -l words (commandline -opc)
    kelspar $words[2] --help 2>/dev/null | string match -ra -- '(?<=^|[ ,])--?[a-z][a-z-]*'
end
complete -c kelspar -n __fish_use_subcommand -f -a '(__kelspar_commands)'
complete -c kelspar -n 'not __fish_use_subcommand; and string match -q -- "-*" (commandline -ct)' -f -a '(__kelspar_options)'
