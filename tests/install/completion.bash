# completion.bash SCRIPT PROGRAM_FOLDER RECORDINGS: loads the completion and asks it as bash does when TAB is pressed behind the words of a row.
set -uo pipefail # not -e: interactive shells, where completion lives, have it off

source "$1" || exit 1
PATH=$2:$PATH
recordings=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
mkdir station
touch A.CFG b.Dat 'c d.cff' notes.txt station/e.cfg
mkdir "$folder/recordings"
cp "$recordings"/feeder_earth_fault.* "$folder/recordings"

failures=0
completes_to() { # completes_to WHY EXPECTED WORD...
    local why=$1 expected=$2 found
    shift 2
    COMP_WORDS=(orvcomtrade "$@") COMP_CWORD=$# COMPREPLY=()
    _orvcomtrade
    found=$(printf '%s\n' ${COMPREPLY[@]+"${COMPREPLY[@]}"} | LC_ALL=C sort | paste -sd '|')
    if [ "$found" != "$expected" ]; then
        echo "$why: expected '$expected', found '$found'" >&2
        failures=1
    fi
}

complete -p orvcomtrade | grep -q _orvcomtrade || { echo "not registered" >&2; failures=1; }

completes_to "a command" "info" inf
completes_to "commands" "export" ex
completes_to "the command that help explains" "export" help ex
completes_to "options of the program" "--version" --v
completes_to "options of a command too" "--version" info --vers
completes_to "options of a command" "--start|--status" points --st
completes_to "no option of another command" "" info --st
completes_to "files of recordings in any case, folders" "A.CFG|b.Dat|c d.cff|recordings|station" info ""
completes_to "files in a folder" "station/e.cfg" points station/
completes_to "the path comes behind an option with its value" "A.CFG" points --start 0.1 A
completes_to "and behind one without" "A.CFG" points --status A
completes_to "a value is not completed" "" points --rate ""
completes_to "nor is it behind an equals sign" "" points --rate = ""
completes_to "options go on behind such a value" "--end" points --rate = 50 --end
completes_to "several paths" "A.CFG|b.Dat|c d.cff|recordings|station" info A.CFG ""
completes_to "values that are known" "primary|recorded|secondary" check --side ""
completes_to "and behind an equals sign" "csv" export --format = c
completes_to "any file as the output" "A.CFG|b.Dat|c d.cff|notes.txt|recordings|station" normalize --output ""
completes_to "no option that a command lacks" "" normalize --as
completes_to "encodings" "CP1250|CP1251|CP1252" info --encoding CP125
completes_to "limits" "channels=" info --limit ch
completes_to "channels of the recording on the line" "Breaker closed|Breaker open" \
    points recordings/feeder_earth_fault.cfg Br
completes_to "channels in quotes" "Breaker open" points recordings/feeder_earth_fault.cfg --channel '"Breaker o'
completes_to "channels behind a backslash" "Breaker open" points recordings/feeder_earth_fault.cfg -c 'Breaker\ o'
completes_to "an unknown command" "" bogus ""
exit $failures
