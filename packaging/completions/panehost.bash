# Completions of panehost for bash. Written by packaging/generate.

_typeslate_compgen() {
  mapfile -t COMPREPLY < <(compgen "$@" -- "${COMP_WORDS[COMP_CWORD]}")
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
    ' --screenshot') _typeslate_compgen -f; return ;;
    ' --tab') :; return ;;
    ' --select') :; return ;;
    ' --platform') _typeslate_compgen -W "xcb wayland vnc offscreen"; return ;;
    ' --style') _typeslate_compgen -W "fusion windows"; return ;;
  esac
  if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
    case "$at" in
      '') _typeslate_compgen -W "--help --version --screenshot --tab --select --dark --platform --style" ;;
      *) _typeslate_compgen -W --help ;;
    esac
    return
  fi
  case "$at:$count" in
    ':0') _typeslate_compgen -d ;;
  esac
}

complete -o filenames -F _panehost panehost
