# Completions of panehost for fish. Written by packaging/generate.

# The words that are neither options nor their values, from a number on.
function __panehost_given
    set -l takes false
    set -l words
    for word in (commandline -opc)
        if $takes
            set takes false
        else if contains -- $word --platform --screenshot --select --style --tab
            set takes true
        else if not string match -q -- '-*' $word
            set -a words $word
        end
    end
    string join -- \n $words[$argv[1]..]
end

complete -c panehost -f
complete -c panehost -n 'true' -s h -l help -d 'Show this help and exit'
complete -c panehost -n 'true' -s v -l version -d 'Show the version and exit'
complete -c panehost -n 'true' -l screenshot -r -F -d 'Writes a picture of the window and ends; needs no display.'
complete -c panehost -n 'true' -l tab -x -d 'Opens the tab with this title.'
complete -c panehost -n 'true' -l select -x -d 'Selects the entry in this row, from 0.'
complete -c panehost -n 'true' -l dark -d 'Uses dark colours, for pictures.'
complete -c panehost -n 'true' -l reverse -d 'Lays the window out from right to left.'
complete -c panehost -n 'true' -l platform -x -a 'xcb wayland vnc offscreen' -d 'Where to draw: xcb, wayland, vnc, offscreen.'
complete -c panehost -n 'true' -l style -x -a 'fusion windows' -d 'The look of the controls: fusion, windows.'
complete -c panehost -n 'true; and test (count (__panehost_given 2)) = 0' -a '(__fish_complete_directories)'
