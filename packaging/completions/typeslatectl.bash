# Completions of typeslatectl for bash. Written by packaging/generate.

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

_typeslatectl() {
  local at='' split i word words given=()
  _typeslate_words
  for ((i = 1; i < ${#words[@]} - 1; ++i)); do
    word=${words[i]}
    case "$at $word" in
      *' --database' | *' --family' | *' --font' | *' --format' | *' --if-unchanged' | *' --kind' | *' --merge' | *' --name' | *' --path' | *' --pid' | *' --wait') ((++i)) ;;
      *' -'*) ;;
      ' defaults' | ' defaults read' | ' defaults write' | ' defaults delete' | ' defaults domains' | ' defaults export' | ' defaults import' | ' entries' | ' entries list' | ' entries get' | ' entries add' | ' entries add-regex' | ' entries remove' | ' entries set' | ' entries unset' | ' entries reset' | ' entries move' | ' entries rename' | ' entries edit' | ' entries duplicate' | ' entries export' | ' entries import' | ' entries test' | ' pane' | ' pane enable' | ' pane disable' | ' pane logging' | ' pane status' | ' resolve' | ' menu' | ' catalog' | ' catalog parse' | ' catalog build' | ' catalog show' | ' catalog list' | ' catalog stats' | ' login-items' | ' login-items list' | ' login-items add' | ' login-items remove' | ' login-items check' | ' helper' | ' helper start' | ' helper stop' | ' helper status' | ' update' | ' update status' | ' update check' | ' update schedule' | ' update interval' | ' watch' | ' schema') at+=" $word" ;;
      *) given+=("$word") ;;
    esac
  done
  COMPREPLY=()
  case "$at ${words[-2]}" in
    ' --wait') :; return ;;
    ' defaults export --format') _typeslate_offer < <(printf '%s\0' binary xml); return ;;
    ' entries add --if-unchanged') :; return ;;
    ' entries add-regex --if-unchanged') :; return ;;
    ' entries add-regex --kind') _typeslate_offer < <(printf '%s\0' 0 1 2); return ;;
    ' entries remove --if-unchanged') :; return ;;
    ' entries set --if-unchanged') :; return ;;
    ' entries unset --if-unchanged') :; return ;;
    ' entries reset --if-unchanged') :; return ;;
    ' entries move --if-unchanged') :; return ;;
    ' entries rename --if-unchanged') :; return ;;
    ' entries edit --if-unchanged') :; return ;;
    ' entries edit --kind') _typeslate_offer < <(printf '%s\0' 0 1 2); return ;;
    ' entries duplicate --if-unchanged') :; return ;;
    ' entries duplicate --name') :; return ;;
    ' entries import --merge') _typeslate_offer < <(printf '%s\0' ours theirs); return ;;
    ' entries test --kind') _typeslate_offer < <(printf '%s\0' 0 1 2); return ;;
    ' resolve --pid') :; return ;;
    ' menu --font') :; return ;;
    ' catalog parse --database') _typeslate_files -f; return ;;
    ' catalog list --family') :; return ;;
    ' login-items remove --path') :; return ;;
  esac
  if [[ ${words[-1]} == -* ]]; then
    case "$at" in
      '') _typeslate_offer < <(printf '%s\0' --wait --version --help) ;;
      ' defaults domains') _typeslate_offer < <(printf '%s\0' --null --help) ;;
      ' defaults export') _typeslate_offer < <(printf '%s\0' --format --help) ;;
      ' defaults import') _typeslate_offer < <(printf '%s\0' --anyway --help) ;;
      ' entries list') _typeslate_offer < <(printf '%s\0' --json --watch --token --help) ;;
      ' entries add') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries add-regex') _typeslate_offer < <(printf '%s\0' --if-unchanged --kind --help) ;;
      ' entries remove') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries set') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries unset') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries reset') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries move') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries rename') _typeslate_offer < <(printf '%s\0' --if-unchanged --help) ;;
      ' entries edit') _typeslate_offer < <(printf '%s\0' --if-unchanged --kind --help) ;;
      ' entries duplicate') _typeslate_offer < <(printf '%s\0' --if-unchanged --name --help) ;;
      ' entries export') _typeslate_offer < <(printf '%s\0' --all --json --help) ;;
      ' entries import') _typeslate_offer < <(printf '%s\0' --merge --replace --dry-run --json --help) ;;
      ' entries test') _typeslate_offer < <(printf '%s\0' --kind --json --help) ;;
      ' pane status') _typeslate_offer < <(printf '%s\0' --json --help) ;;
      ' resolve') _typeslate_offer < <(printf '%s\0' --pid --json --help) ;;
      ' menu') _typeslate_offer < <(printf '%s\0' --font --json --counts --help) ;;
      ' catalog parse') _typeslate_offer < <(printf '%s\0' --database --help) ;;
      ' catalog build') _typeslate_offer < <(printf '%s\0' --verbose --help) ;;
      ' catalog list') _typeslate_offer < <(printf '%s\0' --family --help) ;;
      ' login-items list') _typeslate_offer < <(printf '%s\0' --json --help) ;;
      ' login-items add') _typeslate_offer < <(printf '%s\0' --hide --help) ;;
      ' login-items remove') _typeslate_offer < <(printf '%s\0' --path --help) ;;
      ' helper status') _typeslate_offer < <(printf '%s\0' --json --help) ;;
      ' update status') _typeslate_offer < <(printf '%s\0' --json --from-module --help) ;;
      ' update check') _typeslate_offer < <(printf '%s\0' --now --from-module --help) ;;
      *) _typeslate_offer < <(printf '%s\0' --help) ;;
    esac
    return
  fi
  case "$at:${#given[@]}" in
    ':0') _typeslate_offer < <(printf '%s\0' defaults entries pane resolve menu catalog login-items helper update watch schema) ;;
    ' defaults:0') _typeslate_offer < <(printf '%s\0' read write delete domains export import) ;;
    ' defaults read:0') _typeslate_ask domains ;;
    ' defaults read:1') _typeslate_ask keys ;;
    ' defaults write:0') _typeslate_ask domains ;;
    ' defaults write:1') _typeslate_ask keys ;;
    ' defaults delete:0') _typeslate_ask domains ;;
    ' defaults delete:1') _typeslate_ask keys ;;
    ' defaults export:0') _typeslate_ask domains ;;
    ' defaults export:1') _typeslate_files -f ;;
    ' defaults import:0') _typeslate_ask domains ;;
    ' defaults import:1') _typeslate_files -f ;;
    ' entries:0') _typeslate_offer < <(printf '%s\0' list get add add-regex remove set unset reset move rename edit duplicate export import test) ;;
    ' entries get:0') _typeslate_ask entries ;;
    ' entries get:1') _typeslate_ask entry-keys ;;
    ' entries add:'*) _typeslate_files -f ;;
    ' entries remove:0') _typeslate_ask entries ;;
    ' entries set:0') _typeslate_ask entries ;;
    ' entries set:1') _typeslate_ask options ;;
    ' entries set:2') _typeslate_ask values ;;
    ' entries unset:0') _typeslate_ask entries ;;
    ' entries unset:1') _typeslate_ask options ;;
    ' entries reset:0') _typeslate_ask entries ;;
    ' entries move:0') _typeslate_ask entries ;;
    ' entries rename:0') _typeslate_ask entries ;;
    ' entries edit:0') _typeslate_ask entries ;;
    ' entries duplicate:0') _typeslate_ask entries ;;
    ' entries duplicate:1') _typeslate_files -f ;;
    ' entries export:'*) _typeslate_ask entries ;;
    ' entries export:1') _typeslate_files -f ;;
    ' entries import:0') _typeslate_files -f ;;
    ' pane:0') _typeslate_offer < <(printf '%s\0' enable disable logging status) ;;
    ' pane logging:0') _typeslate_offer < <(printf '%s\0' on off) ;;
    ' menu:0') _typeslate_ask entries ;;
    ' catalog:0') _typeslate_offer < <(printf '%s\0' parse build show list stats) ;;
    ' catalog parse:'*) _typeslate_files -f ;;
    ' login-items:0') _typeslate_offer < <(printf '%s\0' list add remove check) ;;
    ' login-items add:0') _typeslate_files -f ;;
    ' login-items remove:0') _typeslate_ask login-items ;;
    ' login-items check:0') _typeslate_ask login-items ;;
    ' login-items check:1') _typeslate_files -f ;;
    ' helper:0') _typeslate_offer < <(printf '%s\0' start stop status) ;;
    ' update:0') _typeslate_offer < <(printf '%s\0' status check schedule interval) ;;
    ' update schedule:0') _typeslate_offer < <(printf '%s\0' on off) ;;
  esac
}

complete -F _typeslatectl typeslatectl
