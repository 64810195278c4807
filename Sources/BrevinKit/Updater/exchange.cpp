// brevin-exchange A B: two folders of one file system change places in one step, so that neither place is ever empty.
// It lies in the bundle that is being installed, for the shell has no such command.

#include <cstdio>

#include <fcntl.h>

int main(int argc, char** argv) {
    return argc == 3 && ::renameat2(AT_FDCWD, argv[1], AT_FDCWD, argv[2], RENAME_EXCHANGE) == 0 ? 0 : 1;
}
