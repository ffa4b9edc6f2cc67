"""Checks pictures of windows before they are kept."""

import subprocess

# A window that is not painted yet is black; a painted one contains hardly any black.
MOST_BLACK = 0.2


def share_of(colour, path):
    """The share of the pixels that are "black" or "white" in a picture, from 0 to 1."""
    other = {"black": "white", "white": "black"}[colour]
    counted = subprocess.run(
        ["convert", path, "-alpha", "off", "-fill", other, "+opaque", colour,
         "-colorspace", "gray", "-format", "%[fx:mean]", "info:"],
        check=True, timeout=20, capture_output=True, text=True)
    mean = float(counted.stdout)
    return mean if colour == "white" else 1 - mean


def is_painted(path):
    return share_of("black", path) < MOST_BLACK


def signature(path):
    """A value that is equal for two pictures with the same content."""
    return subprocess.run(["identify", "-format", "%#", path], check=True, timeout=20,
                          capture_output=True, text=True).stdout
