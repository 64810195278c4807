#pragma once

namespace varnic {

/// Gives the system back what the speech engine has freed: the weights as they were read, once a model is loaded, what
/// a large one decodes with, and all of it once it is gone. Left alone, the C library keeps large blocks that were
/// freed, and a program that waits in the background for the next call would hold some 200 MB of the last one's model.
/// To have each large block mapped by itself (M_MMAP_THRESHOLD) would cost a seventh of a transcription. Any thread.
void returnEngineMemory();

} // namespace varnic
