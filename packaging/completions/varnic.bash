# Completes varnic by its help, and the names of files.
complete -F _longopt varnic
