"""Pictures of windows, judged before they are kept."""

import subprocess

# A window that has not been painted is black; of one that has, hardly anything is.
MOST_BLACK = 0.2


def share_of_black(path):
    """Of a picture's points, from 0 to 1."""
    counted = subprocess.run(
        ["convert", path, "-alpha", "off", "-fill", "white", "+opaque", "black",
         "-colorspace", "gray", "-format", "%[fx:1-mean]", "info:"],
        check=True, timeout=20, capture_output=True, text=True)
    return float(counted.stdout)


def is_painted(path):
    return share_of_black(path) < MOST_BLACK


def signature(path):
    """The same for two pictures that show the same."""
    return subprocess.run(["identify", "-format", "%#", path], check=True, timeout=20,
                          capture_output=True, text=True).stdout
