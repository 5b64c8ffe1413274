# Completion of orvcomtrade for bash. It needs no other package. A new subcommand is a row in each of the two tables.

_orvcomtrade() {
    # Options; a "=" at the end says that a value follows.
    local -A options=(
        [none]="-h --help --version"
        [info]="-h --help"
        [points]="-h --help --start= --end= --rate= --status"
    )
    # What the words without a dash are, in their order.
    local -A operands=(
        [info]="path"
        [points]="path channel"
    )

    local current=${COMP_WORDS[COMP_CWORD]} subcommand=none operand=0 value_follows='' word i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word == "=" ]]; then # bash splits --rate=1000 into three words
            value_follows=yes
        elif [[ $value_follows ]]; then
            value_follows=
        elif [[ $word == -* ]]; then
            [[ " ${options[$subcommand]} " == *" $word= "* ]] && value_follows=yes
        elif [[ $subcommand == none ]]; then
            [[ ${operands[$word]+known} ]] || return 0
            subcommand=$word
        else
            ((++operand))
        fi
    done

    if [[ $value_follows || $current == "=" ]]; then
        return 0
    fi
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${options[$subcommand]//=/}" -- "$current")
        return 0
    fi
    if [[ $subcommand == none ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${!operands[*]}" -- "$current")
        return 0
    fi
    local -a kinds
    read -ra kinds <<<"${operands[$subcommand]}"
    if [[ ${kinds[operand]:-} == path ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(
            compgen -d -- "$current"
            compgen -f -X '!*.[cC][fF][gGfF]' -- "$current"
            compgen -f -X '!*.[dD][aA][tT]' -- "$current"
        )
    fi
}

complete -F _orvcomtrade orvcomtrade
