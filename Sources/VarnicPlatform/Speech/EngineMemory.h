#pragma once

namespace varnic {

/// Has memory that the speech engine frees go back to the system at once. Left alone, the C library learns from large
/// blocks that are freed to keep them: a program that waits in the background for the next call would hold some 200 MB
/// of the last one's model. To be called first in a program's `main`, before other threads.
void returnEngineMemory();

} // namespace varnic
