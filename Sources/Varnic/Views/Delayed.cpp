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

} // namespace

/// What the function's entry is to jump to, now and from now on. Any thread: two that come here at once find the same.
extern "C" void* varnicDelayedFunction(Delayed* function) {
    void* const library = ::dlopen(function->library, RTLD_LAZY);
    void* const target = library == nullptr ? nullptr : ::dlsym(library, function->name);
    if (target == nullptr) {
        // A part of the installation is gone. What is being recorded is on disk up to the last second.
        std::fprintf(stderr, "varnic: %s\n", ::dlerror());
        std::abort();
    }
    std::atomic_ref(function->target).store(target);
    return target;
}
