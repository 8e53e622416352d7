# fish completion for kelspar: commands, options and their values as its own --help lists them.
function __kelspar_commands
    kelspar --help 2>/dev/null | awk '/^Subcommands:/ {inside = 1; next} inside && /^  [a-z]/ {print $1}'
end
function __kelspar_options
    set -l words (commandline -opc)
    kelspar $words[2] --help 2>/dev/null | string match -ra -- '(?<=^|[ ,])--?[a-z][a-z-]*'
end
function __kelspar_values
    set -l words (commandline -opc)
    string match -qr -- '^--[a-z]' $words[-1]; or return
    kelspar $words[2] --help 2>/dev/null |
        string replace -rf -- "^  (?:-[a-z],)?$words[-1] [A-Z]*:\{([a-z0-9,]*)\}.*" '$1' | string split ,
end
complete -c kelspar -n __fish_use_subcommand -f -a '(__kelspar_commands)'
complete -c kelspar -n 'not __fish_use_subcommand; and string match -q -- "-*" (commandline -ct)' -f -a '(__kelspar_options)'
complete -c kelspar -n 'count (__kelspar_values) >/dev/null' -f -a '(__kelspar_values)'
