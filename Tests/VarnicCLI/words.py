"""How far what was written down is from what was said."""

import re

# The same words in another spelling: no errors of hearing.
SPELLINGS = {r"\$40\b": "forty dollars", r"\$10,000\b": "ten thousand dollars", r"\bi'll\b": "i will",
             r"\bgood bye\b": "goodbye"}


def words(text: str) -> list[str]:
    text = text.lower().replace("’", "'")
    for spelling, plain in SPELLINGS.items():
        text = re.sub(spelling, plain, text)
    return re.findall(r"[a-z0-9']+", text)


def word_errors(said: list[str], written: list[str]) -> int:
    """The edit distance between two lists of words."""
    row = list(range(len(written) + 1))
    for i, a in enumerate(said, 1):
        diagonal, row[0] = row[0], i
        for j, b in enumerate(written, 1):
            diagonal, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, diagonal + (a != b))
    return row[-1]
