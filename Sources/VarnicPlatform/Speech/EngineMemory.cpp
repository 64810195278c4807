#include "VarnicPlatform/Speech/EngineMemory.h"

#include <malloc.h>

namespace varnic {

void returnEngineMemory() {
    ::malloc_trim(0);
}

} // namespace varnic
