#include "VarnicPlatform/Speech/EngineMemory.h"

#include <malloc.h>

namespace varnic {

void returnEngineMemory() {
    // Blocks from this size on have pages of their own; the weights of a model's layers are larger. To set it ends the
    // learning.
    ::mallopt(M_MMAP_THRESHOLD, 1 << 20);
}

} // namespace varnic
