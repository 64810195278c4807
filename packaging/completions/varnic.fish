# Completes varnic by its help, and the names of files.
complete -c varnic -a '(varnic --help 2>/dev/null | string replace -rf "^ +(?:-\w, )*(--[\w-]+) +(.*)" "\$1\t\$2")'
