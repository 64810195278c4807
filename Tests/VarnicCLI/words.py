"""How far what was written down is from what was said."""

import re


def words(text: str) -> list[str]:
    """Speech doesn't tell "I'll" from "I will"."""
    return re.findall(r"[a-z0-9']+", text.lower().replace("'ll", " will"))


def word_errors(said: list[str], written: list[str]) -> int:
    """The edit distance between two lists of words."""
    row = list(range(len(written) + 1))
    for i, a in enumerate(said, 1):
        diagonal, row[0] = row[0], i
        for j, b in enumerate(written, 1):
            diagonal, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, diagonal + (a != b))
    return row[-1]
