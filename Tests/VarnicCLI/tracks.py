"""What a recorded track holds, and where."""

import math
import subprocess
from array import array
from itertools import accumulate
from operator import mul
from pathlib import Path

HOP = 0.01  # seconds a level stands for
RATE = 2000


def decoded(file: Path, rate: int) -> array:
    run = subprocess.run(["ffmpeg", "-v", "error", "-i", file, "-ac", "1", "-ar", str(rate), "-f", "s16le", "-"],
                         capture_output=True)
    if run.returncode != 0 or run.stderr:
        raise RuntimeError(f"{file}: {run.stderr.decode()}")
    return array("h", run.stdout)


def frames(file: Path) -> int:
    """The exact length of a whole track."""
    return int(subprocess.run(["ffprobe", "-v", "error", "-show_entries", "stream=duration_ts", "-of", "csv=p=0", file],
                              capture_output=True, text=True, check=True).stdout)


class Track:
    """How loud a track is, level after level. Levels tell the place of a voice well and forgive the clicks that a busy
    sound server makes."""

    def __init__(self, file: Path):
        samples = decoded(file, RATE)
        step = round(HOP * RATE)
        self.levels = [sum(map(abs, samples[at:at + step])) / step / 32768 for at in range(0, len(samples), step)]
        self.sums = [0, *accumulate(self.levels)]
        self.squares = [0, *accumulate(level * level for level in self.levels)]

    def piece(self, start: float, end: float) -> list[float]:
        return self.levels[round(start / HOP):round(end / HOP)]

    def peak(self, start: float, end: float) -> float:
        """The highest level in a stretch; 1 is full scale."""
        return max(self.piece(start, end), default=0)

    def find(self, piece: list[float], earliest: float, latest: float) -> tuple[float, float]:
        """Where in the track a piece of sound begins, in seconds, and how alike the two are there (at most 1)."""
        count = len(piece)
        mean = sum(piece) / count
        piece = [level - mean for level in piece]
        own = math.sqrt(sum(map(mul, piece, piece)))
        best = (-1.0, 0.0)
        for at in range(max(round(earliest / HOP), 0), min(round(latest / HOP), len(self.levels) - count) + 1):
            total = self.sums[at + count] - self.sums[at]
            spread = self.squares[at + count] - self.squares[at] - total * total / count
            if spread > 1e-9:
                likeness = sum(map(mul, self.levels[at:at + count], piece)) / (own * math.sqrt(spread))
                best = max(best, (likeness, at * HOP))
        return best[1], best[0]
