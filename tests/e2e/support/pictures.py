"""Checks pictures of windows before they are kept."""

import subprocess

# A window that is not painted yet is black; a painted one contains hardly any black.
MOST_BLACK = 0.2


def share_of_black(path):
    """The share of black pixels in a picture, from 0 to 1."""
    counted = subprocess.run(
        ["convert", path, "-alpha", "off", "-fill", "white", "+opaque", "black",
         "-colorspace", "gray", "-format", "%[fx:1-mean]", "info:"],
        check=True, timeout=20, capture_output=True, text=True)
    return float(counted.stdout)


def is_painted(path):
    return share_of_black(path) < MOST_BLACK


def signature(path):
    """A value that is equal for two pictures with the same content."""
    return subprocess.run(["identify", "-format", "%#", path], check=True, timeout=20,
                          capture_output=True, text=True).stdout
