# Completion of vantrel for fish. What there is to complete is read from --help, so that it is never out of date.

function __vantrel_subcommands
    vantrel --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z][a-z]*\)  *\(.*\)/\1\t\2/p'
end

function __vantrel_command
    set -l words (commandline -opc)
    set -l known (__vantrel_subcommands | string split -f 1 \t)
    if set -q words[2]; and contains -- $words[2] $known
        echo $words[2]
    else
        echo auto
    end
end

function __vantrel_options
    vantrel (__vantrel_command) --help 2>/dev/null | sed -n 's/^  \(-[^ ]*\).*/\1/p' | string split ,
end

# The words that the option before takes, where it takes one of a few.
function __vantrel_values
    set -l before (commandline -opc)[-1]
    string match -q -- '-*' $before; or return 1
    vantrel (__vantrel_command) --help 2>/dev/null | sed -n "s/^  \(-[^ ]*,\)\{0,1\}$before \([^ :]*|[^ :]*\).*/\2/p" |
        string split '|' | string match -v -r '^[A-Z]$'
end

complete -c vantrel -n 'test (count (commandline -opc)) -eq 1' -a '(__vantrel_subcommands)'
complete -c vantrel -n 'string match -q -- "-*" (commandline -ct)' -a '(__vantrel_options)'
complete -c vantrel -n '__vantrel_values >/dev/null' -a '(__vantrel_values)'
