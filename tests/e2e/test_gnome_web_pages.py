"""The scenarios for every kind of page, with the real GNOME Web."""

import unittest

from page_kinds import PageKindScenarios
from support.gnome_web import GnomeWeb
from support.kept import KeptBrowserTest


class GnomeWebPages(PageKindScenarios, KeptBrowserTest):
    browser_class = GnomeWeb


if __name__ == "__main__":
    unittest.main()
