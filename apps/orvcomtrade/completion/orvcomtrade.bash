# Completion of orvcomtrade for bash. It needs no other package. A new subcommand is a row in the first table, an option
# whose values are known one in the second.

_orvcomtrade() {
    # Options; a "=" at the end says that a value follows.
    local reading="-h --help --side= --encoding= --limit= --jobs= --json --follow-links --no-sandbox --force"
    local -A options=(
        [none]="-h --help --version"
        [info]="$reading --as-is"
        [check]="$reading --as-is"
        [points]="$reading --as-is --channel= --start= --end= --rate= --status"
        [export]="$reading --as-is --format= --output= --raw"
        [events]="$reading --as-is"
        [normalize]="$reading --for= --output="
    )
    local -A values=(
        [--side]="recorded primary secondary"
        [--format]="csv jsonl npy"
        [--for]="standard library"
        [--limit]="cfg-bytes= channels= rates= samples= decoded-bytes= findings="
    )

    local current=${COMP_WORDS[COMP_CWORD]} subcommand=none value_follows= word i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word == "=" ]]; then # bash splits --rate=1000 into three words
            value_follows=${COMP_WORDS[i - 1]}
        elif [[ $value_follows ]]; then
            value_follows=
        elif [[ $word == -* ]]; then
            [[ " ${options[$subcommand]} " == *" $word= "* ]] && value_follows=$word
        elif [[ $subcommand == none ]]; then
            [[ ${options[$word]+known} ]] || return 0
            subcommand=$word
        fi
    done

    if [[ $current == "=" ]]; then
        value_follows=${COMP_WORDS[COMP_CWORD - 1]}
        current=
    fi
    if [[ $value_follows == --output ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return 0
    fi
    if [[ $value_follows ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${values[$value_follows]:-}" -- "$current")
        return 0
    fi
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${options[$subcommand]//=/}" -- "$current")
        return 0
    fi
    if [[ $subcommand == none ]]; then
        unset "options[none]"
        mapfile -t COMPREPLY < <(compgen -W "${!options[*]}" -- "$current")
        return 0
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(
        compgen -d -- "$current"
        compgen -f -X '!*.[cC][fF][gGfF]' -- "$current"
        compgen -f -X '!*.[dD][aA][tT]' -- "$current"
    )
}

complete -F _orvcomtrade orvcomtrade
