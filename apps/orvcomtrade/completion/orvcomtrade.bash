# Completion of orvcomtrade for bash: asks the program itself, and needs no other package.

_orvcomtrade() {
    local current=${COMP_WORDS[COMP_CWORD]} words=("${COMP_WORDS[@]:1:COMP_CWORD}") i answer
    COMPREPLY=()
    for i in "${!words[@]}"; do # as typed: quotes, backslashes and the tilde are still there
        words[i]=${words[i]//[\"\'\\]/}
        words[i]=${words[i]/#\~\//$HOME/}
    done
    mapfile -t answer < <("${COMP_WORDS[0]/#\~\//$HOME/}" --complete "${words[@]}" 2>/dev/null)
    mapfile -t COMPREPLY < <(printf '%s\n' "${answer[@]:1}" | sed '/./!d; s/\t.*//')
    [[ $current == "=" ]] && current=
    case ${answer[0]:-none} in
    none)
        ((${#COMPREPLY[@]} == 0)) || [[ ${COMPREPLY[0]} == -* || ${COMPREPLY[0]} == *= ]] ||
            compopt -o filenames 2>/dev/null # quotes the blanks of names
        [[ ${COMPREPLY[0]:-} != *= ]] || compopt -o nospace 2>/dev/null
        ;;
    all)
        compopt -o filenames 2>/dev/null
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$current")
        ;;
    recordings)
        compopt -o filenames 2>/dev/null
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(
            compgen -d -- "$current"
            compgen -f -X '!*.[cC][fF][gGfF]' -- "$current"
            compgen -f -X '!*.[dD][aA][tT]' -- "$current"
        )
        ;;
    esac
}

complete -F _orvcomtrade orvcomtrade
