# completion.fish SCRIPT PROGRAM_FOLDER RECORDINGS: loads the completion and asks it for the words of a line.

source $argv[1]
set -x PATH $argv[2] $PATH
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

completes_to info 'orvcomtrade inf'
completes_to 'primary' 'orvcomtrade info --side p'
completes_to '--side=primary' 'orvcomtrade info --side=p'
completes_to --version 'orvcomtrade --v'
completes_to '--start|--status' 'orvcomtrade points --st'
completes_to '' 'orvcomtrade info --st'
completes_to 'A.CFG|b.Dat|c d.cff|station/' 'orvcomtrade info '
completes_to '' 'orvcomtrade points --rate '
cp $argv[3]/feeder_earth_fault.* .
completes_to 'Breaker closed|Breaker open' 'orvcomtrade points feeder_earth_fault.cfg Br'

cd /
rm -r $folder
exit $failures
