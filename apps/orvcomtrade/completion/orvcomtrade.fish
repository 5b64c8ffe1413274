# Completion of orvcomtrade for fish. A new subcommand is a line for its name and one for each of its options.

function __orvcomtrade_recordings
    __fish_complete_path (commandline -ct) | string match -ri '^[^\t]*(?:/|\.cfg|\.dat|\.cff)(?:\t.*)?$'
end

complete -c orvcomtrade -f
complete -c orvcomtrade -s h -l help -d 'Print a help message and exit'
complete -c orvcomtrade -n __fish_use_subcommand -l version -d 'Print the version and exit'

complete -c orvcomtrade -n __fish_use_subcommand -a info -d 'Print what the recording is and which channels it has'
complete -c orvcomtrade -n __fish_use_subcommand -a points -d 'Print the plot points of one channel as CSV'
complete -c orvcomtrade -n 'not __fish_use_subcommand' -a '(__orvcomtrade_recordings)'

complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l start -x -d 'First instant in seconds'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l end -x -d 'Last instant in seconds'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l rate -x -d 'Points per second'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l status -d 'Take a status channel and print its steps'
