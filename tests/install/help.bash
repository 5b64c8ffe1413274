# help.bash PROGRAM MANUAL_PAGE COMPLETION_FOLDER: the manual page and the completions name the subcommands and options
# that --help prints, each where it belongs, and the manual page names no others.
set -uo pipefail # not -e: interactive shells, where completion lives, have it off

program=$1
page=$(sed '/^\.\\"/d; s/\\-/-/g' "$2") # without comments
completion=$3
source "$completion/orvcomtrade.bash"

failures=0
complain() {
    echo "$*" >&2
    failures=1
}
same() { # same WHAT EXPECTED FOUND
    diff -u --label "in --help" --label "found" <(printf '%s\n' "$2") <(printf '%s\n' "$3") >&2 || complain "$1 differ"
}
words() { tr -s ' ,\n' '\n' | sed '/^$/d' | LC_ALL=C sort -u; }
options_in_help() { sed -nE 's/^  (-[^ ]+).*/\1/p' <<<"$1" | words; }
bash_completes() {
    COMP_WORDS=(orvcomtrade "$@") COMP_CWORD=$# COMPREPLY=()
    _orvcomtrade
    printf '%s\n' ${COMPREPLY[@]+"${COMPREPLY[@]}"} | words
}

help=$("$program" --help)
subcommands=$(sed -nE '/^Subcommands:/,/^$/s/^  ([a-z][a-z-]*).*/\1/p' <<<"$help" | words)
[ -n "$subcommands" ] || complain "--help lists no subcommand"

zsh=$(<"$completion/_orvcomtrade")
fish=$(<"$completion/orvcomtrade.fish")
same "subcommands of the manual page" "$subcommands" "$(sed -n 's/^\.SS \([a-z]*\)$/\1/p' <<<"$page" | words)"
same "subcommands that bash completes" "$subcommands" "$(bash_completes "")"
same "subcommands that zsh completes" "$subcommands" "$(sed -nE "s/^        '([a-z]+):.*/\1/p" <<<"$zsh" | words)"
same "subcommands that fish completes" "$subcommands" \
    "$(sed -nE 's/^complete .* __fish_use_subcommand -a ([a-z]+) .*/\1/p' <<<"$fish" | words)"

all=$(options_in_help "$help")
for subcommand in "" $subcommands; do
    options=$(options_in_help "$("$program" $subcommand --help)")
    [ -n "$options" ] || complain "orvcomtrade $subcommand --help lists no option"
    same "options of orvcomtrade $subcommand that bash completes" "$options" "$(bash_completes $subcommand -)"
    for option in $options; do
        case $option in
        -h | --help | --version)
            zsh_text=$zsh
            fish_text=$fish
            ;;
        *)
            zsh_text=$(sed -n "/^    $subcommand)/,/;;/p" <<<"$zsh")
            fish_text=$(grep "__fish_seen_subcommand_from [a-z ]*\b$subcommand\b" <<<"$fish")
            ;;
        esac
        case $option in
        -h) zsh_form='\{-h,' fish_form='-s h ' ;;
        --help) zsh_form=',--help\}' fish_form='-l help ' ;;
        --*) zsh_form="$option=?\\[" fish_form="-l ${option#--} " ;;
        *) zsh_form="$option\\[" fish_form="-s ${option#-} " ;;
        esac
        grep -qE -- "$zsh_form" <<<"$zsh_text" || complain "zsh: '$subcommand' does not complete $option"
        grep -qF -- "$fish_form" <<<"$fish_text" || complain "fish: '$subcommand' does not complete $option"
    done
    all+=$'\n'$options
done
same "options of the manual page" "$(words <<<"$all")" \
    "$(grep -oE -- '(^|[^a-zA-Z0-9-])--?[a-zA-Z][a-zA-Z0-9-]*' <<<"$page" | sed -E 's/^[^-]*//' | words)"
exit $failures
