#compdef panehost
# Completions of panehost for zsh. Written by packaging/generate.

_typeslate_ask() {
  local -a found=(${(0)"$(typeslatectl complete $1 -- "${(Q)PREFIX}" "${(Q@)line}" 2>/dev/null)"})
  compadd -S '' -- ${(M)found:#*:}
  compadd -- ${found:#*:}
}

_panehost() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '-v[Show the version and exit]' \
    '--version[Show the version and exit]' \
    '--screenshot[Writes a picture of the window and ends; needs no display.]:file:{ _files }' \
    '--tab[Opens the tab with this title.]:title:{ _message value }' \
    '--select[Selects the entry in this row, from 0.]:row:{ _message value }' \
    '--dark[Uses dark colours, for pictures.]' \
    '--reverse[Lays the window out from right to left.]' \
    '--platform[Where to draw\: xcb, wayland, vnc, offscreen.]:platform:{ compadd -- xcb wayland vnc offscreen }' \
    '--style[The look of the controls\: fusion, windows.]:style:{ compadd -- fusion windows }' \
    ':BUNDLE:{ _files -/ }'
}

_panehost "$@"
