# SPDX-License-Identifier: MIT
# Completion of velmora-name for bash.

_velmora_name() {
    local word=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [ "${COMP_WORDS[COMP_CWORD - 1]}" = --app ]; then
        return
    fi
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--app --all --rename --undo --text --find --json
            --null -0 --help --version" -- "$word")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
}

complete -F _velmora_name velmora-name
