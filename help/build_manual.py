#!/usr/bin/env python3
"""Builds the self-contained help file: build_manual.py SOURCE ROOT VERSION OUTPUT

SOURCE is the manual, which names its pictures by their paths below ROOT. A missing picture is an
error. In OUTPUT each picture is embedded in the page, scaled down to the width that a help window
of the usual size can show.
"""

import base64
import re
import struct
import sys
from pathlib import Path

WIDEST = 560  # pixels
PICTURE = re.compile(r'<img src="([^"]+\.png)"')


def size_of(png):
    """Width and height in pixels, which are at the same offset in every PNG."""
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
