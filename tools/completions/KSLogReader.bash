# bash completion for KSLogReader, for the bash 3.2 of a Mac as well
_KSLogReader() {
    local IFS=$'\n' word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options="--list
--folder
--password-file
--level
--since
--grep
--explain
--json
--follow
--messages
--help
--version" levels="critical
failure
warning
info"
    # shellcheck disable=SC2207  # split at line ends alone; bash 3.2 has no mapfile
    case $before in
    --level) COMPREPLY=($(compgen -W "$levels" -- "$word")) ;;
    --folder) COMPREPLY=($(compgen -d -- "$word")) ;;
    --password-file) COMPREPLY=($(compgen -f -- "$word")) ;;
    --since | --grep) COMPREPLY=() ;;
    *)
        case $word in
        -*) COMPREPLY=($(compgen -W "$options" -- "$word")) ;;
        *) COMPREPLY=($(compgen -f -- "$word")) ;;
        esac
        ;;
    esac
}
complete -o filenames -F _KSLogReader KSLogReader
