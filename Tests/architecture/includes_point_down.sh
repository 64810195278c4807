#!/bin/sh
# Fails on an include of Qt in a library that runs without it, and on an include that climbs from a lower library to a
# higher one. Usage: includes_point_down.sh SOURCES
set -u
sources=$1
failed=0

# forbid LIBRARY PATTERN: no include in the library's folder matches the pattern behind the quote or bracket.
forbid() {
    [ -d "$sources/$1" ] || return 0
    if grep -rnE "^[[:space:]]*#[[:space:]]*include[[:space:]]*[\"<]($2)" "$sources/$1"; then
        echo "$1 must not include these" >&2
        failed=1
    fi
}

qt='Q[A-Z][A-Za-z]*[>"]|Qt[A-Z]|q[a-z]+\.h|QCoro'
forbid HTTP "$qt|VarnicCore/|VarnicPlatform/|BrevinKit/|Varnic/|VarnicCLI/"
forbid VarnicCore "$qt|VarnicPlatform/|BrevinKit/|Varnic/|VarnicCLI/|sherpa-onnx/|pipewire/|spa/|libsecret/|xcb/|systemd/"
forbid VarnicPlatform "$qt|BrevinKit/|Varnic/|VarnicCLI/"
forbid BrevinKit "VarnicCore/|VarnicPlatform/|Varnic/|VarnicCLI/"
forbid Varnic "VarnicCLI/"
exit $failed
