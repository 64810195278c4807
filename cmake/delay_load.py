"""Writes the assembly (x86-64) that lets a program load libraries at the first call into each, not at its start.

    delay_load.py OUT.S --objects ARCHIVE... --libraries LIBRARY...

Every function of the libraries that the objects call gets an entry of its own name. It jumps through a slot, which leads
to Sources/Varnic/Views/Program/DelayedLibraries.cpp the first time, and from then on to the function itself.
"""

import argparse
import os
import re
import subprocess

HEAD = """\
    .section .note.GNU-stack, "", @progbits
    .text
# Finds the function of the row in %r11 with all that a call passes in registers untouched, and goes on there.
first_call:
    .cfi_startproc
    pushq %rax
    pushq %rdi
    pushq %rsi
    pushq %rdx
    pushq %rcx
    pushq %r8
    pushq %r9
    .cfi_adjust_cfa_offset 56
    subq $128, %rsp
    .cfi_adjust_cfa_offset 128
{save}
    movq %r11, %rdi
    call varnicDelayedFunction
    movq %rax, %r11
{restore}
    addq $128, %rsp
    .cfi_adjust_cfa_offset -128
    popq %r9
    popq %r8
    popq %rcx
    popq %rdx
    popq %rsi
    popq %rdi
    popq %rax
    .cfi_adjust_cfa_offset -56
    jmp *%r11
    .cfi_endproc
"""

FUNCTION = """
    .text
    .globl {name}
    .hidden {name}
    .type {name}, @function
{name}:
    jmp *{row}(%rip)
{row}_first:
    leaq {row}(%rip), %r11
    jmp first_call
    .size {name}, . - {name}
    .data
    .balign 8
{row}:
    .quad {row}_first, {library}, {row}_name
    .section .rodata
{row}_name: .string "{name}"
"""

LIBRARIES = """
    .section .rodata
{strings}
    .section .data.rel.ro, "aw"
    .globl varnicDelayedLibraries
    .balign 8
varnicDelayedLibraries:
    .quad {labels}, 0
"""


def tool(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def called(objects):
    """What the objects want from elsewhere."""
    lines = (line.split() for path in objects for line in tool("nm", "--undefined-only", path).splitlines())
    return {words[1] for words in lines if len(words) == 2 and words[0] == "U"}


def functions(library):
    lines = (line.split() for line in tool("nm", "--dynamic", "--defined-only", library).splitlines())
    return {words[2].split("@")[0] for words in lines if words[1] == "T"}


def name_at_run_time(library):
    found = re.search(r"\(SONAME\).*\[(.*)\]", tool("readelf", "--dynamic", library))
    return found[1] if found else os.path.basename(library)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("out")
    parser.add_argument("--objects", nargs="+")
    parser.add_argument("--libraries", nargs="+")
    arguments = parser.parse_args()
    registers = range(8)
    parts = [HEAD.format(save="\n".join(f"    movups %xmm{i}, {16 * i}(%rsp)" for i in registers),
                         restore="\n".join(f"    movups {16 * i}(%rsp), %xmm{i}" for i in registers))]
    wanted = called(arguments.objects)
    loaded = {}
    for library in arguments.libraries:
        found = wanted & functions(library)
        wanted -= found
        if found:
            loaded[f"delayed_library_{len(loaded)}"] = name_at_run_time(library)
        for name in sorted(found):
            parts.append(FUNCTION.format(name=name, row=f"delayed_{len(parts)}", library=list(loaded)[-1]))
    parts.append(LIBRARIES.format(strings="\n".join(f'{label}: .string "{name}"' for label, name in loaded.items()),
                                  labels=", ".join(loaded)))
    with open(arguments.out, "w") as out:
        out.writelines(parts)


main()
