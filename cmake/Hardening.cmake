# What optimised programs get against being taken over: checked copies, guarded stacks, and no table of functions that can
# be written to once they run.
add_compile_options("$<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2;-fstack-protector-strong>")
add_link_options("$<$<CONFIG:Release>:LINKER:-z,relro,-z,now>")
