# Completion of encconv for fish.

function __encconv_encodings
    encconv --list 2>/dev/null | awk '$1 ~ /^[0-9]+$/ { print $2; print $1 }'
end

complete -c encconv -s f -l from -x -a 'auto (__encconv_encodings)' -d 'Encoding of the input'
complete -c encconv -s t -l to -x -a '(__encconv_encodings)' -d 'Encoding of the output'
complete -c encconv -s o -l output -r -d 'Write to a file'
complete -c encconv -l in-place -d 'Replace each file'
complete -c encconv -l output-dir -x -a '(__fish_complete_directories)' -d 'Write each file into a directory'
complete -c encconv -s j -l jobs -x -d 'Convert this many files at once'
complete -c encconv -l on-error -x -a 'stop drop substitute substitute= hex alternate= raw' -d 'What to do with input that cannot be converted'
complete -c encconv -l strict -d 'Exit status 1 when input was treated'
complete -c encconv -l bom -d 'Begin the output with a byte order mark'
complete -c encconv -l pdf-passthrough -d 'Copy PDF files'
complete -c encconv -l ebcdic-newline -x -a 'lf nl keep' -d 'Line ends of EBCDIC text'
complete -c encconv -l record-length -x -d 'End a line after every N bytes of input'
complete -c encconv -l trim -d 'Drop the blanks at the end of each record'
complete -c encconv -s q -l quiet -d 'No progress line and no closing line'
complete -c encconv -s v -l verbose -d 'Show the log of the engine'
complete -c encconv -l detect -d 'Show which encoding each file seems to have'
complete -c encconv -l list -d 'Show the encodings'
complete -c encconv -l json -d 'List for programs'
complete -c encconv -l chart -x -a '(__encconv_encodings)' -d 'Show a code page as a chart'
complete -c encconv -l html -r -d 'Write the chart as a page'
complete -c encconv -s h -l help -d 'Show help'
complete -c encconv -n '__fish_prev_arg_in -h --help' -x -a 'errors files encodings mainframe detect charts status' -d 'Topic'
complete -c encconv -l version -d 'Show the version'
