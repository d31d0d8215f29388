# Completions of typeslatectl for bash. Written by packaging/generate.

_typeslate_compgen() {
  mapfile -t COMPREPLY < <(compgen "$@" -- "${COMP_WORDS[COMP_CWORD]}")
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
    ' defaults export --format') _typeslate_compgen -W "binary xml"; return ;;
    ' entries add-regex --kind') _typeslate_compgen -W "0 1 2"; return ;;
    ' catalog parse --database') _typeslate_compgen -f; return ;;
    ' catalog list --family') :; return ;;
    ' login-items remove --path') :; return ;;
  esac
  if [[ ${COMP_WORDS[COMP_CWORD]} == -* ]]; then
    case "$at" in
      '') _typeslate_compgen -W "--wait --version --help" ;;
      ' defaults export') _typeslate_compgen -W "--format --help" ;;
      ' entries list') _typeslate_compgen -W "--json --watch --help" ;;
      ' entries add-regex') _typeslate_compgen -W "--kind --help" ;;
      ' catalog parse') _typeslate_compgen -W "--database --help" ;;
      ' catalog list') _typeslate_compgen -W "--family --help" ;;
      ' login-items list') _typeslate_compgen -W "--json --help" ;;
      ' login-items add') _typeslate_compgen -W "--hide --help" ;;
      ' login-items remove') _typeslate_compgen -W "--path --help" ;;
      ' helper status') _typeslate_compgen -W "--json --help" ;;
      ' update status') _typeslate_compgen -W "--json --from-module --help" ;;
      ' update check') _typeslate_compgen -W "--now --from-module --help" ;;
      *) _typeslate_compgen -W --help ;;
    esac
    return
  fi
  case "$at:$count" in
    ':0') _typeslate_compgen -W "defaults entries catalog login-items helper update watch" ;;
    ' defaults:0') _typeslate_compgen -W "read write delete domains export import" ;;
    ' defaults read:0') _typeslate_compgen -W "$(typeslatectl defaults domains 2>/dev/null)" ;;
    ' defaults write:0') _typeslate_compgen -W "$(typeslatectl defaults domains 2>/dev/null)" ;;
    ' defaults delete:0') _typeslate_compgen -W "$(typeslatectl defaults domains 2>/dev/null)" ;;
    ' defaults export:0') _typeslate_compgen -W "$(typeslatectl defaults domains 2>/dev/null)" ;;
    ' defaults export:1') _typeslate_compgen -f ;;
    ' defaults import:0') _typeslate_compgen -W "$(typeslatectl defaults domains 2>/dev/null)" ;;
    ' defaults import:1') _typeslate_compgen -f ;;
    ' entries:0') _typeslate_compgen -W "list add add-regex remove set get" ;;
    ' entries add:'*) _typeslate_compgen -f ;;
    ' entries remove:0') _typeslate_compgen -W "$(typeslatectl entries list 2>/dev/null | sed -n 's/^ *\([0-9][0-9]*\).*/\1/p')" ;;
    ' entries set:0') _typeslate_compgen -W "$(typeslatectl entries list 2>/dev/null | sed -n 's/^ *\([0-9][0-9]*\).*/\1/p')" ;;
    ' entries set:1') _typeslate_compgen -W "Enabled CheckMenuItems ShowFontInFace DupeHandling ShowSets ChangeSize FontSize ShowIcons HierarchicalMenu AllFontsGroup ScriptSort IncludeFAPSets IncludeFEXSets IncludeSuitcaseSets GenerateInactivePreview ModifyFontPanel" ;;
    ' entries get:0') _typeslate_compgen -W "$(typeslatectl entries list 2>/dev/null | sed -n 's/^ *\([0-9][0-9]*\).*/\1/p')" ;;
    ' catalog:0') _typeslate_compgen -W "parse build show list stats" ;;
    ' catalog parse:'*) _typeslate_compgen -f ;;
    ' login-items:0') _typeslate_compgen -W "list add remove check" ;;
    ' login-items add:0') _typeslate_compgen -f ;;
    ' login-items check:1') _typeslate_compgen -f ;;
    ' helper:0') _typeslate_compgen -W "start stop status" ;;
    ' update:0') _typeslate_compgen -W "status check schedule interval" ;;
    ' update schedule:0') _typeslate_compgen -W "on off" ;;
  esac
}

complete -o filenames -F _typeslatectl typeslatectl
