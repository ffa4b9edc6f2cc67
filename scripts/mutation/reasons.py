"""Reads and writes lists of mutants. A block contains the file, the line before and after the
change, and the reason why no test can distinguish the two:

    src/sitetree/key_index.cpp
    - if (slotsFor(count) > slots_.size()) rebuild(slotsFor(count));
    + if (slotsFor(count) >= slots_.size()) rebuild(slotsFor(count));
      Rebuilding for the same number of slots gives the same index.

Lines that begin with "#" are comments.
"""


def read_reasons(path):
    """A dict from (file, before, after) to the reason. Raises ValueError for malformed blocks."""
    with open(path, encoding="utf-8") as file:
        text = "\n".join(line for line in file.read().splitlines() if not line.startswith("#"))
    reasons = {}
    for block in filter(str.strip, text.split("\n\n")):
        source, before, after, *reason = block.strip().splitlines()
        if not (before.startswith("- ") and after.startswith("+ ")):
            raise ValueError(f"{path}: not a mutant: {block}")
        key = source, before[2:], after[2:]
        if key in reasons:
            raise ValueError(f"{path}: twice the same mutant: {block}")
        reasons[key] = " ".join(map(str.strip, reason))
    return reasons


def block_of(mutant):
    return f"{mutant.path}\n- {mutant.before}\n+ {mutant.after}\n"
