# Completion of orvcomtrade for fish. A new subcommand is a line for its name and one for each of its options.

function __orvcomtrade_recordings
    __fish_complete_path (commandline -ct) | string match -ri '^[^\t]*(?:/|\.cfg|\.dat|\.cff)(?:\t.*)?$'
end

complete -c orvcomtrade -f
complete -c orvcomtrade -s h -l help -d 'Print a help message and exit'
complete -c orvcomtrade -n __fish_use_subcommand -l version -d 'Print the version and exit'

complete -c orvcomtrade -n __fish_use_subcommand -a info -d 'Print what each recording is and which channels it has'
complete -c orvcomtrade -n __fish_use_subcommand -a check -d 'Print what deviates from the standard or is damaged, and how it is read'
complete -c orvcomtrade -n __fish_use_subcommand -a points -d 'Print the plot points of one channel as CSV'
complete -c orvcomtrade -n __fish_use_subcommand -a export -d 'Write every sample of each recording'
complete -c orvcomtrade -n __fish_use_subcommand -a events -d 'Print the changes of the status channels'
complete -c orvcomtrade -n __fish_use_subcommand -a normalize -d 'Write each recording as a clean pair into a folder'
complete -c orvcomtrade -n 'not __fish_use_subcommand' -a '(__orvcomtrade_recordings)'

complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l side -x -a 'recorded primary secondary' -d 'Side of the values'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l encoding -x -d 'Encoding of the texts'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l limit -x -a 'cfg-bytes= channels= rates= samples= decoded-bytes= findings=' -d 'The most that is read, NAME=VALUE'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l jobs -x -d 'Recordings read side by side'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l json -d 'Print a JSON object per recording'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l follow-links -d 'Follow links that lead out of a folder that is searched'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events normalize' -l no-sandbox -d 'Keep the right to open other files'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points export events' -l as-is -d 'Read the files untouched'

complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l channel -x -d 'The channel'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l start -x -d 'First instant in seconds'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l end -x -d 'Last instant in seconds'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l rate -x -d 'Points per second'
complete -c orvcomtrade -n '__fish_seen_subcommand_from points' -l status -d 'Take a status channel and print its steps'

complete -c orvcomtrade -n '__fish_seen_subcommand_from export' -l format -x -a 'csv jsonl npy' -d 'Format of the data'
complete -c orvcomtrade -n '__fish_seen_subcommand_from export' -l raw -d 'Write texts of CSV also where a spreadsheet takes them for formulas'
complete -c orvcomtrade -n '__fish_seen_subcommand_from export normalize' -l output -r -F -d 'File or folder'
complete -c orvcomtrade -n '__fish_seen_subcommand_from export normalize' -l force -d 'Replace files that exist, and read data even if their numbers make no sense'
complete -c orvcomtrade -n '__fish_seen_subcommand_from info check points events' -l force -d 'Read data even if their numbers make no sense'
complete -c orvcomtrade -n '__fish_seen_subcommand_from normalize' -l for -x -a 'standard library' -d 'Who is to read it'
