#pragma once

/// When a program without a window goes on. Pure.
namespace varnic::QuitRule {

/// What could still be reached or be lost when the window is closed.
struct Situation {
    bool isWindowVisible = false;
    /// A tray shows the program's icon, by which its window comes back.
    bool hasTray = false;
    /// A recording runs, or is about to start or stop.
    bool isRecording = false;
    /// A call is being transcribed, or a recording waits for that.
    bool isProcessing = false;
};

/// Whether nothing is left to do and nothing shows that the program runs: then it ends rather than lurk.
constexpr bool shouldQuit(const Situation& now) {
    return !now.isWindowVisible && !now.hasTray && !now.isRecording && !now.isProcessing;
}

} // namespace varnic::QuitRule
