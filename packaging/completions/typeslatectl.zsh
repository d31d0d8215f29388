#compdef typeslatectl
# Completions of typeslatectl for zsh. Written by packaging/generate.

_typeslate_ask() {
  local -a found=(${(0)"$(typeslatectl complete $1 -- "${(Q)PREFIX}" "${(Q@)line}" 2>/dev/null)"})
  compadd -S '' -- ${(M)found:#*:}
  compadd -- ${found:#*:}
}

_typeslatectl() {
  local curcontext=$curcontext state line
  local -a commands=(
    'defaults:Read and change preference domains'
    'entries:Show and change the list of entries'
    'pane:Switch the module and its logging on and off'
    'resolve:Tell which entry applies to an application, and why'
    'menu:Show the font menu that an entry'\''s options make'
    'catalog:Build and show the catalogue of font names'
    'login-items:Show and change what starts when you log in'
    'helper:Start and stop the helper that takes in changed settings'
    'update:Read and change the schedule of update checks, and check'
    'watch:Print each notification and broadcast as a line of JSON'
    'schema:Print the JSON Schema of the settings domain'
  )
  _arguments -C \
    '--wait[How long to wait for a program that keeps settings locked\: 10 by default, 0 for not at all]:SECONDS:{ _message value }' \
    '--version[Show the version and exit]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        defaults) _typeslatectl_defaults ;;
        entries) _typeslatectl_entries ;;
        pane) _typeslatectl_pane ;;
        resolve) _typeslatectl_resolve ;;
        menu) _typeslatectl_menu ;;
        catalog) _typeslatectl_catalog ;;
        login-items) _typeslatectl_login-items ;;
        helper) _typeslatectl_helper ;;
        update) _typeslatectl_update ;;
        watch) _typeslatectl_watch ;;
        schema) _typeslatectl_schema ;;
      esac ;;
  esac
}

_typeslatectl_defaults() {
  local curcontext=$curcontext state line
  local -a commands=(
    'read:Print a domain, or one key of it, as JSON'
    'write:Store one value'
    'delete:Remove a key, or every key of a domain'
    'domains:List the stored domains'
    'export:Write a domain into a property-list file'
    'import:Replace a domain by a property-list file'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        read) _typeslatectl_defaults_read ;;
        write) _typeslatectl_defaults_write ;;
        delete) _typeslatectl_defaults_delete ;;
        domains) _typeslatectl_defaults_domains ;;
        export) _typeslatectl_defaults_export ;;
        import) _typeslatectl_defaults_import ;;
      esac ;;
  esac
}

_typeslatectl_defaults_read() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':DOMAIN:{ _typeslate_ask domains }' \
    ':KEY:{ _typeslate_ask keys }'
}

_typeslatectl_defaults_write() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':DOMAIN:{ _typeslate_ask domains }' \
    ':KEY:{ _typeslate_ask keys }' \
    ':JSON:{ _message value }'
}

_typeslatectl_defaults_delete() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':DOMAIN:{ _typeslate_ask domains }' \
    ':KEY:{ _typeslate_ask keys }'
}

_typeslatectl_defaults_domains() {
  local -a line
  _arguments \
    '--null[End each name with a zero byte, not with a line'\''s end]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_defaults_export() {
  local -a line
  _arguments \
    '--format[binary (default) or xml]:FORMAT:{ compadd -- binary xml }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':DOMAIN:{ _typeslate_ask domains }' \
    ':FILE:{ _files }'
}

_typeslatectl_defaults_import() {
  local -a line
  _arguments \
    '--anyway[Store settings that do not fit the schema all the same]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':DOMAIN:{ _typeslate_ask domains }' \
    ':FILE:{ _files }'
}

_typeslatectl_entries() {
  local curcontext=$curcontext state line
  local -a commands=(
    'list:Print the entries'
    'get:Print an entry, or one value of it, as JSON'
    'add:Add applications'
    'add-regex:Add an entry for applications that a regular expression matches'
    'remove:Remove an entry'
    'set:Change an option of an entry'
    'unset:Store an option of an entry no more'
    'reset:Give an entry the options of the Global entry, or that one those of a new list'
    'move:Move an entry'
    'rename:Name an entry for an expression anew'
    'edit:Change the expression of an entry'
    'duplicate:Add an entry with the options of another'
    'export:Write entries into a file that import takes'
    'import:Take entries from a file that export has written'
    'test:List the applications here that a regular expression matches'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        list) _typeslatectl_entries_list ;;
        get) _typeslatectl_entries_get ;;
        add) _typeslatectl_entries_add ;;
        add-regex) _typeslatectl_entries_add-regex ;;
        remove) _typeslatectl_entries_remove ;;
        set) _typeslatectl_entries_set ;;
        unset) _typeslatectl_entries_unset ;;
        reset) _typeslatectl_entries_reset ;;
        move) _typeslatectl_entries_move ;;
        rename) _typeslatectl_entries_rename ;;
        edit) _typeslatectl_entries_edit ;;
        duplicate) _typeslatectl_entries_duplicate ;;
        export) _typeslatectl_entries_export ;;
        import) _typeslatectl_entries_import ;;
        test) _typeslatectl_entries_test ;;
      esac ;;
  esac
}

_typeslatectl_entries_list() {
  local -a line
  _arguments \
    '--json[As JSON, with every key]' \
    '--watch[Print them again at each change, until Ctrl-C]' \
    '--token[Print the list'\''s token, with --json together with the entries]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_entries_get() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':KEY:{ _typeslate_ask entry-keys }'
}

_typeslatectl_entries_add() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '*:PATH:{ _files }'
}

_typeslatectl_entries_add-regex() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '--kind[What it is held against\: 0 name (default), 1 identifier, 2 path]:N:{ compadd -- 0 1 2 }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':NAME:{ _message value }' \
    ':EXPRESSION:{ _message value }'
}

_typeslatectl_entries_remove() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }'
}

_typeslatectl_entries_set() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':KEY:{ _typeslate_ask options }' \
    ':VALUE:{ _typeslate_ask values }'
}

_typeslatectl_entries_unset() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':KEY:{ _typeslate_ask options }'
}

_typeslatectl_entries_reset() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }'
}

_typeslatectl_entries_move() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':TO:{ _message value }'
}

_typeslatectl_entries_rename() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':NAME:{ _message value }'
}

_typeslatectl_entries_edit() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '--kind[What it is held against\: 0 name, 1 identifier, 2 path; as before by default]:N:{ compadd -- 0 1 2 }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':EXPRESSION:{ _message value }'
}

_typeslatectl_entries_duplicate() {
  local -a line
  _arguments \
    '--if-unchanged[Refuse, with status 4, if the list is another than when list --token printed this]:TOKEN:{ _message value }' \
    '--name[Name of the entry, for an expression]:NAME:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':INDEX:{ _typeslate_ask entries }' \
    ':COPY:{ _files }'
}

_typeslatectl_entries_export() {
  local -a line
  _arguments \
    '--all[The whole list]' \
    '--json[JSON on standard output, too]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '*:INDEX:{ _typeslate_ask entries }' \
    ':FILE:{ _files }'
}

_typeslatectl_entries_import() {
  local -a line
  _arguments \
    '--merge[Of entries that are in the list with other settings, keep ours or take theirs]:WHICH:{ compadd -- ours theirs }' \
    '--replace[The list becomes what the file has, in its order]' \
    '--dry-run[Only show what would be done]' \
    '--json[Show it as JSON, with every key]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':FILE:{ _files }'
}

_typeslatectl_entries_test() {
  local -a line
  _arguments \
    '--kind[What it is held against\: 0 name (default), 1 identifier, 2 path]:N:{ compadd -- 0 1 2 }' \
    '--json[As JSON]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':EXPRESSION:{ _message value }'
}

_typeslatectl_pane() {
  local curcontext=$curcontext state line
  local -a commands=(
    'enable:Switch the module on'
    'disable:Switch the module off'
    'logging:Switch the diagnostic log on or off'
    'status:Tell whether the module and its logging are on'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        enable) _typeslatectl_pane_enable ;;
        disable) _typeslatectl_pane_disable ;;
        logging) _typeslatectl_pane_logging ;;
        status) _typeslatectl_pane_status ;;
      esac ;;
  esac
}

_typeslatectl_pane_enable() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_pane_disable() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_pane_logging() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':STATE:{ compadd -- on off }'
}

_typeslatectl_pane_status() {
  local -a line
  _arguments \
    '--json[As JSON]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_resolve() {
  local -a line
  _arguments \
    '--pid[Instead, the application that this process runs]:PROCESS:{ _message value }' \
    '--json[As JSON]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':APPLICATION:{ _message value }'
}

_typeslatectl_menu() {
  local -a line
  _arguments \
    '--font[The font in use, by its PostScript or full name]:NAME:{ _message value }' \
    '--json[As JSON]' \
    '--counts[How many faces, families and lines it has]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':ENTRY:{ _typeslate_ask entries }'
}

_typeslatectl_catalog() {
  local curcontext=$curcontext state line
  local -a commands=(
    'parse:Print the records of font lists as JSON; nothing is stored'
    'build:Check the stored catalogue and rebuild it, as the window does when it starts'
    'show:Print the stored record of a font as JSON'
    'list:Print the PostScript names in the stored catalogue'
    'stats:Print the size of the stored catalogue'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        parse) _typeslatectl_catalog_parse ;;
        build) _typeslatectl_catalog_build ;;
        show) _typeslatectl_catalog_show ;;
        list) _typeslatectl_catalog_list ;;
        stats) _typeslatectl_catalog_stats ;;
      esac ;;
  esac
}

_typeslatectl_catalog_parse() {
  local -a line
  _arguments \
    '--database[Font name database to read before the lists]:FILE:{ _files }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '*:FILE:{ _files }'
}

_typeslatectl_catalog_build() {
  local -a line
  _arguments \
    '--verbose[Print on standard error what is found and read, whether or not the setting logs it]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_catalog_show() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':NAME:{ _message value }'
}

_typeslatectl_catalog_list() {
  local -a line
  _arguments \
    '--family[Only those of this family, the record'\''s "FullName"]:NAME:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_catalog_stats() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_login-items() {
  local curcontext=$curcontext state line
  local -a commands=(
    'list:Print the login items'
    'add:Add a login item, though there may be one already'
    'remove:Remove every login item of an application'
    'check:Tell whether an application is a login item, and correct the path of one that is'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        list) _typeslatectl_login-items_list ;;
        add) _typeslatectl_login-items_add ;;
        remove) _typeslatectl_login-items_remove ;;
        check) _typeslatectl_login-items_check ;;
      esac ;;
  esac
}

_typeslatectl_login-items_list() {
  local -a line
  _arguments \
    '--json[As JSON, with every key]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_login-items_add() {
  local -a line
  _arguments \
    '--hide[Start it quietly]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':PATH:{ _files }'
}

_typeslatectl_login-items_remove() {
  local -a line
  _arguments \
    '--path[Remove those with exactly this path instead]:TEXT:{ _message value }' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':IDENTIFIER:{ _typeslate_ask login-items }'
}

_typeslatectl_login-items_check() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':IDENTIFIER:{ _typeslate_ask login-items }' \
    ':PATH:{ _files }'
}

_typeslatectl_helper() {
  local curcontext=$curcontext state line
  local -a commands=(
    'start:Start the helper unless it is running'
    'stop:Ask the helper to quit, and wait until it has'
    'status:Tell whether the helper is running; status 1: it is not'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        start) _typeslatectl_helper_start ;;
        stop) _typeslatectl_helper_stop ;;
        status) _typeslatectl_helper_status ;;
      esac ;;
  esac
}

_typeslatectl_helper_start() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_helper_stop() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_helper_status() {
  local -a line
  _arguments \
    '--json[As JSON]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_update() {
  local curcontext=$curcontext state line
  local -a commands=(
    'status:Print the schedule, whether a check is due, and the rule that decides'
    'check:Launch the updater if a check is due; status 3: nothing is due'
    'schedule:Switch automatic checks on or off'
    'interval:Set the time between two checks'
  )
  _arguments -C \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    '1:command:->command' \
    '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        status) _typeslatectl_update_status ;;
        check) _typeslatectl_update_check ;;
        schedule) _typeslatectl_update_schedule ;;
        interval) _typeslatectl_update_interval ;;
      esac ;;
  esac
}

_typeslatectl_update_status() {
  local -a line
  _arguments \
    '--json[As JSON]' \
    '--from-module[As the module asks from within an application\: soon after the login nothing is due]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_update_check() {
  local -a line
  _arguments \
    '--now[Whether or not one is due]' \
    '--from-module[As the module asks from within an application\: soon after the login nothing is due]' \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_update_schedule() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':STATE:{ compadd -- on off }'
}

_typeslatectl_update_interval() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]' \
    ':SECONDS:{ _message value }'
}

_typeslatectl_watch() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl_schema() {
  local -a line
  _arguments \
    '-h[Show this help and exit]' \
    '--help[Show this help and exit]'
}

_typeslatectl "$@"
