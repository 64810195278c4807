#include "Varnic/Views/Program/DelayedLibraries.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

/// A function of a library that is loaded when it is first called. cmake/delay_load.py writes these.
struct Delayed {
    void* target;
    const char* library;
    const char* name;
};

void* require(void* found) {
    if (found == nullptr) {
        // A part of the installation is gone. What is being recorded is on disk up to the last second.
        std::fprintf(stderr, "varnic: %s\n", ::dlerror());
        std::abort();
    }
    return found;
}

} // namespace

/// The libraries' names, ended by a null; not there in programs that load all at their start.
extern "C" [[gnu::weak]] const char* const varnicDelayedLibraries[];

/// What the function's entry is to jump to, now and from now on. Any thread: two that come here at once find the same.
extern "C" void* varnicDelayedFunction(Delayed* function) {
    void* const library = require(::dlopen(function->library, RTLD_LAZY));
    void* const target = require(::dlsym(library, function->name));
    std::atomic_ref(function->target).store(target);
    return target;
}

void varnic::loadDelayedLibraries() {
    if (varnicDelayedLibraries != nullptr) {
        for (const char* const* library = varnicDelayedLibraries; *library != nullptr; ++library) {
            require(::dlopen(*library, RTLD_LAZY));
        }
    }
}
