#pragma once

namespace varnic {

/// Loads the libraries that the program leaves out of its start, so that one that is gone shows now rather than in the
/// middle of a call, and an upgrade of the system finds them open. Ends the program where one is gone. Any thread.
void loadDelayedLibraries();

} // namespace varnic
