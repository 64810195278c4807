# Completes varnic-cli by what the program itself says of its commands, the notes of the library among them.
function __varnic_cli_complete
    set -l words (commandline -opc)
    set -l program (string replace -r '^~(?=/)' -- $HOME $words[1])
    type -q $program; or return
    $program complete -- $words[2..] (commandline -ct | string unescape; or commandline -ct) 2>/dev/null
end
complete -c varnic-cli -f -a '(__varnic_cli_complete | string match -v ":files*")'
complete -c varnic-cli -F -n '__varnic_cli_complete | string match -q ":files*"'
