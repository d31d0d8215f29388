# Completions of panehost for bash. Written by packaging/generate.

_typeslate_offer() {
  local typed=${COMP_WORDS[COMP_CWORD]} word shown
  while IFS= read -r -d '' word; do
    case $typed in
      \'*) shown=${word//\'/\'\\\'\'} ;;
      \"*) shown=${word//\\/\\\\} shown=${shown//\"/\\\"} shown=${shown//\$/\\\$} shown=${shown//\`/\\\`} ;;
      *) printf -v shown %q "$word" ;;
    esac
    [[ $shown == "${typed#[\'\"]}"* || $word == "${typed#[\'\"]}"* ]] && COMPREPLY+=("$shown")
  done
}

_typeslate_files() {
  compopt -o filenames
  mapfile -t COMPREPLY < <(compgen "$1" -- "${COMP_WORDS[COMP_CWORD]}")
}

_panehost() {
  local at='' count=0 i word
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    case "$at $word" in
      *' --platform' | *' --screenshot' | *' --select' | *' --style' | *' --tab') ((++i)) ;;
      *' -'*) ;;
      *) ((++count)) ;;
    esac
  done
  COMPREPLY=()
  case "$at ${COMP_WORDS[COMP_CWORD - 1]}" in
    ' --screenshot') _typeslate_files -f; return ;;
    ' --tab') :; return ;;
    ' --select') :; return ;;
    ' --platform') _typeslate_offer < <(printf '%s\0' xcb wayland vnc offscreen); return ;;
    ' --style') _typeslate_offer < <(printf '%s\0' fusion windows); return ;;
  esac
  if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
    case "$at" in
      '') _typeslate_offer < <(printf '%s\0' --help --version --screenshot --tab --select --dark --reverse --platform --style) ;;
      *) _typeslate_offer < <(printf '%s\0' --help) ;;
    esac
    return
  fi
  case "$at:$count" in
    ':0') _typeslate_files -d ;;
  esac
}

complete -F _panehost panehost
