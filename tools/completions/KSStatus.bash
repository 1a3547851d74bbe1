# bash completion for KSStatus, for the bash 3.2 of a Mac as well
_KSStatus() {
    local IFS=$'\n' word=${COMP_WORDS[COMP_CWORD]} options="--plan
--plan=allowed
--plan=refused
--json
--help
--version"
    # shellcheck disable=SC2207  # split at line ends alone; bash 3.2 has no mapfile
    COMPREPLY=($(compgen -W "$options" -- "$word"))
}
complete -F _KSStatus KSStatus
