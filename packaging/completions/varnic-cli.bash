# Completes varnic-cli by what the program itself says of its commands, the notes of the library among them.
_varnic_cli() {
    local -a words=() descriptions=()
    local index part glued candidate description program=${1/#\~/$HOME}
    program=${program//[\\\"\']/}
    # Readline takes the sign of “--format=pdf” for a word of its own.
    for ((index = 1; index <= COMP_CWORD; ++index)); do
        part=${COMP_WORDS[index]}
        if ((${#words[@]} > 0)) && [[ $part == "=" || ${words[-1]} == --*= ]]; then
            words[-1]+=$part
        else
            words+=("$part")
        fi
    done
    [[ ${words[-1]} == --*=* ]] && glued=${words[-1]%%=*}=
    COMPREPLY=()
    while IFS=$'\t' read -r candidate description; do
        if [[ $candidate == :files ]]; then
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "${words[-1]#"$glued"}")
            return
        fi
        COMPREPLY+=("${candidate#"$glued"}")
        descriptions+=("$description")
    done < <("$program" complete -- "${words[@]}" 2>/dev/null)
    # What is listed to choose from is told of; what is put into the line is not.
    if ((${#COMPREPLY[@]} > 1)) && [[ ${COMP_TYPE-} == 63 || ${COMP_TYPE-} == 33 || ${COMP_TYPE-} == 64 ]]; then
        for index in "${!COMPREPLY[@]}"; do
            COMPREPLY[index]+="  (${descriptions[index]})"
        done
    fi
}
complete -F _varnic_cli varnic-cli
