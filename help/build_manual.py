#!/usr/bin/env python3
"""Makes the help file of one piece: build_manual.py SOURCE ROOT VERSION OUTPUT

SOURCE is the manual with pictures named by their paths below ROOT, which may be missing nowhere;
in OUTPUT each is part of the page, not wider than a help window of the usual size shows.
"""

import base64
import re
import struct
import sys
from pathlib import Path

WIDEST = 560  # pixels
PICTURE = re.compile(r'<img src="([^"]+\.png)"')


def size_of(png):
    """Width and height, which every PNG has at the same place."""
    if png[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError("no PNG")
    return struct.unpack(">II", png[16:24])


def picture(root, name):
    png = (root / name).read_bytes()
    width, height = size_of(png)
    if width > WIDEST:
        width, height = WIDEST, round(height * WIDEST / width)
    data = base64.b64encode(png).decode("ascii")
    return f'<img width="{width}" height="{height}" src="data:image/png;base64,{data}"'


def main(source, root, version, output):
    page = Path(source).read_text(encoding="utf-8").replace("@VERSION@", version)
    page = PICTURE.sub(lambda match: picture(Path(root), match[1]), page)
    Path(output).write_text(page, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit("Usage: build_manual.py SOURCE ROOT VERSION OUTPUT")
    main(*sys.argv[1:])
