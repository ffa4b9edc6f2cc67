"""Makes the mutants of a C++ source: each changes one operator, constant, condition, statement or
returned value.

Binary operators are distinguished from the "*", "&", "<" and ">" of types and templates by the
formatting of the sources: a binary operator has a blank on both sides."""

import hashlib
import re
from dataclasses import dataclass

from .statements import statements_of
from .tokens import CLOSING, closing_of, tokens_of

BINARY = {
    "comparison": {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="},
    "arithmetic": {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=",
                   "<<": ">>", ">>": "<<", "&": "|", "|": "&"},
    "logic": {"&&": "||", "||": "&&"},
}
UNARY = {"++": "--", "--": "++"}
BOOLEANS = {"true": "false", "false": "true"}
# Returned values that are not replaced by an empty value.
EMPTY_VALUES = ("{}", "true", "false", "nullptr", "0", "*this")


@dataclass(frozen=True)
class Mutant:
    path: str
    kind: str
    line: int
    start: int
    end: int
    replacement: str
    before: str  # the changed lines, as one line
    after: str

    def applied_to(self, source):
        return source[:self.start] + self.replacement + source[self.end:]

    @property
    def key(self):
        """Identifies the mutant. It stays the same when other lines of the file change."""
        return self.path, self.before, self.after

    def rank(self, seed):
        """A pseudo-random sort key. It stays the same when other lines of the file change."""
        return hashlib.sha256("\n".join((str(seed), *self.key)).encode()).digest()


def mutants_of(path, source):
    tokens = tokens_of(source)
    changes = [*operators(source, tokens), *constants(tokens), *conditions(source, tokens),
               *statements(source, tokens), *returned_values(source, tokens)]
    return [mutant(path, source, *change) for change in sorted(changes, key=lambda each: each[1:])]


def mutant(path, source, kind, start, end, replacement):
    first = source.rfind("\n", 0, start) + 1
    last = source.find("\n", end)
    last = len(source) if last < 0 else last
    after = source[first:start] + replacement + source[end:last]
    return Mutant(path, kind, source.count("\n", 0, start) + 1, start, end, replacement,
                  one_line(source[first:last]), one_line(after))


def one_line(text):
    return re.sub(r"\s+", " ", text).strip()


# Each of these yields (kind, start, end, replacement).

def operators(source, tokens):
    for token in tokens:
        if token.kind != "sign":
            continue
        if is_between_blanks(source, token):
            for kind, others in BINARY.items():
                if token.text in others:
                    yield kind, token.start, token.end, others[token.text]
        elif token.text == "!":
            yield "logic", token.start, token.end, ""
        if token.text in UNARY:
            yield "arithmetic", token.start, token.end, UNARY[token.text]


def is_between_blanks(source, token):
    around = source[token.start - 1:token.start] + source[token.end:token.end + 1]
    return len(around) == 2 and not around.strip()


def constants(tokens):
    for token in tokens:
        if token.kind == "number":
            more = str(int(token.text) + 1) if token.text.isdecimal() else f"({token.text} + 1)"
            yield "number", token.start, token.end, more
        elif token.text in BOOLEANS:
            yield "boolean", token.start, token.end, BOOLEANS[token.text]


def conditions(source, tokens):
    for index, token in enumerate(tokens[:-1]):
        if token.text in ("if", "while") and tokens[index + 1].text == "(":
            first, last = index + 2, closing_of(tokens, index + 1) - 1
            semicolons = [at for at in range(first, last) if tokens[at].text == ";"]
            # Skip an init-statement, but not a semicolon in the body of a lambda.
            if semicolons and "{" not in (each.text for each in tokens[first:semicolons[0]]):
                first = semicolons[0] + 1
        elif token.text == "?":
            first, last = begin_of_operand(tokens, index), index - 1
        else:
            continue
        start, end = tokens[first].start, tokens[last].end
        yield "condition", start, end, f"!({source[start:end]})"
        yield "condition", start, end, f"false && ({source[start:end]})"


def begin_of_operand(tokens, question):
    """Where the condition before a "?" begins."""
    depth = 0
    for index in range(question - 1, -1, -1):
        text = tokens[index].text
        depth += text in CLOSING.values()
        if depth == 0 and text in ("(", "[", "{", ",", ";", "=", "return", "?", ":", "+=", "<<"):
            return index + 1
        depth -= text in CLOSING
    return 0


def statements(source, tokens):
    found = statements_of(tokens)
    following = {each.first: each for each in found if not each.controlled}
    for each in found:
        yield "removal", each.start, each.end, ";"
        after = following.get(each.last + 1)
        if after and not each.controlled:
            gap = source[each.end:after.start]
            yield ("order", each.start, after.end,
                   source[after.start:after.end] + gap + source[each.start:each.end])


def returned_values(source, tokens):
    for index, token in enumerate(tokens[:-1]):
        if token.text != "return" or tokens[index + 1].text == ";":
            continue
        last = index
        while last < len(tokens) and tokens[last].text != ";":
            last = closing_of(tokens, last) if tokens[last].text in CLOSING else last
            last += 1
        start, end = tokens[index + 1].start, tokens[last - 1].end
        if source[start:end] not in EMPTY_VALUES:
            yield "value", start, end, "{}"
