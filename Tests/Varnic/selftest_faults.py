"""Whether the self-test can fail: breaks one line of a copy of the sources at a time, builds the program, and looks for the
sentence that promises what is broken.

Usage: selftest_faults.py SCRATCH_FOLDER [FAULT...]     (all of them take a quarter of an hour; the folder stays for the next time)
"""

import os
import shutil
import subprocess
import sys
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
APP = "Sources/Varnic"

# By name: the file, what stands there, what to put in its place, and the sentence that breaks.
FAULTS = {
    "no-reminder": (f"{APP}/AppModel/RecordingFlows.cpp", "const bool seen = settings.consentSeen.value()",
                    "const bool seen = !settings.consentSeen.value()",
                    "first Record shows the consent reminder and doesn’t record"),
    "pill-stays": (f"{APP}/Shell/PillController.cpp", "if (isVisible_) {", "if (isVisible_ = true; isVisible_) {",
                   "the pill goes away after stopping"),
    "nothing-saved": (f"{APP}/AppModel/Editing.cpp", "store_.save(stored, unsaved.base, whenDone);", "whenDone({});",
                      "the call is saved to disk"),
    "wrong-speaker": ("Sources/VarnicCore/Pipeline/CallProcessor.cpp", "{*file, speaker, overheard}",
                      "{*file, Speaker::you, overheard}", "who-said-what comes from the two tracks"),
    "sent-without-key": ("Sources/VarnicCore/AISummariser/AnthropicSummariser.cpp",
                         "if (Unicode::trimBlanks(apiKey_).empty()) {", "if (apiKey_ == \"?\") {",
                         "without a key nothing is sent and it says why"),
    "tick-lost": ("Sources/VarnicCore/Editor/DigestSections.cpp", "block.kind == BlockKind::todo && block.done;",
                  "block.kind == BlockKind::todo && !block.done;", "…keeping the to-do you ticked"),
    "no-undo": (f"{APP}/AppModel/Editing.cpp", "restore(*removed);", "", "Undo brings it back"),
    "audio-left": (f"{APP}/Recording/RecordingController.cpp", "fs::remove_all(folder_, ignored);", "ignored.clear();",
                   "Discard leaves no note and no audio"),
    "real-capture": (f"{APP}/AppModel/RecordingFlows.cpp", "const auto capture = makeCapture();",
                     "const auto capture = makeCapture(); try { LiveCapture().start(0, {}, [](auto, auto, auto) {}); } catch (...) {}",
                     "the real microphone/screen capture was never started"),
    "clipboard-taken": (f"{APP}/Views/Program/Program.cpp", "delegate_.applicationDidFinishLaunching();",
                        "delegate_.applicationDidFinishLaunching(); QGuiApplication::clipboard()->setText(\"mine\");",
                        "the general pasteboard was never touched"),
    "settings-lost": (f"{APP}/AppModel/AppSettings.cpp", "store_->setValue(key, encode(property.value()));", "",
                      "consent and your name are remembered"),
}
INCLUDES = {"real-capture": "#include \"VarnicPlatform/Capture/LiveCapture.h\"\n"}


def build(tree: Path):
    environment = os.environ | {"CCACHE_BASEDIR": str(tree), "CCACHE_NOHASHDIR": "1",
                                "CCACHE_SLOPPINESS": "pch_defines,time_macros"}
    if not (tree / "build/dev/build.ninja").exists():
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        subprocess.run(["cmake", "--preset", "dev", "-DVARNIC_WINDOW=ON", "-DBUILD_TESTING=OFF", *launcher], cwd=tree,
                       env=environment, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", "build/dev", "--target", "varnic"], cwd=tree, env=environment, check=True,
                   stdout=subprocess.DEVNULL)
    return tree / "build/dev/bin/varnic"


def broken_promises(program: Path, scratch: Path):
    """What fails in the journey and after a restart."""
    lines = []
    library = scratch / "library"
    shutil.rmtree(library, ignore_errors=True)
    for mode in ["flow", "persist"]:
        environment = os.environ | {"VARNIC_SELFTEST": mode, "VARNIC_DATA_DIR": str(library), "QT_QPA_PLATFORM": "offscreen",
                                    "VARNIC_FIXTURE_DIR": str(scratch / "fixture"), "XDG_CONFIG_HOME": str(scratch / "config")}
        lines += subprocess.run([program], env=environment, capture_output=True, text=True, timeout=300).stdout.splitlines()
    verdicts = [line for line in lines if line.startswith("SELFTEST ")]
    return [line.removeprefix("FAIL ") for line in lines if line.startswith("FAIL ")], verdicts


def copy_sources(tree: Path):
    """What differs only, so that the next build compiles no more than that."""
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=SOURCES, capture_output=True, text=True, check=True).stdout
    for name in filter(None, listed.split("\0")):
        source, copy = SOURCES / name, tree / name
        if source.is_file() and not (copy.is_file() and copy.read_bytes() == source.read_bytes()):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)
    if not (tree / ".deps").exists():
        (tree / ".deps").symlink_to(SOURCES / ".deps")


def is_caught(name: str, tree: Path, scratch: Path) -> bool:
    file, sound, broken, sentence = FAULTS[name]
    path = tree / file
    text = path.read_text()
    if text.count(sound) != 1:
        sys.exit(f"{name}: {file} has changed, so that this fault has to be made anew")
    path.write_text(INCLUDES.get(name, "") + text.replace(sound, broken))
    try:
        failed, verdicts = broken_promises(build(tree), scratch)
    finally:
        path.write_text(text)
    caught = any(line.startswith(sentence) for line in failed)
    print(f"{'caught' if caught else 'MISSED'} {name}: {'; '.join(verdicts)}", *failed, sep="\n    ", flush=True)
    return caught


def main():
    scratch = Path(sys.argv[1]).resolve()
    tree = scratch / "tree"
    copy_sources(tree)
    failed, verdicts = broken_promises(build(tree), scratch)
    if failed or len(verdicts) != 2:
        sys.exit("\n".join(["without any fault:", *failed, *verdicts]))
    missed = [name for name in sys.argv[2:] or FAULTS if not is_caught(name, tree, scratch)]
    sys.exit(f"missed: {', '.join(missed)}" if missed else 0)


if __name__ == "__main__":
    main()
