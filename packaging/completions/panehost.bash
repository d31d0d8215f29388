# Completions of panehost for bash. Written by packaging/generate.

_typeslate_words() {
  local rest=$COMP_LINE part i
  words=()
  for ((i = 0; i <= COMP_CWORD; ++i)); do
    part=${COMP_WORDS[i]}
    if [[ $i == 0 || $rest == [[:blank:]]* ]]; then words+=("$part"); else words[-1]+=$part; fi
    rest=${rest#"${rest%%[![:blank:]]*}"}
    rest=${rest#"$part"}
  done
  [[ $part == [:=] ]] && part=''
  split=${words[-1]%"$part"}
}

_typeslate_offer() {
  local typed=${words[-1]} word shown
  while IFS= read -r -d '' word; do
    case $typed in
      \'*) shown=${word//\'/\'\\\'\'} ;;
      \"*) shown=${word//\\/\\\\} shown=${shown//\"/\\\"} shown=${shown//\$/\\\$} shown=${shown//\`/\\\`} ;;
      *) printf -v shown %q "$word" ;;
    esac
    [[ $shown == "${typed#[\'\"]}"* || $word == "${typed#[\'\"]}"* ]] && COMPREPLY+=("${shown#"$split"}")
  done
  [[ ${#COMPREPLY[@]} == 1 && ${COMPREPLY[0]} == *: ]] && compopt -o nospace
}

_typeslate_ask() {
  local word plain=()
  for word in "${words[-1]}" "${given[@]}"; do
    case $word in
      \'*) word=${word//\'} ;;
      \"*) word=${word//[\"\\]} ;;
      *) word=${word//\\} ;;
    esac
    plain+=("$word")
  done
  _typeslate_offer < <(typeslatectl complete "$1" -- "${plain[@]}" 2>/dev/null)
}

_typeslate_files() {
  compopt -o filenames
  mapfile -t COMPREPLY < <(compgen "$1" -- "${COMP_WORDS[COMP_CWORD]}")
}

_panehost() {
  local at='' split i word words given=()
  _typeslate_words
  for ((i = 1; i < ${#words[@]} - 1; ++i)); do
    word=${words[i]}
    case "$at $word" in
      *' --platform' | *' --screenshot' | *' --select' | *' --style' | *' --tab') ((++i)) ;;
      *' -'*) ;;
      *) given+=("$word") ;;
    esac
  done
  COMPREPLY=()
  case "$at ${words[-2]}" in
    ' --screenshot') _typeslate_files -f; return ;;
    ' --tab') :; return ;;
    ' --select') :; return ;;
    ' --platform') _typeslate_offer < <(printf '%s\0' xcb wayland vnc offscreen); return ;;
    ' --style') _typeslate_offer < <(printf '%s\0' fusion windows); return ;;
  esac
  if [[ ${words[-1]} == -* ]]; then
    case "$at" in
      '') _typeslate_offer < <(printf '%s\0' --help --version --screenshot --tab --select --dark --reverse --platform --style) ;;
      *) _typeslate_offer < <(printf '%s\0' --help) ;;
    esac
    return
  fi
  case "$at:${#given[@]}" in
    ':0') _typeslate_files -d ;;
  esac
}

complete -F _panehost panehost
