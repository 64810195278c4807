# Completes varnic-cli by what the program itself says of its commands, the notes of the library among them.
function __varnic_cli_complete
    set -l words (commandline -opc)
    set -l token (commandline -ct)
    for line in ($words[1] complete -- $words[2..] "$token" 2>/dev/null)
        if string match -q ':files*' -- $line
            set -l glued (string match -r '^--[^=]*=' -- $token)
            __fish_complete_path (string replace -- "$glued" '' $token) | string replace -r '^' -- "$glued"
        else
            echo $line
        end
    end
end
complete -c varnic-cli -f -a '(__varnic_cli_complete)'
