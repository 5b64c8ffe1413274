# Completion of orvcomtrade for fish: asks the program itself.

function __orvcomtrade_candidates
    set -l words (commandline -opc)
    set -l current (commandline -ct | string unescape)
    set -l answer ($words[1] --complete $words[2..-1] "$current" 2>/dev/null)
    # Of "--side=p" the whole word is replaced.
    set -l sign (string match -r -- '^--[^=]*=' -- $current)
    set -q sign[1]; or set sign ''
    printf '%s\n' $sign$answer[2..-1]
    switch "$answer[1]"
        case all
            __fish_complete_path $current
        case recordings
            __fish_complete_path $current | string match -ri '^[^\t]*(?:/|\.cfg|\.dat|\.cff)(?:\t.*)?$'
    end
end

complete -c orvcomtrade -f -a '(__orvcomtrade_candidates)'
