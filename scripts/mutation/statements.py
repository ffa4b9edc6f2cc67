"""Finds the statements of a C++ source that are a call or an assignment, by their tokens.

Declarations are recognised by the formatting of the sources: the "*", "&" or "<" of a type has no
blank before it."""

from dataclasses import dataclass

from .tokens import CLOSING, closing_of

OTHER_STATEMENTS = frozenset("""
    alignas auto bool break case catch char class const constexpr continue default delete do double
    else enum explicit extern float for friend goto if inline int long namespace operator private
    protected public return short signed static static_assert static_cast struct switch template
    throw try typedef typename union unsigned using virtual void while""".split())
ASSIGNMENTS = frozenset("= += -= *= /= %= &= |= ^= <<= >>= ++ --".split())


@dataclass(frozen=True)
class Statement:
    start: int  # the offset of its beginning in the source
    end: int  # the offset after its ";"
    first: int  # the index of its first token
    last: int  # the index of its ";"
    controlled: bool  # whether it is the whole body of an if, else or loop


def statements_of(tokens):
    found = []
    for first in range(1, len(tokens)):
        before = tokens[first - 1].text
        controlled = before == "else" or (before == ")" and closes_condition(tokens, first - 1))
        if before in (";", "{", "}", ":") or controlled:
            last = end_of_statement(tokens, first)
            if last is not None:
                found.append(Statement(tokens[first].start, tokens[last].end, first, last,
                                       controlled))
    return found


def closes_condition(tokens, closing):
    depth = 0
    for index in range(closing, -1, -1):
        depth += {")": 1, "(": -1}.get(tokens[index].text, 0)
        if depth == 0:
            return index > 0 and tokens[index - 1].text in ("if", "for", "while", "constexpr")
    return False


def end_of_statement(tokens, first):
    """The index of the ";" of the call or assignment that begins at `first`, or None."""
    if tokens[first].text == "emit":
        first += 1
    if tokens[first].text in OTHER_STATEMENTS or is_declaration(tokens, first):
        return None
    if tokens[first].kind != "word" and tokens[first].text not in ("++", "--", "*", "("):
        return None
    acts, assigns = False, False
    index = first
    while index < len(tokens):
        text = tokens[index].text
        if text == ";":
            return index if acts else None
        if text in CLOSING.values() or (text == ":" and not assigns):
            return None
        if text == "{" and tokens[index - 1].text in (")", "}") and not assigns:
            return None  # the body of a function
        assigns = assigns or text in ASSIGNMENTS
        acts = acts or assigns or text == "("
        if text in CLOSING:
            index = closing_of(tokens, index)
            if index is None:
                return None
        index += 1
    return None


def is_declaration(tokens, first):
    """Whether a declaration begins at `first`: a type, possibly qualified and with template
    arguments, and a name."""
    index = first
    while index + 1 < len(tokens) and tokens[index].kind == "word":
        after = tokens[index + 1]
        if after.text == "<" and after.start == tokens[index].end:
            index = end_of_template_arguments(tokens, index + 1)
            after = tokens[index + 1]
        if after.text in ("*", "&", "&&") and after.start == tokens[index].end:
            return True
        if after.kind == "word":
            return True
        if after.text != "::":
            return False
        index += 2
    return False


def end_of_template_arguments(tokens, opening):
    depth = 0
    for index in range(opening, len(tokens) - 1):
        depth += {"<": 1, ">": -1, ">>": -2}.get(tokens[index].text, 0)
        if depth <= 0:
            return index
    return opening
