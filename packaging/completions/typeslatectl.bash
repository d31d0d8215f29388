# Completions of typeslatectl for bash. Written by packaging/generate.

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

_typeslatectl() {
  local at='' count=0 i word
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    case "$at $word" in
      *' --database' | *' --family' | *' --format' | *' --kind' | *' --path' | *' --wait') ((++i)) ;;
      *' -'*) ;;
      ' defaults' | ' defaults read' | ' defaults write' | ' defaults delete' | ' defaults domains' | ' defaults export' | ' defaults import' | ' entries' | ' entries list' | ' entries add' | ' entries add-regex' | ' entries remove' | ' entries set' | ' entries get' | ' catalog' | ' catalog parse' | ' catalog build' | ' catalog show' | ' catalog list' | ' catalog stats' | ' login-items' | ' login-items list' | ' login-items add' | ' login-items remove' | ' login-items check' | ' helper' | ' helper start' | ' helper stop' | ' helper status' | ' update' | ' update status' | ' update check' | ' update schedule' | ' update interval' | ' watch') at+=" $word" ;;
      *) ((++count)) ;;
    esac
  done
  COMPREPLY=()
  case "$at ${COMP_WORDS[COMP_CWORD - 1]}" in
    ' --wait') :; return ;;
    ' defaults export --format') _typeslate_offer < <(printf '%s\0' binary xml); return ;;
    ' entries add-regex --kind') _typeslate_offer < <(printf '%s\0' 0 1 2); return ;;
    ' catalog parse --database') _typeslate_files -f; return ;;
    ' catalog list --family') :; return ;;
    ' login-items remove --path') :; return ;;
  esac
  if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
    case "$at" in
      '') _typeslate_offer < <(printf '%s\0' --wait --version --help) ;;
      ' defaults domains') _typeslate_offer < <(printf '%s\0' --null --help) ;;
      ' defaults export') _typeslate_offer < <(printf '%s\0' --format --help) ;;
      ' entries list') _typeslate_offer < <(printf '%s\0' --json --watch --help) ;;
      ' entries add-regex') _typeslate_offer < <(printf '%s\0' --kind --help) ;;
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
  case "$at:$count" in
    ':0') _typeslate_offer < <(printf '%s\0' defaults entries catalog login-items helper update watch) ;;
    ' defaults:0') _typeslate_offer < <(printf '%s\0' read write delete domains export import) ;;
    ' defaults read:0') _typeslate_offer < <(typeslatectl defaults domains --null 2>/dev/null) ;;
    ' defaults write:0') _typeslate_offer < <(typeslatectl defaults domains --null 2>/dev/null) ;;
    ' defaults delete:0') _typeslate_offer < <(typeslatectl defaults domains --null 2>/dev/null) ;;
    ' defaults export:0') _typeslate_offer < <(typeslatectl defaults domains --null 2>/dev/null) ;;
    ' defaults export:1') _typeslate_files -f ;;
    ' defaults import:0') _typeslate_offer < <(typeslatectl defaults domains --null 2>/dev/null) ;;
    ' defaults import:1') _typeslate_files -f ;;
    ' entries:0') _typeslate_offer < <(printf '%s\0' list add add-regex remove set get) ;;
    ' entries add:'*) _typeslate_files -f ;;
    ' entries remove:0') _typeslate_offer < <(typeslatectl entries list 2>/dev/null | sed -n 's/^\([0-9][0-9]*\) .*/\1/p' | tr '\n' '\0') ;;
    ' entries set:0') _typeslate_offer < <(typeslatectl entries list 2>/dev/null | sed -n 's/^\([0-9][0-9]*\) .*/\1/p' | tr '\n' '\0') ;;
    ' entries set:1') _typeslate_offer < <(printf '%s\0' Enabled CheckMenuItems ShowFontInFace DupeHandling ShowSets ChangeSize FontSize ShowIcons HierarchicalMenu AllFontsGroup ScriptSort IncludeFAPSets IncludeFEXSets IncludeSuitcaseSets GenerateInactivePreview ModifyFontPanel) ;;
    ' entries get:0') _typeslate_offer < <(typeslatectl entries list 2>/dev/null | sed -n 's/^\([0-9][0-9]*\) .*/\1/p' | tr '\n' '\0') ;;
    ' catalog:0') _typeslate_offer < <(printf '%s\0' parse build show list stats) ;;
    ' catalog parse:'*) _typeslate_files -f ;;
    ' login-items:0') _typeslate_offer < <(printf '%s\0' list add remove check) ;;
    ' login-items add:0') _typeslate_files -f ;;
    ' login-items check:1') _typeslate_files -f ;;
    ' helper:0') _typeslate_offer < <(printf '%s\0' start stop status) ;;
    ' update:0') _typeslate_offer < <(printf '%s\0' status check schedule interval) ;;
    ' update schedule:0') _typeslate_offer < <(printf '%s\0' on off) ;;
  esac
}

complete -F _typeslatectl typeslatectl
