"""The tokens of a C++ source: words, numbers, literals and signs, each with its offsets in the
text. Comments, blanks and preprocessor lines are left out."""

import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<skipped> \s+ | //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n\\]|\\.)* )
  | (?P<literal> R"(?P<mark>[^(]*)\(.*?\)(?P=mark)" | "(?:[^"\\]|\\.)*" | '(?:[^'\\]|\\.)*' )
  | (?P<number> \d(?:'?[\w.])* )
  | (?P<word> [A-Za-z_]\w* )
  | (?P<sign> <=> | <<= | >>= | \.\.\. | -> | :: | \+\+ | -- | && | \|\| | [-+*/%&|^<>=!]= | << | >>
            | . )
""", re.VERBOSE | re.MULTILINE | re.DOTALL)

CLOSING = {"(": ")", "[": "]", "{": "}"}


@dataclass(frozen=True)
class Token:
    kind: str  # literal, number, word or sign
    text: str
    start: int
    end: int


def tokens_of(source):
    return [Token(found.lastgroup, found[0], found.start(), found.end())
            for found in TOKEN.finditer(source) if found.lastgroup != "skipped"]


def closing_of(tokens, opening):
    """The index of the bracket that closes the one at this index, or None."""
    expected = []
    for index in range(opening, len(tokens)):
        text = tokens[index].text
        if text in CLOSING:
            expected.append(CLOSING[text])
        elif text in CLOSING.values():
            if not expected or text != expected.pop():
                return None
            if not expected:
                return index
    return None
