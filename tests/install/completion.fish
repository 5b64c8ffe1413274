# completion.fish SCRIPT: loads the completion and asks it for the words of a line.

source $argv[1]
set folder (mktemp -d)
cd $folder
mkdir station
touch A.CFG b.Dat 'c d.cff' notes.txt

set -g failures 0
function completes_to --argument-names expected line
    set found (complete -C $line | string replace -r '\t.*' '' | string join '|')
    if test "$found" != "$expected"
        echo "$line: expected '$expected', found '$found'" >&2
        set -g failures 1
    end
end

completes_to info 'orvcomtrade i'
completes_to --version 'orvcomtrade --v'
completes_to '--start|--status' 'orvcomtrade points --st'
completes_to '' 'orvcomtrade info --st'
completes_to 'A.CFG|b.Dat|c d.cff|station/' 'orvcomtrade info '
completes_to '' 'orvcomtrade points --rate '

cd /
rm -r $folder
exit $failures
