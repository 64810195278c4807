# The one place of warnings: every target of ours links VarnicWarnings.
option(VARNIC_WARNINGS_AS_ERRORS "Stop at a warning" OFF)

add_library(VarnicWarnings INTERFACE)
target_compile_options(VarnicWarnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wcast-align
    -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough -Wundef
    # A designated initialiser leaves out what has its default.
    -Wno-missing-field-initializers
    $<$<BOOL:${VARNIC_WARNINGS_AS_ERRORS}>:-Werror>)
